// The filters: which of the loaded rules matches a stream configuration.
//
// decideSensorScenario runs the filter of several conditions first, then one filter per condition.
// The first filter that selects a rule decides.

#include <algorithm>
#include <string>

#include "common/Events.h"
#include "common/HeskSensorModeControl.h"
#include "common/sensormode/SensorModeLog.h"
#include "common/tags/FrameRateRange.h"
#include "common/tags/Metadata.h"

using namespace hesk;
using NSCam::IMetadata;

namespace {

constexpr log::Operation kMultiConditionOperation{kSensorModeSource,
                                                  "getSensorModeCfgByMultiCondition"};

/// Compares the fields in a fixed order. Returns true as soon as conditionCount of them match.
bool meetsMultiCondition(const SensorModeCfg& rule, const IMetadata* meta) {
  const std::int32_t wanted = rule.conditionCount;
  std::int32_t count = 0;

  const std::int32_t hfpsMode = read(meta, tags::MTK_STREAMING_FEATURE_HFPS_MODE);
  if (hfpsMode == rule.isHfpsMode) {
    ++count;
    HESK_LOGD(kMultiConditionOperation, "selected by HfpsMode %d, [%d:%d]", hfpsMode, count,
              wanted);
    // The count is not compared here: a match of the HFPS mode alone never selects a rule.
  }
  const std::string appType = eventValue("APP_TYPE");
  if (appType == rule.appType) {
    ++count;
    HESK_LOGD(kMultiConditionOperation, "selected by apptype %s, [%d:%d]", appType.c_str(), count,
              wanted);
    if (count == wanted) return true;
  }
  const FrameRateRange fps = readFrameRateRange(meta);
  if (fps.upper == rule.fps) {
    ++count;
    HESK_LOGD(kMultiConditionOperation, "selected by fps %d,%d, [%d:%d]", fps.lower, fps.upper,
              count, wanted);
    if (count == wanted) return true;
  }
  const std::int32_t eisMode = read(meta, tags::HESK_CONTROL_EISENABLE, SensorModeCfg::kMissing);
  if (eisMode == rule.eisMode) {
    ++count;
    HESK_LOGD(kMultiConditionOperation, "selected by eisMode %d, [%d:%d]", eisMode, count, wanted);
    if (count == wanted) return true;
  }
  const std::int32_t algoType =
      read(meta, tags::HESK_CONTROL_VIDEOALGOTYPE, SensorModeCfg::kMissing);
  if (algoType == rule.videoAlgoType) {
    ++count;
    HESK_LOGD(kMultiConditionOperation, "selected by videoAlgoType %d, [%d:%d]", algoType, count,
              wanted);
    if (count == wanted) return true;
  }
  const std::int32_t uiMode = read(meta, tags::COM_HESK_CURRENTUIMODULE, SensorModeCfg::kMissing);
  if (uiMode == rule.uiMode) {
    ++count;
    HESK_LOGD(kMultiConditionOperation, "selected by uimode %d, [%d:%d]", uiMode, count, wanted);
    if (count == wanted) return true;
  }
  HESK_LOGD(kMultiConditionOperation, "current SensorModeCfg don't meet the requirement");
  return false;
}

}  // namespace

void HeskSensorModeControl::getSensorModeCfgByMultiCondition(IMetadata* meta) {
  if (!selectedSensorModeCfgs.empty()) return;
  const auto rule =
      std::find_if(multiConditionTable.rbegin(), multiConditionTable.rend(),
                   [meta](const SensorModeCfg& each) { return meetsMultiCondition(each, meta); });
  if (rule == multiConditionTable.rend()) return;
  selectedSensorModeCfgs.push_back(*rule);
  HESK_LOGD(kMultiConditionOperation, "selected");
}

