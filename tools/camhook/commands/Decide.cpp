#include "tools/camhook/commands/Commands.h"

#include <algorithm>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "tools/camhook/input/ScenarioReader.h"
#include "tools/camhook/rules/DecideCommand.h"
#include "tools/camhook/run/DataRoot.h"
#include "tools/camhook/show/Terminal.h"
#include "tools/camhook/show/TraceFilter.h"

namespace camhook {
namespace {

struct DecideArguments {
  DecideOptions options;
  std::optional<std::int32_t> sensor;
  std::string fps;   // as the input's field takes it
  std::string size;  // likewise
  std::string scenario;
  std::string call;
};

CLI::Validator isValueOf(InputIndex input, const std::string& expected) {
  const auto check = [=](const std::string& text) {
    Inputs any;
    if (text != kAbsent && inputField(input).set(any, text)) return std::string();
    return "must be " + expected + ", not " + jsonText(text);
  };
  return {check, ""};
}

/// The inputs of a call of the scenario that is named.
Inputs decideInputs(const DecideArguments& arguments) {
  DataRoot dataRoot("");
  dataRoot.removeAtAnyEnd();
  return readFile(arguments.scenario, [&](const std::string& text) {
    Scenario scenario = readScenario(text);
    const std::size_t index =
        callFromText(arguments.call, scenario.calls.size(),
                     [&](std::size_t each) { return scenario.calls[each].call; });
    if (std::ranges::any_of(scenario.calls, opensFiles)) {
      scenario.platform.dataRoot = dataRoot.path().string();
    }
    return inputsOfCall(std::move(scenario), index);
  });
}

int decide(DecideArguments arguments) {
  Inputs& inputs = arguments.options.inputs;
  if (!arguments.scenario.empty()) {
    inputs = decideInputs(arguments);
  } else {
    if (inputs.product.empty()) throw InputError("camhook: --product is required");
    if (!arguments.sensor) throw InputError("camhook: --sensor is required");
    inputs.sensor = *arguments.sensor;
  }
  // Those that are not given are no values, and change nothing.
  inputField(kFps).set(inputs, arguments.fps);
  inputField(kSize).set(inputs, arguments.size);
  return camhook::decide(std::cout, arguments.options, Style::forStandardOutput());
}

}  // namespace

void addDecide(CLI::App& app, int& status) {
  const auto arguments = std::make_shared<DecideArguments>();
  CLI::App* command =
      app.add_subcommand("decide", "Decide on a sensor scenario and show the way to it");
  Inputs& inputs = arguments->options.inputs;
  CLI::Option* const scenario =
      command->add_option("--scenario", arguments->scenario, "Take all that from a scenario")
          ->type_name("FILE");
  scenario->needs(
      command->add_option("--call", arguments->call, "Number of its call, from 1, or last")
          ->type_name("CALL"));
  const auto input = [&](const char* name, auto& target, const char* meaning) {
    return command->add_option(name, target, meaning)->excludes(scenario);
  };
  input("--product", inputs.product, "Product model, as ro.product.model.zdm has it");
  input("--sensor", arguments->sensor, "Sensor; 1 is the front camera");
  command->add_flag("--video", inputs.video, "The configuration has a video stream")
      ->excludes(scenario);
  input("--app-type", inputs.appType, "\"APP_TYPE\" of the event store");
  input("--app-name", inputs.appName, "\"APP_NAME\" of the event store");
  input("--eis", inputs.eis, "HESK_CONTROL_EISENABLE");
  input("--hfps", inputs.hfps, "MTK_STREAMING_FEATURE_HFPS_MODE");
  input("--fps", arguments->fps, "MTK_CONTROL_AE_TARGET_FPS_RANGE")
      ->check(isValueOf(kFps, "LO,HI"))
      ->type_name("LO,HI");
  input("--video-algo", inputs.videoAlgo, "HESK_CONTROL_VIDEOALGOTYPE");
  input("--ui-module", inputs.uiModule, "COM_HESK_CURRENTUIMODULE");
  input("--hdr", inputs.hdr, "MTK_HDR_FEATURE_HDR_MODE");
  input("--night", inputs.night, "HESK_CONTROL_NIGHTMODE");
  input("--size", arguments->size, "Size of the app's main output in pixels")
      ->check(isValueOf(kSize, "WxH"))
      ->type_name("WxH");
  command
      ->add_option("--what-if", arguments->options.changes,
                   "Show beside it the decision with an input changed; may be given again")
      ->allow_extra_args(false)
      ->type_name("NAME=VALUE");
  command
      ->add_option("--want", arguments->options.want,
                   "Find the smallest changes that give this sensor scenario")
      ->type_name("MODE");
  command->add_flag("--json", arguments->options.json, "Write the decision as JSON");
  command->footer(
      "What is not given is absent. With --want the exit status is 1 where nothing gives that.\n\n"
      "Example:\n  camhook decide --product KX0105 --sensor 0 --video --eis 1 --video-algo 0");
  command->callback([arguments, &status] { status = decide(*arguments); });
}

}  // namespace camhook
