// The metadata tags as a table, for those who look tags up by name or value.

#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>

namespace hesk {

/// What the catalogue says of one tag.
struct TagDescription {
  std::string_view name;
  std::uint32_t value;
  std::string_view type;  // "int32", "int64", "uint8", "float", "rect" or "rational"
  std::uint32_t count;    // items that the library reads or writes; kAnyCount where it varies
  std::string_view meaning;
};

inline constexpr std::uint32_t kAnyCount = 0;

/// Every tag of the catalogue, ordered by value.
inline constexpr auto kTagCatalogue = std::to_array<TagDescription>({
#define TAG(name, value, type, count, meaning) {#name, value, #type, count, meaning},
#include "common/tags/Tags.def"
#undef TAG
});

static_assert(std::ranges::is_sorted(kTagCatalogue, std::ranges::less_equal{},
                                     &TagDescription::value) &&
                  std::ranges::adjacent_find(kTagCatalogue, {}, &TagDescription::value) ==
                      kTagCatalogue.end(),
              "Tags.def is ordered by value, without a value given twice");

/// The tag of that value, null where the catalogue does not list it.
constexpr const TagDescription* findTag(std::uint32_t value) {
  const auto* found = std::ranges::lower_bound(kTagCatalogue, value, {}, &TagDescription::value);
  return found != kTagCatalogue.end() && found->value == value ? found : nullptr;
}

/// The tag of that name, null where the catalogue does not list it.
constexpr const TagDescription* findTag(std::string_view name) {
  const auto* found = std::ranges::find(kTagCatalogue, name, &TagDescription::name);
  return found != kTagCatalogue.end() ? found : nullptr;
}

}  // namespace hesk
