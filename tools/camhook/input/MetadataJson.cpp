#include "tools/camhook/input/MetadataJson.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <set>
#include <string_view>
#include <type_traits>
#include <vector>

#include "common/tags/TagCatalogue.h"
#include "host/MetadataAccess.h"

namespace camhook {
namespace {

using NSCam::IMetadata;
using NSCam::MRational;
using NSCam::MRect;
using NSCam::Type2Type;

template <typename T>
constexpr std::string_view kTypeName;
template <>
constexpr std::string_view kTypeName<std::int32_t> = "int32";
template <>
constexpr std::string_view kTypeName<std::int64_t> = "int64";
template <>
constexpr std::string_view kTypeName<std::uint8_t> = "uint8";
template <>
constexpr std::string_view kTypeName<std::uint32_t> = "uint32";
template <>
constexpr std::string_view kTypeName<std::uint64_t> = "uint64";

/// The digits of a hexadecimal text as a number. False where it is none, or needs more than 64
/// bits.
bool readHexadecimal(std::string_view text, std::uint64_t& value) {
  if (!text.starts_with("0x")) return false;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data() + 2, end, value, 16);
  return error == std::errc() && stop == end;
}

/// `Count` integers in a list.
template <std::size_t Count>
std::array<std::int32_t, Count> tupleFromJson(const Json& json, const Place& place,
                                              const char* shape) {
  if (!json.is_array() || json.size() != Count) place.fail(std::string("must be ") + shape);
  std::array<std::int32_t, Count> numbers{};
  for (std::size_t i = 0; i < Count; ++i) {
    numbers[i] = integerFromJson<std::int32_t>(json[i], place[i]);
  }
  return numbers;
}

template <typename T>
T itemFromJson(const Json& json, const Place& place) {
  if constexpr (std::is_same_v<T, float>) {
    return floatFromJson(json, place);
  } else if constexpr (std::is_same_v<T, MRect>) {
    return rectFromJson(json, place);
  } else if constexpr (std::is_same_v<T, MRational>) {
    const auto [numerator, denominator] = tupleFromJson<2>(json, place, "[numerator, denominator]");
    return {numerator, denominator};
  } else {
    return integerFromJson<T>(json, place);
  }
}

/// Whether a list is one item by itself: a rectangle or a fraction is a list of numbers.
template <typename T>
bool isSingleItem(const Json& list) {
  constexpr bool kIsTuple = std::is_same_v<T, MRect> || std::is_same_v<T, MRational>;
  return kIsTuple && !list.empty() && !list.front().is_array();
}

template <typename T>
void pushItems(IMetadata::IEntry& entry, const Json& json, const Place& place) {
  constexpr Type2Type<T> kType;
  if (std::is_same_v<T, std::uint8_t> && json.is_string()) {
    for (const char byte : json.get_ref<const std::string&>()) {
      entry.push_back(static_cast<std::uint8_t>(byte), Type2Type<std::uint8_t>{});
    }
  } else if (json.is_array() && !isSingleItem<T>(json)) {
    for (std::size_t i = 0; i < json.size(); ++i) {
      entry.push_back(itemFromJson<T>(json[i], place[i]), kType);
    }
  } else {
    entry.push_back(itemFromJson<T>(json, place), kType);
  }
}

/// False where there is no such type.
bool pushItems(IMetadata::IEntry& entry, std::string_view type, const Json& json,
               const Place& place) {
  if (type == "int32") {
    pushItems<std::int32_t>(entry, json, place);
  } else if (type == "int64") {
    pushItems<std::int64_t>(entry, json, place);
  } else if (type == "uint8") {
    pushItems<std::uint8_t>(entry, json, place);
  } else if (type == "float") {
    pushItems<float>(entry, json, place);
  } else if (type == "rect") {
    pushItems<MRect>(entry, json, place);
  } else if (type == "rational") {
    pushItems<MRational>(entry, json, place);
  } else {
    return false;
  }
  return true;
}

/// The long form: {"type": ..., "items": ...}.
void pushTypedItems(IMetadata::IEntry& entry, const Json& json, const Place& place) {
  for (const auto& [key, value] : json.items()) {
    if (key != "type" && key != "items") place[key].fail("unknown key");
  }
  for (const char* key : {"type", "items"}) {
    if (!json.contains(key)) place[key].fail("missing");
  }
  const Json& type = json["type"];
  const Json& items = json["items"];
  const Place typePlace = place["type"];
  if (!type.is_string()) typePlace.fail("must be a text");
  const bool isText = type == "uint8" && items.is_string();
  if (!items.is_array() && !isText) place["items"].fail("must be a list");
  if (!pushItems(entry, type.get_ref<const std::string&>(), items, place["items"])) {
    typePlace.fail("unknown type " + jsonText(type.get_ref<const std::string&>()) +
                   "; the types are int32, int64, uint8, float, rect, rational");
  }
}

Json jsonFromItem(std::int32_t item) { return item; }
Json jsonFromItem(std::int64_t item) { return item; }
Json jsonFromItem(std::uint8_t item) { return item; }
Json jsonFromItem(float item) { return jsonFromFloat(item); }
Json jsonFromItem(const MRect& item) { return Json::array({item.x, item.y, item.w, item.h}); }
Json jsonFromItem(const MRational& item) { return Json::array({item.numerator, item.denominator}); }

}  // namespace

