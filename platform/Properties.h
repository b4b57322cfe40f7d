// Android's system properties.

#pragma once

#include <cstdint>

/// The maximum size of a property's value, including its terminating zero.
#define PROPERTY_VALUE_MAX 92

extern "C" {

/// Copies the value of `key`, or `defaultValue` if the property is unset or empty, to `value`,
/// which must hold PROPERTY_VALUE_MAX bytes; longer values are truncated. A null `defaultValue` is
/// an empty text. Returns the length. Any thread.
int property_get(const char* key, char* value, const char* defaultValue);

/// Returns the property as a number: decimal, octal with prefix 0, hexadecimal with prefix 0x; text
/// after the digits is ignored. Returns `defaultValue` if the property is unset, does not begin
/// with a number or does not fit. Any thread.
std::int32_t property_get_int32(const char* key, std::int32_t defaultValue);

/// Returns true for "1", "y", "yes", "on" and "true", false for "0", "n", "no", "off" and "false",
/// and `defaultValue` for any other value. Any thread.
bool property_get_bool(const char* key, bool defaultValue);

}  // extern "C"
