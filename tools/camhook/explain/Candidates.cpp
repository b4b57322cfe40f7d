#include "tools/camhook/explain/Candidates.h"

#include <algorithm>
#include <cmath>
#include <concepts>
#include <functional>
#include <iterator>
#include <limits>
#include <tuple>
#include <type_traits>
#include <utility>
#include <variant>

#include "common/HeskParameterUpdater.h"
#include "common/sensormode/Overrides.h"
#include "common/sensormode/SensorModeTables.h"
#include "common/tags/Tags.h"
#include "host/MetadataAccess.h"
#include "tools/camhook/input/KnownNames.h"
#include "tools/camhook/input/MetadataJson.h"
#include "tools/camhook/input/TagCatalogue.h"

namespace camhook {
namespace {

using Kind = Input::Kind;
using Entry = NSCam::IMetadata::IEntry;
using NSCam::MRational;
using NSCam::MRect;

constexpr std::size_t kManyItems = 8;  // of a longer list the first ones and the last change
constexpr std::int64_t kLeast = -2;    // small numbers
constexpr std::int64_t kMost = 64;
constexpr std::int64_t kEdges[] = {100, 119, 120, 121, 127, 128, 129, 240, 255, 256};

template <typename T>
constexpr std::int32_t T::*kParts[] = {};
template <>
constexpr std::int32_t MRect::*kParts<MRect>[] = {&MRect::x, &MRect::y, &MRect::w, &MRect::h};
template <>
constexpr std::int32_t MRational::*kParts<MRational>[] = {&MRational::numerator,
                                                          &MRational::denominator};

template <typename T>
double distance(T left, T right) {
  const double apart = std::abs(static_cast<double>(left) - static_cast<double>(right));
  return std::isnan(apart) ? HUGE_VAL : apart;
}

template <typename T>
Entry entryOf(std::uint32_t tag, const std::vector<T>& items) {
  Entry entry(tag);
  for (const T& item : items) entry.push_back(item, NSCam::Type2Type<T>{});
  return entry;
}

/// Zeros of the type and count that the catalogue has for a tag; one int32 if it has none.
host::ItemList newItems(std::uint32_t tag) {
  const TagDescription* const info = findTag(tag);
  host::ItemList list = std::vector<std::int32_t>(1);
  if (info == nullptr) return list;
  const auto take = [&]<typename T>(std::vector<T> items) {
    if (host::typeName(items) != info->type) return;
    items.resize(std::max(info->count, 1U));
    list = std::move(items);
  };
  [&]<typename... Lists>(std::variant<Lists...>*) {
    (take(Lists()), ...);
  }(static_cast<host::ItemList*>(nullptr));
  return list;
}

/// The positions in a list that change.
std::vector<std::size_t> positions(std::size_t count) {
  std::vector<std::size_t> list;
  for (std::size_t i = 0; i < std::min(count, kManyItems); ++i) list.push_back(i);
  if (count > kManyItems) list.push_back(count - 1);
  return list;
}

template <typename List, typename Item>
List withItem(List list, std::size_t position, Item item) {
  list[position] = std::move(item);
  return list;
}

template <typename T>
void append(std::vector<T>& list, std::vector<T> more) {
  std::ranges::move(more, std::back_inserter(list));
}

template <typename T>
void addOnce(std::vector<T>& list, const T& value) {
  if (std::ranges::find(list, value) == list.end()) list.push_back(value);
}

/// An integer argument, which may be a hexadecimal text; none if it is none.
std::optional<std::int64_t> numberFrom(const Json& json) {
  try {
    return json.isNull() ? std::nullopt : std::optional(integerFromJson<std::int64_t>(json, ""));
  } catch (const InputError&) {
    return {};
  }
}

/// Places of the phone that are true if absent.
bool isSwitch(const std::string& key) {
  return key == "sensorList" || key == "hal3aModule" || key == "defaultShadingModule" ||
         key == "faceDetection" || key.ends_with(".available");
}

bool isFloatNumber(const Json& value) { return value.isNumber() && !value.isInteger(); }

bool isFloatPlace(const std::string& key) {
  return key.ends_with(".fov") || key.ends_with(".shadingBase") || key == "value";
}

/// Values for places of the phone, by the end of the place.
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

/// Each static tag of the catalogue, with some value.
std::vector<Json> someStatics() {
  std::vector<Json> list(1, Json::Object());
  for (const TagDescription& tag : kTagCatalogue) {
    if (!tag.meaning.starts_with("static")) continue;
    const std::size_t parts = tag.type == "rect" ? 4 : tag.type == "rational" ? 2 : 1;
    const Json item = parts == 1 ? Json(1) : Json(std::vector<int>(parts, 1));
    list.push_back(Json{{std::string(tag.name), Json::List(std::max(tag.count, 1U), item)}});
  }
  return list;
}

/// False for sensors without updater, and for blocks that take too long to copy.
bool isPossible(const Input& input, const Json& value) {
  constexpr int kMostBytes = 1 << 22;
  if (input.kind != Kind::argument) return true;
  const auto number = value.integer<std::int64_t>();
  if (input.key == "size") return !number || *number <= kMostBytes;
  return input.key != "sensor" ||
         (number && *number >= 0 && *number <= HeskParameterUpdater::kMaxInstanceId);
}

}  // namespace

Candidates::Candidates(const Question& question, const AnyValue& wanted) : mQuestion(question) {
  addWanted(wanted);
  addScenario();
  addRules();
}

void Candidates::addWanted(const AnyValue& wanted) {
  mWantedValue = wanted;
  if (const auto number = numberFrom(wanted.json())) mWanted.push_back(*number);
  std::visit(
      [this]<typename T>(const std::vector<T>& items) {
        for (const T& item : items) {
          if constexpr (std::integral<T>) addOnce<std::int64_t>(mWanted, item);
          if constexpr (std::same_as<T, float>) mWantedFloats.push_back(item);
        }
      },
      host::MetadataAccess::itemsOf(wanted.entry()));
}

void Candidates::addScenario() {
  const host::PhoneConfig& phone = mQuestion.scenario.platform;
  for (const auto& [key, text] : phone.eventStore) addOnce(mTexts[key], text);
  for (const auto& [name, text] : phone.properties) addOnce(mTexts[name], text);
  for (const auto& [id, device] : phone.devices) addContainer(device.statics);
  for (const ScenarioCall& call : mQuestion.scenario.calls) {
    if (const auto* event = std::get_if<SetEvent>(&call.call)) {
      addOnce(mTexts[event->key], event->value);
    }
    if (const auto* property = std::get_if<SetProperty>(&call.call)) {
      addOnce(mTexts[property->name], property->value);
    }
    for (const char* name : kContainers) {
      const MetadataArgument* container = containerOf(call.call, name);
      if (container != nullptr && *container) addContainer(**container);
    }
  }
}

void Candidates::addContainer(const NSCam::IMetadata& metadata) {
  for (const Entry* entry : host::MetadataAccess::entriesByTag(metadata)) {
    std::vector<AnyValue>& list = mEntries[entry->tag()];
    if (list.size() < kManyItems) addOnce(list, AnyValue(*entry));
  }
}

void Candidates::addRules() {
  const auto addNumber = [this](const auto& tag, std::int32_t number) {
    if (number != SensorModeCfg::kNoCondition) {
      addOnce<std::int64_t>(mRuleNumbers[tag.value], number);
    }
  };
  std::vector<std::string>& appTypes = mTexts["APP_TYPE"];
  const auto addRule = [&](const SensorModeCfg& rule) {
    addNumber(hesk::tags::MTK_STREAMING_FEATURE_HFPS_MODE, rule.isHfpsMode);
    addNumber(hesk::tags::MTK_CONTROL_AE_TARGET_FPS_RANGE, rule.fps);
    addNumber(hesk::tags::HESK_CONTROL_EISENABLE, rule.eisMode);
    addNumber(hesk::tags::HESK_CONTROL_VIDEOALGOTYPE, rule.videoAlgoType);
    addNumber(hesk::tags::COM_HESK_CURRENTUIMODULE, rule.uiMode);
    if (!rule.appType.empty()) addOnce(appTypes, rule.appType);
  };
  for (const SensorModeTable& table : hesk::sensorModeTables()) {
    addOnce(mTexts["ro.product.model.zdm"], std::string(table.productName));
    for (const auto* list :
         {&table.sensor0Preview, &table.sensor0Video, &table.sensor1Preview, &table.sensor1Video}) {
      std::ranges::for_each(*list, addRule);
    }
  }
  for (const hesk::Override& override : hesk::overrides()) {
    addNumber(hesk::tags::MTK_HDR_FEATURE_HDR_MODE, override.hdrMode);
    addNumber(hesk::tags::HESK_CONTROL_NIGHTMODE, override.nightMode);
    if (!override.appType.empty()) addOnce(appTypes, std::string(override.appType));
    for (const std::string_view name : override.appNames) {
      if (!name.empty()) addOnce(mTexts["APP_NAME"], std::string(name));
    }
  }
}

template <typename T>
std::vector<T> Candidates::numbers(const std::optional<T>& present, Which which,
                                   const Numbers& likely) const {
  constexpr bool kIsFloat = std::same_as<T, float>;
  std::vector<T> list;
  const auto add = [&](auto number) {
    if constexpr (kIsFloat) {
      list.push_back(static_cast<float>(number));
    } else if (std::in_range<T>(number)) {
      list.push_back(static_cast<T>(number));
    }
  };
  const T now = present.value_or(T{});
  if (which == Which::likely) {
    std::ranges::for_each(likely, add);
    std::ranges::for_each(mWanted, add);
    if constexpr (kIsFloat) std::ranges::for_each(mWantedFloats, add);
  } else if constexpr (kIsFloat) {
    for (const float number :
         {0.0F, 0.5F, 1.0F, std::nextafter(1.0F, 2.0F), now - 1, now + 1,
          std::nextafter(now, -HUGE_VALF), std::nextafter(now, HUGE_VALF), now / 2, now * 2}) {
      add(number);
    }
  } else {
    constexpr auto kRange = std::numeric_limits<T>();
    if (now > kRange.min()) add(now - 1);
    if (now < kRange.max()) add(now + 1);
    for (const T number : {T{0}, T{1}, static_cast<T>(now / 2), kRange.max()}) add(number);
  }
  if (which == Which::all) {
    for (std::int64_t number = kLeast; number <= kMost; ++number) add(number);
    if constexpr (!kIsFloat) {
      std::ranges::for_each(kEdges, add);
      for (unsigned bit = 0; bit < 64; ++bit) {
        const std::uint64_t mask = std::uint64_t{1} << bit;
        add(static_cast<std::int64_t>(mask));
        add(static_cast<std::int64_t>(static_cast<std::uint64_t>(now) ^ mask));
      }
      add(std::numeric_limits<T>::min());
    }
  }
  std::ranges::stable_sort(list, {}, [now](T number) {
    return std::tuple(number != T{0}, distance(number, now), number);
  });
  list.erase(std::unique(list.begin(), list.end()), list.end());
  if (present) std::erase(list, now);
  return list;
}

template <typename T>
std::vector<T> Candidates::items(const std::optional<T>& present, Which which,
                                 const Numbers& likely) const {
  if constexpr (std::is_arithmetic_v<T>) {
    return numbers(present, which, likely);
  } else {
    if (which == Which::likely) return {};
    const T now = present.value_or(T{});
    std::vector<T> list(2);
    for (const auto part : kParts<T>) list.back().*part = 1;
    if constexpr (std::same_as<T, MRect>) list.push_back({0, 0, 4000, 3000});
    for (const auto part : kParts<T>) {
      for (const std::int32_t number : numbers(std::optional(now.*part), Which::few, {})) {
        list.push_back(now);
        list.back().*part = number;
      }
    }
    return list;
  }
}

/// Entries in which one item of `base` is another; new ones also with all items the same.
template <typename T>
void Candidates::addEntries(std::uint32_t tag, const std::vector<T>& base, bool isNew, Which which,
                            std::vector<AnyValue>& list) const {
  const auto rules = mRuleNumbers.find(tag);
  const Numbers& likely = rules != mRuleNumbers.end() ? rules->second : Numbers();
  if (which == Which::all && base.size() > kManyItems) which = Which::few;
  for (const std::size_t i : isNew ? std::vector{base.size() - 1} : positions(base.size())) {
    for (const T& item : items(isNew ? std::nullopt : std::optional(base[i]), which, likely)) {
      if (isNew) list.emplace_back(entryOf(tag, std::vector<T>(base.size(), item)));
      if (!isNew || base.size() > 1) list.emplace_back(entryOf(tag, withItem(base, i, item)));
    }
  }
  if (isNew || which == Which::likely) return;
  std::vector<T> longer = base;
  longer.push_back(base.back());
  list.emplace_back(entryOf(tag, longer));
  list.emplace_back(entryOf(tag, std::vector<T>(base.begin(), base.end() - 1)));
}

Candidates::List Candidates::entries(std::uint32_t tag, const AnyValue& present) const {
  List list;
  const bool isNew = present.isAbsent();
  if (!isNew) list.values.emplace_back();
  if (const auto found = mEntries.find(tag); found != mEntries.end()) {
    append(list.values, found->second);
  }
  if (mWantedValue.entry().tag() == tag) list.values.push_back(mWantedValue);
  const host::ItemList base =
      isNew ? newItems(tag) : host::MetadataAccess::itemsOf(present.entry());
  for (const Which which : {Which::likely, Which::all}) {
    std::visit([&](const auto& items) { addEntries(tag, items, isNew, which, list.values); }, base);
    if (which == Which::likely) list.likely = list.values.size();
  }
  return list;
}

Candidates::List Candidates::texts(const Input& input, const AnyValue& present) const {
  List list;
  const auto add = [&](std::string_view text) { list.values.emplace_back(Json(text)); };
  const auto addNumber = [&](std::int64_t number) { add(std::to_string(number)); };
  if (!present.isAbsent()) list.values.emplace_back();
  if (const auto found = mTexts.find(input.key); found != mTexts.end()) {
    std::ranges::for_each(found->second, add);
  }
  std::ranges::for_each(mWanted, addNumber);
  list.likely = list.values.size();
  if (input.kind == Kind::event) {
    std::ranges::for_each(kKnownAppTypes, add);
    std::ranges::for_each(kKnownAppNames, add);
  }
  std::ranges::for_each(numbers(std::optional<std::int32_t>(), Which::all, {}), addNumber);
  return list;
}

std::vector<Json> Candidates::numbers(const Json& present, bool isFloat, Which which) const {
  std::vector<Json> list;
  if (isFloat) {
    std::optional<float> now;
    if (!present.isNull()) now = floatFromJson(present, "");
    for (const float number : numbers(now, which, {})) list.emplace_back(number);
  } else {
    for (const std::int64_t number : numbers(numberFrom(present), which, {})) {
      list.emplace_back(number);
    }
  }
  return list;
}

/// Other values for the present one, member by member.
std::vector<Json> Candidates::variants(const Json& present, bool isFloat, Which which) const {
  if (present.isBoolean()) return std::vector<Json>(1, !present.isTrue());
  if (present.isNull() || present.isNumber() || numberFrom(present)) {
    return numbers(present, isFloat || isFloatNumber(present), which);
  }
  std::vector<Json> list;
  if (present.isList()) {
    for (const std::size_t i : positions(present.size())) {
      for (Json& item : variants(present[i], isFloat, Which::few)) {
        list.push_back(withItem(present, i, std::move(item)));
      }
    }
    if (present.size() > 0) list.emplace_back(Json::List());
  } else if (present.isObject()) {
    for (const auto& [key, member] : present.members()) {
      for (Json& value : variants(member, isFloat, Which::few)) {
        list.push_back(present);
        list.back()[key] = std::move(value);
      }
    }
  }
  return list;
}

std::vector<Json> Candidates::place(const std::string& key, const Json& present) const {
  std::vector<Json> list;
  const bool isInList = key.find("].") != std::string::npos;
  if (!present.isNull() && !isInList) list.emplace_back(nullptr);
  for (const auto& [end, sample] : kSamples) {
    if (key.ends_with(end)) list.push_back(parseJson(sample));
  }
  if (key.ends_with(".static")) {
    const Json& devices = mQuestion.platform["devices"];
    for (const auto& [id, device] : devices.isObject() ? devices.members() : Json::Object()) {
      if (const Json* statics = device.find("static")) list.push_back(*statics);
    }
    append(list, someStatics());
  } else if (present.isNull() && isSwitch(key)) {
    list.emplace_back(false);
  } else if (!present.isNull() || list.empty()) {
    const bool isFloat = key.ends_with("Shading") || isFloatPlace(key);
    append(list, variants(present, isFloat, Which::all));
  }
  return list;
}

std::vector<Json> Candidates::argument(const std::string& key, const Json& present) const {
  if (key == "streams") return std::vector<Json>(1, Json::List());
  if (key != "tag") return variants(present, isFloatPlace(key), Which::all);
  std::vector<Json> list;
  list.reserve(kTagCatalogue.size());
  for (const TagDescription& tag : kTagCatalogue) list.emplace_back(tag.name);
  return list;
}

Candidates::List Candidates::forInput(const Input& input, const AnyValue& present) const {
  switch (input.kind) {
    case Kind::metadata:
    case Kind::statics: return entries(input.tag, present);
    case Kind::event:
    case Kind::property: return texts(input, present);
    case Kind::call: return {.values = {AnyValue()}, .likely = 1};
    default: break;
  }
  const Json now = present.json();
  const bool isArgument = input.kind == Kind::argument;
  std::vector<Json> list;
  if (!now.isNull() && input.kind == Kind::provider) list.emplace_back(nullptr);
  for (const ScenarioCall& call : mQuestion.scenario.calls) {
    if (!isArgument || nameOf(call.call) != nameOf(mQuestion.askedCall())) continue;
    if (const Json value = valueAt(call.arguments, input.key); !value.isNull()) {
      addOnce(list, value);
    }
  }
  if (now.isNumber()) append(list, numbers(now, isFloatNumber(now), Which::likely));
  const auto isTaken = [&](const Json& value) { return isPossible(input, value) && value != now; };
  std::erase_if(list, std::not_fn(isTaken));
  List candidates{.values = {}, .likely = list.size()};
  append(list, isArgument                     ? argument(input.key, now)
               : input.kind == Kind::platform ? place(input.key, now)
                                              : numbers(now, false, Which::all));
  for (Json& value : list) {
    if (isTaken(value)) candidates.values.emplace_back(std::move(value));
  }
  return candidates;
}

}  // namespace camhook
