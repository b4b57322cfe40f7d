#include <algorithm>
#include <array>
#include <cstdio>
#include <utility>

#include "common/math/AspectFit.h"
#include "common/sensormode/Overrides.h"
#include "tools/camhook/explain/Decision.h"
#include "tools/camhook/input/Joined.h"
#include "tools/camhook/input/NearNames.h"
#include "tools/camhook/show/SensorModeName.h"

namespace camhook {
namespace {

using hesk::Override;

/// "matched: 2 of 2 conditions", "1 of 2 conditions: eis is absent", "not compared".
std::string verdictOf(const SensorModeCfg& rule, const Json& row,
                      const std::vector<std::string>& met, const std::vector<std::string>& missed) {
  const std::string count =
      std::to_string(met.size()) + " of " + std::to_string(rule.conditionCount) + " conditions";
  if (row["taken"].isTrue()) {
    return isOfSeveral(rule) ? "matched: " + count : "matched by " + met.back();
  }
  if (!row["asked"].isTrue()) return "not compared";
  if (!isOfSeveral(rule)) return joined(missed, ", ");
  return count + (missed.empty() ? "" : ": ") + joined(missed, ", ");
}

/// What a condition found and what it requires: "APP_TYPE QQ", "be mtk_ims".
using Words = std::pair<std::string, std::string>;

Words sizeWords(const Override& override, const DecisionInputs& inputs) {
  std::string found = "size " + decisionInputText(kSize, inputs[kSize]);
  if (override.size == Override::Size::is640x480) return {found, "be 640x480"};
  if (override.size == Override::Size::notWiderThan4To3) return {found, "not be wider than 4:3"};
  static_assert(hesk::kMiddleNear4To3 == 1.33 && hesk::kToleranceNear4To3 == 0.004);
  std::array<char, 32> ratio{};
  std::snprintf(ratio.data(), ratio.size(), ", aspect ratio %.6g",
                static_cast<double>(hesk::aspectRatio(streamsOf(inputs).mainOutputSize)));
  if (!inputs[kSize].isNull()) found += ratio.data();
  return {found, "be above 1.326 and below 1.334"};
}

std::string foundText(std::string_view input, const DecisionInputs& inputs) {
  return std::string(input) + " " + decisionInputText(input, inputs[input]);
}

Words appWords(const Override& override, const DecisionInputs& inputs) {
  std::vector<std::string> found;
  std::vector<std::string> must;
  if (!override.appType.empty()) {
    found.push_back(foundText(kAppType, inputs));
    must.emplace_back(override.appType);
  }
  if (!override.appNames.front().empty()) {
    found.push_back(foundText(kAppName, inputs));
    std::vector<std::string> names(override.appNames.begin(), override.appNames.end());
    std::erase(names, "");
    must.push_back(joined(names, "/"));
  }
  return {joined(found, ", "), "be " + joined(must, " or ")};
}

Json::List conditionsOf(const Override& override, const DecisionInputs& inputs) {
  const hesk::OverrideConfiguration configuration = overrideConfigurationOf(inputs);
  Json::List conditions;
  const auto add = [&](bool isCondition, const Words& words, auto isMet) {
    if (!isCondition) return;
    conditions.push_back(
        {{"found", words.first}, {"must", words.second}, {"met", isMet(override, configuration)}});
  };
  const auto addNumber = [&](std::string_view input, std::int32_t number, auto isMet) {
    add(number != Override::kNoCondition,
        {foundText(input, inputs), "be " + std::to_string(number)}, isMet);
  };
  add(!override.appType.empty() || !override.appNames.front().empty(), appWords(override, inputs),
      hesk::meetsApp);
  addNumber(kHdr, override.hdrMode, hesk::meetsHdrMode);
  addNumber(kNight, override.nightMode, hesk::meetsNightMode);
  add(override.sensor != Override::Sensor::any,
      {foundText(kSensor, inputs),
       override.sensor == Override::Sensor::front ? "be 1" : "not be 1"},
      hesk::meetsSensor);
  add(override.needsVideo, {foundText(kVideo, inputs), "be yes"}, hesk::meetsVideo);
  add(override.size != Override::Size::any, sizeWords(override, inputs), hesk::meetsSize);
  return conditions;
}

}  // namespace

Json::List rowVerdicts(const Rules& rules, const Json& filters, std::optional<std::size_t> taken,
                       const DecisionInputs& inputs) {
  Json::List rows;
  for (std::size_t i = 0; i < rules.size(); ++i) {
    Json conditions = Json::Object();
    bool isAsked = false;
    std::vector<std::string> met;
    std::vector<std::string> missed;
    for (const RuleColumn& column : kRuleColumns) {
      const Json condition = column.conditionOf(rules[i]);
      const bool isCompared = isListed(filters, i + 1, "asked", column.field);
      const std::string title(column.title);
      if (!condition.isNull()) {
        conditions[column.field] = condition;
        isAsked |= isCompared;
      }
      if (isListed(filters, i + 1, "met", column.field)) {
        met.push_back(title);
      } else if (!condition.isNull()) {
        missed.push_back(
            title + (isCompared ? " is " + decisionInputText(column.input, inputs[column.input])
                                : " not compared"));
      }
    }
    Json& row = rows.emplace_back(Json{{"row", i + 1},
                                       {"conditions", conditions},
                                       {"needed", rules[i].conditionCount},
                                       {"scenario", rules[i].sensorMode},
                                       {"name", sensorModeName(rules[i].sensorMode)},
                                       {"asked", isAsked},
                                       {"taken", taken == i}});
    row["verdict"] = verdictOf(rules[i], row, met, missed);
  }
  return rows;
}

Json::List inputWarnings(const DecisionInputs& inputs) {
  Json::List warnings;
  for (const auto& [input, problem] : {std::pair(kProduct, "no rules for this product"),
                                       std::pair(kAppType, "no rule names this app"),
                                       std::pair(kAppName, "no override names this app"),
                                       std::pair(kUiModule, "no rule names this module")}) {
    const Json& value = inputs[input];
    const Json::List named = namedValues(input, nullptr);
    const bool isKnown = input == kProduct
                             ? hesk::findSensorModeTable(textOf(value)) != nullptr
                             : value.isNull() || std::ranges::find(named, value) != named.end();
    if (isKnown) continue;
    std::vector<std::string_view> names;
    for (const Json& each : named) names.push_back(textOf(each));
    const std::string near = value.isText() ? nearNames(value.text(), names) : "";
    warnings.push_back({{"input", input}, {"problem", problem + near}});
  }
  return warnings;
}

Json::List overrideVerdicts(const DecisionInputs& inputs) {
  Json::List overrides;
  std::optional<std::size_t> last;
  for (const Override& override : hesk::overrides()) {
    const Json::List conditions = conditionsOf(override, inputs);
    const auto missed = std::ranges::count_if(
        conditions, [](const Json& condition) { return !condition["met"].isTrue(); });
    const char* verdict = missed == 1 && conditions.size() > 1 ? "near miss" : "no";
    if (fires(override, overrideConfigurationOf(inputs))) {
      verdict = "decides";
      if (last) overrides[*last]["verdict"] = "overwritten";
      last = overrides.size();
    }
    overrides.push_back({{"number", overrides.size() + 1},
                         {"when", override.when},
                         {"scenario", static_cast<std::int32_t>(override.scenario)},
                         {"name", sensorModeName(override.scenario)},
                         {"verdict", verdict},
                         {"conditions", conditions}});
  }
  return overrides;
}

}  // namespace camhook
