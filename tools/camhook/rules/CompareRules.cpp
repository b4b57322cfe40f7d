#include <algorithm>
#include <map>
#include <ostream>
#include <set>
#include <utility>

#include "common/sensormode/SensorScenario.h"
#include "tools/camhook/input/InputError.h"
#include "tools/camhook/input/Joined.h"
#include "tools/camhook/input/PlainText.h"
#include "tools/camhook/rules/Boxes.h"
#include "tools/camhook/rules/RulesCommand.h"

namespace camhook {
namespace {

/// What is decided differently, in words, and the products of which that is true.
struct Difference {
  std::string text;
  std::vector<std::string> products;
};

/// Scenario before and after.
using Turn = std::pair<std::int32_t, std::int32_t>;

/// "sensor 0, video, eis 1: 5 CUSTOM1, was 6 CUSTOM2, unless hfps 1", a line for each box of the
/// cases that now come to the same scenario and did not before.
template <typename Decide>
std::vector<std::string> differences(const Axes& axes, const Inputs& plain,
                                     const std::string& where, Decide decide) {
  if (caseCount(axes) > kMostCases) throw InputError("camhook: the rules name too many values");
  std::vector<Turn> turns;
  std::map<std::int32_t, std::vector<bool>> changed;
  forEachCase(axes, plain, [&](const Inputs& inputs, const Case& /*values*/) {
    turns.push_back(decide(inputs));
    const auto [was, is] = turns.back();
    if (was == is) return;
    std::vector<bool>& holds = changed[is];
    holds.resize(caseCount(axes));
    holds[turns.size() - 1] = true;
  });
  std::vector<std::string> lines;
  for (const auto& [is, holds] : changed) {
    for (const Box& box : boxesOf(axes, holds)) {
      std::set<std::int32_t> was;
      forEachIndex(axes, box, [&](std::size_t index) {
        was.insert(turns[index].first);
        return true;
      });
      std::string exceptions;
      const std::string conditions = boxText(axes, box, exceptions);
      std::string& line = lines.emplace_back(where);
      if (!conditions.empty()) line += ", " + conditions;
      line += ": " + scenarioText(is);
      for (const std::int32_t each : was) {
        line += (each == *was.begin() ? ", was " : " or ") + scenarioText(each);
      }
      if (!exceptions.empty()) line += ", unless " + exceptions;
    }
  }
  return lines;
}

const Rules& rowsOf(const SensorModeTable* table, const RuleList& list) {
  static const Rules none;
  return table != nullptr ? table->*list.rules : none;
}

std::vector<std::string> differencesOfProduct(const RuleSet& old, const RuleSet& fresh,
                                              const std::string& product) {
  std::vector<std::string> lines;
  for (const RuleList& list : kRuleLists) {
    const Rules& before = rowsOf(old.tableFor(product), list);
    const Rules& after = rowsOf(fresh.tableFor(product), list);
    if (before == after) continue;
    const auto decide = [&](const Inputs& inputs) {
      return Turn(baseScenario(before, selectRow(before, inputs), inputs.video),
                  baseScenario(after, selectRow(after, inputs), inputs.video));
    };
    const std::string where =
        ", sensor " + std::to_string(list.sensor) + (list.video ? ", video" : ", no video");
    std::ranges::move(differences(axesOfRules({before, after}),
                                  plainInputs(product, list.sensor, list.video), where, decide),
                      std::back_inserter(lines));
  }
  return lines;
}

std::vector<std::string> differencesOfOverrides(const RuleSet& old, const RuleSet& fresh) {
  const auto scenarioOf = [](const RuleSet& rules, const Inputs& inputs) {
    const auto override = holdingOverride(rules.overrides, inputs);
    return override ? static_cast<std::int32_t>(rules.overrides[*override].scenario)
                    : static_cast<std::int32_t>(hesk::NO_DECISION);
  };
  const auto decide = [&](const Inputs& inputs) {
    return Turn(scenarioOf(old, inputs), scenarioOf(fresh, inputs));
  };
  return differences(axesOfOverrides({old.overrides, fresh.overrides}), plainInputs("", 0, false),
                     "", decide);
}

}  // namespace

int compareRules(std::ostream& out, const RuleSet& old, const RuleSet& fresh, Style style) {
  std::vector<std::string> products;
  for (const RuleSet* rules : {&old, &fresh}) {
    for (const SensorModeTable& table : rules->tables) {
      if (std::ranges::find(products, table.productName) == products.end()) {
        products.emplace_back(table.productName);
      }
    }
  }
  std::vector<Difference> found;
  for (const std::string& product : products) {
    for (std::string& line : differencesOfProduct(old, fresh, product)) {
      const auto same = std::ranges::find(found, line, &Difference::text);
      if (same != found.end()) {
        same->products.push_back(product);
      } else {
        found.push_back({std::move(line), {product}});
      }
    }
  }
  for (std::string& line : differencesOfOverrides(old, fresh)) {
    found.push_back({std::move(line), {"overrides"}});
  }
  for (const auto& [text, names] : found) {
    const std::string line = style.heading(printable(joined(names, ", "))) + printable(text);
    out << wrapped(line, style.width(), 2) << '\n';
  }
  return found.empty() ? 0 : 1;
}

}  // namespace camhook
