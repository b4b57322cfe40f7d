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

/// Escapes characters that are not plain as "\u000a" and bytes that are not UTF-8 as "\xff".
std::string printable(std::string_view text);

/// The greatest width of a printable text, in columns.
std::size_t columnsOf(std::string_view text);

/// A printable text of at most `most` columns; "..." replaces the rest.
std::string cutEnd(std::string_view text, std::size_t most);

/// Like `cutEnd`, but "..." replaces the beginning.
std::string cutStart(std::string_view text, std::size_t most);

}  // namespace camhook
