// The metadata tags as a table, for look-up by name or value.

#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>

namespace camhook {

/// The catalogue's description of one tag.
struct TagDescription {
  std::string_view name;  // of a tag without a published name: its value, "0x800b000a"
  std::uint32_t value;
  std::string_view type;  // "int32", "int64", "uint8", "float", "rect" or "rational"
  std::uint32_t count;    // items that the library reads or writes; kAnyCount if it varies
  std::string_view meaning;
};

inline constexpr std::uint32_t kAnyCount = 0;

#define DESCRIPTION(name, value, type, count, meaning) {name, value, #type, count, meaning},
#define TAG(name, ...) DESCRIPTION(#name, __VA_ARGS__)

/// All tags, ordered by value.
inline constexpr auto kAllTags = std::to_array<TagDescription>({
#define UNLISTED_TAG(name, value, ...) DESCRIPTION(#value, value, __VA_ARGS__)
#include "common/tags/Tags.def"
#undef UNLISTED_TAG
});

/// The tags that have a published name, ordered by value. Scenarios and traces use these names; all
/// other tags are given by value, with their item type.
inline constexpr auto kTagCatalogue = std::to_array<TagDescription>({
#define UNLISTED_TAG(...)
#include "common/tags/Tags.def"
#undef UNLISTED_TAG
});

#undef TAG
#undef DESCRIPTION

static_assert(std::ranges::is_sorted(kAllTags, std::ranges::less_equal{}, &TagDescription::value) &&
                  std::ranges::adjacent_find(kAllTags, {}, &TagDescription::value) ==
                      kAllTags.end(),
              "Tags.def is ordered by value, and no value occurs twice");

/// Returns the number of numbers in an item of a type.
constexpr std::size_t partsOf(std::string_view type) {
  return type == "rect" ? 4 : type == "rational" ? 2 : 1;
}

/// Returns the tag with a published name and this value; null if there is none.
constexpr const TagDescription* findTag(std::uint32_t value) {
  const auto* found = std::ranges::lower_bound(kTagCatalogue, value, {}, &TagDescription::value);
  return found != kTagCatalogue.end() && found->value == value ? found : nullptr;
}

/// Returns the tag with this published name; null if there is none. Uses a hash table.
const TagDescription* findTag(std::string_view name);

}  // namespace camhook