void HeskSensorModeControl::getSensorModeCfgByEisMode(IMetadata* meta) {
  constexpr log::Operation kOperation{kSensorModeSource, "getSensorModeCfgByEisMode"};

  if (!selectedSensorModeCfgs.empty()) return;
  const std::int32_t eisMode = read(meta, tags::HESK_CONTROL_EISENABLE, SensorModeCfg::kMissing);
  const auto rule = std::ranges::find(sensorModeTable, eisMode, &SensorModeCfg::eisMode);
  if (rule == sensorModeTable.end()) return;
  selectedSensorModeCfgs.push_back(*rule);
  HESK_LOGD(kOperation, "selected by eisMode %d", eisMode);
}

void HeskSensorModeControl::getSensorModeCfgByIsHfpsMode(IMetadata* meta) {
  constexpr log::Operation kOperation{kSensorModeSource, "getSensorModeCfgByIsHfpsMode"};

  if (!selectedSensorModeCfgs.empty()) return;
  const std::int32_t hfpsMode = read(meta, tags::MTK_STREAMING_FEATURE_HFPS_MODE);
  if (hfpsMode != 1) return;
  const auto rule = std::ranges::find(sensorModeTable, hfpsMode, &SensorModeCfg::isHfpsMode);
  if (rule == sensorModeTable.end()) return;
  selectedSensorModeCfgs.push_back(*rule);
  HESK_LOGD(kOperation, "selected by hfpsMode %d", hfpsMode);
}

void HeskSensorModeControl::getSensorModeCfgByApptype() {
  constexpr log::Operation kOperation{kSensorModeSource, "getSensorModeCfgByApptype"};

  if (!selectedSensorModeCfgs.empty()) return;
  const std::string appType = eventValue("APP_TYPE");
  const auto rule = std::ranges::find(sensorModeTable, appType, &SensorModeCfg::appType);
  if (rule == sensorModeTable.end()) return;
  selectedSensorModeCfgs.push_back(*rule);
  HESK_LOGD(kOperation, "selected by appType %s", appType.c_str());
}

void HeskSensorModeControl::getSensorModeCfgByFps(IMetadata* meta) {
  constexpr log::Operation kOperation{kSensorModeSource, "getSensorModeCfgByFps"};

  if (!selectedSensorModeCfgs.empty()) return;
  const FrameRateRange fps = readFrameRateRange(meta);
  const auto rule = std::ranges::find(sensorModeTable, fps.upper, &SensorModeCfg::fps);
  if (rule == sensorModeTable.end()) return;
  selectedSensorModeCfgs.push_back(*rule);
  HESK_LOGD(kOperation, "selected by fps %d,%d", fps.lower, fps.upper);
}

void HeskSensorModeControl::getSensorModeCfgByVideoAlgoType(IMetadata* meta) {
  constexpr log::Operation kOperation{kSensorModeSource, "getSensorModeCfgByVideoAlgoType"};

  if (!selectedSensorModeCfgs.empty()) return;
  const std::int32_t algoType =
      read(meta, tags::HESK_CONTROL_VIDEOALGOTYPE, SensorModeCfg::kMissing);
  const auto rule = std::ranges::find(sensorModeTable, algoType, &SensorModeCfg::videoAlgoType);
  if (rule == sensorModeTable.end()) return;
  selectedSensorModeCfgs.push_back(*rule);
  HESK_LOGD(kOperation, "selected by videoAlgoType %d", algoType);
}

void HeskSensorModeControl::getSensorModeCfgByUiMode(IMetadata* meta) {
  constexpr log::Operation kOperation{kSensorModeSource, "getSensorModeCfgByUiMode"};

  if (!selectedSensorModeCfgs.empty()) return;
  const std::int32_t uiMode = read(meta, tags::COM_HESK_CURRENTUIMODULE, SensorModeCfg::kMissing);
  const auto rule = std::ranges::find(sensorModeTable, uiMode, &SensorModeCfg::uiMode);
  if (rule == sensorModeTable.end()) return;
  selectedSensorModeCfgs.push_back(*rule);
  HESK_LOGD(kOperation, "selected by uimode %d", uiMode);
}
