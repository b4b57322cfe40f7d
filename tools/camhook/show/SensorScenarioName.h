// What people call the sensor scenarios.

#pragma once

#include <cstdint>
#include <string_view>

#include "common/sensormode/SensorScenario.h"

namespace camhook {

/// "CUSTOM1"; "no decision" for 255, empty for a number that is no scenario.
constexpr std::string_view scenarioName(std::int32_t scenario) {
  using namespace hesk;
  switch (scenario) {
    case NORMAL_PREVIEW: return "NORMAL_PREVIEW";
    case NORMAL_CAPTURE: return "NORMAL_CAPTURE";
    case NORMAL_VIDEO: return "NORMAL_VIDEO";
    case CUSTOM1: return "CUSTOM1";
    case CUSTOM2: return "CUSTOM2";
    case CUSTOM3: return "CUSTOM3";
    case CUSTOM4: return "CUSTOM4";
    case NO_DECISION: return "no decision";
    default: return {};
  }
}

}  // namespace camhook
