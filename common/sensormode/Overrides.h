// The overrides: sensor modes that certain apps need, whatever rule is selected. This file
// defines their form and tests their conditions; SpecialCustomize.cpp lists them.

#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>
#include <string_view>

#include "common/log/Log.h"
#include "common/math/AspectFit.h"
#include "common/sensormode/SensorScenario.h"
#include "common/tags/Values.h"
#include "platform/Geometry.h"

namespace hesk {

/// One override: conditions on a stream configuration, and the sensor mode if all of them are met.
struct Override {
  enum class Sensor { any, front, notFront };
  enum class Size { any, notWiderThan4To3, near4To3, is640x480 };

  /// Value of a number that is not a condition.
  static constexpr std::int32_t kNoCondition = -1;

  const char* when;  // the conditions as text, for `camhook`
  // Met by this app type or by one of the names; any app if both are empty.
  std::string_view appType;
  std::array<std::string_view, 3> appNames;
  Sensor sensor;
  std::int32_t hdrMode;
  std::int32_t nightMode;
  bool needsVideo;
  Size size;
  SensorScenario scenario;
  const log::Level* level;  // of the record; null if none is written
  const char* format;       // whole format of the record; its argument is the operation's name
};

/// The inputs of the conditions.
struct OverrideConfiguration {
  std::string_view appType;
  std::string_view appName;
  std::int32_t sensorId;
  std::int32_t hdrMode;    // 0 if absent
  std::int32_t nightMode;  // 0 if absent
  bool hasVideo;
  NSCam::MSize size;
};

/// All overrides, in order. The last one that fires decides.
std::span<const Override> overrides();

// A size is near 4:3 if its aspect ratio is less than the tolerance away from this value, which is
// not 4/3.
inline constexpr double kMiddleNear4To3 = 1.33;
inline constexpr double kToleranceNear4To3 = 0.004;

// One function per condition.

inline bool meetsApp(const Override& override, const OverrideConfiguration& configuration) {
  const bool hasName = !override.appNames.front().empty();
  if (override.appType.empty() && !hasName) return true;
  if (!override.appType.empty() && override.appType == configuration.appType) return true;
  return !configuration.appName.empty() &&
         std::find(override.appNames.begin(), override.appNames.end(), configuration.appName) !=
             override.appNames.end();
}

inline bool meetsSensor(const Override& override, const OverrideConfiguration& configuration) {
  if (override.sensor == Override::Sensor::any) return true;
  return (override.sensor == Override::Sensor::front) == (configuration.sensorId == kFrontSensor);
}

inline bool meetsHdrMode(const Override& override, const OverrideConfiguration& configuration) {
  return override.hdrMode == Override::kNoCondition || override.hdrMode == configuration.hdrMode;
}

inline bool meetsNightMode(const Override& override, const OverrideConfiguration& configuration) {
  return override.nightMode == Override::kNoCondition ||
         override.nightMode == configuration.nightMode;
}

inline bool meetsVideo(const Override& override, const OverrideConfiguration& configuration) {
  return !override.needsVideo || configuration.hasVideo;
}

inline bool meetsSize(const Override& override, const OverrideConfiguration& configuration) {
  const NSCam::MSize size = configuration.size;
  switch (override.size) {
    case Override::Size::any: return true;
    case Override::Size::notWiderThan4To3: return size.h / 3 >= size.w / 4;
    case Override::Size::is640x480: return size == NSCam::MSize{640, 480};
    case Override::Size::near4To3: break;
  }
  // A height of 0 gives an infinity or a NaN, which is not near.
  const double distance = static_cast<double>(aspectRatio(size)) - kMiddleNear4To3;
  return -kToleranceNear4To3 < distance && distance < kToleranceNear4To3;
}

inline bool fires(const Override& override, const OverrideConfiguration& configuration) {
  return meetsApp(override, configuration) && meetsSensor(override, configuration) &&
         meetsHdrMode(override, configuration) && meetsNightMode(override, configuration) &&
         meetsVideo(override, configuration) && meetsSize(override, configuration);
}

}  // namespace hesk
