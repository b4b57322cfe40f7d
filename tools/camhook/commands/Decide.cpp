#include "tools/camhook/commands/Commands.h"

#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "tools/camhook/explain/ChangedScenario.h"
#include "tools/camhook/explain/Decision.h"
#include "tools/camhook/explain/Why.h"
#include "tools/camhook/input/Joined.h"
#include "tools/camhook/input/JsonLine.h"
#include "tools/camhook/input/PlainText.h"
#include "tools/camhook/input/ScenarioReader.h"
#include "tools/camhook/input/WholeNumber.h"
#include "tools/camhook/run/OwnUpdaters.h"
#include "tools/camhook/run/Replay.h"
#include "tools/camhook/run/TraceFilter.h"
#include "tools/camhook/show/SensorModeName.h"
#include "tools/camhook/show/Terminal.h"

namespace camhook {
namespace {

struct DecideArguments {
  DecisionInputs inputs;
  std::string scenario;
  std::string call;
  std::string want;  // a sensor mode, by number or name
  bool json = false;
};

const DecisionInputs& inputsOfOptions(const DecideArguments& arguments) {
  if (arguments.inputs[kProduct].isNull()) throw InputError("camhook: --product is required");
  if (arguments.inputs[kSensor].isNull()) throw InputError("camhook: --sensor is required");
  return arguments.inputs;
}

/// The inputs of a call of a scenario, after the calls before it have run.
DecisionInputs inputsOfScenario(const DecideArguments& arguments) {
  return readFile(arguments.scenario, [&](const std::string& text) {
    Scenario scenario = readScenario(text);
    const std::size_t index =
        callFromText(arguments.call, scenario.calls.size(),
                     [&](std::size_t each) { return scenario.calls[each].call; });
    OwnUpdaters updaters;
    Replay replay(std::move(scenario.platform), [&](int sensor) { return updaters.of(sensor); });
    for (std::size_t i = 0; i < index; ++i) {
      replay.run(scenario.calls[i], Replay::Detail::containers);
    }
    const Call call = replay.withMetaOf(scenario.calls[index]);
    if (const auto* decision = std::get_if<DecideSensorScenario>(&call))
      return decisionInputsOf(*decision);
    throw InputError("call " + std::to_string(index + 1) + " is not a " +
                     std::string(DecideSensorScenario::kName) + " call");
  });
}

std::int32_t sensorModeFrom(const std::string& text) {
  const auto number = wholeNumber<std::int32_t>(text);
  std::vector<std::string> valid;
  for (const SensorMode& mode : kSensorModes) {
    if (number ? number == mode.number : text == mode.name) return mode.number;
    valid.push_back(sensorModeText(mode.number));
  }
  throw InputError("camhook: --want: unknown sensor mode " + jsonText(text) +
                   "; valid: " + joined(valid, ", "));
}

/// The decision as the only call of a scenario, so that `explain` can search. Product, sensor and
/// video stream are not changed.
Question questionOf(const DecisionInputs& inputs) {
  const std::int32_t sensor = numberOf(inputs[kSensor]);
  const bool hasVideo = inputs[kVideo].isTrue();
  const auto [width, height] = streamsOf(inputs).mainOutputSize;
  Question question;
  host::PhoneConfig& platform = question.scenario.platform;
  platform.properties[std::string(kProduct)] = textOf(inputs[kProduct]);
  for (const std::string_view event : {kAppType, kAppName}) {
    platform.eventStore[std::string(event)] = textOf(inputs[event]);
  }
  question.scenario.calls.push_back(
      {DecideSensorScenario{sensor, sessionMetadataOf(inputs), hasVideo, width, height}});
  question.arguments = {
      {"sensor", sensor}, {"video", hasVideo}, {"width", width}, {"height", height}};
  question.fixed = {{.kind = Input::Kind::property, .key = std::string(kProduct)},
                    {.kind = Input::Kind::argument, .key = "sensor"},
                    {.kind = Input::Kind::argument, .key = "video"}};
  return question;
}

DecisionInputs changedInputs(const Question& question, const std::vector<Change>& changes) {
  host::Phone phone(question.scenario.platform);
  setTexts(phone, changes);
  const Call call = changedCall(question, question.askedCall(), changes);
  return decisionInputsOf(std::get<DecideSensorScenario>(call));
}

/// The member "want" of the document: changes of one or two inputs that give the mode.
Json wantedJson(const DecisionInputs& inputs, std::int32_t mode) {
  const Question question = questionOf(inputs);
  const Explanation explanation = explain(question, Wanted(std::to_string(mode), question));
  std::vector<Explanation::Outcome> outcomes = explanation.outcomes();
  if (explanation.after == mode) outcomes = {{.changes = {}, .gives = mode}};
  const DecisionInputs unchanged = changedInputs(question, {});
  Json::List found;
  for (const Explanation::Outcome& outcome : outcomes) {
    const DecisionInputs changed = changedInputs(question, outcome.changes);
    DecisionInputs wanted = inputs;
    Json changes = Json::Object();
    for (const auto& [name, value] : changed.members()) {
      // Compared with `unchanged`, since an absent size is 0 x 0 in a call.
      if (value != unchanged[name]) changes[name] = wanted[name] = value;
    }
    const Json decision = DecidingPhone().explain(wanted);
    if (decision["scenario"] != mode) continue;
    found.push_back({{"changes", changes}, {"decidedBy", decision["decidedBy"]["text"]}});
  }
  return {{"scenario", mode}, {"smallest", std::move(found)}};
}

void writeWanted(std::ostream& out, const Json& decision, Style style) {
  const Json& wanted = decision["want"];
  out << style.heading("wanted") << "  "
      << sensorModeText(*wanted["scenario"].integer<std::int32_t>()) << '\n';
  if (wanted["smallest"].size() == 0) out << "  no change of one or two inputs gives it\n";
  for (const Json& found : wanted["smallest"].items()) {
    std::vector<std::string> changes;
    for (const auto& [name, value] : found["changes"].members()) {
      changes.push_back(name + " " + decisionInputText(name, decision["inputs"][name]) +
                        " \u2192 " + decisionInputText(name, value));
    }
    out << "  " << (changes.empty() ? "no change is needed" : printable(joined(changes, ", and ")))
        << "  " << style.faint(found["decidedBy"].text()) << '\n';
  }
}

int runDecide(const DecideArguments& arguments) {
  std::optional<std::int32_t> wanted;
  if (!arguments.want.empty()) wanted = sensorModeFrom(arguments.want);
  const DecisionInputs inputs =
      arguments.scenario.empty() ? inputsOfOptions(arguments) : inputsOfScenario(arguments);
  Json decision = DecidingPhone().explain(inputs);
  if (wanted) decision["want"] = wantedJson(inputs, *wanted);
  if (arguments.json) {
    writeJson(std::cout, decision);
  } else {
    const Style style = Style::forStandardOutput();
    writeDecision(std::cout, decision, style);
    if (wanted) writeWanted(std::cout, decision, style);
  }
  return wanted && decision["want"]["smallest"].size() == 0 ? 1 : 0;
}

}  // namespace

void addDecide(CLI::App& app, int& status) {
  const auto arguments = std::make_shared<DecideArguments>();
  CLI::App* command =
      app.add_subcommand("decide", "Decide on a sensor mode and show how it is chosen");
  CLI::Option* const scenario =
      command->add_option("--scenario", arguments->scenario, "Take the inputs from a scenario")
          ->type_name("FILE");
  CLI::Option* const call = command
                                ->add_option("--call", arguments->call,
                                             "Number of the call in the scenario, from 1, or last")
                                ->type_name("CALL");
  call->needs(scenario);
  scenario->needs(call);
  arguments->inputs = decisionInputsOf("", 0, false);
  arguments->inputs[kSensor] = nullptr;
  for (const DecisionInputField& field : decisionInputFields()) {
    Json& value = arguments->inputs[field.name];
    const std::string meaning(field.meaning);
    const auto read = [&field, &value](const std::string& text) {
      value = decisionInputFromText(field, text);
    };
    CLI::Option* const option =
        field.type.empty()
            ? command->add_flag_callback(
                  std::string(field.options), [&value] { value = true; }, meaning)
            : command->add_option_function<std::string>(std::string(field.options), read, meaning)
                  ->type_name(std::string(field.type));
    option->excludes(scenario)->group("Inputs");
  }
  command
      ->add_option("--want", arguments->want,
                   "Search for changes of one or two inputs that give this sensor mode")
      ->type_name("MODE");
  command->add_flag("--json", arguments->json, "Write the decision as JSON");
  command->footer(
      "An input that is not given is absent. With --want the exit status is 1 if no change gives "
      "the mode.\n\n"
      "Example:\n  camhook decide --product KX0105 --sensor 0 --video --eis 1 --algo 0");
  command->callback([arguments, &status] { status = runDecide(*arguments); });
}

}  // namespace camhook
