#include "host/MetadataAccess.h"

#include <algorithm>
#include <array>

namespace host {
namespace {

using NSCam::IMetadata;
using NSCam::Type2Type;

template <typename T>
std::vector<T> copyItems(const IMetadata::IEntry& entry) {
  std::vector<T> items;
  items.reserve(entry.count());
  for (std::size_t i = 0; i < entry.count(); ++i) items.push_back(entry.itemAt(i, Type2Type<T>{}));
  return items;
}

}  // namespace

std::vector<const IMetadata::IEntry*> MetadataAccess::entriesByTag(const IMetadata& metadata) {
  std::vector<const IMetadata::IEntry*> entries;
  entries.reserve(metadata.mCount);
  for (const IMetadata::IEntry& entry : metadata.entries()) {
    if (!entry.isEmpty()) entries.push_back(&entry);
  }
  std::sort(entries.begin(), entries.end(),
            [](const auto* left, const auto* right) { return left->tag() < right->tag(); });
  return entries;
}

ItemList MetadataAccess::itemsOf(const IMetadata::IEntry& entry) {
  using Type = IMetadata::IEntry::ItemType;
  switch (entry.type()) {
    case Type::int64: return copyItems<std::int64_t>(entry);
    case Type::uint8: return copyItems<std::uint8_t>(entry);
    case Type::float32: return copyItems<float>(entry);
    case Type::rect: return copyItems<NSCam::MRect>(entry);
    case Type::rational: return copyItems<NSCam::MRational>(entry);
    case Type::none:
    case Type::int32: break;
  }
  return copyItems<std::int32_t>(entry);
}

std::string_view typeName(const ItemList& items) {
  // In the order of the variant's alternatives.
  constexpr std::array<std::string_view, 6> kNames{"int32", "int64", "uint8",
                                                   "float", "rect",  "rational"};
  return kNames.at(items.index());
}

}  // namespace host
