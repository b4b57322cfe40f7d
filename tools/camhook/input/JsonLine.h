// The writer of JSON:
//
//   JsonLine line;
//   line.open('{');
//   line.member("sensor", 0);
//   line.member("size", std::array{640, 480});
//   line.close('}');
//
// The document is written on one line, with a blank after every comma and colon; `broken` breaks it
// into lines. The caller closes every bracket and gives each member of an object a key.

#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <ranges>
#include <string>
#include <string_view>
#include <vector>

#include "tools/camhook/input/Json.h"

namespace camhook {

class JsonLine {
 public:
  void open(char bracket);
  void close(char bracket);

  /// The next value is that of this member.
  void key(std::string_view name);

  void add(std::nullptr_t /*null*/) { addWord("null"); }
  template <std::integral T>
  void add(T value) {
    if constexpr (std::same_as<T, bool>) {
      addWord(value ? "true" : "false");
    } else {
      addWord(std::to_string(value));
    }
  }
  void add(float number);
  void add(std::string_view text);
  template <std::same_as<Json> T>  // no implicit conversion
  void add(const T& value) {
    addJson(value);
  }
  /// A list of anything here.
  template <std::ranges::range T>
  requires(!std::convertible_to<T, std::string_view>) void add(const T& list) {
    open('[');
    for (const auto& item : list) add(item);
    close(']');
  }

  template <typename T>
  void member(std::string_view name, const T& value) {
    key(name);
    add(value);
  }

  void clear();

  /// The document on one line.
  [[nodiscard]] const std::string& line() const { return mText; }

  /// The document in lines of 100 columns; `indent` is the column at which it begins. A value that
  /// fits stays on one line, any other is broken into its members, a list of numbers into full
  /// lines.
  [[nodiscard]] std::string broken(std::size_t indent = 0) const;

 private:
  /// A value in `mText`. Values are in the order of their beginnings.
  struct Node {
    std::size_t item = 0;  // where it begins; of a member, where its key begins
    std::size_t begin = 0;
    std::size_t end = 0;
    std::size_t next = 0;   // the index of the first node after those in it
    std::size_t depth = 0;  // 0 for a word, 1 for a list of words; an object counts twice
  };

  class Layout;

  std::size_t beginItem();
  void addWord(std::string_view word);
  void addEscaped(std::string_view text);
  void addJson(const Json& value);

  std::string mText;
  std::vector<Node> mNodes;
  std::vector<std::size_t> mOpen;  // the indexes of open structures
  bool mHasKey = false;            // of the next value
  std::size_t mKey = 0;            // where that begins
};

/// A value in lines, see `JsonLine::broken`.
std::string brokenJson(const Json& value, std::size_t indent = 0);

/// The same with the end of the last line.
void writeJson(std::ostream& out, const Json& value);

/// A value on one line.
std::string lineOfJson(const Json& value);

/// A text in JSON's quotes, for messages.
std::string jsonText(std::string_view text);

}  // namespace camhook
