// Access of the host and its tools to all entries of a metadata container and to their item types.

#pragma once

#include <array>
#include <cstdint>
#include <string_view>
#include <variant>
#include <vector>

#include "platform/IMetadata.h"

namespace host {

/// The items of an entry, in the entry's item type.
using ItemList =
    std::variant<std::vector<std::int32_t>, std::vector<std::int64_t>, std::vector<std::uint8_t>,
                 std::vector<float>, std::vector<NSCam::MRect>, std::vector<NSCam::MRational>>;

/// The names of the item types, in the order of the list's alternatives.
inline constexpr std::array<std::string_view, std::variant_size_v<ItemList>> kTypeNames{
    "int32", "int64", "uint8", "float", "rect", "rational"};

/// Returns the name of an item list's type.
inline std::string_view typeName(const ItemList& items) { return kTypeNames.at(items.index()); }

}  // namespace host

namespace NSCam {

struct MetadataAccess {
  /// Returns the entries that have items, ordered by tag, valid until the container changes.
  static std::vector<const IMetadata::IEntry*> entriesByTag(const IMetadata& metadata);

  /// Returns the items of an entry, valid until the entry changes; an empty list of int32 if it has
  /// none.
  static const host::ItemList& itemsOf(const IMetadata::IEntry& entry);

  /// Removes the entry of a tag, if there is one.
  static void erase(IMetadata& metadata, IMetadata::Tag_t tag);
};

}  // namespace NSCam

namespace host {

using NSCam::MetadataAccess;

}  // namespace host
