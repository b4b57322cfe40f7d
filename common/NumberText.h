// Numbers in texts that others wrote.

#pragma once

#include <algorithm>
#include <charconv>
#include <cmath>
#include <concepts>
#include <cstddef>
#include <locale>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <system_error>

namespace hesk {

/// How many characters the decimal number takes that `text` begins with: a sign, digits with a
/// point before, between or behind them, an exponent. 0 where it begins with none, and where an
/// exponent lacks its digits.
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

/// The decimal number that `text` begins with, behind blanks and a sign; what follows it is
/// ignored. None where there is no number and where it is too large. One too small for a float is
/// the nearest float, which may be 0.
template <typename T>
requires std::integral<T> || std::floating_point<T> std::optional<T> leadingNumber(
    std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(" \t\n\v\f\r"), text.size()));
  T number{};
  if constexpr (std::integral<T>) {
    if (text.starts_with('+')) {
      text.remove_prefix(1);
      if (text.starts_with('-')) return {};
    }
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    if (result.ec != std::errc()) return {};
  } else {
    // By a stream: not every phone's std::from_chars reads floats. What a stream takes for a
    // number's end differs between libraries, so that it gets the number alone.
    const std::size_t length = lengthOfDecimal(text);
    if (length == 0) return {};
    std::istringstream stream{std::string(text.substr(0, length))};
    stream.imbue(std::locale::classic());
    stream >> number;
    // Some libraries let a number that is too small fail, too, and give the nearest all the same.
    if (stream.fail() && std::abs(number) >= 1) return {};
  }
  return number;
}

}  // namespace hesk
