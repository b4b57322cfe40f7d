#include "tools/camhook/commands/Commands.h"

#include <algorithm>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "tools/camhook/explain/HookReference.h"
#include "tools/camhook/input/Json.h"
#include "tools/camhook/input/NearNames.h"
#include "tools/camhook/input/ScenarioReader.h"
#include "tools/camhook/input/ScenarioSchema.h"
#include "tools/camhook/run/DataRoot.h"
#include "tools/camhook/show/TagsCommand.h"
#include "tools/camhook/show/Terminal.h"

namespace camhook {
namespace {

struct TagsOptions {
  std::string filter;
  bool json = false;
  bool markdown = false;
};

int tags(const TagsOptions& options) {
  TagsFormat format = TagsFormat::text;
  if (options.json) format = TagsFormat::json;
  if (options.markdown) format = TagsFormat::markdown;
  if (listTags(std::cout, options.filter, format, Style::forStandardOutput())) return 0;
  std::cerr << "camhook: no tag matches " << jsonText(options.filter) << nearTags(options.filter)
            << '\n';
  return 1;
}

int hooks(const std::vector<std::string>& files) {
  DataRoot dataRoot("");
  dataRoot.removeAtAnyEnd();
  std::vector<Scenario> scenarios;
  for (const std::string& file : files) {
    if (file.ends_with(".trace.json")) continue;  // an expected trace beside its scenario
    scenarios.push_back(readFile(file, readScenario));
    Scenario& scenario = scenarios.back();
    if (std::ranges::any_of(scenario.calls, opensFiles)) {
      scenario.platform.dataRoot = dataRoot.path().string();
    }
  }
  HookReference reference;
  for (const Scenario& scenario : scenarios) reference.add(scenario);
  reference.write(std::cout);
  return 0;
}

int schema() {
  writeJson(std::cout, scenarioSchema());
  return 0;
}

}  // namespace

void addTags(CLI::App& app, int& status) {
  const auto options = std::make_shared<TagsOptions>();
  CLI::App* command = app.add_subcommand("tags", "List the metadata tags");
  command->add_option("TEXT", options->filter,
                      "A part of the name or of the meaning, or the value (0x0001000d)");
  CLI::Option* json = command->add_flag("--json", options->json, "Write the list as JSON");
  command->add_flag("--markdown", options->markdown, "Write the list as a page of Markdown")
      ->excludes(json);
  command->footer("Example:\n  camhook tags frame_count");
  command->callback([options, &status] { status = tags(*options); });
}

void addHooks(CLI::App& app, int& status) {
  const auto files = std::make_shared<std::vector<std::string>>();
  CLI::App* command = app.add_subcommand(
      "hooks", "Write what each step of the hooks reads and writes as a page of Markdown");
  command->add_option("FILE", *files, "Scenarios; expected traces among them are passed over")
      ->required();
  command->footer("Example:\n  camhook hooks scenarios/*.json > hooks.md");
  command->callback([files, &status] { status = hooks(*files); });
}

void addSchema(CLI::App& app, int& status) {
  CLI::App* command = app.add_subcommand(
      "schema", "Write the JSON Schema of scenarios, by which an editor completes them");
  command->footer("Example:\n  camhook schema > scenario.schema.json");
  command->callback([&status] { status = schema(); });
}

}  // namespace camhook
