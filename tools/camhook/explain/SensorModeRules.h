// The rules and overrides of sensor modes, as the tool prints them.

#pragma once

#include <cstddef>
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
  const char* title;  // "eis"
  const char* field;  // "eisMode"
  InputIndex input;
  std::variant<std::int32_t SensorModeCfg::*, std::string SensorModeCfg::*> member;

  /// The value that the rule asks for; empty if the field is not a condition. An empty app type is
  /// no condition, but an empty APP_TYPE matches it.
  [[nodiscard]] std::string conditionOf(const SensorModeCfg& rule) const;
};

/// In the order in which a rule of several conditions compares them.
std::span<const RuleColumn> ruleColumns();

inline bool isOfSeveral(const SensorModeCfg& rule) { return rule.conditionCount >= 2; }

/// The value of an input that meets a condition. Rules compare the upper bound of the fps range.
std::string valueMeeting(InputIndex input, const std::string& condition);

/// The names of all products that have a table.
std::vector<std::string_view> tableNames();

/// The values of an input that these lists or the overrides name, each once; numbers in ascending
/// order. Sizes: one of each kind that overrides distinguish.
std::vector<std::string> namedValues(InputIndex input, std::span<const Rules* const> lists);

/// All lists of a table, of all tables if it is null.
std::vector<const Rules*> listsOf(const SensorModeTable* table);

/// A value of an input that no rule and no override names.
std::string anotherValue(InputIndex input, std::span<const std::string> named);

/// "5 CUSTOM1"
std::string sensorModeText(std::int32_t mode);

}  // namespace camhook
