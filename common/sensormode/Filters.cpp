// The filters: which of the loaded rules a configuration meets.
//
// The filter of several conditions is asked first, then one filter a condition; the first that
// selects a rule decides. Reading order: the conditions; the filters in the order in which they are
// asked.

#include <algorithm>
#include <string>
#include <variant>

#include "common/Events.h"
#include "common/HeskSensorModeControl.h"
#include "common/sensormode/SensorModeLog.h"
#include "common/tags/FrameRateRange.h"
#include "common/tags/Metadata.h"

using namespace hesk;
using NSCam::IMetadata;

namespace {

constexpr log::Operation kSeveral = sensorModeOperation("getSensorModeCfgByMultiCondition");
constexpr log::Operation kByEisMode = sensorModeOperation("getSensorModeCfgByEisMode");
constexpr log::Operation kByIsHfpsMode = sensorModeOperation("getSensorModeCfgByIsHfpsMode");
constexpr log::Operation kByApptype = sensorModeOperation("getSensorModeCfgByApptype");
constexpr log::Operation kByFps = sensorModeOperation("getSensorModeCfgByFps");
constexpr log::Operation kByVideoAlgoType = sensorModeOperation("getSensorModeCfgByVideoAlgoType");
constexpr log::Operation kByUiMode = sensorModeOperation("getSensorModeCfgByUiMode");

/// What a condition compares.
using Value = std::variant<std::int32_t, std::string>;

/// A condition that a configuration meets; of the filter of several also how many of a rule's are
/// met by now.
struct Match {
  const IMetadata* meta;
  const Value& value;
  std::int32_t count = 1;
  std::int32_t conditionCount = 1;
};

std::int32_t numberOf(const Value& value) {
  const auto* number = std::get_if<std::int32_t>(&value);
  return number != nullptr ? *number : 0;
}

const char* textOf(const Value& value) {
  const auto* text = std::get_if<std::string>(&value);
  return text != nullptr ? text->c_str() : "";
}

template <auto kField>
Value wantedBy(const SensorModeCfg& rule) {
  return rule.*kField;
}

template <const auto& kTag, std::int32_t kMissing>
Value foundIn(const IMetadata* meta) {
  return read(meta, kTag, kMissing);
}

Value appType(const IMetadata* /*meta*/) { return eventValue("APP_TYPE"); }

Value upperFrameRate(const IMetadata* meta) { return readFrameRateRange(meta).upper; }

}  // namespace

/// A field of the rules, what a configuration has for it, and the records of a match: as one of
/// several conditions, and as the one that selects a rule.
struct hesk::RuleCondition {
  Value (*wanted)(const SensorModeCfg& rule);
  Value (*found)(const IMetadata* meta);
  void (*logMatch)(const Match& match);
  void (*logSelection)(const Match& match);
};

