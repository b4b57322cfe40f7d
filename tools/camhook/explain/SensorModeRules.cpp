#include "tools/camhook/explain/SensorModeRules.h"

#include <algorithm>

#include "common/sensormode/Overrides.h"
#include "tools/camhook/show/SensorModeName.h"

namespace camhook {

Json RuleColumn::conditionOf(const SensorModeCfg& rule) const {
  if (const auto* text = std::get_if<std::string SensorModeCfg::*>(&member)) {
    return (rule.**text).empty() ? Json() : Json(rule.**text);
  }
  const std::int32_t number = rule.*std::get<std::int32_t SensorModeCfg::*>(member);
  return number != SensorModeCfg::kNoCondition ? Json(number) : Json();
}

Json valueMeeting(std::string_view input, const Json& condition) {
  return input == kFps ? Json(Json::List{condition, condition}) : condition;
}

std::span<const SensorModeTable> tablesOf(const SensorModeTable* only) {
  if (only != nullptr) return {only, 1};
  return hesk::sensorModeTables();
}

/// The conditions of the rules on an input.
static Json::List conditionsOn(std::string_view input, const SensorModeTable& table) {
  Json::List conditions;
  const auto* const column = std::ranges::find(kRuleColumns, input, &RuleColumn::input);
  if (column == std::end(kRuleColumns)) return conditions;
  for (const RuleList& list : kRuleLists) {
    for (const SensorModeCfg& rule : table.*list.rules) {
      conditions.push_back(column->conditionOf(rule));
    }
  }
  return conditions;
}

Json::List namedValues(std::string_view input, const SensorModeTable* only) {
  Json::List named;
  const auto add = [&](const Json& value) {
    if (value.isNull() || value == "" || value == hesk::Override::kNoCondition) return;
    const Json meeting = valueMeeting(input, value);
    if (std::ranges::find(named, meeting) == named.end()) named.push_back(meeting);
  };
  for (const SensorModeTable& table : tablesOf(only)) {
    if (input == kProduct) add(table.productName);
    std::ranges::for_each(conditionsOn(input, table), add);
  }
  for (const hesk::Override& override : hesk::overrides()) {
    if (input == kAppType) add(override.appType);
    if (input == kAppName) std::ranges::for_each(override.appNames, add);
    if (input == kHdr) add(override.hdrMode);
    if (input == kNight) add(override.nightMode);
  }
  if (!named.empty() && !named.front().isText()) {
    std::ranges::sort(named, {}, [](const Json& value) {
      return (value.isList() ? value[1] : value).integer<std::int32_t>();
    });
  }
  return named;
}

Json anotherValue(std::string_view input) {
  const bool isText = input == kAppType || input == kAppName;
  return isText ? Json("another") : valueMeeting(input, 1000);
}

std::string sensorModeText(std::int32_t mode) {
  return std::to_string(mode).append(" ").append(sensorModeName(mode));
}

}  // namespace camhook
