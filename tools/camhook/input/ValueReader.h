// Reads values of a scenario into variables. A value of another form is reported as a fault, and
// the variable keeps its value.

#pragma once

#include <array>
#include <concepts>
#include <cstdint>
#include <ctime>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/Geometry.h"
#include "tools/camhook/input/Value.h"

namespace camhook {

/// The name of an integer type: "int32".
template <std::integral T>
std::string integerName() {
  return (std::signed_integral<T> ? "int" : "uint") + std::to_string(8 * sizeof(T));
}

/// The least number that rounds to infinity as a float.
inline constexpr double kFirstBeyondFloats = 0x1.ffffffp127;

/// The number of a hexadecimal text such as "0x1a", if it is one and has at most 64 bits.
std::optional<std::uint64_t> numberFromHexadecimal(std::string_view text);

/// The value of an integer: a number, or a hexadecimal text of its digits. Returns nullopt for any
/// other value, and for a number that does not fit.
template <typename T>
std::optional<T> integerFrom(const Value& value) {
  if (!value.isText()) return value.json().integer<T>();
  const auto number = numberFromHexadecimal(value.text());
  if (!number || !std::in_range<T>(*number)) return {};
  return static_cast<T>(*number);
}

/// The calendar time of a text such as "2021-03-04T05:06:07", if it is one.
std::optional<std::tm> timeFrom(const std::string& text);

void readValue(const Value& value, bool& target);
void readValue(const Value& value, std::string& target);

/// Reads an integer.
template <std::integral T>
void readValue(const Value& value, T& target) {
  if (const auto number = integerFrom<T>(value)) {
    target = *number;
  } else {
    value.failUnless("an integer of " + integerName<T>() + ", " +
                     std::to_string(std::numeric_limits<T>::min()) + " to " +
                     std::to_string(std::numeric_limits<T>::max()));
  }
}

/// Reads a number that fits, or "inf", "-inf", "nan".
void readValue(const Value& value, float& target);

/// [width, height]
void readValue(const Value& value, NSCam::MSize& target);

/// [x, y, width, height]
void readValue(const Value& value, NSCam::MRect& target);

/// [numerator, denominator]
void readValue(const Value& value, NSCam::MRational& target);

/// [a, b]
void readValue(const Value& value, std::array<std::int32_t, 2>& target);

}  // namespace camhook
