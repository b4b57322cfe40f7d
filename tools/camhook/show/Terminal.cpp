#include "tools/camhook/show/Terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>

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
  winsize size{};
  const bool isKnown =
      isTerminal && ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
  return Style(isColoured, isKnown ? size.ws_col : kAnyWidth);
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

std::string wrapped(const std::string& line, std::size_t width, std::size_t hang) {
  if (line.size() <= width || displayWidth(line) <= width) return line;
  std::string text;
  std::size_t column = 0;
  for (std::size_t at = 0; at < line.size();) {
    const std::size_t word = std::min(line.find_first_not_of(' ', at), line.size());
    const std::size_t end = std::min(line.find(' ', word), line.size());
    const std::size_t wordWidth = displayWidth(std::string_view(line).substr(word, end - word));
    std::size_t blanks = word - at;
    if (column > hang && column + blanks + wordWidth > width) {
      text += '\n';
      column = 0;
      blanks = hang;
    }
    text.append(blanks, ' ').append(line, word, end - word);
    column += blanks + wordWidth;
    at = end;
  }
  return text;
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

ProgressLine::ProgressLine(std::size_t total)
    : mTotal(total),
      mEnabled(isatty(STDERR_FILENO) != 0 && isatty(STDOUT_FILENO) == 0),
      mNext(Clock::now() + std::chrono::milliseconds(200)) {}

ProgressLine::ProgressLine(std::size_t total, const char* what)
    : mTotal(total),
      mWhat(what),
      mEnabled(isatty(STDERR_FILENO) != 0),
      mNext(Clock::now() + std::chrono::seconds(1)) {}

ProgressLine::~ProgressLine() {
  if (mShown) std::cerr << "\r\x1b[K" << std::flush;
}

void ProgressLine::advance(std::size_t done) {
  if (!mEnabled || Clock::now() < mNext) return;
  mNext = Clock::now() + std::chrono::milliseconds(100);
  mShown = true;
  std::cerr << "\r" << mWhat << ' ' << done << " of " << mTotal << " (" << 100 * done / mTotal
            << " %)" << std::flush;
}

}  // namespace camhook
