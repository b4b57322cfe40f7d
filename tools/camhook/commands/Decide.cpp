#include "tools/camhook/commands/Commands.h"

#include <algorithm>
#include <array>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "tools/camhook/explain/ChangedScenario.h"
#include "tools/camhook/explain/DecisionText.h"
#include "tools/camhook/explain/Why.h"
#include "tools/camhook/input/Joined.h"
#include "tools/camhook/input/JsonLine.h"
#include "tools/camhook/input/PlainText.h"
#include "tools/camhook/input/ScenarioReader.h"
#include "tools/camhook/input/WholeNumber.h"
#include "tools/camhook/run/Replay.h"
#include "tools/camhook/run/TraceFilter.h"
#include "tools/camhook/show/SensorModeName.h"
#include "tools/camhook/show/Terminal.h"

namespace camhook {
namespace {

struct DecideArguments {
  std::array<std::string, kInputCount> values;
  bool video = false;
  std::string scenario;
  std::string call;
  std::string want;  // a sensor mode, by number or name
  bool json = false;
};

CLI::Validator isValueOf(InputIndex input) {
  const auto check = [input](const std::string& text) {
    const InputField::Form form = inputFields()[input].form;
    const bool isMissing = text.empty() && form != InputField::Form::text;
    if (!isMissing && Inputs().set(input, text)) return std::string();
    const char* const expected = form == InputField::Form::range  ? "LO,HI"
                                 : form == InputField::Form::size ? "WxH"
                                                                  : "a number of 32 bits";
    return std::string("must be ") + expected + ", not " + jsonText(text);
  };
  return {check, ""};
}

Inputs inputsOfOptions(const DecideArguments& arguments) {
  Inputs inputs;
  for (std::size_t i = 0; i < kInputCount; ++i) {
    inputs.set(static_cast<InputIndex>(i), arguments.values[i]);
  }
  for (const InputIndex input : {kProduct, kSensor}) {
    if (!arguments.values[input].empty()) continue;
    throw InputError("camhook: " + std::string(inputFields()[input].options) + " is required");
  }
  inputs.set(kVideo, arguments.video ? "yes" : "no");
  return inputs;
}

/// The inputs of a call of a scenario, once the calls before it have run.
Inputs inputsOfScenario(const DecideArguments& arguments) {
  return readFile(arguments.scenario, [&](const std::string& text) {
    Scenario scenario = readScenario(text);
    const std::size_t index =
        callFromText(arguments.call, scenario.calls.size(),
                     [&](std::size_t each) { return scenario.calls[each].call; });
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

/// The decision as the return value of a scenario's only call. Product, sensor and video stay.
Question questionOf(const Inputs& inputs) {
  const std::string product(inputFields()[kProduct].name);
  const std::int32_t sensor = inputs.numbers(kSensor)[0];
  const auto [width, height] = inputs.numbers(kSize);
  Question question;
  question.scenario.platform.properties[product] = inputs[kProduct];
  question.scenario.platform.eventStore = {{"APP_TYPE", inputs[kAppType]},
                                           {"APP_NAME", inputs[kAppName]}};
  question.scenario.calls.push_back(
      {DecideSensorScenario{sensor, inputs.metadata(), inputs.hasVideo(), width, height}});
  question.arguments = {
      {"sensor", sensor}, {"video", inputs.hasVideo()}, {"width", width}, {"height", height}};
  question.fixed = {{.kind = Input::Kind::property, .key = product},
                    {.kind = Input::Kind::argument, .key = "sensor"},
                    {.kind = Input::Kind::argument, .key = "video"}};
  return question;
}

Inputs changedInputs(const Question& question, const std::vector<Change>& changes) {
  host::Phone phone(unchangedPhone(question));
  setTexts(phone, changes);
  const Call call = changedCall(question, question.askedCall(), changes);
  return inputsOf(std::get<DecideSensorScenario>(call));
}

/// The decisions with changes of one or two inputs that give the mode.
std::vector<Decision> decisionsFor(const Inputs& inputs, std::int32_t mode) {
  const Question question = questionOf(inputs);
  const Explanation explanation = explain(question, Wanted(std::to_string(mode), question));
  std::vector<Explanation::Outcome> outcomes = explanation.outcomes();
  if (explanation.after == mode) outcomes = {{.changes = {}, .gives = mode}};
  std::vector<Decision> found;
  for (const Explanation::Outcome& outcome : outcomes) {
    const Inputs changed = changedInputs(question, outcome.changes);
    Decision decision = DecidingPhone().explain(changed);
    if (decision.mode == mode) found.push_back(std::move(decision));
  }
  return found;
}

/// The inputs in which two decisions differ.
std::vector<InputIndex> differences(const Inputs& from, const Inputs& to) {
  std::vector<InputIndex> list;
  for (std::size_t i = 0; i < kInputCount; ++i) {
    const auto input = static_cast<InputIndex>(i);
    if (from[input] != to[input]) list.push_back(input);
  }
  return list;
}

void writeWanted(std::ostream& out, const Inputs& inputs, const std::vector<Decision>& found,
                 std::int32_t wanted, Style style) {
  out << style.heading("wanted") << "  " << sensorModeText(wanted) << '\n';
  if (found.empty()) out << "  no change of one or two inputs gives it\n";
  for (const Decision& decision : found) {
    std::vector<std::string> changes;
    for (const InputIndex input : differences(inputs, decision.inputs)) {
      changes.push_back(std::string(inputFields()[input].name) + " " + inputs.shown(input) +
                        " \u2192 " + decision.inputs.shown(input));
    }
    out << "  " << (changes.empty() ? "no change is needed" : printable(joined(changes, ", and ")))
        << "  " << style.faint(decidedByText(decision)) << '\n';
  }
}

Json wantedJson(const Inputs& inputs, const std::vector<Decision>& found, std::int32_t wanted) {
  Json::List list;
  for (const Decision& decision : found) {
    Json changes = Json::Object();
    for (const InputIndex input : differences(inputs, decision.inputs)) {
      changes[inputFields()[input].name] = decision.inputs.json(input);
    }
    list.push_back({{"changes", std::move(changes)}, {"decidedBy", decidedByText(decision)}});
  }
  return {{"scenario", wanted}, {"smallest", std::move(list)}};
}

int runDecide(const DecideArguments& arguments) {
  std::optional<std::int32_t> wanted;
  if (!arguments.want.empty()) wanted = sensorModeFrom(arguments.want);
  const Inputs inputs =
      arguments.scenario.empty() ? inputsOfOptions(arguments) : inputsOfScenario(arguments);
  const Decision decision = DecidingPhone().explain(inputs);
  std::vector<Decision> found;
  if (wanted) found = decisionsFor(inputs, *wanted);
  if (arguments.json) {
    Json json = jsonFromDecision(decision);
    if (wanted) json["want"] = wantedJson(inputs, found, *wanted);
    writeJson(std::cout, json);
  } else {
    const Style style = Style::forStandardOutput();
    writeDecision(std::cout, decision, style);
    if (wanted) writeWanted(std::cout, inputs, found, *wanted, style);
  }
  return wanted && found.empty() ? 1 : 0;
}

}  // namespace

void addDecide(CLI::App& app, int& status) {
  const auto arguments = std::make_shared<DecideArguments>();
  CLI::App* command =
      app.add_subcommand("decide", "Decide on a sensor mode and show how it is chosen");
  CLI::Option* const scenario =
      command->add_option("--scenario", arguments->scenario, "Take the inputs from a scenario")
          ->type_name("FILE");
  scenario->needs(command
                      ->add_option("--call", arguments->call,
                                   "Number of its call, from 1; last; or requestNo:N")
                      ->type_name("CALL"));
  const auto input = [&](InputIndex index, const char* type, const std::string& meaning) {
    command
        ->add_option(std::string(inputFields()[index].options), arguments->values[index], meaning)
        ->check(isValueOf(index))
        ->type_name(type)
        ->excludes(scenario)
        ->group("Inputs");
  };
  input(kProduct, "TEXT", "Product model, as in ro.product.model.zdm");
  input(kSensor, "NUMBER", "Sensor; 1 is the front camera");
  command->add_flag("--video", arguments->video, "The configuration has a video stream")
      ->excludes(scenario)
      ->group("Inputs");
  for (const InputIndex index : {kAppType, kAppName}) {
    input(index, "TEXT", std::string(inputFields()[index].name) + " of the event store");
  }
  for (const InputIndex index : {kEis, kHfps, kFps, kVideoAlgo, kUiModule, kHdr, kNight}) {
    input(index, index == kFps ? "LO,HI" : "NUMBER", std::string(inputFields()[index].name));
  }
  input(kSize, "WxH", "Size of the app's main output in pixels");
  command
      ->add_option("--want", arguments->want,
                   "Find the smallest changes that give this sensor mode")
      ->type_name("MODE");
  command->add_flag("--json", arguments->json, "Write the decision as JSON");
  command->footer(
      "An input that is not given is absent. With --want the exit status is 1 if no change gives "
      "the mode.\n\n"
      "Example:\n  camhook decide --product KX0105 --sensor 0 --video --eis 1 --algo 0");
  command->callback([arguments, &status] { status = runDecide(*arguments); });
}

}  // namespace camhook
