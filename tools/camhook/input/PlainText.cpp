#include "tools/camhook/input/PlainText.h"

#include <rapidjson/encodings.h>
#include <rapidjson/memorystream.h>

#include <array>
#include <cstdio>

namespace camhook {
namespace {

bool isBetween(char32_t letter, char32_t first, char32_t last) {
  return letter >= first && letter <= last;
}

}  // namespace

CodePoint firstCodePoint(std::string_view text) {
  rapidjson::MemoryStream stream(text.data(), text.size());
  unsigned value = 0;
  if (rapidjson::UTF8<>::Decode(stream, &value)) {
    return {.value = value, .length = stream.Tell(), .isValid = true};
  }
  return {.value = static_cast<unsigned char>(text.front())};
}

bool isPlain(char32_t letter) {
  if (letter < 0x20 || isBetween(letter, 0x7f, 0x9f)) return false;
  if (letter < 0x61c) return true;
  const bool changesDirection = letter == 0x61c || isBetween(letter, 0x200e, 0x200f) ||
                                isBetween(letter, 0x202a, 0x202e) ||
                                isBetween(letter, 0x2066, 0x2069);
  return !changesDirection && !isBetween(letter, 0x2028, 0x2029) && letter != 0xfeff;
}

std::string printable(std::string_view text, std::size_t most) {
  constexpr std::string_view kCut = "...";
  std::string shown;
  std::size_t columns = 0;
  std::size_t kept = 0;  // bytes after which kCut fits
  while (!text.empty()) {
    const CodePoint letter = firstCodePoint(text);
    if (letter.isValid && isPlain(letter.value)) {
      shown += text.substr(0, letter.length);
      // Characters outside ASCII may take two columns.
      columns += letter.value < 0x80 ? 1 : 2;
    } else {
      std::array<char, 8> escape{};
      columns += static_cast<std::size_t>(std::snprintf(escape.data(), escape.size(),
                                                        letter.isValid ? "\\u%04x" : "\\x%02x",
                                                        static_cast<unsigned>(letter.value)));
      shown += escape.data();
    }
    if (columns > most) return shown.substr(0, kept).append(kCut);
    if (columns + kCut.size() <= most) kept = shown.size();
    text.remove_prefix(letter.length);
  }
  return shown;
}

}  // namespace camhook
