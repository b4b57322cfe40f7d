// The overrides: scenarios that certain apps need whatever the rules say. Here is their form, and
// what they ask of a configuration; which there are stands in SpecialCustomize.cpp.

#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>
#include <string_view>

#include "common/log/Log.h"
#include "common/math/AspectFit.h"
#include "common/sensormode/SensorScenario.h"
#include "platform/Geometry.h"

namespace hesk {

/// One override: what must hold of a configuration, all of it, and the scenario for one of which it
/// holds.
struct Override {
  enum class Sensor { any, front, notFront };
  enum class Size { any, notWiderThan4To3, near4To3, is640x480 };

  /// In a number: not a condition.
  static constexpr std::int32_t kNoCondition = -1;

  const char* when;          // for people
  std::string_view appType;  // this one, or one of the names; both empty: any app
  std::array<std::string_view, 3> appNames;
  Sensor sensor;
  std::int32_t hdrMode;
  std::int32_t nightMode;
  bool needsVideo;
  Size size;
  SensorScenario scenario;
  const log::Level* level;  // of the record; null: none is written
  const char* message;
};

/// What the overrides look at.
struct OverrideConfiguration {
  std::string_view appType;
  std::string_view appName;
  std::int32_t sensorId;
  std::int32_t hdrMode;    // 0 where it is missing
  std::int32_t nightMode;  // likewise
  bool hasVideo;
  NSCam::MSize size;
};

/// In the order in which they are asked: the last that fires holds.
std::span<const Override> overrides();

// An aspect ratio near 4:3 is less than the tolerance away from this middle, which is not 4/3.
inline constexpr double kMiddleNear4To3 = 1.33;
inline constexpr double kToleranceNear4To3 = 0.004;

// Each condition of an override by itself.

inline bool meetsApp(const Override& override, const OverrideConfiguration& configuration) {
  const bool hasName = !override.appNames.front().empty();
  if (override.appType.empty() && !hasName) return true;
  if (!override.appType.empty() && override.appType == configuration.appType) return true;
  return !configuration.appName.empty() &&
         std::find(override.appNames.begin(), override.appNames.end(), configuration.appName) !=
             override.appNames.end();
}

inline bool meetsSensor(const Override& override, const OverrideConfiguration& configuration) {
  constexpr std::int32_t kFrontSensor = 1;
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
  // An infinity or a NaN, as a height of 0 gives it, is not near.
  const double distance = static_cast<double>(aspectRatio(size)) - kMiddleNear4To3;
  return -kToleranceNear4To3 < distance && distance < kToleranceNear4To3;
}

inline bool fires(const Override& override, const OverrideConfiguration& configuration) {
  return meetsApp(override, configuration) && meetsSensor(override, configuration) &&
         meetsHdrMode(override, configuration) && meetsNightMode(override, configuration) &&
         meetsVideo(override, configuration) && meetsSize(override, configuration);
}

}  // namespace hesk
