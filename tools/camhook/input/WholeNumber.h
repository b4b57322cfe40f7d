// Numbers in texts that hold nothing else.

#pragma once

#include <charconv>
#include <concepts>
#include <optional>
#include <string_view>
#include <system_error>

namespace camhook {

/// The number that the whole text is, behind a minus where the type has a sign. None where the text
/// is none, and where it does not fit.
template <std::integral T>
std::optional<T> wholeNumber(std::string_view text, int base = 10) {
  T number{};
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number, base);
  if (error != std::errc() || stop != end) return {};
  return number;
}

}  // namespace camhook
