// The sensor modes and their names.

#pragma once

#include <cstdint>
#include <string_view>

#include "common/sensormode/SensorScenario.h"

namespace camhook {

struct SensorMode {
  std::int32_t number;
  std::string_view name;
};

inline constexpr SensorMode kSensorModes[] = {
    {hesk::NORMAL_PREVIEW, "NORMAL_PREVIEW"},
    {hesk::NORMAL_CAPTURE, "NORMAL_CAPTURE"},
    {hesk::NORMAL_VIDEO, "NORMAL_VIDEO"},
    {hesk::CUSTOM1, "CUSTOM1"},
    {hesk::CUSTOM2, "CUSTOM2"},
    {hesk::CUSTOM3, "CUSTOM3"},
    {hesk::CUSTOM4, "CUSTOM4"},
    {hesk::NO_DECISION, "no decision"},
};

/// Empty for a number that is not a sensor mode.
constexpr std::string_view sensorModeName(std::int32_t number) {
  for (const SensorMode& mode : kSensorModes) {
    if (mode.number == number) return mode.name;
  }
  return {};
}

}  // namespace camhook
