#include "tools/camhook/explain/Decision.h"

#include <algorithm>
#include <utility>

namespace camhook {
namespace {

using ListOfTable = std::vector<SensorModeCfg> SensorModeTable::*;

constexpr std::pair<ListOfTable, const char*> kLists[] = {
    {&SensorModeTable::sensor0Preview, "sensor0Preview"},
    {&SensorModeTable::sensor0Video, "sensor0Video"},
    {&SensorModeTable::sensor1Preview, "sensor1Preview"},
    {&SensorModeTable::sensor1Video, "sensor1Video"},
};

Json jsonFrom(const hesk::DecisionObserver::Value& value) {
  return std::visit([](const auto& concrete) { return Json(concrete); }, value);
}

}  // namespace

std::size_t Decision::RuleTrial::metCount() const {
  return static_cast<std::size_t>(std::ranges::count(comparisons, true, &Comparison::isEqual));
}

std::optional<std::size_t> Decision::takenRow() const {
  for (const Filter& filter : filters) {
    if (filter.takenRow) return filter.takenRow;
  }
  return {};
}

void DecisionRecorder::onRules(const SensorModeTable* table,
                               const std::vector<SensorModeCfg>* list) {
  decision = {};
  if (table == nullptr) return;
  decision.product = table->productName;
  if (list == nullptr) return;
  decision.rules = *list;
  for (const auto& [member, name] : kLists) {
    if (&(table->*member) == list) decision.list = name;
  }
}

void DecisionRecorder::onFilter(const char* filter) {
  decision.filters.push_back({.name = filter, .passedBecause = {}, .trials = {}, .takenRow = {}});
}

void DecisionRecorder::onPass(const char* why) { decision.filters.back().passedBecause = why; }

void DecisionRecorder::onComparison(const Comparison& comparison) {
  std::vector<Decision::RuleTrial>& trials = decision.filters.back().trials;
  const std::size_t row = rowOf(comparison.rule);
  if (trials.empty() || trials.back().row != row) trials.push_back({row, {}});
  trials.back().comparisons.push_back({.field = comparison.field,
                                       .wanted = jsonFrom(comparison.wanted),
                                       .found = jsonFrom(comparison.found),
                                       .isEqual = comparison.isEqual});
}

void DecisionRecorder::onSelection(const SensorModeCfg& rule) {
  decision.filters.back().takenRow = rowOf(rule);
}

void DecisionRecorder::onBase(std::int32_t scenario) {
  decision.base = scenario;
  decision.scenario = scenario;
}

void DecisionRecorder::onOverride(const char* when, std::int32_t scenario) {
  decision.overrides.push_back({when, scenario});
  decision.scenario = scenario;
}

/// The rules that are loaded are copies of the list's rows, of which no two are alike.
std::size_t DecisionRecorder::rowOf(const SensorModeCfg& rule) const {
  const auto found = std::ranges::find(decision.rules, rule);
  return static_cast<std::size_t>(found - decision.rules.begin()) + 1;
}

}  // namespace camhook
