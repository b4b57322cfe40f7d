// Texts from outside, made fit for a terminal's line.

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace camhook {

/// The code point that a text begins with.
struct CodePoint {
  char32_t value = 0;
  std::size_t length = 1;  // bytes
  bool isValid = false;    // false: the byte is no UTF-8
};

/// `text` is not empty.
CodePoint firstCodePoint(std::string_view text);

/// False for control characters and for those that break a line or change the direction of what
/// stands beside them.
bool isPlain(char32_t letter);

/// The text with what is not plain as "\u000a", bytes that are no UTF-8 as "\xff".
std::string printable(std::string_view text);

/// How wide a printable text is at most.
std::size_t columnsOf(std::string_view text);

/// A printable text, cut to `most` columns, with "..." for what is missing behind.
std::string cutBehind(std::string_view text, std::size_t most);

/// The same, with what is missing in front.
std::string cutInFront(std::string_view text, std::size_t most);

}  // namespace camhook
