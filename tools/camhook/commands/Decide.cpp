#include "tools/camhook/commands/Commands.h"

#include <iostream>
#include <memory>
#include <string>
#include <utility>
#include <variant>

#include "tools/camhook/explain/Decision.h"
#include "tools/camhook/explain/OwnUpdaters.h"
#include "tools/camhook/explain/Why.h"
#include "tools/camhook/input/InputFile.h"
#include "tools/camhook/input/JsonLine.h"
#include "tools/camhook/input/ScenarioReader.h"
#include "tools/camhook/run/Replay.h"
#include "tools/camhook/run/TraceFilter.h"
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
    warn(scenario.warnings, arguments.scenario);
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

int runDecide(const DecideArguments& arguments) {
  const DecisionInputs inputs =
      arguments.scenario.empty() ? inputsOfOptions(arguments) : inputsOfScenario(arguments);
  const Style style = Style::forStandardOutput();
  Json decision = DecidingPhone().explain(inputs);
  if (arguments.want.empty()) {
    if (arguments.json) {
      writeJson(std::cout, decision);
    } else {
      writeDecision(std::cout, decision, style);
    }
    return 0;
  }
  const Question question = questionOf(inputs);
  const Wanted wanted(arguments.want, question);
  const Explanation explanation = explain(question, wanted);
  if (arguments.json) {
    decision["want"] = jsonFrom(question, explanation);
    writeJson(std::cout, decision);
  } else {
    writeDecision(std::cout, decision, style);
    writeWanted(std::cout, question, explanation, arguments.want, style);
  }
  return explanation.isUnmet() ? 1 : 0;
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
