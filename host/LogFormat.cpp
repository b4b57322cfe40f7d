// Expands printf formats identically on every machine. Passes each conversion to the C library
// separately.

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "host/LogSink.h"
#include "host/SignlessNan.h"

namespace host {
namespace {

template <typename T>
std::string printed(const std::string& conversion, T value) {
  std::array<char, 128> buffer{};  // most results fit
  const int length = std::snprintf(buffer.data(), buffer.size(), conversion.c_str(), value);
  if (length <= 0) return {};
  const auto size = static_cast<std::size_t>(length);
  if (size < buffer.size()) return {buffer.data(), size};
  std::string text(size + 1, '\0');
  std::snprintf(text.data(), text.size(), conversion.c_str(), value);
  text.pop_back();
  return text;
}

/// One conversion of a format, for example "%-5lld": flags, width and precision "-5", length "ll"
/// and kind 'd'.
struct Conversion {
  std::string flags;
  std::string length;
  char kind = '\0';

  [[nodiscard]] std::string as(const std::string& lengthAndKind) const {
    return "%" + flags + lengthAndKind;
  }
};

/// Reads the conversion after a '%' and moves `at` past it. A '*' is replaced by the next argument.
Conversion readConversion(const char*& at, std::va_list& arguments) {
  Conversion conversion;
  for (; *at != '\0' && std::strchr("-+ #0123456789.*'", *at) != nullptr; ++at) {
    if (*at == '*') {
      conversion.flags += std::to_string(va_arg(arguments, int));
    } else {
      conversion.flags += *at;
    }
  }
  for (; *at != '\0' && std::strchr("hlLjzt", *at) != nullptr; ++at) conversion.length += *at;
  if (*at != '\0') conversion.kind = *at++;
  return conversion;
}

std::string expandInteger(const Conversion& conversion, std::va_list& arguments) {
  // Only integers without a length or with h or hh are passed as an int.
  static_assert(sizeof(long) == sizeof(std::intmax_t) && sizeof(long long) == sizeof(long));
  if (conversion.length.empty() || conversion.length.front() == 'h') {
    return printed(conversion.as(conversion.length + conversion.kind), va_arg(arguments, int));
  }
  return printed(conversion.as({'j', conversion.kind}), va_arg(arguments, std::intmax_t));
}

std::string expandFloat(const Conversion& conversion, std::va_list& arguments) {
  const double value = conversion.length == "L"
                           ? static_cast<double>(va_arg(arguments, long double))
                           : va_arg(arguments, double);
  return printed(conversion.as({conversion.kind}), withSignlessNan(value));
}

std::string expandText(const Conversion& conversion, std::va_list& arguments) {
  const char* text = va_arg(arguments, const char*);
  return printed(conversion.as("s"), text != nullptr ? text : "(null)");
}

std::string expand(const Conversion& conversion, std::va_list& arguments) {
  switch (conversion.kind) {
    case 'd':
    case 'i':
    case 'u':
    case 'o':
    case 'x':
    case 'X': return expandInteger(conversion, arguments);
    case 'e':
    case 'E':
    case 'f':
    case 'F':
    case 'g':
    case 'G':
    case 'a':
    case 'A': return expandFloat(conversion, arguments);
    case 'c': return printed(conversion.as("c"), va_arg(arguments, int));
    case 's': return expandText(conversion, arguments);
    case 'p': va_arg(arguments, const void*); return printed(conversion.as("s"), "0x0");
    case '%': return "%";
    default: {  // not a conversion: copied unchanged
      std::string text = conversion.as(conversion.length);
      if (conversion.kind != '\0') text += conversion.kind;
      return text;
    }
  }
}

}  // namespace

std::string expandFormat(const char* format, std::va_list arguments) {
  std::va_list rest;
  va_copy(rest, arguments);
  std::string text;
  for (const char* at = format; *at != '\0';) {
    const std::size_t plain = std::strcspn(at, "%");
    text.append(at, plain);
    at += plain;
    if (*at == '\0') break;
    ++at;
    text += expand(readConversion(at, rest), rest);
  }
  va_end(rest);
  return text;
}

}  // namespace host
