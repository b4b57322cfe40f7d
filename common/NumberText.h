// Parses numbers at the beginning of texts from the event store.

#pragma once

#include <locale.h>
#include <stdlib.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <concepts>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

namespace hesk {

/// Returns the length of the decimal number at the beginning of `text`: an optional sign, digits
/// with an optional point before, between or after them, and an optional exponent. Returns 0 if
/// there is no number or if an exponent has no digits.
constexpr std::size_t lengthOfDecimal(std::string_view text) {
  std::size_t length = 0;
  const auto skip = [&](std::string_view characters) {
    const bool found =
        length < text.size() && characters.find(text[length]) != std::string_view::npos;
    if (found) ++length;
    return found;
  };
  const auto skipDigits = [&] {
    const std::size_t first = length;
    while (skip("1234567890")) continue;
    return length > first;
  };

  skip("+-");
  const bool hasUnits = skipDigits();
  const bool hasFraction = skip(".") && skipDigits();
  if (!hasUnits && !hasFraction) return 0;
  if (skip("eE")) {
    skip("+-");
    if (!skipDigits()) return 0;
  }
  return length;
}

/// Returns the decimal number at the beginning of `text`, after optional white space and a sign.
/// The text after the number is ignored. Returns no value if there is no number or if it is too
/// large. A number too small for a float becomes the nearest float, which may be 0.
template <typename T>
requires std::integral<T> || std::same_as<T, float> std::optional<T> leadingNumber(
    std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(" \t\n\v\f\r"), text.size()));
  if constexpr (std::integral<T>) {
    if (text.starts_with('+')) {
      text.remove_prefix(1);
      if (text.starts_with('-')) return {};
    }
    T number{};
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    if (result.ec != std::errc()) return {};
    return number;
  } else {
    // libc++ has no std::from_chars for floats. strtof_l also accepts hexadecimal numbers, "inf"
    // and "nan", so it is passed only the decimal number.
    const std::string decimal(text.substr(0, lengthOfDecimal(text)));
    if (decimal.empty()) return {};
    static const locale_t kClassic = newlocale(LC_ALL_MASK, "C", nullptr);
    const float number = strtof_l(decimal.c_str(), nullptr, kClassic);
    if (std::isinf(number)) return {};
    return number;
  }
}

}  // namespace hesk
