#include <algorithm>
#include <utility>

#include "tools/camhook/explain/Decision.h"
#include "tools/camhook/input/Joined.h"
#include "tools/camhook/input/NearNames.h"
#include "tools/camhook/show/SensorModeName.h"

namespace camhook {
namespace {

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

}  // namespace

Json::List rowVerdicts(const Rules& rules, const Json& filters, std::optional<std::size_t> taken,
                       const Inputs& inputs) {
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
        missed.push_back(title + (isCompared
                                      ? " is " + inputText(column.input, inputs[column.input])
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

Json::List inputWarnings(const Inputs& inputs) {
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

}  // namespace camhook
