// The filters: which of the loaded rules a configuration meets.
//
// The filter of several conditions is asked first, then one filter a condition; the first that
// selects a rule decides. Reading order: the conditions; isMet, in which every comparison is made;
// the filters in the order in which they are asked.

#include <algorithm>
#include <string>
#include <string_view>

#include "common/HeskSensorModeControl.h"
#include "common/sensormode/DecisionObserver.h"
#include "common/sensormode/SensorModeLog.h"
#include "common/tags/FrameRateRange.h"
#include "common/tags/Metadata.h"
#include "common/updater/Events.h"

using namespace hesk;
using NSCam::IMetadata;

namespace {

constexpr std::int32_t kMissing = SensorModeCfg::kMissing;
constexpr std::int32_t kHighFrameRate = 1;

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

template <typename T, typename Value>
inline bool isMet(const SensorModeCfg& rule, const Condition<T>& condition, Value value,
                  DecisionObserver* observer) {
  const T& wanted = rule.*condition.field;
  const bool isEqual = wanted == value;
  if (observer != nullptr) observer->onComparison({rule, condition.name, wanted, value, isEqual});
  return isEqual;
}

/// The first rule that meets the condition, null for none.
template <typename T, typename Value>
inline const SensorModeCfg* firstThatMeets(const std::vector<SensorModeCfg>& rules,
                                           const Condition<T>& condition, Value value,
                                           DecisionObserver* observer) {
  const auto found = std::ranges::find_if(
      rules, [&](const SensorModeCfg& rule) { return isMet(rule, condition, value, observer); });
  return found != rules.end() ? &*found : nullptr;
}

std::int32_t eisModeOf(const IMetadata* meta) {
  return read(meta, tags::HESK_CONTROL_EISENABLE, kMissing);
}

std::int32_t isHfpsModeOf(const IMetadata* meta) {
  return read(meta, tags::MTK_STREAMING_FEATURE_HFPS_MODE, 0);
}

std::int32_t videoAlgoTypeOf(const IMetadata* meta) {
  return read(meta, tags::HESK_CONTROL_VIDEOALGOTYPE, kMissing);
}

std::int32_t uiModeOf(const IMetadata* meta) {
  return read(meta, tags::COM_HESK_CURRENTUIMODULE, kMissing);
}

/// What a configuration has for a rule's conditions.
struct Offer {
  std::int32_t isHfpsMode;
  std::string_view appType;
  FrameRateRange frameRates;
  std::int32_t eisMode;
  std::int32_t videoAlgoType;
  std::int32_t uiMode;
};

/// Whether, counted condition by condition, as many are met as the rule counts. The count is looked
/// at behind every condition that is met but the first.
bool meetsConditions(const SensorModeCfg& rule, const Offer& offer, DecisionObserver* observer) {
  constexpr log::Operation kOperation = sensorModeOperation("getSensorModeCfgByMultiCondition");

  std::int32_t count = 0;
  if (isMet(rule, kIsHfpsMode, offer.isHfpsMode, observer)) {
    ++count;
    HESK_LOGD(kOperation, "[%s] selected by HfpsMode %d, [%d:%d]", kOperation.name,
              offer.isHfpsMode, count, rule.conditionCount);
  }
  if (isMet(rule, kAppType, offer.appType, observer)) {
    ++count;
    HESK_LOGD(kOperation, "[%s] selected by apptype %s, [%d:%d]", kOperation.name,
              offer.appType.data(), count, rule.conditionCount);
    if (count == rule.conditionCount) return true;
  }
  if (isMet(rule, kFps, offer.frameRates.upper, observer)) {
    ++count;
    HESK_LOGD(kOperation, "[%s] selected by fps %d,%d, [%d:%d]", kOperation.name,
              offer.frameRates.lower, offer.frameRates.upper, count, rule.conditionCount);
    if (count == rule.conditionCount) return true;
  }
  if (isMet(rule, kEisMode, offer.eisMode, observer)) {
    ++count;
    HESK_LOGD(kOperation, "[%s] selected by eisMode %d, [%d:%d]", kOperation.name, offer.eisMode,
              count, rule.conditionCount);
    if (count == rule.conditionCount) return true;
  }
  if (isMet(rule, kVideoAlgoType, offer.videoAlgoType, observer)) {
    ++count;
    HESK_LOGD(kOperation, "[%s] selected by videoAlgoType %d, [%d:%d]", kOperation.name,
              offer.videoAlgoType, count, rule.conditionCount);
    if (count == rule.conditionCount) return true;
  }
  if (isMet(rule, kUiMode, offer.uiMode, observer)) {
    ++count;
    HESK_LOGD(kOperation, "[%s] selected by uimode %d, [%d:%d]", kOperation.name, offer.uiMode,
              count, rule.conditionCount);
    if (count == rule.conditionCount) return true;
  }
  HESK_LOGD(kOperation, "[%s] current SensorModeCfg don't meet the requirement", kOperation.name);
  return false;
}

}  // namespace

inline bool HeskSensorModeControl::isDecided(const char* filter) const {
  const bool isDecided = !selectedSensorModeCfgs.empty();
  if (mObserver != nullptr) {
    mObserver->onFilter(filter);
    if (isDecided) mObserver->onPass("a rule is selected already");
  }
  return isDecided;
}

inline bool HeskSensorModeControl::select(const SensorModeCfg* rule) {
  if (rule == nullptr) return false;
  selectedSensorModeCfgs.push_back(*rule);
  if (mObserver != nullptr) mObserver->onSelection(*rule);
  return true;
}

void HeskSensorModeControl::getSensorModeCfgByMultiCondition(IMetadata* meta) {
  constexpr log::Operation kOperation = sensorModeOperation("getSensorModeCfgByMultiCondition");

  if (isDecided(kOperation.name) || multiConditionTable.empty()) return;
  const Offer offer{.isHfpsMode = isHfpsModeOf(meta),
                    .appType = eventValue<"APP_TYPE">(),
                    .frameRates = readFrameRateRange(meta),
                    .eisMode = eisModeOf(meta),
                    .videoAlgoType = videoAlgoTypeOf(meta),
                    .uiMode = uiModeOf(meta)};
  const auto met = std::find_if(
      multiConditionTable.rbegin(), multiConditionTable.rend(),
      [&](const SensorModeCfg& rule) { return meetsConditions(rule, offer, mObserver); });
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
  const std::string_view appType = eventValue<"APP_TYPE">();
  if (select(firstThatMeets(sensorModeTable, kAppType, appType, mObserver))) {
    HESK_LOGD(kOperation, "[%s] selected by appType %s", kOperation.name, appType.data());
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
