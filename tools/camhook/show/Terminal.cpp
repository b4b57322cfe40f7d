#include "tools/camhook/show/Terminal.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <ostream>

namespace camhook {
namespace {

Style::Colour chosenColour = Style::Colour::automatic;

std::string_view environmentValue(const char* name) {
  const char* const value = std::getenv(name);
  return value != nullptr ? value : "";
}

}  // namespace

void Style::choose(Colour colour) { chosenColour = colour; }

Style Style::forStandardOutput() {
  const bool isTerminal = isatty(STDOUT_FILENO) != 0;
  const bool isColoured =
      chosenColour == Colour::automatic
          ? isTerminal && environmentValue("NO_COLOR").empty() && environmentValue("TERM") != "dumb"
          : chosenColour == Colour::always;
  return Style(isColoured);
}

std::string Style::dress(std::string_view text, std::string_view code) const {
  std::string dressed(text);
  if (mColour) dressed = "\x1b[" + std::string(code) + "m" + dressed + "\x1b[0m";
  return dressed;
}

std::size_t displayWidth(std::string_view text) {
  std::size_t width = 0;
  bool inCode = false;
  for (const char byte : text) {
    if (byte == '\x1b') inCode = true;
    const bool continuesCharacter = (static_cast<unsigned char>(byte) & 0xc0U) == 0x80U;
    if (!inCode && !continuesCharacter) ++width;
    if (byte == 'm') inCode = false;
  }
  return width;
}

void Columns::write(std::ostream& out, std::size_t indent) const {
  std::vector<std::size_t> widths{mFirstWidth};
  for (const auto& row : mRows) {
    widths.resize(std::max(widths.size(), row.size()));
    for (std::size_t i = 0; i + 1 < row.size(); ++i) {
      const std::size_t width = displayWidth(row[i]);
      if (width <= mMaxWidth) widths[i] = std::max(widths[i], width);
    }
  }
  for (const auto& row : mRows) {
    out << std::string(indent, ' ');
    for (std::size_t i = 0; i + 1 < row.size(); ++i) {
      const std::size_t width = displayWidth(row[i]);
      out << row[i] << std::string(std::max(widths[i], width) - width + 2, ' ');
    }
    out << (row.empty() ? "" : row.back()) << '\n';
  }
}

}  // namespace camhook
