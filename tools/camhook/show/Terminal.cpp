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

std::vector<std::string> Columns::lines() const {
  std::vector<std::size_t> widths{mFirstWidth};
  for (const auto& row : mRows) {
    widths.resize(std::max(widths.size(), row.size()));
    for (std::size_t i = 0; i + 1 < row.size(); ++i) {
      widths[i] = std::max(widths[i], displayWidth(row[i]));
    }
  }
  std::vector<std::string> lines;
  for (const auto& row : mRows) {
    std::string& line = lines.emplace_back();
    for (std::size_t i = 0; i < row.size(); ++i) {
      line += row[i];
      if (i + 1 < row.size()) line.append(widths[i] - displayWidth(row[i]) + 2, ' ');
    }
  }
  return lines;
}

void Columns::write(std::ostream& out, std::size_t indent) const {
  for (const std::string& line : lines()) out << std::string(indent, ' ') << line << '\n';
}

}  // namespace camhook
