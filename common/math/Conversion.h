// Arithmetic that is defined for every input: apps write the metadata values.

#pragma once

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

namespace hesk {

/// Returns the sum, wrapped to 32 bits.
constexpr std::int32_t wrappingAdd(std::int32_t left, std::int32_t right) noexcept {
  return std::bit_cast<std::int32_t>(static_cast<std::uint32_t>(left) +
                                     static_cast<std::uint32_t>(right));
}

/// Returns the difference, wrapped to 32 bits.
constexpr std::int32_t wrappingSubtract(std::int32_t minuend, std::int32_t subtrahend) noexcept {
  return std::bit_cast<std::int32_t>(static_cast<std::uint32_t>(minuend) -
                                     static_cast<std::uint32_t>(subtrahend));
}

/// Returns the product, wrapped to 64 bits.
constexpr std::int64_t wrappingMultiply(std::int64_t left, std::int64_t right) noexcept {
  return std::bit_cast<std::int64_t>(static_cast<std::uint64_t>(left) *
                                     static_cast<std::uint64_t>(right));
}

/// Returns the value truncated toward zero and saturated to int32; 0 for NaN. arm64 converts the
/// same way.
inline std::int32_t toInt32(double value) noexcept {
  using Limits = std::numeric_limits<std::int32_t>;
  if (std::isnan(value)) return 0;
  if (value <= Limits::min()) return Limits::min();
  if (value >= Limits::max()) return Limits::max();
  return static_cast<std::int32_t>(value);
}

}  // namespace hesk
