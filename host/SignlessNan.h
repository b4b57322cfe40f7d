// Floats as texts have them.

#pragma once

#include <cmath>

namespace host {

/// The value; where it is no number, without its sign, on which processors do not agree.
inline double withSignlessNan(double value) { return std::isnan(value) ? std::abs(value) : value; }

}  // namespace host