template <typename T>
T integerFromJson(const Json& json, const Place& place) {
  std::uint64_t hexDigits = 0;
  const std::string range = "must be an integer of " + std::string(kTypeName<T>) + ", " +
                            std::to_string(std::numeric_limits<T>::min()) + " to " +
                            std::to_string(std::numeric_limits<T>::max());
  if (json.is_string()) {
    const auto& text = json.get_ref<const std::string&>();
    if (!readHexadecimal(text, hexDigits) || !std::in_range<T>(hexDigits)) place.fail(range);
    return static_cast<T>(hexDigits);
  }
  if (json.is_number_unsigned()) {
    const auto number = json.get<std::uint64_t>();
    if (!std::in_range<T>(number)) place.fail(range);
    return static_cast<T>(number);
  }
  if (json.is_number_integer()) {
    const auto number = json.get<std::int64_t>();
    if (!std::in_range<T>(number)) place.fail(range);
    return static_cast<T>(number);
  }
  place.fail(range);
}

template std::int32_t integerFromJson(const Json&, const Place&);
template std::int64_t integerFromJson(const Json&, const Place&);
template std::uint8_t integerFromJson(const Json&, const Place&);
template std::uint32_t integerFromJson(const Json&, const Place&);
template std::uint64_t integerFromJson(const Json&, const Place&);

float floatFromJson(const Json& json, const Place& place) {
  // Half a step above the largest float: what rounds to it still fits.
  constexpr double kFirstTooLarge = 0x1.ffffffp127;
  if (json.is_number()) {
    const auto number = json.get<double>();
    if (std::abs(number) >= kFirstTooLarge) place.fail("does not fit a float");
    return static_cast<float>(number);
  }
  if (json == "nan") return std::numeric_limits<float>::quiet_NaN();
  if (json == "inf") return std::numeric_limits<float>::infinity();
  if (json == "-inf") return -std::numeric_limits<float>::infinity();
  place.fail(R"(must be a number, or "inf", "-inf", "nan")");
}

NSCam::MSize sizeFromJson(const Json& json, const Place& place) {
  const auto [width, height] = tupleFromJson<2>(json, place, "[width, height]");
  return {width, height};
}

MRect rectFromJson(const Json& json, const Place& place) {
  const auto [x, y, width, height] = tupleFromJson<4>(json, place, "[x, y, width, height]");
  return {x, y, width, height};
}

std::uint64_t wideTagFromText(const std::string& text, const Place& place) {
  if (const hesk::TagDescription* info = hesk::findTag(text)) return info->value;
  std::uint64_t value = 0;
  if (!readHexadecimal(text, value)) place.fail("unknown tag");
  return value;
}

std::uint32_t tagFromText(const std::string& text, const Place& place) {
  const std::uint64_t tag = wideTagFromText(text, place);
  if (!std::in_range<std::uint32_t>(tag)) place.fail("unknown tag");
  return static_cast<std::uint32_t>(tag);
}

IMetadata::IEntry entryFromJson(std::uint32_t tag, const Json& json, const Place& place) {
  IMetadata::IEntry entry(tag);
  const hesk::TagDescription* info = hesk::findTag(tag);
  if (json.is_object()) {
    pushTypedItems(entry, json, place);
  } else if (json.is_array() && json.empty()) {
    return entry;
  } else if (info == nullptr) {
    place.fail(R"(the catalogue does not list this tag: give {"type": ..., "items": [...]})");
  } else {
    pushItems(entry, info->type, json, place);
  }
  return entry;
}

IMetadata metadataFromJson(const Json& json, const Place& place) {
  if (!json.is_object()) place.fail("must be an object from tag to value");
  IMetadata metadata;
  std::set<std::uint32_t> seen;
  for (const auto& [key, value] : json.items()) {
    const Place entryPlace = place[key];
    const std::uint32_t tag = tagFromText(key, entryPlace);
    if (!seen.insert(tag).second) entryPlace.fail("this tag is given twice");
    const IMetadata::IEntry entry = entryFromJson(tag, value, entryPlace);
    if (!entry.isEmpty()) metadata.update(tag, entry);
  }
  return metadata;
}

Json jsonFromItems(const IMetadata::IEntry& entry) {
  Json list = Json::array();
  std::visit(
      [&](const auto& items) {
        for (const auto& item : items) list.push_back(jsonFromItem(item));
      },
      host::MetadataAccess::itemsOf(entry));
  return list;
}

Json jsonFromMetadata(const IMetadata& metadata) {
  Json json = Json::object();
  for (const IMetadata::IEntry* entry : host::MetadataAccess::entriesByTag(metadata)) {
    json[tagText(entry->tag())] = jsonFromEntry(*entry);
  }
  return json;
}

Json jsonFromEntry(const IMetadata::IEntry& entry) {
  return {{"type", host::typeName(host::MetadataAccess::itemsOf(entry))},
          {"items", jsonFromItems(entry)}};
}

std::string tagText(std::uint32_t tag) {
  const hesk::TagDescription* info = hesk::findTag(tag);
  return info != nullptr ? std::string(info->name) : hexadecimal(tag);
}

}  // namespace camhook
