#include "tools/camhook/explain/Candidates.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <set>
#include <utility>

#include "common/HeskParameterUpdater.h"
#include "host/MetadataAccess.h"
#include "tools/camhook/input/MetadataJson.h"
#include "tools/camhook/input/TagCatalogue.h"

namespace camhook {
namespace {

using Kind = Input::Kind;

constexpr std::size_t kManyItems = 8;  // of a longer list the first ones and the last change

struct Range {
  std::int64_t least;
  std::int64_t most;
};

template <typename T>
constexpr Range kRangeOf{std::numeric_limits<T>::min(), std::numeric_limits<T>::max()};

Range rangeOf(const std::string& type) {
  if (type == "uint8") return kRangeOf<std::uint8_t>;
  return type == "int64" ? kRangeOf<std::int64_t> : kRangeOf<std::int32_t>;
}

std::uint64_t distance(std::int64_t left, std::int64_t right) {
  // Signed numbers in their order, from 0 on.
  constexpr std::uint64_t kSign = std::uint64_t{1} << 63U;
  const std::uint64_t first = static_cast<std::uint64_t>(left) ^ kSign;
  const std::uint64_t second = static_cast<std::uint64_t>(right) ^ kSign;
  return first >= second ? first - second : second - first;
}

/// The number in a scenario's place, which may be a hexadecimal text; 0 for what is none.
std::int64_t numberFrom(const Json& json) {
  try {
    return integerFromJson<std::int64_t>(json, Place());
  } catch (const InputError&) {
    return json.is_number() ? static_cast<std::int64_t>(json.get<std::uint64_t>()) : 0;
  }
}

/// The positions in a list that change.
std::vector<std::size_t> positions(std::size_t count) {
  std::vector<std::size_t> list;
  for (std::size_t i = 0; i < std::min(count, kManyItems); ++i) list.push_back(i);
  if (count > kManyItems) list.push_back(count - 1);
  return list;
}

Json withItem(Json list, std::size_t position, Json item) {
  list[position] = std::move(item);
  return list;
}

Json entryOf(const std::string& type, Json items) {
  return {{"type", type}, {"items", std::move(items)}};
}

void append(std::vector<Json>& list, std::vector<Json> more) {
  std::ranges::move(more, std::back_inserter(list));
}

/// Places of the phone that are true where they are absent.
bool isSwitch(const std::string& key) {
  return key == "sensorList" || key == "hal3aModule" || key == "defaultShadingModule" ||
         key == "faceDetection" || key.ends_with(".available");
}

bool isFloatPlace(const std::string& key) {
  return key.ends_with(".fov") || key.ends_with(".shadingBase") || key == "value";
}

/// Every entry of static metadata that the catalogue knows, with some value.
std::vector<Json> someStatics() {
  std::vector<Json> list{Json::object()};
  for (const TagDescription& tag : kTagCatalogue) {
    if (!tag.meaning.starts_with("static")) continue;
    Json item = 1;
    if (tag.type == "rect") item = Json::array({0, 0, 1, 1});
    if (tag.type == "rational") item = Json::array({1, 1});
    Json items = Json::array();
    for (std::uint32_t i = 0; i < std::max(tag.count, 1U); ++i) items.push_back(item);
    list.push_back(Json{{std::string(tag.name), std::move(items)}});
  }
  return list;
}

bool isRowOfWords(const std::string& key) {
  return key.ends_with(".pdWords") || key.ends_with(".pdTail");
}

bool isRowOfPairs(const std::string& key) {
  return key.ends_with(".pdLeft") || key.ends_with(".pdRight");
}

}  // namespace

Candidates::Candidates(const Question& question) : mQuestion(question) {
  LibraryConstants constants = libraryConstants();
  std::set<std::int64_t> numbers{100, 119, 120, 121, 127, 128, 129, 240, 255, 256};
  for (std::int64_t number = -2; number <= 64; ++number) numbers.insert(number);
  for (const std::int64_t number : constants.numbers) {
    for (const std::int64_t near : {number - 1, number, number + 1}) numbers.insert(near);
  }
  mNumbers.assign(numbers.begin(), numbers.end());
  mFloats = {0.0F, 0.5F, 1.0F, std::nextafter(1.0F, 2.0F), 2.0F, -1.0F};
  mFloats.insert(mFloats.end(), constants.floats.begin(), constants.floats.end());

  std::set<std::string> texts;
  const auto addText = [&](const std::string& text) {
    if (!text.empty() && texts.insert(text).second) mTexts.push_back(text);
  };
  for (const auto& [key, text] : question.scenario.platform.eventStore) addText(text);
  for (const auto& [key, text] : question.scenario.platform.properties) addText(text);
  for (const ScenarioCall& call : question.scenario.calls) {
    if (const auto* event = std::get_if<SetEvent>(&call.call)) addText(event->value);
    if (const auto* property = std::get_if<SetProperty>(&call.call)) addText(property->value);
    addEntries(call.call);
  }
  for (const std::string& text : constants.texts) addText(text);
}

void Candidates::addEntries(Call call) {
  for (const char* name : {"meta", "app", "hal", "out"}) {
    const MetadataArgument* container = containerOf(call, name);
    if (container == nullptr || !*container) continue;
    for (const auto* entry : host::MetadataAccess::entriesByTag(**container)) {
      std::vector<Json>& list = mEntries[entry->tag()];
      Json json = jsonFromEntry(*entry);
      if (list.size() < kManyItems && std::ranges::find(list, json) == list.end()) {
        list.push_back(std::move(json));
      }
    }
  }
}

std::vector<Json> Candidates::integers(const Json& present, const std::string& type,
                                       bool few) const {
  const Range range = rangeOf(type);
  const std::int64_t now = numberFrom(present);
  std::set<std::int64_t> numbers;
  const auto add = [&](std::int64_t number) {
    if (number >= range.least && number <= range.most) numbers.insert(number);
  };
  if (now > range.least) add(now - 1);
  if (now < range.most) add(now + 1);
  for (const std::int64_t number : {std::int64_t{0}, std::int64_t{1}, range.most}) add(number);
  if (few) {
    add(now / 2);
  } else {
    for (const std::int64_t number : mNumbers) add(number);
    for (unsigned bit = 0; bit < 64; ++bit) {
      const std::uint64_t mask = std::uint64_t{1} << bit;
      add(static_cast<std::int64_t>(mask));
      add(static_cast<std::int64_t>(static_cast<std::uint64_t>(now) ^ mask));
    }
    add(range.least);
  }
  if (!present.is_null()) numbers.erase(now);
  std::vector<std::int64_t> sorted(numbers.begin(), numbers.end());
  std::ranges::stable_sort(sorted, {}, [now](std::int64_t number) {
    return std::pair(number != 0, distance(number, now));
  });
  return {sorted.begin(), sorted.end()};
}

std::vector<Json> Candidates::floats(const Json& present) const {
  std::vector<float> numbers = mFloats;
  if (!present.is_null()) {
    const float now = floatFromJson(present, Place());
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    for (const float number : {std::nextafter(now, -kInfinity), std::nextafter(now, kInfinity),
                               now - 1, now + 1, now / 2, now * 2}) {
      numbers.push_back(number);
    }
    if (std::isfinite(now)) {
      std::ranges::stable_sort(numbers, {}, [now](float number) {
        return std::pair(number != 0, std::abs(number - now));
      });
    }
  }
  std::vector<Json> list;
  for (const float number : numbers) {
    Json json = jsonFromFloat(number);
    if (json != present) list.push_back(std::move(json));
  }
  return list;
}

std::vector<Json> Candidates::items(const Json& present, const std::string& type, bool few) const {
  if (type == "float") return floats(present);
  if (type != "rect" && type != "rational") return integers(present, type, few);
  const std::size_t count = type == "rect" ? 4 : 2;
  const Json now = present.is_null() ? Json(std::vector<int>(count, 0)) : present;
  std::vector<Json> list{Json(std::vector<int>(count, 0)), Json(std::vector<int>(count, 1))};
  if (type == "rect") list.push_back(Json::array({0, 0, 4000, 3000}));
  for (std::size_t i = 0; i < count; ++i) {
    for (Json& number : integers(now[i], "int32", true)) {
      list.push_back(withItem(now, i, std::move(number)));
    }
  }
  return list;
}

std::vector<Json> Candidates::entries(std::uint32_t tag, const Json& present) const {
  const TagDescription* const info = findTag(tag);
  std::vector<Json> list;
  if (present.is_null()) {
    const std::string type = info != nullptr ? std::string(info->type) : "int32";
    const std::size_t count = info != nullptr ? std::max(info->count, 1U) : 1;
    const bool isLong = count > kManyItems;
    for (const Json& item : items(nullptr, type, isLong)) {
      list.push_back(entryOf(type, Json(std::vector<Json>(count, item))));
      if (count == 2) list.push_back(entryOf(type, Json::array({0, item})));
    }
  } else {
    list.emplace_back(nullptr);
    const auto type = present["type"].get<std::string>();
    const Json& now = present["items"];
    for (const std::size_t i : positions(now.size())) {
      for (Json& item : items(now[i], type, now.size() > kManyItems)) {
        list.push_back(entryOf(type, withItem(now, i, std::move(item))));
      }
    }
    Json longer = now;
    longer.push_back(now.back());
    list.push_back(entryOf(type, std::move(longer)));
    if (now.size() > 1) {
      Json shorter = now;
      shorter.erase(shorter.size() - 1);
      list.push_back(entryOf(type, std::move(shorter)));
    }
  }
  if (const auto found = mEntries.find(tag); found != mEntries.end()) {
    for (const Json& entry : found->second) {
      if (entry != present) list.push_back(entry);
    }
  }
  return list;
}

std::vector<Json> Candidates::texts(const Input& input, const Json& present) const {
  std::vector<Json> list;
  std::vector<Json> numbers;
  for (const Json& number : integers(nullptr, "int32", false)) {
    numbers.emplace_back(std::to_string(number.get<std::int64_t>()));
  }
  // Properties are mostly numbers, event-store values mostly names.
  if (input.kind == Kind::property) append(list, numbers);
  list.insert(list.end(), mTexts.begin(), mTexts.end());
  if (input.kind == Kind::event) append(list, numbers);
  std::erase(list, present);
  if (!present.is_null()) list.insert(list.begin(), nullptr);
  return list;
}

/// What stands in a place, varied member by member.
std::vector<Json> Candidates::values(const Json& present, bool isFloat, bool few) const {
  if (present.is_boolean()) return {!present.get<bool>()};
  if (present.is_string()) return std::vector<Json>(mTexts.begin(), mTexts.end());
  if (present.is_number_float()) return floats(present);
  if (present.is_number()) return isFloat ? floats(present) : integers(present, "int64", few);
  std::vector<Json> list;
  if (present.is_array()) {
    for (const std::size_t i : positions(present.size())) {
      for (Json& item : values(present[i], isFloat, true)) {
        list.push_back(withItem(present, i, std::move(item)));
      }
    }
    if (!present.empty()) list.push_back(Json::array());
  } else if (present.is_object()) {
    for (const auto& [key, member] : present.items()) {
      for (Json& value : values(member, isFloat, true)) {
        Json changed = present;
        changed[key] = std::move(value);
        list.push_back(std::move(changed));
      }
    }
  }
  return list;
}

/// What a service may give that gives nothing.
std::vector<Json> Candidates::placesWhereAbsent(const std::string& key) const {
  const auto parsed = [](std::initializer_list<const char*> texts) {
    std::vector<Json> list;
    for (const char* text : texts) list.push_back(Json::parse(text));
    return list;
  };
  if (key.ends_with(".faces")) return parsed({R"([{"rect": [0, 0, 1, 1], "score": 1}])"});
  if (key.ends_with(".sensor")) {
    return parsed(
        {"{}", R"({"pdSupported": 1})", R"({"pdSupported": 1, "pdWords": [1, 1, 1, 1, 1]})"});
  }
  if (key.ends_with("Shading")) {
    return parsed({"{}", R"({"ANDROID_STATISTICS_LENS_SHADING_MAP": [1.0]})"});
  }
  if (isRowOfWords(key)) return values(Json::array({0, 0}), false, false);
  if (isRowOfPairs(key)) return values(Json::array({Json::array({0, 0})}), false, true);
  return isFloatPlace(key) ? floats(Json()) : integers(Json(), "int32", false);
}

/// What it may give in place of what it gives.
std::vector<Json> Candidates::placesWherePresent(const std::string& key,
                                                 const Json& present) const {
  if (key.ends_with(".sensor")) return {};
  const bool isShading = key.ends_with("Shading");
  const bool few = isShading || key.ends_with(".faces") || isRowOfPairs(key);
  return values(present, isShading || isFloatPlace(key), few);
}

std::vector<Json> Candidates::places(const std::string& key, const Json& present) const {
  if (isSwitch(key)) return {!present.is_null() && !present.get<bool>()};
  if (key == "clock") return {"2021-03-04T05:06:07", "2022-12-31T23:59:58"};
  std::vector<Json> list;
  const bool isInList = key.find("].") != std::string::npos;
  if (!present.is_null() && !isInList) list.emplace_back(nullptr);
  if (key.ends_with(".static")) {
    const Json devices = mQuestion.platformDocument().value("devices", Json::object());
    for (const Json& device : devices) {
      if (device.contains("static")) list.push_back(device["static"]);
    }
    append(list, someStatics());
  } else if (key == "sat.cameras") {
    list.push_back(Json::parse(R"([{"id": 0, "role": 1, "fov": 80.0}])"));
  } else {
    append(list, present.is_null() ? placesWhereAbsent(key) : placesWherePresent(key, present));
  }
  return list;
}

std::vector<Json> Candidates::arguments(const std::string& key, const Json& present) const {
  if (key == "tag") {
    std::vector<Json> list{"0x00000000"};
    for (const std::int64_t number : mNumbers) {
      if (number < 0) list.emplace_back(hexadecimal(static_cast<std::uint32_t>(number)));
    }
    for (const TagDescription& tag : kTagCatalogue) list.emplace_back(tag.name);
    std::erase(list, present);
    return list;
  }
  if (key == "sensor") {
    std::vector<Json> sensors;
    for (int sensor = 0; sensor <= HeskParameterUpdater::kMaxInstanceId; ++sensor) {
      if (sensor != present) sensors.emplace_back(sensor);
    }
    return sensors;
  }
  if (key == "streams") return {Json::array()};
  // Its edges are those of what reads it; a block larger than this takes too long to hand over.
  if (key == "size" && present.is_number()) {
    std::vector<Json> list = integers(present, "int32", false);
    std::erase_if(list, [](const Json& size) { return size.get<std::int64_t>() > 1 << 22; });
    return list;
  }
  if (present.is_string()) {
    return integers(Json(numberFrom(present)), "int64", false);  // a hexadecimal number
  }
  return values(present, isFloatPlace(key), false);
}

std::vector<Json> Candidates::forInput(const Input& input, const Json& value) const {
  switch (input.kind) {
    case Kind::metadata:
    case Kind::statics: return entries(input.tag, value);
    case Kind::event:
    case Kind::property: return texts(input, value);
    case Kind::provider: {
      std::vector<Json> list = integers(value, "int32", false);
      if (!value.is_null()) list.insert(list.begin(), nullptr);
      return list;
    }
    case Kind::argument: return arguments(input.key, value);
    case Kind::platform: return places(input.key, value);
    case Kind::call: break;
  }
  return {Json()};
}

}  // namespace camhook
