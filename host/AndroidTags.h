// Android's names of the catalogue's standard tags and of their enumeration values.

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
  std::span<const Value> values;  // ordered by number; empty if not an enumeration

  /// Returns the name of a value; empty if it has none.
  [[nodiscard]] std::string_view nameOf(std::int64_t number) const;

  /// Returns the value with this name, if there is one.
  [[nodiscard]] std::optional<std::int32_t> numberOf(std::string_view valueName) const;
};

/// Returns the description of `tag`, null if it is not in the list.
const AndroidTag* findAndroidTag(std::uint32_t tag);

}  // namespace host
