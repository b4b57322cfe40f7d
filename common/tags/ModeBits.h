// The bits of HESK_CONTROL_CURRENTMODE.

#pragma once

#include <cstdint>

namespace hesk {

/// The mode with that bit alone.
constexpr std::int64_t modeBit(unsigned int number) noexcept { return std::int64_t{1} << number; }

}  // namespace hesk
