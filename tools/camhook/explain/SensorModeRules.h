// The rules and overrides of sensor modes, as the tool prints them.

#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "common/sensormode/SensorModeTables.h"
#include "tools/camhook/explain/DecisionInputs.h"

namespace camhook {

using Rules = std::vector<SensorModeCfg>;

/// One of the lists of a table.
struct RuleList {
  const char* name;  // "sensor0Preview"
  std::int32_t sensor;
  bool video;
  Rules SensorModeTable::*rules;
};

inline constexpr RuleList kRuleLists[] = {
    {"sensor0Preview", 0, false, &SensorModeTable::sensor0Preview},
    {"sensor0Video", 0, true, &SensorModeTable::sensor0Video},
    {"sensor1Preview", 1, false, &SensorModeTable::sensor1Preview},
    {"sensor1Video", 1, true, &SensorModeTable::sensor1Video},
};

/// A field of a rule that may be a condition.
struct RuleColumn {
  std::string_view title;  // "eis"
  std::string_view field;  // "eisMode"
  std::string_view input;
  std::variant<std::int32_t SensorModeCfg::*, std::string SensorModeCfg::*> member;

  /// The text or number that the rule requires; null if the field is not a condition. An empty app
  /// type is no condition, but an empty APP_TYPE matches it.
  [[nodiscard]] Json conditionOf(const SensorModeCfg& rule) const;
};

/// In the order in which a rule of several conditions compares them.
inline constexpr RuleColumn kRuleColumns[] = {
    {"hfps", "isHfpsMode", kHfps, &SensorModeCfg::isHfpsMode},
    {"app type", "appType", kAppType, &SensorModeCfg::appType},
    {"fps", "fps", kFps, &SensorModeCfg::fps},
    {"eis", "eisMode", kEis, &SensorModeCfg::eisMode},
    {"algo", "videoAlgoType", kVideoAlgo, &SensorModeCfg::videoAlgoType},
    {"ui", "uiMode", kUiModule, &SensorModeCfg::uiMode},
};

inline bool isOfSeveral(const SensorModeCfg& rule) { return rule.conditionCount >= 2; }

/// The value of an input that meets a condition. Rules compare the upper bound of the fps range.
Json valueMeeting(std::string_view input, const Json& condition);

/// `only`; all tables if it is null.
std::span<const SensorModeTable> tablesOf(const SensorModeTable* only);

/// The values of an input that the rules of `tablesOf(only)` or the overrides contain, each once;
/// numbers in ascending order. For the product the names of the tables; none for sizes.
Json::List namedValues(std::string_view input, const SensorModeTable* only);

/// A value of an input that no rule and no override contains.
Json anotherValue(std::string_view input);

/// "5 CUSTOM1"
std::string sensorModeText(std::int32_t mode);

}  // namespace camhook
