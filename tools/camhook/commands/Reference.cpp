#include <memory>
#include <string>
#include <vector>

#include "tools/camhook/commands/Commands.h"
#include "tools/camhook/explain/HookReference.h"
#include "tools/camhook/explain/RulesCommand.h"
#include "tools/camhook/input/InputFile.h"
#include "tools/camhook/input/JsonLine.h"
#include "tools/camhook/input/ScenarioReader.h"
#include "tools/camhook/input/ScenarioSchema.h"

namespace camhook {
namespace {

void writeReference(const std::string& folder, const std::vector<std::string>& files) {
  HookReference hooks;
  for (const std::string& file : files) hooks.add(readFile(file, readScenario));
  const auto write = [&](const char* name, auto writeTo) {
    writeFile(folder + '/' + name, writeTo);
  };
  write("hooks.md", [&](std::ostream& page) {
    write("hooks.def", [&](std::ostream& data) { hooks.write(page, data); });
  });
  write("tags.md", writeTagsMarkdown);
  write("rules.md", writeRulesMarkdown);
  write("scenario.schema.json", [](std::ostream& out) { writeJson(out, scenarioSchema()); });
}

}  // namespace

void addReference(CLI::App& app) {
  const auto folder = std::make_shared<std::string>();
  const auto files = std::make_shared<std::vector<std::string>>();
  CLI::App* command = app.add_subcommand(
      "reference", "Write the generated pages of docs/ and the JSON Schema of scenarios");
  command->add_option("FOLDER", *folder, "Output directory")->required();
  command->add_option("SCENARIO", *files, "Scenarios to run")->required();
  command->footer("Example:\n  camhook reference docs scenarios/*.json");
  command->callback([folder, files] { writeReference(*folder, *files); });
}

}  // namespace camhook
