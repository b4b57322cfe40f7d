// The rules by which products choose a sensor scenario.

#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// One rule: conditions on a stream configuration, and the scenario for one that meets them.
struct SensorModeCfg {
  /// In a number: not a condition. Configurations do not have this value; it would match.
  static constexpr std::int32_t kNoCondition = -1;

  /// What counts for eisMode, videoAlgoType and uiMode where a configuration has none.
  static constexpr std::int32_t kMissing = -2;

  std::int32_t isHfpsMode;      // 1: high-frame-rate preview, MTK_STREAMING_FEATURE_HFPS_MODE
  std::string appType;          // "APP_TYPE"; the empty one is a value like any other
  std::int32_t fps;             // upper bound of MTK_CONTROL_AE_TARGET_FPS_RANGE
  std::int32_t eisMode;         // HESK_CONTROL_EISENABLE
  std::int32_t videoAlgoType;   // HESK_CONTROL_VIDEOALGOTYPE
  std::int32_t uiMode;          // COM_HESK_CURRENTUIMODULE
  std::int32_t sensorMode;      // the scenario that the rule yields
  std::int32_t conditionCount;  // how many conditions must be met at once

  friend bool operator==(const SensorModeCfg&, const SensorModeCfg&) = default;
};

/// The rules of one product. The order of a list's rows decides between rules that match.
struct SensorModeTable {
  const char* productName;                    // how the product's model name begins
  std::vector<SensorModeCfg> sensor0Preview;  // sensor 0, no video stream
  std::vector<SensorModeCfg> sensor0Video;
  std::vector<SensorModeCfg> sensor1Preview;  // sensor 1 is the front camera
  std::vector<SensorModeCfg> sensor1Video;
};

namespace hesk {

/// The tables of all products, built when the library is loaded and never changed.
const std::vector<SensorModeTable>& sensorModeTables();

/// The last table whose name begins the product's; null if there is none.
const SensorModeTable* findSensorModeTable(std::string_view product);

}  // namespace hesk
