// Numbers in texts that others wrote.

#pragma once

#include <algorithm>
#include <charconv>
#include <cmath>
#include <concepts>
#include <optional>
#include <string_view>

namespace hesk {

/// The decimal number that `text` begins with, behind blanks and a sign, as a string stream of the
/// C locale reads it: what follows the number is ignored. None where there is no number, where it
/// does not fit, and where a float's exponent lacks its digits.
template <typename T>
requires std::integral<T> || std::floating_point<T> std::optional<T> leadingNumber(
    std::string_view text) {
  const auto isBlank = [](char c) { return c == ' ' || ('\t' <= c && c <= '\r'); };
  const auto isExponent = [](char c) { return c == 'e' || c == 'E'; };

  while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
  if (text.starts_with('+')) {
    text.remove_prefix(1);
    if (text.starts_with('-')) return {};
  }
  T number{};
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc()) return {};
  if constexpr (std::floating_point<T>) {
    if (!std::isfinite(number)) return {};  // "inf", "nan"
    const bool isCutOff = stop != end && isExponent(*stop);
    if (isCutOff && std::none_of(text.data(), stop, isExponent)) return {};
  }
  return number;
}

}  // namespace hesk
