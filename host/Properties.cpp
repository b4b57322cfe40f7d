// The system properties of the phone that the library runs on.

#include "platform/Properties.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "host/Phone.h"

int property_get(const char* key, char* value, const char* defaultValue) {
  return host::Phone::current().properties.with(key, [&](std::string_view text) {
    if (text.empty() && defaultValue != nullptr) text = defaultValue;
    const std::size_t length = std::min<std::size_t>(text.size(), PROPERTY_VALUE_MAX - 1);
    *std::copy_n(text.data(), length, value) = '\0';
    return static_cast<int>(length);
  });
}
