// In whose name the sensor mode control's records are written.

#pragma once

#include "common/log/Log.h"

namespace hesk {

inline constexpr log::Source kSensorModeSource{"HeskSensorModeControl",
                                               "common/HeskSensorModeControl.cpp"};

/// The operation of the sensor mode control with that listed name.
constexpr log::Operation sensorModeOperation(const char* name) noexcept {
  return {kSensorModeSource, name};
}

}  // namespace hesk
