// Android's system properties.

#pragma once

/// Room for a property's value and its terminating zero.
#define PROPERTY_VALUE_MAX 92

extern "C" {

/// Copies the value of `key`, or `defaultValue` where the property is unset or empty, into `value`,
/// which has room for PROPERTY_VALUE_MAX bytes; longer values are cut. A null `defaultValue` counts
/// as the empty text. Returns the length. Any thread.
int property_get(const char* key, char* value, const char* defaultValue);

}  // extern "C"
