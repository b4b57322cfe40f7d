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

std::vector<const Rules*> listsOf(const SensorModeTable* only) {
  std::vector<const Rules*> lists;
  for (const SensorModeTable& table : tablesOf(only)) {
    for (const RuleList& list : kRuleLists) lists.push_back(&(table.*list.rules));
  }
  return lists;
}

/// The conditions of all rules on an input.
static Json::List conditionsOn(std::string_view input, std::span<const Rules* const> lists) {
  Json::List conditions;
  const auto* const column = std::ranges::find(kRuleColumns, input, &RuleColumn::input);
  if (column == std::end(kRuleColumns)) return conditions;
  for (const Rules* rules : lists) {
    for (const SensorModeCfg& rule : *rules) conditions.push_back(column->conditionOf(rule));
  }
  return conditions;
}

Json::List namedValues(std::string_view input, std::span<const Rules* const> lists) {
  Json::List named;
  const auto add = [&](const Json& value) {
    if (value.isNull() || value == "" || value == hesk::Override::kNoCondition) return;
    const Json meeting = valueMeeting(input, value);
    if (std::ranges::find(named, meeting) == named.end()) named.push_back(meeting);
  };
  std::ranges::for_each(conditionsOn(input, lists), add);
  for (const SensorModeTable& table : hesk::sensorModeTables()) {
    if (input == kProduct) add(table.productName);
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

Json anotherValue(std::string_view input, const Json::List& named) {
  if (input == kAppType || input == kAppName) return "another";
  // The hfps filter searches for 1 regardless of the rules, so 1 is not used.
  std::int32_t number = 2;
  while (std::ranges::find(named, valueMeeting(input, number)) != named.end()) ++number;
  return valueMeeting(input, number);
}

std::string sensorModeText(std::int32_t mode) {
  return std::to_string(mode).append(" ").append(sensorModeName(mode));
}

}  // namespace camhook
