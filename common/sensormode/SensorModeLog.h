// The log source of HeskSensorModeControl.

#pragma once

#include "common/log/Log.h"

namespace hesk {

inline constexpr log::Source kSensorModeSource{"HeskSensorModeControl",
                                               "common/HeskSensorModeControl.cpp"};

}  // namespace hesk
