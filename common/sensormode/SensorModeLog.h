// The log source of HeskSensorModeControl.

#pragma once

#include "common/log/Log.h"

namespace hesk {

inline constexpr log::Source kSensorModeSource{"HeskSensorModeControl",
                                               "common/HeskSensorModeControl.cpp"};

/// Returns the log operation of a member function.
constexpr log::Operation sensorModeOperation(const char* name) noexcept {
  return {kSensorModeSource, name};
}

}  // namespace hesk
