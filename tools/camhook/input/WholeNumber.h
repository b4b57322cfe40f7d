// Parses integers.

#pragma once

#include <charconv>
#include <concepts>
#include <optional>
#include <string_view>
#include <system_error>

namespace camhook {

/// Parses the whole text as a number. Returns nullopt if it is none or does not fit. A signed type
/// accepts a minus sign.
template <std::integral T>
std::optional<T> wholeNumber(std::string_view text, int base = 10) {
  T number{};
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number, base);
  if (error != std::errc() || stop != end) return {};
  return number;
}

}  // namespace camhook
