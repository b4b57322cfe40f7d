// The filters: which of the loaded rules a configuration meets.
//
// The filter of several conditions is asked first, then one filter a condition; the first that
// selects a rule decides. Reading order: what a configuration has; isMet, in which every comparison
// is made; the filters in the order in which they are asked.

#include <algorithm>
#include <string>
#include <string_view>

#include "common/Events.h"
#include "common/HeskSensorModeControl.h"
#include "common/sensormode/DecisionObserver.h"
#include "common/sensormode/SensorModeLog.h"
#include "common/tags/FrameRateRange.h"
#include "common/tags/Metadata.h"

using namespace hesk;
using NSCam::IMetadata;

namespace {

constexpr std::int32_t kMissing = SensorModeCfg::kMissing;
constexpr std::int32_t kHighFrameRate = 1;

std::int32_t isHfpsModeOf(const IMetadata* meta) {
  return read(meta, tags::MTK_STREAMING_FEATURE_HFPS_MODE, 0);
}

std::int32_t eisModeOf(const IMetadata* meta) {
  return read(meta, tags::HESK_CONTROL_EISENABLE, kMissing);
}

std::int32_t videoAlgoTypeOf(const IMetadata* meta) {
  return read(meta, tags::HESK_CONTROL_VIDEOALGOTYPE, kMissing);
}

std::int32_t uiModeOf(const IMetadata* meta) {
  return read(meta, tags::COM_HESK_CURRENTUIMODULE, kMissing);
}

/// A field of a rule, and its name.
template <typename T>
struct Condition {
  const char* name;
  T SensorModeCfg::*field;
};

constexpr Condition<std::int32_t> kIsHfpsMode{"isHfpsMode", &SensorModeCfg::isHfpsMode};
constexpr Condition<std::string> kAppType{"appType", &SensorModeCfg::appType};
constexpr Condition<std::int32_t> kFps{"fps", &SensorModeCfg::fps};
constexpr Condition<std::int32_t> kEisMode{"eisMode", &SensorModeCfg::eisMode};
constexpr Condition<std::int32_t> kVideoAlgoType{"videoAlgoType", &SensorModeCfg::videoAlgoType};
constexpr Condition<std::int32_t> kUiMode{"uiMode", &SensorModeCfg::uiMode};

template <typename T>
bool isMet(const SensorModeCfg& rule, const Condition<T>& condition, const T& value,
           DecisionObserver* observer) {
  const T& wanted = rule.*condition.field;
  const bool isEqual = wanted == value;
  if (observer != nullptr) observer->onComparison({rule, condition.name, wanted, value, isEqual});
  return isEqual;
}

/// The first rule that meets the condition, null for none.
template <typename T>
const SensorModeCfg* firstThatMeets(const std::vector<SensorModeCfg>& rules,
                                    const Condition<T>& condition, const T& value,
                                    DecisionObserver* observer) {
  const auto found = std::ranges::find_if(
      rules, [&](const SensorModeCfg& rule) { return isMet(rule, condition, value, observer); });
  return found != rules.end() ? &*found : nullptr;
}

namespace several {

constexpr log::Operation kOperation = sensorModeOperation("getSensorModeCfgByMultiCondition");

/// A rule on trial: which of its conditions the configuration meets.
struct Trial {
  const SensorModeCfg& rule;
  const IMetadata* meta;
  DecisionObserver* observer;
  std::int32_t count = 0;  // of conditions met

  /// Counts the condition where it is met.
  template <typename T>
  bool counts(const Condition<T>& condition, const T& value) {
    if (!isMet(rule, condition, value, observer)) return false;
    ++count;
    return true;
  }
};

// Each condition looks its value up afresh, and returns whether it is met.

bool tryIsHfpsMode(Trial& trial) {
  const std::int32_t isHfpsMode = isHfpsModeOf(trial.meta);
  if (!trial.counts(kIsHfpsMode, isHfpsMode)) return false;
  HESK_LOGD(kOperation, "[%s] selected by HfpsMode %d, [%d:%d]", kOperation.name, isHfpsMode,
            trial.count, trial.rule.conditionCount);
  return true;
}

bool tryAppType(Trial& trial) {
  const std::string appType = eventValue("APP_TYPE");
  if (!trial.counts(kAppType, appType)) return false;
  HESK_LOGD(kOperation, "[%s] selected by apptype %s, [%d:%d]", kOperation.name, appType.c_str(),
            trial.count, trial.rule.conditionCount);
  return true;
}

bool tryFps(Trial& trial) {
  const FrameRateRange frameRates = readFrameRateRange(trial.meta);
  if (!trial.counts(kFps, frameRates.upper)) return false;
  HESK_LOGD(kOperation, "[%s] selected by fps %d,%d, [%d:%d]", kOperation.name, frameRates.lower,
            frameRates.upper, trial.count, trial.rule.conditionCount);
  return true;
}

bool tryEisMode(Trial& trial) {
  const std::int32_t eisMode = eisModeOf(trial.meta);
  if (!trial.counts(kEisMode, eisMode)) return false;
  HESK_LOGD(kOperation, "[%s] selected by eisMode %d, [%d:%d]", kOperation.name, eisMode,
            trial.count, trial.rule.conditionCount);
  return true;
}

bool tryVideoAlgoType(Trial& trial) {
  const std::int32_t videoAlgoType = videoAlgoTypeOf(trial.meta);
  if (!trial.counts(kVideoAlgoType, videoAlgoType)) return false;
  HESK_LOGD(kOperation, "[%s] selected by videoAlgoType %d, [%d:%d]", kOperation.name,
            videoAlgoType, trial.count, trial.rule.conditionCount);
  return true;
}

bool tryUiMode(Trial& trial) {
  const std::int32_t uiMode = uiModeOf(trial.meta);
  if (!trial.counts(kUiMode, uiMode)) return false;
  HESK_LOGD(kOperation, "[%s] selected by uimode %d, [%d:%d]", kOperation.name, uiMode, trial.count,
            trial.rule.conditionCount);
  return true;
}

/// Whether, condition by condition, as many are met as the rule counts.
bool meets(const SensorModeCfg& rule, const IMetadata* meta, DecisionObserver* observer) {
  constexpr bool (*kConditions[])(Trial&) = {tryIsHfpsMode, tryAppType,       tryFps,
                                             tryEisMode,    tryVideoAlgoType, tryUiMode};

  Trial trial{.rule = rule, .meta = meta, .observer = observer};
  for (const auto tryCondition : kConditions) {
    if (!tryCondition(trial)) continue;
    // Behind the first condition the count is not looked at.
    if (tryCondition != tryIsHfpsMode && trial.count == rule.conditionCount) return true;
  }
  HESK_LOGD(kOperation, "[%s] current SensorModeCfg don't meet the requirement", kOperation.name);
  return false;
}

}  // namespace several

}  // namespace

