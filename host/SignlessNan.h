// Float values for texts.

#pragma once

#include <cmath>

namespace host {

/// Returns the value; a NaN without its sign, which differs between processors.
inline double withSignlessNan(double value) { return std::isnan(value) ? std::abs(value) : value; }

}  // namespace host
