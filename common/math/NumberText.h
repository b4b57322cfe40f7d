// Numbers in texts that others wrote.

#pragma once

#include <algorithm>
#include <charconv>
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
  constexpr std::string_view kBlanks = " \t\n\v\f\r";
  constexpr std::string_view kExponent = "eE";

  text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
  if (text.starts_with('+')) {
    text.remove_prefix(1);
    if (text.starts_with('-')) return {};
  }
  T number{};
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc()) return {};
  if constexpr (std::floating_point<T>) {
    const std::string_view taken(text.data(), stop);
    if (taken.find_first_of("nN") != std::string_view::npos) return {};  // inf, nan
    const bool hasExponent = taken.find_first_of(kExponent) != std::string_view::npos;
    if (!hasExponent && stop != end && kExponent.find(*stop) != std::string_view::npos) return {};
  }
  return number;
}

}  // namespace hesk
