#include "tools/camhook/rules/Want.h"

#include <algorithm>
#include <utility>

#include "tools/camhook/input/WholeNumber.h"
#include "tools/camhook/rules/Cases.h"
#include "tools/camhook/show/SensorScenarioName.h"

namespace camhook {
namespace {

/// Tries all changes of so many inputs.
class Search {
 public:
  Search(const RuleSet& rules, Axes axes, std::int32_t scenario)
      : mRules(rules), mAxes(std::move(axes)), mScenario(scenario) {}

  std::vector<Inputs> find(const Inputs& inputs) {
    for (std::size_t count = 0; count <= mAxes.size() && mFound.empty(); ++count) {
      change(inputs, 0, count);
    }
    return std::move(mFound);
  }

 private:
  void change(const Inputs& inputs, std::size_t firstAxis, std::size_t count) {
    if (count == 0) {
      if (decide(mRules, inputs).scenario == mScenario) mFound.push_back(inputs);
      return;
    }
    for (std::size_t i = firstAxis; i + count <= mAxes.size(); ++i) {
      const InputField& field = inputField(mAxes[i].input);
      const std::string now = field.text(inputs);
      for (const std::string& value : mAxes[i].values) {
        if (value == now) continue;
        Inputs changed = inputs;
        field.set(changed, value);
        change(changed, i + 1, count - 1);
      }
    }
  }

  const RuleSet& mRules;
  Axes mAxes;
  std::int32_t mScenario;
  std::vector<Inputs> mFound;
};

}  // namespace

std::optional<std::int32_t> scenarioFromText(std::string_view text) {
  const auto number = wholeNumber<std::int32_t>(text);
  for (std::int32_t scenario = 0; scenario <= hesk::NO_DECISION; ++scenario) {
    const std::string_view name = scenarioName(scenario);
    if (!name.empty() && (number ? number == scenario : name == text)) return scenario;
  }
  return {};
}

bool isReachable(const RuleSet& rules, const Inputs& inputs, std::int32_t scenario) {
  bool isFound = false;
  const auto look = [&](const Inputs& each, const Case& /*values*/) {
    isFound = isFound || decide(rules, each).scenario == scenario;
  };
  const Inputs plain = plainInputs(inputs.product, inputs.sensor, inputs.video);
  forEachCase(axesOfRules({decide(rules, inputs).rules()}), plain, look);
  Axes ofOverrides = axesOfOverrides({rules.overrides});
  std::erase_if(ofOverrides,
                [](const Axis& axis) { return axis.input == kSensor || axis.input == kVideo; });
  forEachCase(ofOverrides, plain, look);
  return isFound;
}

std::vector<Inputs> smallestChanges(const RuleSet& rules, const Inputs& inputs,
                                    std::int32_t scenario) {
  if (!isReachable(rules, inputs, scenario)) return {};
  return Search(rules, axesOf(rules, {decide(rules, inputs).rules()}), scenario).find(inputs);
}

std::vector<std::string> changesText(const Inputs& from, const Inputs& to) {
  std::vector<std::string> texts;
  for (const InputField& field : inputFields()) {
    const std::string before = field.text(from);
    const std::string after = field.text(to);
    if (before == after) continue;
    texts.emplace_back(field.name).append(" ").append(before).append(" \u2192 ").append(after);
  }
  return texts;
}

}  // namespace camhook