namespace {

constexpr RuleCondition kIsHfpsMode{
    wantedBy<&SensorModeCfg::isHfpsMode>, foundIn<tags::MTK_STREAMING_FEATURE_HFPS_MODE, 0>,
    [](const Match& match) {
      HESK_LOGD(kSeveral, "selected by HfpsMode %d, [%d:%d]", numberOf(match.value), match.count,
                match.conditionCount);
    },
    [](const Match& match) {
      HESK_LOGD(kByIsHfpsMode, "selected by hfpsMode %d", numberOf(match.value));
    }};

constexpr RuleCondition kAppType{
    wantedBy<&SensorModeCfg::appType>, appType,
    [](const Match& match) {
      HESK_LOGD(kSeveral, "selected by apptype %s, [%d:%d]", textOf(match.value), match.count,
                match.conditionCount);
    },
    [](const Match& match) {
      HESK_LOGD(kByApptype, "selected by appType %s", textOf(match.value));
    }};

constexpr RuleCondition kFps{
    wantedBy<&SensorModeCfg::fps>, upperFrameRate,
    [](const Match& match) {
      HESK_LOGD(kSeveral, "selected by fps %d,%d, [%d:%d]", readFrameRateRange(match.meta).lower,
                numberOf(match.value), match.count, match.conditionCount);
    },
    [](const Match& match) {
      HESK_LOGD(kByFps, "selected by fps %d,%d", readFrameRateRange(match.meta).lower,
                numberOf(match.value));
    }};

constexpr RuleCondition kEisMode{
    wantedBy<&SensorModeCfg::eisMode>,
    foundIn<tags::HESK_CONTROL_EISENABLE, SensorModeCfg::kMissing>,
    [](const Match& match) {
      HESK_LOGD(kSeveral, "selected by eisMode %d, [%d:%d]", numberOf(match.value), match.count,
                match.conditionCount);
    },
    [](const Match& match) {
      HESK_LOGD(kByEisMode, "selected by eisMode %d", numberOf(match.value));
    }};

constexpr RuleCondition kVideoAlgoType{
    wantedBy<&SensorModeCfg::videoAlgoType>,
    foundIn<tags::HESK_CONTROL_VIDEOALGOTYPE, SensorModeCfg::kMissing>,
    [](const Match& match) {
      HESK_LOGD(kSeveral, "selected by videoAlgoType %d, [%d:%d]", numberOf(match.value),
                match.count, match.conditionCount);
    },
    [](const Match& match) {
      HESK_LOGD(kByVideoAlgoType, "selected by videoAlgoType %d", numberOf(match.value));
    }};

constexpr RuleCondition kUiMode{
    wantedBy<&SensorModeCfg::uiMode>,
    foundIn<tags::COM_HESK_CURRENTUIMODULE, SensorModeCfg::kMissing>,
    [](const Match& match) {
      HESK_LOGD(kSeveral, "selected by uimode %d, [%d:%d]", numberOf(match.value), match.count,
                match.conditionCount);
    },
    [](const Match& match) {
      HESK_LOGD(kByUiMode, "selected by uimode %d", numberOf(match.value));
    }};

/// Whether, counted condition by condition, as many are met as the rule counts. Each condition
/// looks its value up afresh.
bool meetsSeveral(const SensorModeCfg& rule, const IMetadata* meta) {
  constexpr const RuleCondition* kInOrder[] = {&kIsHfpsMode, &kAppType,       &kFps,
                                               &kEisMode,    &kVideoAlgoType, &kUiMode};
  std::int32_t count = 0;
  for (const RuleCondition* condition : kInOrder) {
    const Value found = condition->found(meta);
    if (condition->wanted(rule) != found) continue;
    ++count;
    condition->logMatch({meta, found, count, rule.conditionCount});
    // Behind the first condition the count is not looked at.
    if (condition != &kIsHfpsMode && count == rule.conditionCount) return true;
  }
  HESK_LOGD(kSeveral, "current SensorModeCfg don't meet the requirement");
  return false;
}

}  // namespace

/// Whether there is nothing left for a filter to do.
bool HeskSensorModeControl::isDecided() const { return !selectedSensorModeCfgs.empty(); }

/// Selects the first of the rules of one condition that meets it, if there is one.
void HeskSensorModeControl::selectFirst(const RuleCondition& condition, const IMetadata* meta) {
  const Value found = condition.found(meta);
  const auto rule =
      std::find_if(sensorModeTable.begin(), sensorModeTable.end(),
                   [&](const SensorModeCfg& each) { return condition.wanted(each) == found; });
  if (rule == sensorModeTable.end()) return;
  selectedSensorModeCfgs.push_back(*rule);
  condition.logSelection({meta, found});
}

void HeskSensorModeControl::getSensorModeCfgByMultiCondition(IMetadata* meta) {
  if (isDecided()) return;
  const auto rule =
      std::find_if(multiConditionTable.rbegin(), multiConditionTable.rend(),
                   [&](const SensorModeCfg& each) { return meetsSeveral(each, meta); });
  if (rule == multiConditionTable.rend()) return;
  selectedSensorModeCfgs.push_back(*rule);
  HESK_LOGD(kSeveral, "selected");
}

void HeskSensorModeControl::getSensorModeCfgByEisMode(IMetadata* meta) {
  if (!isDecided()) selectFirst(kEisMode, meta);
}

void HeskSensorModeControl::getSensorModeCfgByIsHfpsMode(IMetadata* meta) {
  if (isDecided()) return;
  if (read(meta, tags::MTK_STREAMING_FEATURE_HFPS_MODE) == 1) selectFirst(kIsHfpsMode, meta);
}

void HeskSensorModeControl::getSensorModeCfgByApptype() {
  if (!isDecided()) selectFirst(kAppType, nullptr);
}

void HeskSensorModeControl::getSensorModeCfgByFps(IMetadata* meta) {
  if (!isDecided()) selectFirst(kFps, meta);
}

void HeskSensorModeControl::getSensorModeCfgByVideoAlgoType(IMetadata* meta) {
  if (!isDecided()) selectFirst(kVideoAlgoType, meta);
}

void HeskSensorModeControl::getSensorModeCfgByUiMode(IMetadata* meta) {
  if (!isDecided()) selectFirst(kUiMode, meta);
}
