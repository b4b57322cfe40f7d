#include "tools/camhook/commands/Commands.h"

#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "tools/camhook/explain/HookReference.h"
#include "tools/camhook/explain/RulesCommand.h"
#include "tools/camhook/input/JsonLine.h"
#include "tools/camhook/input/NearNames.h"
#include "tools/camhook/input/ScenarioReader.h"
#include "tools/camhook/input/ScenarioSchema.h"
#include "tools/camhook/show/TagsCommand.h"
#include "tools/camhook/show/Terminal.h"

namespace camhook {
namespace {

int tags(const std::string& filter, bool json) {
  if (listTags(std::cout, filter, json ? TagsFormat::json : TagsFormat::text,
               Style::forStandardOutput())) {
    return 0;
  }
  std::cerr << "camhook: no tag matches " << jsonText(filter) << nearTags(filter) << '\n';
  return 1;
}

int reference(const std::string& folder, const std::vector<std::string>& files) {
  HookReference hooks;
  for (const std::string& file : files) hooks.add(readFile(file, readScenario));
  const auto path = [&](const char* name) { return folder + '/' + name; };
  writeFile(path("hooks.md"), [&](std::ostream& out) { hooks.write(out); });
  writeFile(path("hooks.def"), [&](std::ostream& out) { hooks.writeData(out); });
  writeFile(path("tags.md"),
            [](std::ostream& out) { listTags(out, "", TagsFormat::markdown, Style(false)); });
  writeFile(path("rules.md"), writeRulesMarkdown);
  writeFile(path("scenario.schema.json"),
            [](std::ostream& out) { writeJson(out, scenarioSchema()); });
  return 0;
}

}  // namespace

void addTags(CLI::App& app, int& status) {
  const auto filter = std::make_shared<std::string>();
  const auto json = std::make_shared<bool>(false);
  CLI::App* command = app.add_subcommand("tags", "List the metadata tags");
  command->add_option("TEXT", *filter,
                      "A part of the name or of the meaning, or the value (0x0001000d)");
  command->add_flag("--json", *json, "Write the list as JSON");
  command->footer("Example:\n  camhook tags frame_count");
  command->callback([filter, json, &status] { status = tags(*filter, *json); });
}

void addReference(CLI::App& app, int& status) {
  const auto folder = std::make_shared<std::string>();
  const auto files = std::make_shared<std::vector<std::string>>();
  CLI::App* command = app.add_subcommand(
      "reference", "Write the generated pages of docs/ and the JSON Schema of scenarios");
  command->add_option("FOLDER", *folder, "Folder of the pages")->required();
  command->add_option("SCENARIO", *files, "Scenarios to run")->required();
  command->footer("Example:\n  camhook reference docs scenarios/*.json");
  command->callback([folder, files, &status] { status = reference(*folder, *files); });
}

}  // namespace camhook
