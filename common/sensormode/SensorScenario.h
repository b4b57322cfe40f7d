// The sensor modes, with their scenario numbers, which the sensor driver defines.

#pragma once

#include <cstdint>

namespace hesk {

enum SensorScenario : std::int32_t {
  NORMAL_PREVIEW = 0,
  NORMAL_CAPTURE = 1,
  NORMAL_VIDEO = 2,
  CUSTOM1 = 5,
  CUSTOM2 = 6,
  CUSTOM3 = 7,
  CUSTOM4 = 8,
  NO_DECISION = 255,  // leaves the choice to the platform
};

}  // namespace hesk
