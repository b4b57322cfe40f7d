// HeskSensorModeControl chooses the sensor mode of a stream configuration; its number is the
// scenario number. The platform's configuration policy calls, for every configuration,
//
//   HeskSensorModeControl::createInstance(sensorId)->decideSensorScenario(meta, info)
//
// The filters search the rules of the product; then the overrides for certain apps are applied.
//
// One object serves all sensors, from library load to process exit.
//
// Errors: no operation reports a failure. An absent tag matches no rule; an empty "APP_TYPE"
// matches rules without app type. Null metadata is read as empty; null stream information is read
// as no video stream and a size of 0 x 0.
//
// Threads: not thread-safe. The platform decides one configuration at a time: between
// `createInstance` and the return of `decideSensorScenario`, no other thread calls either.

#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

#include "common/sensormode/SensorModeCfg.h"
#include "platform/IMetadata.h"
#include "platform/ParsedStreamInfo.h"

template <typename T>
class CSingleton;

/// Gives the replay tool and the tests access to the private members.
struct HeskSensorModeControlInspector;

class __attribute__((visibility("default"))) HeskSensorModeControl {
 public:
  using StreamInfo = NSCam::v3::pipeline::policy::ParsedAppImageStreamInfo;

  HeskSensorModeControl(const HeskSensorModeControl&) = delete;
  HeskSensorModeControl& operator=(const HeskSensorModeControl&) = delete;

  /// Sets the sensor of the next configuration to `sensorId`. Returns the object, never null; the
  /// caller does not own it.
  static HeskSensorModeControl* createInstance(int sensorId);

  /// Returns the scenario number (common/sensormode/SensorScenario.h) for a configuration with the
  /// session metadata `meta` and the streams `info`; 255 leaves the choice to the platform.
  ///
  /// A result of `specialCustomize` other than 255 is returned. Otherwise the selected rule
  /// decides. Without a rule the result is 2 with a video stream and 255 without one. The selected
  /// rule is kept until the next call.
  int decideSensorScenario(NSCam::IMetadata* meta, std::shared_ptr<StreamInfo> info);

  /// Returns the scenario number of the last override whose conditions are met, 255 if there is
  /// none.
  ///
  /// Reads the event store's "APP_TYPE" and "APP_NAME", MTK_HDR_FEATURE_HDR_MODE and
  /// HESK_CONTROL_NIGHTMODE of `meta`, the video flag and the size of `info`, and the sensor of
  /// `createInstance`.
  int specialCustomize(NSCam::IMetadata* meta, std::shared_ptr<StreamInfo> info);

  /// Calls `getProductName`, loads the product's rules for the sensor, with or without a video
  /// stream, and clears the selection. Loads no rule if the tables do not list the product or the
  /// sensor.
  void getSensorModeTable(int sensorId, bool isVideoMode);

  /// Reads the product name, cut to 31 characters, from the property ro.product.model.zdm;
  /// "default" if the property is not set.
  void getProductName();

  // The filters, in the order in which they run. Each selects at most one of the loaded rules, and
  // does nothing if a rule is already selected.

  /// Searches the rules with two or more conditions from the last to the first. Compares all six
  /// fields, also those that are no condition, in the order isHfpsMode, appType, fps, eisMode,
  /// videoAlgoType, uiMode. Selects a rule as soon as conditionCount fields match.
  void getSensorModeCfgByMultiCondition(NSCam::IMetadata* meta);

  // The other filters search the rules of one condition and select the first that matches.

  /// Compares eisMode with HESK_CONTROL_EISENABLE, -2 if absent.
  void getSensorModeCfgByEisMode(NSCam::IMetadata* meta);

  /// Selects a rule whose isHfpsMode is 1 if MTK_STREAMING_FEATURE_HFPS_MODE is 1.
  void getSensorModeCfgByIsHfpsMode(NSCam::IMetadata* meta);

  /// Compares appType with the event store's "APP_TYPE".
  void getSensorModeCfgByApptype();

  /// Compares fps with the upper bound of MTK_CONTROL_AE_TARGET_FPS_RANGE, 0 if absent.
  void getSensorModeCfgByFps(NSCam::IMetadata* meta);

  /// Compares videoAlgoType with HESK_CONTROL_VIDEOALGOTYPE, -2 if absent.
  void getSensorModeCfgByVideoAlgoType(NSCam::IMetadata* meta);

  /// Compares uiMode with COM_HESK_CURRENTUIMODULE, -2 if absent.
  void getSensorModeCfgByUiMode(NSCam::IMetadata* meta);

 private:
  friend class CSingleton<HeskSensorModeControl>;
  friend struct HeskSensorModeControlInspector;

  HeskSensorModeControl() = default;
  ~HeskSensorModeControl() = default;

  [[nodiscard]] const std::vector<SensorModeCfg>* chooseList(int sensorId, bool isVideoMode) const;
  [[nodiscard]] std::int32_t baseScenario(bool isVideoMode) const;

  std::int32_t mSensorId = 0;
  std::vector<SensorModeCfg> sensorModeTable;         // loaded rules of one condition
  std::vector<SensorModeCfg> multiConditionTable;     // loaded rules of several conditions
  std::vector<SensorModeCfg> selectedSensorModeCfgs;  // the rule that a filter selected, if any
  std::array<char, 32> productName{};
};
