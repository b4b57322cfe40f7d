// The choice of a sensor's scenario, its readout mode, for a stream configuration.
//
// The platform's configuration policy calls, for every configuration,
//
//   HeskSensorModeControl::createInstance(sensorId)->decideSensorScenario(meta, info)
//
// The product's rules are tried first, filter after filter; then a fixed list of overrides for
// certain apps, of which the last that fires holds.
//
// One object serves every sensor, from when the library is loaded until the process ends.
//
// Failure: none is reported but by the number. What is missing matches no rule; null metadata reads
// as empty, null stream information as no video stream and a size of 0 x 0.
//
// Threads: no lock. The platform decides one configuration at a time: from `createInstance` until
// `decideSensorScenario` has returned nobody else calls either.

#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

#include "common/sensormode/SensorModeTables.h"
#include "platform/IMetadata.h"
#include "platform/ParsedStreamInfo.h"

namespace hesk {
struct RuleCondition;
}  // namespace hesk

template <typename T>
class CSingleton;

/// The window of the tool and the tests.
struct HeskSensorModeControlInspector;

class __attribute__((visibility("default"))) HeskSensorModeControl {
 public:
  using StreamInfo = NSCam::v3::pipeline::policy::ParsedAppImageStreamInfo;

  HeskSensorModeControl(const HeskSensorModeControl&) = delete;
  HeskSensorModeControl& operator=(const HeskSensorModeControl&) = delete;

  /// The object, from now on for the configuration of sensor `sensorId`. Never null; the caller
  /// does not own it.
  static HeskSensorModeControl* createInstance(int sensorId);

  /// Decides on the scenario of the sensor for a configuration with the session metadata `meta` and
  /// the streams `info`. Returns its number (common/sensormode/SensorScenario.h); 255 leaves the
  /// choice to the platform.
  ///
  /// The rules that the filters find decide; without one a configuration with a video stream takes
  /// 2, any other 255. What `specialCustomize` returns, unless it is 255, goes before both.
  ///
  /// Reads what `getProductName`, the filters and `specialCustomize` read. The rules selected stay
  /// until the next call.
  int decideSensorScenario(NSCam::IMetadata* meta, std::shared_ptr<StreamInfo> info);

  /// The scenario that certain apps need whatever the rules say, 255 for none. Of the overrides
  /// that fire the last holds.
  ///
  /// Reads the event store's "APP_TYPE" and "APP_NAME", MTK_HDR_FEATURE_HDR_MODE and
  /// HESK_CONTROL_NIGHTMODE (int32 items), and the video flag and size of `info`.
  int specialCustomize(NSCam::IMetadata* meta, std::shared_ptr<StreamInfo> info);

  /// Loads the rules of the product, which it asks `getProductName` for, for a sensor, with or
  /// without video stream, and forgets what was selected. No rules for other products and sensors
  /// than the tables have.
  void getSensorModeTable(int sensorId, bool isVideoMode);

  /// Reads the product's name, cut to 31 characters, from the property ro.product.model.zdm,
  /// "default" where it is unset.
  void getProductName();

  // The filters, in the order in which they are asked. Each selects at most one of the loaded
  // rules, and does nothing once one is selected. A rule's field matches an equal value.

  /// Takes the last rule of several conditions of which, in the order isHfpsMode, appType, fps,
  /// eisMode, videoAlgoType, uiMode, as many match as the rule counts. A match of isHfpsMode alone
  /// does not do. Reads what the other filters read.
  void getSensorModeCfgByMultiCondition(NSCam::IMetadata* meta);

  // The others look at the rules of one condition alone.

  /// Takes the first rule whose eisMode is HESK_CONTROL_EISENABLE, -2 where it is missing.
  void getSensorModeCfgByEisMode(NSCam::IMetadata* meta);

  /// Takes the first rule whose isHfpsMode is 1, where MTK_STREAMING_FEATURE_HFPS_MODE is.
  void getSensorModeCfgByIsHfpsMode(NSCam::IMetadata* meta);

  /// Takes the first rule whose appType is the event store's "APP_TYPE"; the empty one is that of
  /// the rules without app type.
  void getSensorModeCfgByApptype();

  /// Takes the first rule whose fps is the upper bound of MTK_CONTROL_AE_TARGET_FPS_RANGE, 0 where
  /// it is missing.
  void getSensorModeCfgByFps(NSCam::IMetadata* meta);

  /// Takes the first rule whose videoAlgoType is HESK_CONTROL_VIDEOALGOTYPE, -2 where it is
  /// missing.
  void getSensorModeCfgByVideoAlgoType(NSCam::IMetadata* meta);

  /// Takes the first rule whose uiMode is COM_HESK_CURRENTUIMODULE, -2 where it is missing.
  void getSensorModeCfgByUiMode(NSCam::IMetadata* meta);

 private:
  friend class CSingleton<HeskSensorModeControl>;
  friend struct HeskSensorModeControlInspector;

  HeskSensorModeControl() = default;
  ~HeskSensorModeControl() = default;

  [[nodiscard]] const std::vector<SensorModeCfg>* chooseList(int sensorId, bool isVideoMode) const;
  [[nodiscard]] std::int32_t baseScenario(bool isVideoMode) const;

  // What the filters share.
  [[nodiscard]] bool isDecided() const;
  void selectFirst(const hesk::RuleCondition& condition, const NSCam::IMetadata* meta);

  std::int32_t mSensorId = 0;
  std::vector<SensorModeCfg> sensorModeTable;         // loaded rules of one condition
  std::vector<SensorModeCfg> multiConditionTable;     // and of several
  std::vector<SensorModeCfg> selectedSensorModeCfgs;  // what the filters selected
  std::array<char, 32> productName{};
};
