// A sensor mode rule.

#pragma once

#include <cstdint>
#include <string>

/// One rule: conditions on a stream configuration, and the sensor mode if they are met.
struct SensorModeCfg {
  /// Marks a number that is not a condition. The filters compare it like any other value, so a tag
  /// with the value -1 matches.
  static constexpr std::int32_t kNoCondition = -1;

  /// Value of eisMode, videoAlgoType and uiMode in a configuration without the tag.
  static constexpr std::int32_t kMissing = -2;

  std::int32_t isHfpsMode;      // 1: high-frame-rate preview, MTK_STREAMING_FEATURE_HFPS_MODE
  std::string appType;          // "APP_TYPE"; the empty text is a condition, too
  std::int32_t fps;             // upper bound of MTK_CONTROL_AE_TARGET_FPS_RANGE
  std::int32_t eisMode;         // HESK_CONTROL_EISENABLE
  std::int32_t videoAlgoType;   // HESK_CONTROL_VIDEOALGOTYPE
  std::int32_t uiMode;          // COM_HESK_CURRENTUIMODULE
  std::int32_t sensorMode;      // a scenario number
  std::int32_t conditionCount;  // number of conditions that must be met

  friend bool operator==(const SensorModeCfg&, const SensorModeCfg&) = default;
};
