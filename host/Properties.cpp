// The system properties of the simulated phone.

#include "platform/Properties.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cinttypes>
#include <cstddef>
#include <string>
#include <utility>

#include "host/Phone.h"

namespace {

std::string propertyRead(const char* key) {
  std::string text = host::Phone::current().properties.get(key);
  host::observe([&] { return host::PropertyRead{key, text}; });
  return text;
}

}  // namespace

int property_get(const char* key, char* value, const char* defaultValue) {
  std::string text = propertyRead(key);
  if (text.empty() && defaultValue != nullptr) text = defaultValue;
  const std::size_t length = std::min<std::size_t>(text.size(), PROPERTY_VALUE_MAX - 1);
  *std::copy_n(text.data(), length, value) = '\0';
  return static_cast<int>(length);
}

bool property_get_bool(const char* key, bool defaultValue) {
  const std::string text = propertyRead(key);
  const auto isOneOf = [&](auto... words) { return ((text == words) || ...); };
  if (isOneOf("1", "y", "yes", "on", "true")) return true;
  if (isOneOf("0", "n", "no", "off", "false")) return false;
  return defaultValue;
}

std::int32_t property_get_int32(const char* key, std::int32_t defaultValue) {
  std::array<char, PROPERTY_VALUE_MAX> text;
  if (property_get(key, text.data(), "") == 0) return defaultValue;
  char* end = nullptr;
  errno = 0;
  const std::intmax_t number = std::strtoimax(text.data(), &end, 0);
  if (end == text.data() || errno == ERANGE || !std::in_range<std::int32_t>(number)) {
    return defaultValue;
  }
  return static_cast<std::int32_t>(number);
}