bool HeskSensorModeControl::isDecided(const char* filter) const {
  const bool isDecided = !selectedSensorModeCfgs.empty();
  if (mObserver != nullptr) {
    mObserver->onFilter(filter);
    if (isDecided) mObserver->onPass("a rule is selected already");
  }
  return isDecided;
}

bool HeskSensorModeControl::select(const SensorModeCfg* rule) {
  if (rule == nullptr) return false;
  selectedSensorModeCfgs.push_back(*rule);
  if (mObserver != nullptr) mObserver->onSelection(*rule);
  return true;
}

void HeskSensorModeControl::getSensorModeCfgByMultiCondition(IMetadata* meta) {
  using several::kOperation;

  if (isDecided(kOperation.name)) return;
  const auto met = std::find_if(
      multiConditionTable.rbegin(), multiConditionTable.rend(),
      [&](const SensorModeCfg& rule) { return several::meets(rule, meta, mObserver); });
  if (select(met != multiConditionTable.rend() ? &*met : nullptr)) {
    HESK_LOGD(kOperation, "[%s] selected", kOperation.name);
  }
}

void HeskSensorModeControl::getSensorModeCfgByEisMode(IMetadata* meta) {
  constexpr log::Operation kOperation = sensorModeOperation("getSensorModeCfgByEisMode");

  if (isDecided(kOperation.name)) return;
  const std::int32_t eisMode = eisModeOf(meta);
  if (select(firstThatMeets(sensorModeTable, kEisMode, eisMode, mObserver))) {
    HESK_LOGD(kOperation, "[%s] selected by eisMode %d", kOperation.name, eisMode);
  }
}

void HeskSensorModeControl::getSensorModeCfgByIsHfpsMode(IMetadata* meta) {
  constexpr log::Operation kOperation = sensorModeOperation("getSensorModeCfgByIsHfpsMode");

  if (isDecided(kOperation.name)) return;
  if (isHfpsModeOf(meta) != kHighFrameRate) {
    if (mObserver != nullptr) mObserver->onPass("MTK_STREAMING_FEATURE_HFPS_MODE is not 1");
    return;
  }
  if (select(firstThatMeets(sensorModeTable, kIsHfpsMode, kHighFrameRate, mObserver))) {
    HESK_LOGD(kOperation, "[%s] selected by hfpsMode %d", kOperation.name, kHighFrameRate);
  }
}

void HeskSensorModeControl::getSensorModeCfgByApptype() {
  constexpr log::Operation kOperation = sensorModeOperation("getSensorModeCfgByApptype");

  if (isDecided(kOperation.name)) return;
  const std::string appType = eventValue("APP_TYPE");
  if (select(firstThatMeets(sensorModeTable, kAppType, appType, mObserver))) {
    HESK_LOGD(kOperation, "[%s] selected by appType %s", kOperation.name, appType.c_str());
  }
}

void HeskSensorModeControl::getSensorModeCfgByFps(IMetadata* meta) {
  constexpr log::Operation kOperation = sensorModeOperation("getSensorModeCfgByFps");

  if (isDecided(kOperation.name)) return;
  const FrameRateRange frameRates = readFrameRateRange(meta);
  if (select(firstThatMeets(sensorModeTable, kFps, frameRates.upper, mObserver))) {
    HESK_LOGD(kOperation, "[%s] selected by fps %d,%d", kOperation.name, frameRates.lower,
              frameRates.upper);
  }
}

void HeskSensorModeControl::getSensorModeCfgByVideoAlgoType(IMetadata* meta) {
  constexpr log::Operation kOperation = sensorModeOperation("getSensorModeCfgByVideoAlgoType");

  if (isDecided(kOperation.name)) return;
  const std::int32_t videoAlgoType = videoAlgoTypeOf(meta);
  if (select(firstThatMeets(sensorModeTable, kVideoAlgoType, videoAlgoType, mObserver))) {
    HESK_LOGD(kOperation, "[%s] selected by videoAlgoType %d", kOperation.name, videoAlgoType);
  }
}

void HeskSensorModeControl::getSensorModeCfgByUiMode(IMetadata* meta) {
  constexpr log::Operation kOperation = sensorModeOperation("getSensorModeCfgByUiMode");

  if (isDecided(kOperation.name)) return;
  const std::int32_t uiMode = uiModeOf(meta);
  if (select(firstThatMeets(sensorModeTable, kUiMode, uiMode, mObserver))) {
    HESK_LOGD(kOperation, "[%s] selected by uimode %d", kOperation.name, uiMode);
  }
}
