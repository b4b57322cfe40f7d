#include "tools/camhook/input/MetadataJson.h"

#include <algorithm>
#include <cmath>
#include <variant>

#include "host/MetadataAccess.h"
#include "tools/camhook/input/JsonLine.h"
#include "tools/camhook/input/MetadataReader.h"
#include "tools/camhook/input/NearNames.h"
#include "tools/camhook/input/TagCatalogue.h"

namespace camhook {
namespace {

using NSCam::IMetadata;
using NSCam::MRational;
using NSCam::MRect;

Json jsonFromItem(auto item) { return item; }
Json jsonFromItem(const MRect& item) { return jsonFromRect(item); }
Json jsonFromItem(const MRational& item) { return Json::List{item.numerator, item.denominator}; }

}  // namespace

std::uint32_t tagFromText(std::string_view text) {
  const auto tag = tagFrom(text);
  if (!tag) throw InputError("unknown tag " + jsonText(text) + nearTags(text));
  return *tag;
}

IMetadata::IEntry entryFromJson(std::uint32_t tag, const Json& json, std::string_view place) {
  return readJson<IMetadata::IEntry>(
      json, place,
      [](const Value& value, IMetadata::IEntry& target) {
        readEntry(value, target.tag(), &target);
      },
      IMetadata::IEntry(tag));
}

IMetadata metadataFromJson(const Json& json, std::string_view place) {
  return readJson<IMetadata>(
      json, place, [](const Value& value, IMetadata& target) { readMetadata(value, &target); });
}

Json jsonFromItems(const IMetadata::IEntry& entry) {
  Json::List list;
  std::visit(
      [&](const auto& items) {
        for (const auto& item : items) list.push_back(jsonFromItem(item));
      },
      host::MetadataAccess::itemsOf(entry));
  return list;
}

Json jsonFromMetadata(const IMetadata& metadata) {
  Json::Object entries;
  for (const IMetadata::IEntry* entry : host::MetadataAccess::entriesByTag(metadata)) {
    entries.push_back({tagText(entry->tag()), jsonFromEntry(*entry)});
  }
  return entries;
}

Json jsonFromTextMap(const host::TextMap& texts) {
  Json::Object members;
  for (const auto& [name, value] : texts) members.push_back({name, value});
  return members;
}

Json jsonFromRect(const MRect& rect) { return Json::List{rect.x, rect.y, rect.w, rect.h}; }

Json jsonFromEntry(const IMetadata::IEntry& entry) {
  if (entry.isEmpty()) return {};
  const std::string_view type = host::typeName(host::MetadataAccess::itemsOf(entry));
  return Json::Object{{"type", type}, {"items", jsonFromItems(entry)}};
}

bool areSame(const IMetadata::IEntry& left, const IMetadata::IEntry& right) {
  using Floats = std::vector<float>;
  if (left.isEmpty() != right.isEmpty()) return false;
  const host::ItemList& items = host::MetadataAccess::itemsOf(left);
  const host::ItemList& others = host::MetadataAccess::itemsOf(right);
  const auto* floats = std::get_if<Floats>(&items);
  const auto* otherFloats = std::get_if<Floats>(&others);
  if (floats == nullptr || otherFloats == nullptr) return items == others;
  return std::ranges::equal(*floats, *otherFloats, [](float number, float other) {
    if (std::isnan(number)) return std::isnan(other);
    return number == other && std::signbit(number) == std::signbit(other);
  });
}

std::string tagText(std::uint32_t tag) {
  const TagDescription* info = findTag(tag);
  return info != nullptr ? std::string(info->name) : hexadecimal(tag);
}

}  // namespace camhook
