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

constexpr log::Operation kSeveral = sensorModeOperation("getSensorModeCfgByMultiCondition");

/// Counts the conditions that match, in a fixed order, until the count is the rule's.
bool meetsSeveral(const SensorModeCfg& rule, const IMetadata* meta) {
  const std::int32_t wanted = rule.conditionCount;
  std::int32_t count = 0;

  const std::int32_t hfpsMode = read(meta, tags::MTK_STREAMING_FEATURE_HFPS_MODE);
  if (hfpsMode == rule.isHfpsMode) {
    ++count;
    HESK_LOGD(kSeveral, "selected by HfpsMode %d, [%d:%d]", hfpsMode, count, wanted);
    // The count is not compared here: a match of the HFPS mode alone never selects a rule.
  }
  const std::string appType = eventValue("APP_TYPE");
  if (appType == rule.appType) {
    ++count;
    HESK_LOGD(kSeveral, "selected by apptype %s, [%d:%d]", appType.c_str(), count, wanted);
    if (count == wanted) return true;
  }
  const FrameRateRange fps = readFrameRateRange(meta);
  if (fps.upper == rule.fps) {
    ++count;
    HESK_LOGD(kSeveral, "selected by fps %d,%d, [%d:%d]", fps.lower, fps.upper, count, wanted);
    if (count == wanted) return true;
  }
  const std::int32_t eisMode = read(meta, tags::HESK_CONTROL_EISENABLE, SensorModeCfg::kMissing);
  if (eisMode == rule.eisMode) {
    ++count;
    HESK_LOGD(kSeveral, "selected by eisMode %d, [%d:%d]", eisMode, count, wanted);
    if (count == wanted) return true;
  }
  const std::int32_t algoType =
      read(meta, tags::HESK_CONTROL_VIDEOALGOTYPE, SensorModeCfg::kMissing);
  if (algoType == rule.videoAlgoType) {
    ++count;
    HESK_LOGD(kSeveral, "selected by videoAlgoType %d, [%d:%d]", algoType, count, wanted);
    if (count == wanted) return true;
  }
  const std::int32_t uiMode = read(meta, tags::COM_HESK_CURRENTUIMODULE, SensorModeCfg::kMissing);
  if (uiMode == rule.uiMode) {
    ++count;
    HESK_LOGD(kSeveral, "selected by uimode %d, [%d:%d]", uiMode, count, wanted);
    if (count == wanted) return true;
  }
  HESK_LOGD(kSeveral, "current SensorModeCfg don't meet the requirement");
  return false;
}

}  // namespace

void HeskSensorModeControl::getSensorModeCfgByMultiCondition(IMetadata* meta) {
  if (!selectedSensorModeCfgs.empty()) return;
  const auto rule =
      std::find_if(multiConditionTable.rbegin(), multiConditionTable.rend(),
                   [meta](const SensorModeCfg& each) { return meetsSeveral(each, meta); });
  if (rule == multiConditionTable.rend()) return;
  selectedSensorModeCfgs.push_back(*rule);
  HESK_LOGD(kSeveral, "selected");
}

void HeskSensorModeControl::getSensorModeCfgByEisMode(IMetadata* meta) {
  constexpr log::Operation kOperation = sensorModeOperation("getSensorModeCfgByEisMode");

  if (!selectedSensorModeCfgs.empty()) return;
  for (const SensorModeCfg& rule : sensorModeTable) {
    const std::int32_t eisMode = read(meta, tags::HESK_CONTROL_EISENABLE, SensorModeCfg::kMissing);
    if (eisMode != rule.eisMode) continue;
    selectedSensorModeCfgs.push_back(rule);
    HESK_LOGD(kOperation, "selected by eisMode %d", eisMode);
    return;
  }
}

void HeskSensorModeControl::getSensorModeCfgByIsHfpsMode(IMetadata* meta) {
  constexpr log::Operation kOperation = sensorModeOperation("getSensorModeCfgByIsHfpsMode");

  if (!selectedSensorModeCfgs.empty()) return;
  const std::int32_t hfpsMode = read(meta, tags::MTK_STREAMING_FEATURE_HFPS_MODE);
  if (hfpsMode != 1) return;
  for (const SensorModeCfg& rule : sensorModeTable) {
    if (rule.isHfpsMode != hfpsMode) continue;
    selectedSensorModeCfgs.push_back(rule);
    HESK_LOGD(kOperation, "selected by hfpsMode %d", hfpsMode);
    return;
  }
}

void HeskSensorModeControl::getSensorModeCfgByApptype() {
  constexpr log::Operation kOperation = sensorModeOperation("getSensorModeCfgByApptype");

  if (!selectedSensorModeCfgs.empty()) return;
  for (const SensorModeCfg& rule : sensorModeTable) {
    const std::string appType = eventValue("APP_TYPE");
    if (appType != rule.appType) continue;
    selectedSensorModeCfgs.push_back(rule);
    HESK_LOGD(kOperation, "selected by appType %s", appType.c_str());
    return;
  }
}

void HeskSensorModeControl::getSensorModeCfgByFps(IMetadata* meta) {
  constexpr log::Operation kOperation = sensorModeOperation("getSensorModeCfgByFps");

  if (!selectedSensorModeCfgs.empty()) return;
  for (const SensorModeCfg& rule : sensorModeTable) {
    const FrameRateRange fps = readFrameRateRange(meta);
    if (fps.upper != rule.fps) continue;
    selectedSensorModeCfgs.push_back(rule);
    HESK_LOGD(kOperation, "selected by fps %d,%d", fps.lower, fps.upper);
    return;
  }
}

void HeskSensorModeControl::getSensorModeCfgByVideoAlgoType(IMetadata* meta) {
  constexpr log::Operation kOperation = sensorModeOperation("getSensorModeCfgByVideoAlgoType");

  if (!selectedSensorModeCfgs.empty()) return;
  for (const SensorModeCfg& rule : sensorModeTable) {
    const std::int32_t algoType =
        read(meta, tags::HESK_CONTROL_VIDEOALGOTYPE, SensorModeCfg::kMissing);
    if (algoType != rule.videoAlgoType) continue;
    selectedSensorModeCfgs.push_back(rule);
    HESK_LOGD(kOperation, "selected by videoAlgoType %d", algoType);
    return;
  }
}

void HeskSensorModeControl::getSensorModeCfgByUiMode(IMetadata* meta) {
  constexpr log::Operation kOperation = sensorModeOperation("getSensorModeCfgByUiMode");

  if (!selectedSensorModeCfgs.empty()) return;
  for (const SensorModeCfg& rule : sensorModeTable) {
    const std::int32_t uiMode = read(meta, tags::COM_HESK_CURRENTUIMODULE, SensorModeCfg::kMissing);
    if (uiMode != rule.uiMode) continue;
    selectedSensorModeCfgs.push_back(rule);
    HESK_LOGD(kOperation, "selected by uimode %d", uiMode);
    return;
  }
}
