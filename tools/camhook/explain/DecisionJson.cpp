#include <utility>

#include "tools/camhook/explain/DecisionText.h"
#include "tools/camhook/show/SensorModeName.h"

namespace camhook {
namespace {

Json rowNumber(const std::optional<std::size_t>& row) { return row ? Json(*row + 1) : Json(); }

Json columnsJson() {
  Json::List columns;
  for (const RuleColumn& column : ruleColumns()) {
    columns.push_back({{"field", column.field},
                       {"title", column.title},
                       {"input", inputFields()[column.input].name}});
  }
  return columns;
}

Json rowsJson(const Decision& decision) {
  Json::List rows;
  for (std::size_t i = 0; i < decision.rules().size(); ++i) {
    const SensorModeCfg& rule = decision.rules()[i];
    Json conditions = Json::Object();
    for (const RuleColumn& column : ruleColumns()) {
      const std::string condition = column.conditionOf(rule);
      if (condition.empty()) continue;
      conditions[column.field] = column.input == kAppType ? Json(condition) : parseJson(condition);
    }
    rows.push_back({{"row", i + 1},
                    {"conditions", std::move(conditions)},
                    {"needed", rule.conditionCount},
                    {"scenario", rule.sensorMode},
                    {"name", sensorModeName(rule.sensorMode)},
                    {"asked", decision.isAsked(i)},
                    {"taken", decision.row == i},
                    {"verdict", rowVerdict(decision, i)}});
  }
  return rows;
}

Json filtersJson(const Decision& decision) {
  Json::List filters;
  for (const FilterRun& run : decision.filters) {
    Json::List rows;
    for (const auto& [row, column, isMet] : run.comparisons) {
      if (rows.empty() || rows.back()["row"] != row + 1) {
        rows.push_back({{"row", row + 1},
                        {"asked", Json::List()},
                        {"met", Json::List()},
                        {"needed", decision.rules()[row].conditionCount}});
      }
      rows.back()["asked"].push_back(column->field);
      if (isMet) rows.back()["met"].push_back(column->field);
    }
    filters.push_back({{"filter", run.filter->name},
                       {"title", run.filter->title()},
                       {"asked", run.isAsked},
                       {"found", rowNumber(run.found)},
                       {"rows", std::move(rows)}});
  }
  return filters;
}

Json overridesJson(const Decision& decision) {
  Json::List overrides;
  for (const OverrideVerdict& verdict : decision.overrides) {
    Json::List conditions;
    for (const auto& [found, must, isMet] : verdict.conditions) {
      conditions.push_back({{"found", found}, {"must", must}, {"met", isMet}});
    }
    overrides.push_back({{"number", overrides.size() + 1},
                         {"when", verdict.override->when},
                         {"scenario", static_cast<int>(verdict.override->scenario)},
                         {"name", sensorModeName(verdict.override->scenario)},
                         {"verdict", verdict.word()},
                         {"conditions", std::move(conditions)}});
  }
  return overrides;
}

}  // namespace

Json jsonFromDecision(const Decision& decision) {
  const std::optional<std::size_t>& decider = decision.override ? decision.override : decision.row;
  Json inputs;
  for (std::size_t i = 0; i < kInputCount; ++i) {
    inputs[std::string(inputFields()[i].name)] = decision.inputs.json(static_cast<InputIndex>(i));
  }
  Json::List warnings;
  for (const auto& [input, problem] : inputWarnings(decision.inputs)) {
    warnings.push_back({{"input", inputFields()[input].name}, {"problem", problem}});
  }
  return {{"scenario", decision.mode},
          {"name", sensorModeName(decision.mode)},
          {"decidedBy",
           {{"kind", decision.override ? "override"
                     : decision.row    ? "row"
                                       : "default"},
            {"number", rowNumber(decider)},
            {"text", decidedByText(decision)}}},
          {"inputs", std::move(inputs)},
          {"warnings", std::move(warnings)},
          {"product", decision.table != nullptr ? Json(decision.table->productName) : Json()},
          {"list", decision.list != nullptr ? Json(decision.list->name) : Json()},
          {"columns", columnsJson()},
          {"rows", rowsJson(decision)},
          {"filters", filtersJson(decision)},
          {"base",
           {{"scenario", decision.base},
            {"name", sensorModeName(decision.base)},
            {"row", rowNumber(decision.row)}}},
          {"overrides", overridesJson(decision)}};
}

}  // namespace camhook
