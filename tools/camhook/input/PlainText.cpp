#include "tools/camhook/input/PlainText.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace camhook {
namespace {

constexpr std::string_view kCut = "...";

/// The greatest width: characters outside ASCII may take two columns.
std::size_t widthOf(const CodePoint& letter) { return letter.value < 0x80 ? 1 : 2; }

bool isBetween(char32_t letter, char32_t first, char32_t last) {
  return letter >= first && letter <= last;
}

/// The length in bytes of a code point with this first byte; 0 if there is none.
std::size_t lengthFrom(unsigned char lead) {
  if (lead < 0x80) return 1;
  if (lead >= 0xc2 && lead < 0xe0) return 2;
  if (lead >= 0xe0 && lead < 0xf0) return 3;
  if (lead >= 0xf0 && lead < 0xf5) return 4;
  return 0;
}

}  // namespace

CodePoint firstCodePoint(std::string_view text) {
  const auto byteAt = [text](std::size_t index) { return static_cast<unsigned char>(text[index]); };
  const std::size_t length = lengthFrom(byteAt(0));
  if (length == 1) return {.value = byteAt(0), .length = 1, .isValid = true};
  if (length == 0 || length > text.size()) return {.value = byteAt(0)};
  char32_t value = byteAt(0) & (0x7fU >> length);
  for (std::size_t i = 1; i < length; ++i) {
    if ((byteAt(i) & 0xc0U) != 0x80U) return {.value = byteAt(0)};
    value = value << 6U | (byteAt(i) & 0x3fU);
  }
  // An overlong encoding, a surrogate, or a value above the last code point.
  constexpr std::array<char32_t, 5> kLeast{0, 0, 0x80, 0x800, 0x10000};
  if (value < kLeast[length] || isBetween(value, 0xd800, 0xdfff) || value > 0x10ffff) {
    return {.value = byteAt(0)};
  }
  return {.value = value, .length = length, .isValid = true};
}

bool isPlain(char32_t letter) {
  if (letter < 0x20 || isBetween(letter, 0x7f, 0x9f)) return false;
  if (letter < 0x61c) return true;
  const bool changesDirection = letter == 0x61c || isBetween(letter, 0x200e, 0x200f) ||
                                isBetween(letter, 0x202a, 0x202e) ||
                                isBetween(letter, 0x2066, 0x2069);
  return !changesDirection && !isBetween(letter, 0x2028, 0x2029) && letter != 0xfeff;
}

std::string printable(std::string_view text) {
  std::string shown;
  while (!text.empty()) {
    const CodePoint letter = firstCodePoint(text);
    if (letter.isValid && isPlain(letter.value)) {
      shown += text.substr(0, letter.length);
    } else {
      std::array<char, 8> escape{};
      std::snprintf(escape.data(), escape.size(), letter.isValid ? "\\u%04x" : "\\x%02x",
                    static_cast<unsigned>(letter.value));
      shown += escape.data();
    }
    text.remove_prefix(letter.length);
  }
  return shown;
}

std::size_t columnsOf(std::string_view text) {
  std::size_t columns = 0;
  while (!text.empty()) {
    const CodePoint letter = firstCodePoint(text);
    columns += widthOf(letter);
    text.remove_prefix(letter.length);
  }
  return columns;
}

std::string cutEnd(std::string_view text, std::size_t most) {
  // A code point has at least half as many columns as bytes.
  if (text.size() <= most || (text.size() <= 2 * most && columnsOf(text) <= most)) {
    return std::string(text);
  }
  std::size_t kept = 0;
  for (std::size_t columns = kCut.size(); kept < text.size();) {
    const CodePoint letter = firstCodePoint(text.substr(kept));
    columns += widthOf(letter);
    if (columns > most) break;
    kept += letter.length;
  }
  return std::string(text.substr(0, kept)).append(kCut);
}

std::string cutStart(std::string_view text, std::size_t most) {
  if (columnsOf(text) <= most) return std::string(text);
  // These bytes have more columns than fit.
  text.remove_prefix(text.size() - std::min(text.size(), 4 * most + 4));
  while (!text.empty() && columnsOf(text) + kCut.size() > most) {
    text.remove_prefix(firstCodePoint(text).length);
  }
  return std::string(kCut).append(text);
}

}  // namespace camhook
