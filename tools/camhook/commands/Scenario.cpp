#include "tools/camhook/commands/Commands.h"

#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tools/camhook/input/DumpScenario.h"
#include "tools/camhook/input/InputError.h"
#include "tools/camhook/input/InputFile.h"
#include "tools/camhook/input/Json.h"
#include "tools/camhook/input/JsonLine.h"
#include "tools/camhook/input/PlainText.h"
#include "tools/camhook/input/ScenarioWarnings.h"

namespace camhook {
namespace {

struct ScenarioArguments {
  std::vector<std::string> files;
  std::string output = "-";
  std::string hook;
  std::optional<std::int32_t> sensor;
  std::string product;
  std::string appType;
  std::string appName;
  std::vector<std::string> properties;
  std::vector<std::string> events;
  std::string statics;
};

/// Adds words such as "NAME=VALUE" to `texts`. Throws InputError.
void addTexts(host::TextMap& texts, const std::vector<std::string>& words, const char* option,
              const char* expected) {
  const std::string place = "camhook: " + std::string(option) + ": ";
  for (const std::string& word : words) {
    const std::size_t equals = word.find('=');
    if (equals == std::string::npos || equals == 0) {
      throw InputError(place + "expected " + expected + ", found " + jsonText(word));
    }
    if (!texts.emplace(word.substr(0, equals), word.substr(equals + 1)).second) {
      throw InputError(place + "duplicate key " + jsonText(word.substr(0, equals)));
    }
  }
}

DumpOptions dumpOptions(const ScenarioArguments& arguments) {
  DumpOptions options;
  options.hook = findDumpHook(arguments.hook);
  options.sensor = arguments.sensor;
  const auto addIfGiven = [](host::TextMap& texts, const char* name, const std::string& value) {
    if (!value.empty()) texts.emplace(name, value);
  };
  addIfGiven(options.properties, "ro.product.model.zdm", arguments.product);
  addIfGiven(options.eventStore, "APP_TYPE", arguments.appType);
  addIfGiven(options.eventStore, "APP_NAME", arguments.appName);
  addTexts(options.properties, arguments.properties, "--property", "NAME=VALUE");
  addTexts(options.eventStore, arguments.events, "--event", "KEY=VALUE");
  return options;
}

int scenario(const ScenarioArguments& arguments) {
  DumpOptions options = dumpOptions(arguments);
  const std::string warning = productWarning(options.properties, false);
  if (!warning.empty()) warn("camhook: warning: " + warning);
  const auto readDumps = [](const std::string& file) {
    return readFile(file, [&](const std::string& text) { return dumpFile(file, text); });
  };
  std::vector<DumpFile> files;
  for (const std::string& file : arguments.files) files.push_back(readDumps(file));
  if (!arguments.statics.empty()) {
    options.statics = readDumps(arguments.statics);
    if (options.statics->found.dumps.front().isNull) {
      throw InputError(nameOfInput(arguments.statics) + ": the first dump has no metadata");
    }
  }

  const Json made = scenarioOfDumps(files, options);
  for (const DumpFile& file : files) {
    warn(file.found.warnings, file.name);
    if (hasStatics(file)) {
      warn(nameOfInput(file.name) + ": warning: a dump contains static metadata; use --static");
    }
  }
  if (options.statics) warn(options.statics->found.warnings, options.statics->name);
  warn(printable(made["about"].text()));
  writeFile(arguments.output, [&](std::ostream& out) { writeJson(out, made); });
  return 0;
}

}  // namespace

void addScenario(CLI::App& app, int& status) {
  const auto arguments = std::make_shared<ScenarioArguments>();
  CLI::App* command = app.add_subcommand(
      "scenario", "Make a scenario from the metadata dumps in a phone's logs and reports");
  command
      ->add_option("DUMP", arguments->files,
                   "Dumps, bug reports or logs; each dump becomes a call; - is standard input")
      ->required();
  command->add_option("-o", arguments->output, "Write the scenario to this file")
      ->type_name("FILE");
  std::vector<std::string> hooks;
  for (const DumpHook& hook : dumpHooks()) hooks.emplace_back(hook.word);
  for (const DumpHook& hook : dumpHooks()) hooks.emplace_back(hook.call);
  command
      ->add_option("--hook", arguments->hook,
                   "Hook to call: request (default), result, session, capture (three dumps per "
                   "call) or a call name")
      ->check(oneOf(std::move(hooks)))
      ->type_name("HOOK");
  command->add_option("--sensor", arguments->sensor, "Sensor of the calls, by default 0")
      ->check(isNumber())
      ->type_name("NUMBER");
  command->add_option("--product", arguments->product,
                      "Product model, the value of ro.product.model.zdm");
  command->add_option("--app-type", arguments->appType, "\"APP_TYPE\" of the event store");
  command->add_option("--app-name", arguments->appName, "\"APP_NAME\" of the event store");
  command->add_option("--property", arguments->properties, "System property (repeatable)")
      ->allow_extra_args(false)
      ->type_name("NAME=VALUE");
  command->add_option("--event", arguments->events, "Event-store value (repeatable)")
      ->allow_extra_args(false)
      ->type_name("KEY=VALUE");
  command
      ->add_option("--static", arguments->statics,
                   "File whose first dump is the device's static metadata")
      ->type_name("FILE");
  command->footer(
      "Warnings about assumptions and skipped entries go to standard error.\n\n"
      "Example:\n  camhook scenario tests/support/phone_dump.txt --product KX0107 -o my.json\n"
      "  camhook replay my.json");
  command->callback([arguments, &status] { status = scenario(*arguments); });
}

}  // namespace camhook
