#include "tools/camhook/input/JsonLine.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <ostream>
#include <type_traits>
#include <utility>

#include "tools/camhook/input/PlainText.h"

namespace camhook {
namespace {

constexpr std::size_t kLineWidth = 100;
constexpr std::size_t kIndentStep = 2;

bool needsNoEscape(char letter) {
  return letter >= 0x20 && letter < 0x7f && letter != '"' && letter != '\\';
}

/// The shortest text that reads back as the same number: with a point, or with an exponent.
template <typename T>
std::string numberText(T number) {
  constexpr T kLeastFixed = static_cast<T>(1e-4);
  constexpr T kFirstWithExponent = static_cast<T>(1e15);
  const T size = std::abs(number);
  const bool isFixed = size == 0 || (size >= kLeastFixed && size < kFirstWithExponent);
  std::array<char, 32> digits{};
  char* const end =
      std::to_chars(digits.data(), digits.data() + digits.size(), number,
                    isFixed ? std::chars_format::fixed : std::chars_format::scientific)
          .ptr;
  std::string text(digits.data(), end);
  if (isFixed && text.find('.') == std::string::npos) text += ".0";
  return text;
}

}  // namespace

/// Returns where the next value's item begins.
std::size_t JsonLine::beginItem() {
  if (std::exchange(mHasKey, false)) return mKey;
  const bool isFirst = mOpen.empty() || mOpen.back() + 1 == mNodes.size();
  if (!isFirst) mText += ", ";
  return mText.size();
}

void JsonLine::open(char bracket) {
  const std::size_t item = beginItem();
  mOpen.push_back(mNodes.size());
  mNodes.push_back({.item = item,
                    .begin = mText.size(),
                    .depth = bracket == '{' ? std::size_t{2} : std::size_t{1}});
  mText += bracket;
}

void JsonLine::close(char bracket) {
  mText += bracket;
  Node& closed = mNodes[mOpen.back()];
  mOpen.pop_back();
  closed.end = mText.size();
  closed.next = mNodes.size();
  if (mOpen.empty()) return;
  Node& around = mNodes[mOpen.back()];
  around.depth = std::max(around.depth, closed.depth + 1);
}

void JsonLine::key(std::string_view name) {
  mKey = beginItem();
  addEscaped(name);
  mText += ": ";
  mHasKey = true;
}

void JsonLine::addWord(std::string_view word) {
  const std::size_t item = beginItem();
  const std::size_t begin = mText.size();
  mText += word;
  mNodes.push_back({.item = item, .begin = begin, .end = mText.size(), .next = mNodes.size() + 1});
}

void JsonLine::add(float number) {
  // A larger one has digits that its shortest text has not.
  constexpr float kExact = 1U << 24U;
  if (std::abs(number) < kExact) {
    addWord(numberText(number));
  } else {
    addJson(number);
  }
}

void JsonLine::add(std::string_view text) {
  addWord("");
  addEscaped(text);
  mNodes.back().end = mText.size();
}

/// Escapes also what a terminal would obey.
void JsonLine::addEscaped(std::string_view text) {
  constexpr std::string_view kLetters = "\b\f\n\r\t\"\\";
  constexpr std::string_view kEscapes = "bfnrt\"\\";
  mText += '"';
  while (!text.empty()) {
    const auto plain =
        static_cast<std::size_t>(std::ranges::find_if_not(text, needsNoEscape) - text.begin());
    mText += text.substr(0, plain);
    text.remove_prefix(plain);
    if (text.empty()) break;
    const std::size_t known = kLetters.find(text.front());
    const CodePoint letter = firstCodePoint(text);
    if (known != std::string_view::npos) {
      mText.append(1, '\\').append(1, kEscapes[known]);
    } else {
      mText += letter.isValid ? printable(text.substr(0, letter.length)) : "\ufffd";
    }
    text.remove_prefix(letter.length);
  }
  mText += '"';
}

void JsonLine::addJson(const Json& value) {
  std::visit(
      [this]<typename T>(const T& each) {
        if constexpr (std::is_same_v<T, std::monostate>) {
          add(nullptr);
        } else if constexpr (std::is_same_v<T, double>) {
          addWord(numberText(each));
        } else if constexpr (std::is_same_v<T, Json::Object>) {
          open('{');
          for (const auto& [name, member] : each) this->member(name, member);
          close('}');
        } else {
          add(each);
        }
      },
      value.mValue);
}

void JsonLine::clear() {
  mText.clear();
  mNodes.clear();
}

/// Breaks a document into lines.
class JsonLine::Layout {
 public:
  explicit Layout(const JsonLine& line) : mLine(line.mText), mNodes(line.mNodes) {}

  std::string take() { return std::move(mText); }

  void write(std::size_t index, std::size_t indent) {
    const Node& node = mNodes[index];
    const std::size_t size = node.end - node.begin;
    const bool isEmpty = index + 1 == node.next;
    if (isEmpty || indent + size < kLineWidth) {
      copy(node.begin, node.end);
      return;
    }
    mText += mLine[node.begin];
    // Numbers, texts, or lists of those are too small for lines of their own.
    const bool isFilled = mLine[node.begin] == '[' && node.depth <= 2;
    std::size_t column = kLineWidth;
    for (std::size_t at = index + 1; at < node.next; at = mNodes[at].next) {
      const Node& item = mNodes[at];
      const bool isLast = item.next == node.next;
      if (isFilled) {
        writeFilled(item, isLast, indent + kIndentStep, column);
      } else {
        startLine(indent + kIndentStep);
        copy(item.item, item.begin);
        write(at, indent + kIndentStep);
      }
      if (!isLast) mText += ',';
    }
    startLine(indent);
    mText += mLine[node.end - 1];
  }

 private:
  void copy(std::size_t begin, std::size_t end) { mText.append(mLine, begin, end - begin); }

  void startLine(std::size_t indent) { mText.append(1, '\n').append(indent, ' '); }

  /// Adds the item to the line, or begins another if it does not fit. `column` is the line's width.
  void writeFilled(const Node& item, bool isLast, std::size_t indent, std::size_t& column) {
    const std::size_t width = item.end - item.begin + (isLast ? 0 : 1);
    if (column + 1 + width > kLineWidth) {
      column = indent;
      startLine(column);
    } else {
      ++column;
      mText += ' ';
    }
    column += width;
    copy(item.begin, item.end);
  }

  const std::string& mLine;
  const std::vector<Node>& mNodes;
  std::string mText;
};

std::string JsonLine::broken(std::size_t indent) const {
  Layout layout(*this);
  layout.write(0, indent);
  return layout.take();
}

std::string brokenJson(const Json& value, std::size_t indent) {
  JsonLine line;
  line.add(value);
  return line.broken(indent);
}

void writeJson(std::ostream& out, const Json& value) { out << brokenJson(value) << '\n'; }

std::string lineOfJson(const Json& value) {
  JsonLine line;
  line.add(value);
  return line.line();
}

std::string jsonText(std::string_view text) {
  JsonLine line;
  line.add(text);
  return line.line();
}

}  // namespace camhook
