#include "tools/camhook/explain/Candidates.h"

#include <algorithm>
#include <cmath>
#include <concepts>
#include <cstdint>
#include <iterator>
#include <limits>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "common/HeskParameterUpdater.h"
#include "host/MetadataAccess.h"
#include "tools/camhook/explain/SensorModeRules.h"
#include "tools/camhook/input/JsonLine.h"
#include "tools/camhook/input/KnownNames.h"
#include "tools/camhook/input/MetadataJson.h"
#include "tools/camhook/input/TagCatalogue.h"

namespace camhook {
namespace {

using Kind = Input::Kind;

// In longer lists only the first `kManyItems` items and the last are changed.
constexpr std::size_t kManyItems = 8;
// The range of small numbers.
constexpr int kMinSmall = -2;
constexpr int kMaxSmall = 64;
constexpr int kEdges[] = {100, 119, 120, 121, 127, 128, 129, 240, 255, 256};

enum class Which { likely, few, all };  // which numbers are tried

/// A number, which may be a hexadecimal text, or a float such as "inf"; nullopt for any other
/// value.
template <typename T>
std::optional<T> numberFrom(const Json& json) {
  if (json.isNull()) return {};
  try {
    return numberFromJson<T>(json, "");
  } catch (const InputError&) {
    return {};
  }
}

template <typename T>
double distance(T left, T right) {
  const double apart = std::abs(static_cast<double>(left) - static_cast<double>(right));
  return std::isnan(apart) ? HUGE_VAL : apart;
}

std::vector<std::int64_t> numbersAround(std::int64_t now, Which which) {
  std::vector<std::int64_t> list{0, 1, now / 2};
  if (now > std::numeric_limits<std::int64_t>::min()) list.push_back(now - 1);
  if (now < std::numeric_limits<std::int64_t>::max()) list.push_back(now + 1);
  if (which != Which::all) return list;
  list.insert(list.end(), std::begin(kEdges), std::end(kEdges));
  for (unsigned bit = 0; bit < 64; ++bit) {
    const std::uint64_t mask = std::uint64_t{1} << bit;
    list.push_back(static_cast<std::int64_t>(mask));
    list.push_back(static_cast<std::int64_t>(static_cast<std::uint64_t>(now) ^ mask));
  }
  return list;
}

std::vector<float> numbersAround(float now, Which /*which*/) {
  return {
      0.0F,    0.5F,    1.0F,    std::nextafter(1.0F, 2.0F),      now - 1,
      now + 1, now / 2, now * 2, std::nextafter(now, -HUGE_VALF), std::nextafter(now, HUGE_VALF)};
}

/// Numbers of type `T` other than the present one, zero first, then by their distance from it.
template <typename T>
Json::List numbersOf(const Json& present, Which which, const Json::List& likely = {}) {
  using Number = std::conditional_t<std::integral<T>, std::int64_t, T>;
  const auto known = numberFrom<Number>(present);
  if (!known && !present.isNull()) return {};
  const Number now = known.value_or(0);
  std::vector<Number> list;
  for (const Json& each : likely) {
    if (const auto number = numberFrom<Number>(each)) list.push_back(*number);
  }
  if (which != Which::likely) list = numbersAround(now, which);
  for (int number = kMinSmall; which == Which::all && number <= kMaxSmall; ++number) {
    list.push_back(static_cast<Number>(number));
  }
  if constexpr (std::integral<T>) {
    if (which != Which::likely) list.push_back(std::numeric_limits<T>::max());
    if (which == Which::all) list.push_back(std::numeric_limits<T>::min());
    std::erase_if(list, [](Number number) { return !std::in_range<T>(number); });
  }
  if constexpr (std::floating_point<T>)
    std::erase_if(list, [](T each) { return std::isnan(each); });
  std::ranges::stable_sort(list, {}, [now](Number number) {
    return std::tuple(number != 0, distance(number, now), number);
  });
  list.erase(std::unique(list.begin(), list.end()), list.end());
  if (known) std::erase(list, now);
  return {list.begin(), list.end()};
}

/// Indexes of the items that are changed.
std::vector<std::size_t> positions(std::size_t count) {
  std::vector<std::size_t> list;
  for (std::size_t i = 0; i < std::min(count, kManyItems); ++i) list.push_back(i);
  if (count > kManyItems) list.push_back(count - 1);
  return list;
}

void append(Json::List& list, Json::List more) {
  std::ranges::move(more, std::back_inserter(list));
}

void addOnce(Json::List& list, Json value) {
  if (std::ranges::find(list, value) == list.end()) list.push_back(std::move(value));
}

/// Values to try instead of `present`. In a list one item is changed, in an object one member.
/// `type` is the type of the numbers.
Json::List variants(const Json& present, std::string_view type, Which which,
                    const Json::List& likely = {}) {
  Json::List list;
  const auto addChanged = [&](auto at, const Json& child) {
    for (Json& value : variants(child, type, Which::few)) {
      list.push_back(present);
      list.back()[at] = std::move(value);
    }
  };
  if (present.isBoolean()) {
    list.emplace_back(!present.isTrue());
  } else if (present.isObject()) {
    for (const auto& [key, member] : present.members()) addChanged(std::string_view(key), member);
  } else if (present.isList()) {
    const std::size_t parts = partsOf(type);
    if (parts > 1 && which == Which::likely) return list;
    if (parts > 1) list = {Json::List(parts, 0), Json::List(parts, 1)};
    if (parts == 4) list.push_back(Json::List{0, 0, 4000, 3000});
    for (const std::size_t i : positions(present.size())) addChanged(i, present[i]);
    if (parts == 1 && present.size() > 0) list.emplace_back(Json::List());
  } else if (type == "float" || (present.isNumber() && !present.isInteger())) {
    list = numbersOf<float>(present, which, likely);
  } else if (type == "uint8") {
    list = numbersOf<std::uint8_t>(present, which, likely);
  } else if (type == "int64") {
    list = numbersOf<std::int64_t>(present, which, likely);
  } else {
    list = numbersOf<std::int32_t>(present, which, likely);
  }
  return list;
}

/// A new entry with the type and count of the catalogue; one int32 if the tag is not listed.
Json newEntry(std::uint32_t tag, const auto& number) {
  const TagDescription* const info = findTag(tag);
  const std::string_view type = info != nullptr ? info->type : "int32";
  const Json item = partsOf(type) > 1 ? Json(Json::List(partsOf(type), number)) : Json(number);
  return {{"type", type},
          {"items", Json::List(info != nullptr ? std::max(info->count, 1U) : 1, item)}};
}

/// Variants of an entry: one item changed, one item appended, the last removed. In a new entry the
/// last item or all items are set.
Json::List entries(std::uint32_t tag, const Json& present, Which which, const Json::List& likely) {
  const bool isNew = present.isNull();
  Json entry = isNew ? newEntry(tag, 0) : present;
  const std::string type = entry["type"].text();
  if (isNew && type == "float") entry = newEntry(tag, 0.0F);
  const Json::List items = entry["items"].items();
  Json::List list;
  const auto add = [&](Json::List changed) {
    entry["items"] = std::move(changed);
    list.push_back(entry);
  };
  if (which == Which::all && items.size() > kManyItems) which = Which::few;
  for (const std::size_t i : isNew ? std::vector{items.size() - 1} : positions(items.size())) {
    const Json& now = isNew && partsOf(type) == 1 ? Json() : items[i];
    for (const Json& item : variants(now, type, which, likely)) {
      if (isNew) add(Json::List(items.size(), item));
      if (isNew && items.size() == 1) continue;
      add(items);
      list.back()["items"][i] = item;
    }
  }
  if (isNew || which == Which::likely) return list;
  add(items);
  list.back()["items"].push_back(items.back());
  add({items.begin(), items.end() - 1});
  return list;
}

/// The type at a key of `platform`, or of an argument; "bool" for keys that are true if absent.
std::string_view typeAt(const std::string& key) {
  if (key == "sensorList" || key == "hal3aModule" || key == "defaultShadingModule" ||
      key == "faceDetection" || key.ends_with(".available")) {
    return "bool";
  }
  const bool isFloat = key.ends_with(".fov") || key.ends_with(".shadingBase") ||
                       key.ends_with("Shading") || key == "value";
  return isFloat ? "float" : "int64";
}

/// Values for keys of `platform`, by the end of the key.
constexpr std::pair<std::string_view, const char*> kSamples[] = {
    {".faces", R"([{"rect": [0, 0, 1, 1], "score": 1}])"},
    {".sensor", "{}"},
    {".sensor", R"({"pdSupported": 1})"},
    {".sensor", R"({"pdSupported": 1, "pdWords": [1, 1, 1, 1, 1]})"},
    {"Shading", "{}"},
    {"Shading", R"({"ANDROID_STATISTICS_LENS_SHADING_MAP": [1.0]})"},
    {"sat.cameras", R"([{"id": 0, "role": 1, "fov": 80.0}])"},
    {".pdWords", "[1, 1]"},
    {".pdTail", "[1, 1]"},
    {".pdLeft", "[[1, 1]]"},
    {".pdRight", "[[1, 1]]"},
    {"clock", R"("2021-03-04T05:06:07")"},
    {"clock", R"("2022-12-31T23:59:58")"},
};

/// The static metadata of each device, and each static tag of the catalogue alone.
Json::List someStatics(const Json& platform) {
  Json::List list;
  const Json& devices = platform["devices"];
  for (const auto& [id, device] : devices.isObject() ? devices.members() : Json::Object()) {
    if (const Json* statics = device.find("static")) list.push_back(*statics);
  }
  list.emplace_back(Json::Object());
  for (const TagDescription& tag : kTagCatalogue) {
    if (!tag.meaning.starts_with("static")) continue;
    list.push_back(Json{{std::string(tag.name), newEntry(tag.value, 1)["items"]}});
  }
  return list;
}

Json::List places(const std::string& key, const Json& present, const Json& platform) {
  Json::List list;
  const bool isInList = key.find("].") != std::string::npos;
  if (!present.isNull() && !isInList) list.emplace_back(nullptr);
  for (const auto& [end, sample] : kSamples) {
    if (key.ends_with(end)) list.push_back(parseJson(sample));
  }
  if (key.ends_with(".static")) {
    append(list, someStatics(platform));
  } else if (!present.isNull() || list.empty()) {
    const bool isTrueByDefault = present.isNull() && typeAt(key) == "bool";
    append(list, variants(isTrueByDefault ? Json(true) : present, typeAt(key), Which::all));
  }
  return list;
}

/// Whole numbers for an event or a property.
Json::List numberTexts(Which which, const Json::List& likely = {}) {
  Json::List list = numbersOf<std::int32_t>({}, which, likely);
  for (Json& number : list) number = lineOfJson(number);
  return list;
}

/// False for sensors without updater, and for blocks that take too long to copy.
bool isPossible(const Input& input, const Json& value) {
  constexpr int kMaxBytes = 1 << 22;
  if (input.kind != Kind::argument) return true;
  const auto number = value.integer<std::int64_t>();
  if (input.key == "size") return !number || *number <= kMaxBytes;
  return input.key != "sensor" ||
         (number && *number >= 0 && *number <= HeskParameterUpdater::kMaxInstanceId);
}

}  // namespace

Candidates::Candidates(const Question& question, const Json& wanted) : mQuestion(question) {
  const Json& items = wanted.isObject() ? wanted["items"] : wanted;
  mWantedItems = items.isList() ? items.items() : Json::List(1, items);
  const host::PhoneConfig& phone = question.scenario.platform;
  for (const auto& [key, text] : phone.eventStore) addOnce(mKnown[key], text);
  for (const auto& [name, text] : phone.properties) addOnce(mKnown[name], text);
  for (const auto& [id, device] : phone.devices) addContainer(device.statics);
  for (const ScenarioCall& call : question.scenario.calls) {
    if (const auto* event = std::get_if<SetEvent>(&call.call)) {
      addOnce(mKnown[event->key], event->value);
    }
    if (const auto* property = std::get_if<SetProperty>(&call.call)) {
      addOnce(mKnown[property->name], property->value);
    }
    for (const char* name : kContainers) {
      const MetadataArgument* container = containerOf(call.call, name);
      if (container != nullptr && *container) addContainer(**container);
    }
  }
  if (wanted.isObject()) mKnown[tagText(question.tag)].push_back(wanted);
  for (const DecisionInputField& field : decisionInputFields()) {
    for (const Json& value : namedValues(field.name, nullptr)) {
      addOnce(mKnown[std::string(field.name)], value.isList() ? value[0] : value);
    }
  }
}

void Candidates::addContainer(const NSCam::IMetadata& metadata) {
  for (const auto* entry : host::MetadataAccess::entriesByTag(metadata)) {
    Json::List& list = mKnown[tagText(entry->tag())];
    if (list.size() < kManyItems) addOnce(list, jsonFromEntry(*entry));
  }
}

/// Likely values: absent, values elsewhere in the scenario, and values in rules, overrides and the
/// wanted value.
Json::List Candidates::likely(const Input& input, const Json& present) const {
  Json::List list;
  if (!present.isNull() && input.kind != Kind::argument && input.kind != Kind::platform) {
    list.emplace_back(nullptr);
  }
  const bool isEntry = input.kind == Kind::metadata || input.kind == Kind::statics;
  const auto found = mKnown.find(isEntry ? tagText(input.tag) : input.key);
  Json::List known = found != mKnown.end() ? found->second : Json::List();
  if (isEntry) {
    std::ranges::copy_if(known, std::back_inserter(list), &Json::isObject);
    append(known, mWantedItems);
    append(list, entries(input.tag, present, Which::likely, known));
  } else if (input.kind == Kind::event || input.kind == Kind::property) {
    append(list, std::move(known));
    append(list, numberTexts(Which::likely, mWantedItems));
  } else if (input.kind == Kind::argument) {
    for (const ScenarioCall& call : mQuestion.scenario.calls) {
      if (nameOf(call.call) != nameOf(mQuestion.askedCall())) continue;
      if (Json value = valueAt(call.arguments, input.key); !value.isNull()) addOnce(list, value);
    }
  }
  if (present.isNumber()) append(list, variants(present, "int64", Which::likely, mWantedItems));
  return list;
}

Json::List Candidates::others(const Input& input, const Json& present) const {
  Json::List list;
  switch (input.kind) {
    case Kind::metadata:
    case Kind::statics: return entries(input.tag, present, Which::all, {});
    case Kind::event:
      list.assign(std::begin(kKnownAppTypes), std::end(kKnownAppTypes));
      list.insert(list.end(), std::begin(kKnownAppNames), std::end(kKnownAppNames));
      [[fallthrough]];
    case Kind::property: append(list, numberTexts(Which::all)); return list;
    case Kind::platform: return places(input.key, present, mQuestion.platform);
    case Kind::call: return list;
    case Kind::provider:
    case Kind::argument: break;
  }
  if (input.key == "streams") return Json::List(1, Json::List());
  if (input.key != "tag") return variants(present, typeAt(input.key), Which::all);
  for (const TagDescription& tag : kTagCatalogue) list.emplace_back(tag.name);
  return list;
}

Candidates::List Candidates::forInput(const Input& input, const Json& present) const {
  List list;
  const auto add = [&](Json::List values) {
    for (Json& value : values) {
      if (isPossible(input, value) && value != present) list.values.push_back(std::move(value));
    }
  };
  add(likely(input, present));
  list.likely = list.values.size();
  add(others(input, present));
  return list;
}

}  // namespace camhook
