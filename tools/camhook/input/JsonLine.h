// A JSON document written on one line, a blank behind every comma and colon, without a value in
// between:
//
//   JsonLine line;
//   line.open('{');
//   line.member("sensor", 0);
//   line.member("result", Json::array({640, 480}));
//   line.close('}');
//
// The caller sees to it that brackets pair and that each member of an object has a key.

#pragma once

#include <concepts>
#include <ranges>
#include <string>
#include <string_view>

#include "tools/camhook/input/Json.h"

namespace camhook {

class JsonLine {
 public:
  void open(char bracket);
  void close(char bracket) { mText += bracket; }

  /// The next value is that of this member.
  void key(std::string_view name);

  template <std::integral T>
  void add(T value) {
    if constexpr (std::same_as<T, bool>) {
      addLine(value ? "true" : "false");
    } else {
      addLine(std::to_string(value));
    }
  }
  /// As `jsonFromFloat` has it.
  template <std::same_as<float> T>
  void add(T value) {
    add(jsonFromFloat(value));
  }
  void add(std::string_view text);
  template <std::same_as<Json> T>  // not what a value could be made of
  void add(const T& value) {
    addJson(value);
  }
  /// A list of anything here.
  template <std::ranges::range T>
  requires(!std::same_as<T, Json> &&
           !std::convertible_to<T, std::string_view>) void add(const T& list) {
    open('[');
    for (const auto& item : list) add(item);
    close(']');
  }

  /// A value that stands on one line.
  void addLine(std::string_view line);

  template <typename T>
  void member(std::string_view name, const T& value) {
    key(name);
    add(value);
  }

  void clear() { mText.clear(); }
  [[nodiscard]] const std::string& line() const { return mText; }

 private:
  void separate();
  void addJson(const Json& value);

  std::string mText;
};

}  // namespace camhook
