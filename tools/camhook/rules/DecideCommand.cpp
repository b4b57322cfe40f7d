#include "tools/camhook/rules/DecideCommand.h"

#include <ostream>
#include <stdexcept>
#include <utility>
#include <variant>

#include "tools/camhook/input/InputError.h"
#include "tools/camhook/input/Joined.h"
#include "tools/camhook/input/PlainText.h"
#include "tools/camhook/rules/DecideText.h"
#include "tools/camhook/rules/Want.h"
#include "tools/camhook/run/Replay.h"

namespace camhook {
namespace {

/// Has the library say so, too.
void verify(const RuleSet& rules, const Inputs& inputs) {
  const std::int32_t scenario = decide(rules, inputs).scenario;
  const std::int32_t decided = Library().decide(inputs);
  if (decided == scenario) return;
  throw std::logic_error("the library decides " + scenarioText(decided) + ", not " +
                         scenarioText(scenario));
}

/// "KX0105, sensor 0, video"
std::string whereText(const Inputs& inputs) {
  return inputs.product + ", sensor " + std::to_string(inputs.sensor) +
         (inputs.video ? ", video" : ", no video");
}

void writeWanted(std::ostream& out, const RuleSet& rules, const Inputs& inputs,
                 const std::vector<Inputs>& found, std::int32_t wanted, Style style) {
  out << '\n' << style.heading("wanted") << "  " << scenarioText(wanted) << '\n';
  if (found.empty()) {
    out << style.alarming("unreachable") << " for " << printable(whereText(inputs)) << '\n';
  }
  for (const Inputs& changed : found) {
    const std::string changes = joined(changesText(inputs, changed), ", and ");
    out << wrapped("  " + (changes.empty() ? "it is that already" : printable(changes)),
                   style.width(), 4)
        << '\n';
    const std::string result = resultText(rules, decide(rules, changed));
    out << wrapped("    " + style.faint(result), style.width(), 6) << '\n';
  }
}

Json wantedJson(const RuleSet& rules, const Inputs& inputs, const std::vector<Inputs>& found,
                std::int32_t wanted) {
  Json list = Json::array();
  for (const Inputs& changed : found) {
    Json changes = Json::object();
    for (const InputField& field : inputFields()) {
      if (field.text(inputs) == field.text(changed)) continue;
      changes[std::string(field.name)] = field.json(changed);
    }
    list.push_back({{"changes", std::move(changes)},
                    {"decidedBy", resultText(rules, decide(rules, changed))}});
  }
  return {{"scenario", wanted}, {"reachable", !found.empty()}, {"smallest", std::move(list)}};
}

}  // namespace

Inputs inputsOfCall(Scenario scenario, std::size_t index) {
  const auto* call = std::get_if<DecideSensorScenario>(&scenario.calls[index].call);
  if (call == nullptr) {
    throw InputError("call " + std::to_string(index + 1) + " is no " +
                     std::string(DecideSensorScenario::kName));
  }
  Replay replay(std::move(scenario.platform));
  for (std::size_t i = 0; i < index; ++i) {
    replay.run(scenario.calls[i], Replay::Detail::containers);
  }
  return inputsOf(*call);
}

int decide(std::ostream& out, const DecideOptions& options, Style style) {
  const RuleSet rules = rulesOfLibrary();
  const Inputs& inputs = options.inputs;
  Inputs changed = inputs;
  for (const std::string& change : options.changes) {
    try {
      changed = changedBy(std::move(changed), change);
    } catch (const InputError& error) {
      throw InputError("camhook: --what-if: " + std::string(error.what()));
    }
  }
  const auto wanted = scenarioFromText(options.want);
  if (!wanted && !options.want.empty()) {
    throw InputError("camhook: --want: no scenario " + jsonText(options.want));
  }
  std::vector<Inputs> found;
  if (wanted) found = smallestChanges(rules, inputs, *wanted);

  verify(rules, inputs);
  verify(rules, changed);
  for (const Inputs& each : found) verify(rules, each);

  if (options.json) {
    Json json = jsonFromDecision(rules, inputs);
    if (!options.changes.empty()) json["whatIf"] = jsonFromDecision(rules, changed);
    if (wanted) json["want"] = wantedJson(rules, inputs, found, *wanted);
    writeJson(out, json);
  } else {
    if (options.changes.empty()) {
      writeDecision(out, rules, inputs, style);
    } else {
      writeTwoDecisions(out, rules, inputs, changed, style);
    }
    if (wanted) writeWanted(out, rules, inputs, found, *wanted, style);
  }
  return wanted && found.empty() ? 1 : 0;
}

}  // namespace camhook
