#include <span>
#include <utility>

#include "tools/camhook/rules/DecideText.h"
#include "tools/camhook/show/SensorScenarioName.h"

namespace camhook {
namespace {

Json comparisonJson(const RuleColumn& column, const SensorModeCfg& rule, const Inputs& inputs) {
  const auto json = [](const RuleColumn::Value& value) {
    return std::visit([](const auto& concrete) { return Json(concrete); }, value);
  };
  return {{"field", column.field},
          {"wanted", json(column.wanted(rule))},
          {"found", json(column.found(inputs))},
          {"equal", column.isMet(rule, inputs)}};
}

/// What a filter compares of the rules of its kind until it takes one; that of several, whose
/// column is null, from the last on.
Json trialsJson(const Decision& decision, const Inputs& inputs, const RuleColumn* filter) {
  Json trials = Json::array();
  const auto rules = decision.rules();
  for (std::size_t i = 0; i < rules.size(); ++i) {
    const std::size_t row = filter == nullptr ? rules.size() - 1 - i : i;
    if (isOfSeveral(rules[row]) != (filter == nullptr)) continue;
    const auto columns = filter == nullptr
                             ? ruleColumns().first(countConditions(rules[row], inputs).compared)
                             : std::span(filter, 1);
    Json comparisons = Json::array();
    for (const RuleColumn& column : columns) {
      comparisons.push_back(comparisonJson(column, rules[row], inputs));
    }
    trials.push_back({{"row", row + 1}, {"comparisons", std::move(comparisons)}});
    const auto& taken = decision.selection;
    if (taken && taken->row == row && taken->column == filter) break;
  }
  return trials;
}

/// The filters in the order in which they are asked.
Json filtersJson(const Decision& decision, const Inputs& inputs) {
  Json filters = Json::array();
  bool isTaken = false;
  const auto add = [&](const char* name, const RuleColumn* column) {
    const bool isItsTurn = !isTaken && (column == nullptr || isAsked(*column, inputs));
    Json why;
    if (!isItsTurn) {
      why = isTaken ? "a rule is selected already" : "MTK_STREAMING_FEATURE_HFPS_MODE is not 1";
    }
    const bool takes = isItsTurn && decision.selection && decision.selection->column == column;
    filters.push_back({{"filter", name},
                       {"passedBecause", std::move(why)},
                       {"trials", isItsTurn ? trialsJson(decision, inputs, column) : Json::array()},
                       {"takenRow", takes ? Json(decision.selection->row + 1) : Json()}});
    isTaken |= takes;
  };
  add(kFilterOfSeveral, nullptr);
  for (const RuleColumn* column : filterOrder()) add(column->filter, column);
  return filters;
}

Json rulesJson(const Decision& decision, const Inputs& inputs) {
  Json rules = Json::array();
  for (const RowVerdict& row : rowVerdicts(decision, inputs)) {
    Json rule = jsonFromRule(decision.rules()[rules.size()]);
    for (const CellVerdict& cell : row.cells) {
      if (cell.isCondition || cell.isMet) rule["met"][cell.column->field] = cell.isMet;
    }
    rule["taken"] = row.isTaken;
    rule["why"] = row.why;
    rules.push_back(std::move(rule));
  }
  return rules;
}

Json verdictsJson(const std::vector<OverrideVerdict>& verdicts) {
  Json list = Json::array();
  for (const OverrideVerdict& verdict : verdicts) {
    Json conditions = Json::array();
    for (const auto& [found, must, isMet] : verdict.conditions) {
      conditions.push_back({{"found", found}, {"must", must}, {"met", isMet}});
    }
    list.push_back({{"when", verdict.override->when},
                    {"scenario", verdict.override->scenario},
                    {"verdict", verdict.word()},
                    {"conditions", std::move(conditions)}});
  }
  return list;
}

}  // namespace

Json jsonFromDecision(const RuleSet& rules, const Inputs& inputs) {
  const Decision decision = decide(rules, inputs);
  const std::vector<OverrideVerdict> verdicts = overrideVerdicts(rules, decision, inputs);
  Json fired = Json::array();
  for (const OverrideVerdict& verdict : verdicts) {
    if (!verdict.fires) continue;
    fired.push_back({{"when", verdict.override->when},
                     {"scenario", verdict.override->scenario},
                     {"holds", verdict.holds}});
  }
  Json warnings = Json::array();
  for (const auto& [input, problem] : inputWarnings(rules, inputs)) {
    warnings.push_back({{"input", inputField(input).name}, {"problem", problem}});
  }
  return {{"scenario", decision.scenario},
          {"name", scenarioName(decision.scenario)},
          {"decidedBy", resultText(rules, decision)},
          {"inputs", jsonFromInputs(inputs)},
          {"warnings", std::move(warnings)},
          {"product", decision.table != nullptr ? Json(decision.table->productName) : Json()},
          {"list", decision.list != nullptr ? Json(decision.list->name) : Json()},
          {"rules", rulesJson(decision, inputs)},
          {"filters", filtersJson(decision, inputs)},
          {"base",
           {{"scenario", decision.base},
            {"row", decision.selection ? Json(decision.selection->row + 1) : Json()}}},
          {"overrides", std::move(fired)},
          {"overrideVerdicts", verdictsJson(verdicts)}};
}

}  // namespace camhook
