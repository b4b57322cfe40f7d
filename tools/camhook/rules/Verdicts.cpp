#include "tools/camhook/rules/Verdicts.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <set>
#include <utility>

#include "common/math/AspectFit.h"
#include "common/sensormode/SensorScenario.h"
#include "tools/camhook/input/NearNames.h"

namespace camhook {
namespace {

using hesk::Override;

std::string rowName(std::size_t row) { return "row " + std::to_string(row + 1); }

/// The conditions that a rule asks for and the inputs do not meet: "ui is absent".
std::string failedText(const RowVerdict& verdict, const Inputs& inputs) {
  std::string text;
  for (const CellVerdict& cell : verdict.cells) {
    if (!cell.isCondition || cell.isMet) continue;
    if (!text.empty()) text += ", ";
    text.append(cell.column->title).append(" is ").append(foundText(*cell.column, inputs));
  }
  return text;
}

/// Whether the row would be taken if none came before it.
bool wouldBeTaken(const SensorModeCfg& rule, const Inputs& inputs) {
  return selectRow(std::span(&rule, 1), inputs).has_value();
}

std::string whyNot(const RowVerdict& verdict, const SensorModeCfg& rule, const Inputs& inputs,
                   const std::optional<Selection>& selection) {
  if (selection && wouldBeTaken(rule, inputs)) {
    return "too late: " + rowName(selection->row) + " was taken";
  }
  std::string failed = failedText(verdict, inputs);
  if (isOfSeveral(rule)) {
    const Count count = countConditions(rule, inputs);
    return "meets " + std::to_string(count.met) + " of " + std::to_string(rule.conditionCount) +
           (failed.empty() ? "" : ": " + failed);
  }
  return failed.empty() ? "not asked: hfps is not 1" : failed;
}

/// As few digits as tell it from the bound.
std::string ratioText(double ratio, double bound) {
  std::array<char, 32> text{};
  for (int digits = 4; digits <= 9; ++digits) {
    std::snprintf(text.data(), text.size(), "%.*g", digits, ratio);
    if (std::strtod(text.data(), nullptr) != bound) break;
  }
  return text.data();
}

ConditionVerdict sizeVerdict(const Override& override, NSCam::MSize size, bool isMet) {
  if (override.size == Override::Size::is640x480) {
    return {"size " + std::to_string(size.w) + "x" + std::to_string(size.h), "be 640x480", isMet};
  }
  if (override.size == Override::Size::notWiderThan4To3) {
    return {"height / 3 is " + std::to_string(size.h / 3),
            "be at least width / 4, " + std::to_string(size.w / 4), isMet};
  }
  const auto ratio = static_cast<double>(hesk::aspectRatio(size));
  if (!std::isfinite(ratio)) return {"no aspect ratio", "be near 1.33", isMet};
  const bool isAbove = ratio >= hesk::kMiddleNear4To3;
  const double bound =
      hesk::kMiddleNear4To3 + (isAbove ? hesk::kToleranceNear4To3 : -hesk::kToleranceNear4To3);
  return {"aspect ratio " + ratioText(ratio, bound),
          (isAbove ? "be below " : "be above ") + ratioText(bound, 0), isMet};
}

std::string namesText(const Override& override) {
  std::string text;
  for (const std::string_view name : override.appNames) {
    if (!name.empty()) text += (text.empty() ? "" : "/") + std::string(name);
  }
  return text;
}

std::string inputText(InputIndex input, const Inputs& inputs) {
  return std::string(inputField(input).name) + " " + inputField(input).text(inputs);
}

ConditionVerdict appVerdict(const Override& override, const Inputs& inputs, bool isMet) {
  const std::string names = namesText(override);
  const std::string type(override.appType);
  if (names.empty()) return {inputText(kAppType, inputs), "be " + type, isMet};
  if (type.empty()) return {inputText(kAppName, inputs), "be " + names, isMet};
  return {inputText(kAppType, inputs) + ", " + inputText(kAppName, inputs),
          "be " + type + " or " + names, isMet};
}

OverrideVerdict overrideVerdict(const Override& override, const Inputs& inputs) {
  const hesk::OverrideConfiguration configuration = inputs.forOverrides();
  OverrideVerdict verdict{.override = &override, .conditions = {}};
  const auto add = [&](ConditionVerdict condition) {
    verdict.conditions.push_back(std::move(condition));
    return verdict.conditions.back().isMet;
  };
  bool isMeant = true;
  if (!override.appType.empty() || !namesText(override).empty()) {
    isMeant &= add(appVerdict(override, inputs, meetsApp(override, configuration)));
  }
  if (override.hdrMode != Override::kNoCondition) {
    isMeant &= add({inputText(kHdr, inputs), "be " + std::to_string(override.hdrMode),
                    meetsHdrMode(override, configuration)});
  }
  if (override.nightMode != Override::kNoCondition) {
    isMeant &= add({inputText(kNight, inputs), "be " + std::to_string(override.nightMode),
                    meetsNightMode(override, configuration)});
  }
  int missed = 0;
  if (override.sensor != Override::Sensor::any) {
    const bool isFront = override.sensor == Override::Sensor::front;
    missed += add({inputText(kSensor, inputs), isFront ? "be 1" : "not be 1",
                   meetsSensor(override, configuration)})
                  ? 0
                  : 1;
  }
  if (override.needsVideo) {
    missed += add({inputText(kVideo, inputs), "be yes", inputs.video}) ? 0 : 1;
  }
  if (override.size != Override::Size::any) {
    missed += add(sizeVerdict(override, inputs.size, meetsSize(override, configuration))) ? 0 : 1;
  }
  verdict.fires = fires(override, configuration);
  verdict.isNearMiss = isMeant && missed == 1;
  return verdict;
}

std::string nearText(std::string_view text, const std::set<std::string_view>& names) {
  const std::vector<std::string_view> list(names.begin(), names.end());
  return nearNames(text, list);
}

}  // namespace

const char* OverrideVerdict::word() const {
  if (holds) return "holds";
  if (fires) return "overwritten";
  return isNearMiss ? "near miss" : "no";
}

std::string wantedText(const RuleColumn& column, const SensorModeCfg& rule) {
  const RuleColumn::Value wanted = column.wanted(rule);
  if (const auto* number = std::get_if<std::int32_t>(&wanted)) return std::to_string(*number);
  const std::string_view text = std::get<std::string_view>(wanted);
  return text.empty() ? "none" : std::string(text);
}

std::string foundText(const RuleColumn& column, const Inputs& inputs) {
  return inputField(column.input).text(inputs);
}

std::vector<RowVerdict> rowVerdicts(const Decision& decision, const Inputs& inputs) {
  std::vector<RowVerdict> verdicts;
  for (const SensorModeCfg& rule : decision.rules()) {
    const std::size_t row = verdicts.size();
    RowVerdict& verdict = verdicts.emplace_back();
    for (const RuleColumn& column : ruleColumns()) {
      verdict.cells.push_back({&column, wantedText(column, rule), column.isCondition(rule),
                               column.isMet(rule, inputs)});
    }
    verdict.isTaken = decision.selection && decision.selection->row == row;
    if (!verdict.isTaken) {
      verdict.why = whyNot(verdict, rule, inputs, decision.selection);
    } else if (const RuleColumn* column = decision.selection->column) {
      verdict.why = "taken by " + std::string(column->title);
    } else {
      const std::string count = std::to_string(rule.conditionCount);
      verdict.why.append("taken: meets ").append(count).append(" of ").append(count);
    }
  }
  return verdicts;
}

std::vector<OverrideVerdict> overrideVerdicts(const RuleSet& rules, const Decision& decision,
                                              const Inputs& inputs) {
  std::vector<OverrideVerdict> verdicts;
  for (const Override& override : rules.overrides) {
    const bool holds = decision.override == verdicts.size();
    verdicts.push_back(overrideVerdict(override, inputs));
    verdicts.back().holds = holds;
  }
  return verdicts;
}

std::vector<InputWarning> inputWarnings(const RuleSet& rules, const Inputs& inputs) {
  std::set<std::string_view> products;
  std::set<std::string_view> types;
  std::set<std::string_view> names;
  std::set<std::int32_t> modules;
  for (const SensorModeTable& table : rules.tables) {
    products.insert(table.productName);
    for (const RuleList& list : kRuleLists) {
      for (const SensorModeCfg& rule : table.*list.rules) {
        types.insert(rule.appType);
        modules.insert(rule.uiMode);
      }
    }
  }
  for (const Override& override : rules.overrides) {
    types.insert(override.appType);
    names.insert(override.appNames.begin(), override.appNames.end());
  }
  types.insert("");
  names.insert("");
  std::vector<InputWarning> warnings;
  if (rules.tableFor(inputs.product) == nullptr) {
    warnings.push_back(
        {kProduct, "no rule knows this product" + nearText(inputs.product, products)});
  }
  if (!types.contains(inputs.appType)) {
    types.erase("");
    warnings.push_back({kAppType, "no rule knows this app" + nearText(inputs.appType, types)});
  }
  if (!names.contains(inputs.appName)) {
    names.erase("");
    warnings.push_back({kAppName, "no override knows this app" + nearText(inputs.appName, names)});
  }
  if (inputs.uiModule && !modules.contains(*inputs.uiModule)) {
    warnings.push_back({kUiModule, "no rule knows this module"});
  }
  return warnings;
}

std::string baseText(const Decision& decision) {
  std::string text = scenarioText(decision.base);
  if (decision.selection) return text + ", of " + rowName(decision.selection->row);
  text += ", as no row is taken";
  if (decision.base != hesk::NO_DECISION) text += " and there is a video stream";
  return text;
}

std::string resultText(const RuleSet& rules, const Decision& decision) {
  std::string text = scenarioText(decision.scenario);
  if (decision.override) {
    return text + ", decided by override " + std::to_string(*decision.override + 1) + ": " +
           rules.overrides[*decision.override].when;
  }
  if (decision.selection) {
    return text + ", decided by " + rowName(decision.selection->row) + " of " +
           decision.table->productName + " " + decision.list->name;
  }
  return text + (decision.scenario == hesk::NO_DECISION ? ": left to the platform"
                                                        : ": what every video stream gets");
}

}  // namespace camhook
