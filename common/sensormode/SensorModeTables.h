// The sensor mode rules of the products.

#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// One rule: conditions on a stream configuration, and the sensor scenario if they are met.
struct SensorModeCfg {
  /// Value of a number that is not a condition. A configuration with this value would match.
  static constexpr std::int32_t kNoCondition = -1;

  /// Value of eisMode, videoAlgoType and uiMode in a configuration without the tag.
  static constexpr std::int32_t kMissing = -2;

  std::int32_t isHfpsMode;      // 1: high-frame-rate preview, MTK_STREAMING_FEATURE_HFPS_MODE
  std::string appType;          // "APP_TYPE"; the empty text is a condition, too
  std::int32_t fps;             // upper bound of MTK_CONTROL_AE_TARGET_FPS_RANGE
  std::int32_t eisMode;         // HESK_CONTROL_EISENABLE
  std::int32_t videoAlgoType;   // HESK_CONTROL_VIDEOALGOTYPE
  std::int32_t uiMode;          // COM_HESK_CURRENTUIMODULE
  std::int32_t sensorMode;      // the sensor scenario
  std::int32_t conditionCount;  // number of conditions that must be met

  friend bool operator==(const SensorModeCfg&, const SensorModeCfg&) = default;
};

/// The rules of one product. The order of the rows matters (SensorModeTables.cpp).
struct SensorModeTable {
  const char* productName;                    // prefix of the product model
  std::vector<SensorModeCfg> sensor0Preview;  // sensor 0, no video stream
  std::vector<SensorModeCfg> sensor0Video;
  std::vector<SensorModeCfg> sensor1Preview;  // sensor 1 is the front camera
  std::vector<SensorModeCfg> sensor1Video;
};

namespace hesk {

/// The tables of all products, built at library load and never changed. The last table whose prefix
/// matches the product is used.
const std::vector<SensorModeTable>& sensorModeTables();

}  // namespace hesk
