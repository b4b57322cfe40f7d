#include "tools/camhook/input/JsonLine.h"

#include <algorithm>
#include <cstdint>

#include "tools/camhook/input/InputError.h"

namespace camhook {
namespace {

bool needsNoEscape(std::string_view text) {
  return std::ranges::all_of(text, [](char letter) {
    return letter >= 0x20 && letter < 0x7f && letter != '"' && letter != '\\';
  });
}

/// Nothing in a text disturbs a terminal.
std::string dumped(const Json& value) {
  return printable(value.dump(-1, ' ', false, Json::error_handler_t::replace));
}

}  // namespace

/// What ends in a blank is a key or a comma, and begins in nothing but its bracket.
void JsonLine::separate() {
  if (mText.empty()) return;
  const char last = mText.back();
  if (last != ' ' && last != '{' && last != '[') mText += ", ";
}

void JsonLine::open(char bracket) {
  separate();
  mText += bracket;
}

void JsonLine::key(std::string_view name) {
  add(name);
  mText += ": ";
}

void JsonLine::addLine(std::string_view line) {
  separate();
  mText += line;
}

void JsonLine::add(std::string_view text) {
  if (!needsNoEscape(text)) return addLine(dumped(Json(text)));
  separate();
  mText.append(1, '"').append(text).append(1, '"');
}

void JsonLine::addJson(const Json& value) {
  switch (value.type()) {
    case Json::value_t::null: return addLine("null");
    case Json::value_t::boolean: return add(value.get<bool>());
    case Json::value_t::number_integer: return add(value.get<std::int64_t>());
    case Json::value_t::number_unsigned: return add(value.get<std::uint64_t>());
    case Json::value_t::string: return add(value.get_ref<const std::string&>());
    case Json::value_t::array:
      open('[');
      for (const Json& item : value) addJson(item);
      return close(']');
    case Json::value_t::object:
      open('{');
      for (const auto& [name, each] : value.items()) member(name, each);
      return close('}');
    default: return addLine(dumped(value));
  }
}

}  // namespace camhook
