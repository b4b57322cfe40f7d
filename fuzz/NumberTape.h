// Numbers on tapes. A byte tells how one stands there: as a byte, as all of its bytes, or by
// its place among the values at which arithmetic goes wrong. So a fuzzer that changes one byte of a
// number that nothing is compared with often makes it one of these.

#pragma once

#include <array>
#include <cstdint>
#include <limits>
#include <type_traits>
#include <utility>

namespace fuzz {

/// The limits of a type, and values near them.
template <typename T>
constexpr auto limitsOf() {
  using Limits = std::numeric_limits<T>;
  if constexpr (std::is_floating_point_v<T>) {
    return std::array<T, 8>{Limits::quiet_NaN(),
                            Limits::infinity(),
                            -Limits::infinity(),
                            Limits::max(),
                            Limits::lowest(),
                            Limits::denorm_min(),
                            T{-0.0F},
                            T{0x1p31F}};
  } else {
    constexpr auto kHalf = static_cast<T>(Limits::max() / 2 + 1);
    return std::array<T, 8>{Limits::min(),
                            Limits::max(),
                            static_cast<T>(Limits::min() + 1),
                            static_cast<T>(Limits::max() - 1),
                            static_cast<T>(~T{0}),
                            kHalf,
                            static_cast<T>(kHalf >> (sizeof(T) * 4)),
                            T{1024}};
  }
}

template <typename T>
constexpr bool fitsByte(T number) {
  if constexpr (std::is_integral_v<T>) return std::in_range<std::uint8_t>(number);
  return false;
}

template <typename Tape, typename T>
requires(std::is_arithmetic_v<T> && sizeof(T) > 1) void transfer(Tape& tape, T& number) {
  enum Form : std::uint8_t { asByte, inFull, asLimit, kForms };

  std::uint8_t form = fitsByte(number) ? asByte : inFull;
  tape.number(form);
  if (form % kForms == asByte) {
    auto byte = static_cast<std::uint8_t>(number);
    tape.number(byte);
    number = static_cast<T>(byte);
  } else if (form % kForms == inFull) {
    tape.number(number);
  } else {
    constexpr auto kLimits = limitsOf<T>();
    number = kLimits.at(form / kForms % kLimits.size());
  }
}

}  // namespace fuzz
