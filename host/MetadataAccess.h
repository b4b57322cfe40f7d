// What the host's own tools may see of a metadata container beyond the platform's operations: the
// item types, and every entry it holds.

#pragma once

#include <array>
#include <cstdint>
#include <string_view>
#include <variant>
#include <vector>

#include "platform/IMetadata.h"

namespace host {

/// All items of an entry in their own type.
using ItemList =
    std::variant<std::vector<std::int32_t>, std::vector<std::int64_t>, std::vector<std::uint8_t>,
                 std::vector<float>, std::vector<NSCam::MRect>, std::vector<NSCam::MRational>>;

/// The names of the types, in the order of the list's alternatives.
inline constexpr std::array<std::string_view, std::variant_size_v<ItemList>> kTypeNames{
    "int32", "int64", "uint8", "float", "rect", "rational"};

struct MetadataAccess {
  /// The entries that hold an item, ordered by tag. The pointers hold until the container changes.
  static std::vector<const NSCam::IMetadata::IEntry*> entriesByTag(
      const NSCam::IMetadata& metadata);

  /// The items of an entry, an empty list of int32 where it has none. Holds until the entry
  /// changes.
  static const ItemList& itemsOf(const NSCam::IMetadata::IEntry& entry);
};

inline std::string_view typeName(const ItemList& items) { return kTypeNames.at(items.index()); }

}  // namespace host
