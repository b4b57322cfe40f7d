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

constexpr auto needsNoEscape = [](char letter) {
  return letter >= 0x20 && letter < 0x7f && letter != '"' && letter != '\\';
};

/// True for a list of numbers and texts, and for a list of such lists.
bool isFilled(const Json& value, bool hasLists = true) {
  return value.isList() && std::ranges::all_of(value.items(), [hasLists](const Json& item) {
           return !item.isObject() && (!item.isList() || (hasLists && isFilled(item, false)));
         });
}

}  // namespace

class JsonWriter {
 public:
  std::string take() { return std::move(mText); }

  /// Adds a value on one line. Returns early, with a part of the value, once the text is longer
  /// than `most`.
  void addLine(const Json& value, std::size_t most = std::string::npos) {
    std::visit(
        [&]<typename T>(const T& each) {
          if constexpr (std::is_same_v<T, std::monostate>) {
            mText += "null";
          } else if constexpr (std::is_same_v<T, bool>) {
            mText += each ? "true" : "false";
          } else if constexpr (std::is_arithmetic_v<T>) {
            addNumber(each);
          } else if constexpr (std::is_same_v<T, std::string>) {
            addText(each);
          } else {
            addMembers(each, most);
          }
        },
        value.mValue);
  }

  /// Adds a value in lines, at column `indent`.
  void addBroken(const Json& value, std::size_t indent) {
    const std::size_t begin = mText.size();
    const std::size_t most = begin + std::max(kLineWidth, indent + 1) - indent - 1;
    addLine(value, most);
    if (mText.size() <= most || value.size() == 0) return;
    mText.resize(begin);
    const char* const brackets = value.isList() ? "[]" : "{}";
    mText += brackets[0];
    if (isFilled(value)) {
      addFilled(value.items(), indent + kIndentStep);
    } else if (value.isList()) {
      addLines(value.items(), indent + kIndentStep);
    } else {
      addLines(value.members(), indent + kIndentStep);
    }
    startLine(indent);
    mText += brackets[1];
  }

  void addText(std::string_view text) {
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

 private:
  /// Adds the shortest text that reads back as the same number; a double has a point or an
  /// exponent.
  template <typename T>
  void addNumber(T number) {
    constexpr double kMinFixed = 1e-4;
    constexpr double kFirstWithExponent = 1e15;
    std::array<char, 32> digits{};
    char* end = digits.data();
    bool isFixed = false;
    if constexpr (std::is_floating_point_v<T>) {
      const T size = std::abs(number);
      isFixed = size == 0 || (size >= kMinFixed && size < kFirstWithExponent);
      end = std::to_chars(end, digits.end(), number,
                          isFixed ? std::chars_format::fixed : std::chars_format::scientific)
                .ptr;
    } else {
      end = std::to_chars(end, digits.end(), number).ptr;
    }
    mText.append(digits.data(), end);
    if (isFixed && std::find(digits.data(), end, '.') == end) mText += ".0";
  }

  template <typename Members>
  void addMembers(const Members& members, std::size_t most) {
    constexpr bool isObject = std::is_same_v<Members, Json::Object>;
    mText += isObject ? '{' : '[';
    for (const auto& member : members) {
      if (mText.size() > most) return;
      if (&member != &members.front()) mText += ", ";
      addLine(withoutKey(member), most);
    }
    mText += isObject ? '}' : ']';
  }

  void addLines(const auto& members, std::size_t indent) {
    for (const auto& member : members) {
      startLine(indent);
      addBroken(withoutKey(member), indent);
      if (&member != &members.back()) mText += ',';
    }
  }

  void addFilled(const Json::List& items, std::size_t indent) {
    std::size_t column = kLineWidth;
    for (const Json& item : items) {
      std::string text = lineOfJson(item);
      if (&item != &items.back()) text += ',';
      if (column + 1 + text.size() > kLineWidth) {
        startLine(indent);
        column = indent;
      } else {
        mText += ' ';
        ++column;
      }
      mText += text;
      column += text.size();
    }
  }

  static const Json& withoutKey(const Json& item) { return item; }
  const Json& withoutKey(const Json::Member& member) {
    addText(member.key);
    mText += ": ";
    return member.value;
  }

  void startLine(std::size_t indent) { mText.append(1, '\n').append(indent, ' '); }

  std::string mText;
};

std::string lineOfJson(const Json& value) {
  JsonWriter writer;
  writer.addLine(value);
  return writer.take();
}

std::string brokenJson(const Json& value, std::size_t indent) {
  JsonWriter writer;
  writer.addBroken(value, indent);
  return writer.take();
}

void writeJson(std::ostream& out, const Json& value) { out << brokenJson(value) << '\n'; }

std::string jsonText(std::string_view text) {
  JsonWriter writer;
  writer.addText(text);
  return writer.take();
}

}  // namespace camhook
