#include <algorithm>

#include "common/sensormode/SensorScenario.h"
#include "tools/camhook/explain/DecisionText.h"
#include "tools/camhook/input/Joined.h"
#include "tools/camhook/input/NearNames.h"

namespace camhook {
namespace {

std::size_t metCount(const Decision& decision, std::size_t row) {
  return static_cast<std::size_t>(std::ranges::count_if(ruleColumns(), [&](const auto& column) {
    const Comparison* const cell = decision.findCell(row, column);
    return cell != nullptr && cell->isMet;
  }));
}

}  // namespace

std::string decidedByText(const Decision& decision) {
  if (decision.override) {
    return "override " + std::to_string(*decision.override + 1) + ": " +
           decision.overrides[*decision.override].override->when;
  }
  if (decision.row) {
    return "row " + std::to_string(*decision.row + 1) + " of " + decision.table->productName + " " +
           decision.list->name;
  }
  return decision.mode == hesk::NO_DECISION ? "no row matches; the platform chooses"
                                            : "no row matches; the default with a video stream";
}

std::string rowVerdict(const Decision& decision, std::size_t row) {
  const SensorModeCfg& rule = decision.rules()[row];
  const std::string count = std::to_string(metCount(decision, row)) + " of " +
                            std::to_string(rule.conditionCount) + " conditions";
  for (const FilterRun& run : decision.filters) {
    if (run.found != row) continue;
    return run.filter->column == nullptr ? "taken: " + count
                                         : std::string("taken by ") + run.filter->title();
  }
  if (!decision.isAsked(row)) return "never asked";
  std::vector<std::string> missed;
  for (const RuleColumn& column : ruleColumns()) {
    if (column.conditionOf(rule).empty()) continue;
    const Comparison* const cell = decision.findCell(row, column);
    if (cell != nullptr && cell->isMet) continue;
    missed.push_back(
        std::string(column.title) +
        (cell == nullptr ? " never asked" : " is " + decision.inputs.shown(column.input)));
  }
  std::string list = joined(missed, ", ");
  if (!isOfSeveral(rule)) return list;
  return count + (list.empty() ? "" : ": " + list);
}

std::vector<InputWarning> inputWarnings(const Inputs& inputs) {
  std::vector<InputWarning> warnings;
  const auto warn = [&](InputIndex input, const char* problem,
                        std::span<const std::string_view> names) {
    warnings.push_back({input, problem + nearNames(inputs[input], names)});
  };
  if (hesk::findSensorModeTable(inputs[kProduct]) == nullptr) {
    warn(kProduct, "no rules for this product", tableNames());
  }
  const std::vector<const Rules*> lists = listsOf(nullptr);
  for (const auto& [input, problem] : {std::pair(kAppType, "no rule names this app"),
                                       std::pair(kAppName, "no override names this app"),
                                       std::pair(kUiModule, "no rule names this module")}) {
    const std::vector<std::string> named = namedValues(input, lists);
    if (inputs[input].empty() || std::ranges::find(named, inputs[input]) != named.end()) continue;
    // The number of a module is like others by accident only.
    const std::vector<std::string_view> names(named.begin(), named.end());
    warn(input, problem, input == kUiModule ? std::span<const std::string_view>() : names);
  }
  return warnings;
}

}  // namespace camhook
