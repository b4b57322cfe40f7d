// Android's system properties.

#pragma once

#include <cstdint>

/// Room for a property's value and its terminating zero.
#define PROPERTY_VALUE_MAX 92

extern "C" {

/// Copies the value of `key`, or `defaultValue` where the property is unset or empty, into `value`,
/// which has room for PROPERTY_VALUE_MAX bytes; longer values are cut. A null `defaultValue` counts
/// as the empty text. Returns the length. Any thread.
int property_get(const char* key, char* value, const char* defaultValue);

/// The property as a number: decimal, octal behind a 0, hexadecimal behind 0x; what follows the
/// digits is ignored. `defaultValue` where the property is unset, begins with no number or does not
/// fit. Any thread.
std::int32_t property_get_int32(const char* key, std::int32_t defaultValue);

/// The property as a truth value: "1", "y", "yes", "on" and "true" are, "0", "n", "no", "off" and
/// "false" are not, all else gives `defaultValue`. Any thread.
bool property_get_bool(const char* key, bool defaultValue);

}  // extern "C"
