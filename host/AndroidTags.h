// What Android itself calls metadata tags, and the values of those that are enumerations: of the
// tags that the library knows, those that every phone has.

#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace host {

struct AndroidTag {
  struct Value {
    std::int32_t number;
    std::string_view name;
  };

  std::uint32_t tag;
  std::string_view name;          // with its section: "android.control.awbMode"
  std::span<const Value> values;  // of an enumeration, ordered by number; else none

  /// The name of a value; empty where it has none.
  [[nodiscard]] std::string_view nameOf(std::int64_t number) const;

  /// The value of that name.
  [[nodiscard]] std::optional<std::int32_t> numberOf(std::string_view valueName) const;
};

/// Null for a tag that Android does not name.
const AndroidTag* findAndroidTag(std::uint32_t tag);

}  // namespace host
