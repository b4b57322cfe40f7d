// Escapes and shortens input text for output on one line.

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace camhook {

/// The first code point of a text.
struct CodePoint {
  char32_t value = 0;
  std::size_t length = 1;  // bytes
  bool isValid = false;    // false: the byte is not UTF-8
};

/// `text` is not empty.
CodePoint firstCodePoint(std::string_view text);

/// False for control characters, line separators and bidirectional controls.
bool isPlain(char32_t letter);

/// Escapes characters that are not plain as "\u000a" and bytes that are not UTF-8 as "\xff". "..."
/// replaces what does not fit in `most` columns.
std::string printable(std::string_view text, std::size_t most = std::string::npos);

}  // namespace camhook
