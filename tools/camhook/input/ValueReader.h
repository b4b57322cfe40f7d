// The values of a scenario one by one. What cannot be read fails, and stays as it was.

#pragma once

#include <array>
#include <cstdint>
#include <ctime>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/Geometry.h"
#include "tools/camhook/input/Value.h"

namespace camhook {

template <typename T>
inline constexpr std::string_view kIntegerName;
template <>
inline constexpr std::string_view kIntegerName<std::int32_t> = "int32";
template <>
inline constexpr std::string_view kIntegerName<std::int64_t> = "int64";
template <>
inline constexpr std::string_view kIntegerName<std::uint8_t> = "uint8";
template <>
inline constexpr std::string_view kIntegerName<std::uint32_t> = "uint32";
template <>
inline constexpr std::string_view kIntegerName<std::uint64_t> = "uint64";

/// Half a step above the largest float: what rounds to it still fits.
inline constexpr double kFirstBeyondFloats = 0x1.ffffffp127;

/// The number of a hexadecimal text such as "0x1a". None where it is none, or needs more than 64
/// bits.
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

void readValue(const Value& value, std::int32_t& target);
void readValue(const Value& value, std::int64_t& target);
void readValue(const Value& value, std::uint8_t& target);
void readValue(const Value& value, std::uint32_t& target);
void readValue(const Value& value, std::uint64_t& target);

/// A number that fits, or "inf", "-inf", "nan".
void readValue(const Value& value, float& target);

/// [width, height]
void readValue(const Value& value, NSCam::MSize& target);

/// [x, y, width, height]
void readValue(const Value& value, NSCam::MRect& target);

/// [numerator, denominator]
void readValue(const Value& value, NSCam::MRational& target);

/// Two numbers: [a, b]
void readValue(const Value& value, std::array<std::int32_t, 2>& target);

}  // namespace camhook
