#include "tools/camhook/input/Json.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "common/NumberText.h"
#include "tools/camhook/input/Document.h"
#include "tools/camhook/input/JsonLine.h"

namespace camhook {
namespace {

constexpr std::size_t kLineWidth = 100;
constexpr std::size_t kIndentStep = 2;

/// A list or an object in a line of JSON.
struct Structure {
  std::size_t end = 0;     // behind its bracket
  std::size_t depth = 0;   // of structures, itself included; an object counts twice
  std::size_t behind = 0;  // the next structure that is not in it
};

/// Behind the text that begins here.
std::size_t endOfText(std::string_view line, std::size_t at) {
  const auto isEscaped = [line](std::size_t quote) {
    return (quote - line.find_last_not_of('\\', quote - 1)) % 2 == 0;
  };
  do {
    at = line.find('"', at + 1);
  } while (isEscaped(at));
  return at + 1;
}

/// The structures of a line, in the order of their beginnings.
std::vector<Structure> structuresOf(std::string_view line) {
  std::vector<Structure> structures;
  std::vector<std::size_t> open;
  for (std::size_t at = 0; at < line.size(); ++at) {
    const char letter = line[at];
    if (letter == '"') {
      at = endOfText(line, at) - 1;
    } else if (letter == '{' || letter == '[') {
      open.push_back(structures.size());
      structures.push_back({.depth = letter == '{' ? std::size_t{2} : std::size_t{1}});
    } else if (letter == '}' || letter == ']') {
      Structure& ended = structures[open.back()];
      ended.end = at + 1;
      ended.behind = structures.size();
      open.pop_back();
      if (open.empty()) continue;
      Structure& around = structures[open.back()];
      around.depth = std::max(around.depth, ended.depth + 1);
    }
  }
  return structures;
}

/// Breaks a line of JSON into lines for people.
class Layout {
 public:
  explicit Layout(std::string_view line) : mLine(line), mStructures(structuresOf(line)) {}

  std::string broken(std::size_t indent) {
    write(indent);
    return std::move(mText);
  }

 private:
  [[nodiscard]] bool isAtStructure() const { return mLine[mAt] == '{' || mLine[mAt] == '['; }

  [[nodiscard]] std::size_t endOfValue() const {
    if (isAtStructure()) return mStructures[mNext].end;
    if (mLine[mAt] == '"') return endOfText(mLine, mAt);
    return std::min(mLine.find_first_of(",]}", mAt), mLine.size());
  }

  /// A list whose items are too small for lines of their own: numbers, texts, or lists of those.
  [[nodiscard]] bool isAtListOfItems() const {
    return mLine[mAt] == '[' && mStructures[mNext].depth <= 2;
  }

  std::string_view takeValue() {
    const std::size_t end = endOfValue();
    if (isAtStructure()) mNext = mStructures[mNext].behind;
    const std::size_t begin = std::exchange(mAt, end);
    return mLine.substr(begin, end - begin);
  }

  void enter() {
    mText += mLine[mAt++];
    ++mNext;
  }

  void leave(std::size_t indent) {
    startLine(indent);
    mText += mLine[mAt++];
  }

  /// Passes over the comma behind an item. False: it was the last one.
  bool passComma() {
    if (mLine[mAt] != ',') return false;
    mText += ',';
    mAt += 2;
    return true;
  }

  void startLine(std::size_t indent) { mText.append(1, '\n').append(indent, ' '); }

  void write(std::size_t indent) {
    const std::size_t size = endOfValue() - mAt;
    if (!isAtStructure() || size == 2 || indent + size < kLineWidth) {
      mText += takeValue();
    } else if (isAtListOfItems()) {
      writeFilled(indent);
    } else {
      writeBroken(indent);
    }
  }

  /// As many items on each line as fit.
  void writeFilled(std::size_t indent) {
    enter();
    std::size_t column = kLineWidth;
    do {
      const std::string_view item = takeValue();
      const std::size_t width = item.size() + (mLine[mAt] == ',' ? 1 : 0);
      if (column + 1 + width > kLineWidth) {
        column = indent + kIndentStep;
        startLine(column);
      } else {
        ++column;
        mText += ' ';
      }
      column += width;
      mText += item;
    } while (passComma());
    leave(indent);
  }

  void writeBroken(std::size_t indent) {
    const bool isObject = mLine[mAt] == '{';
    enter();
    do {
      startLine(indent + kIndentStep);
      if (isObject) mText.append(takeValue()).append(": ");
      if (isObject) mAt += 2;
      write(indent + kIndentStep);
    } while (passComma());
    leave(indent);
  }

  std::string_view mLine;
  std::vector<Structure> mStructures;
  std::size_t mAt = 0;    // in the line
  std::size_t mNext = 0;  // the structure that begins there or behind
  std::string mText;
};

}  // namespace

Json parseJson(std::string_view text) {
  Faults faults;
  const Document document(text, faults);
  Json json;
  if (document.isWhole()) json = document.root().json();
  if (!faults.isEmpty()) throw InputError(faults);
  return json;
}

std::string brokenJson(std::string_view line, std::size_t indent) {
  return Layout(line).broken(indent);
}

void writeJson(std::ostream& out, const Json& value) {
  out << brokenJson(lineOfJson(value), 0) << '\n';
}

std::string lineOfJson(const Json& value) {
  JsonLine line;
  line.add(value);
  return line.line();
}

Json jsonFromFloat(float value) {
  if (std::isnan(value)) return "nan";
  if (std::isinf(value)) return value < 0 ? "-inf" : "inf";
  std::array<char, 32> digits{};
  auto* const end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
  return hesk::leadingNumber<double>({digits.data(), end}).value();
}

std::string jsonText(std::string_view text) {
  JsonLine line;
  line.add(text);
  return line.line();
}

std::string hexadecimal(std::uint32_t value) {
  std::array<char, 8> digits{};
  const char* const end =
      std::to_chars(digits.data(), digits.data() + digits.size(), value, 16).ptr;
  const std::string_view text(digits.data(), static_cast<std::size_t>(end - digits.data()));
  return ("0x" + std::string(digits.size() - text.size(), '0')).append(text);
}

}  // namespace camhook
