#include "tools/camhook/commands/Commands.h"

#include <filesystem>
#include <iostream>
#include <memory>
#include <string>

#include "tools/camhook/show/DiffCommand.h"
#include "tools/camhook/show/Page.h"
#include "tools/camhook/show/Terminal.h"
#include "tools/camhook/show/TraceDiff.h"

namespace camhook {
namespace {

struct DiffOptions {
  std::string old;
  std::string fresh;
  std::string page;
  bool logs = false;
};

int diff(const DiffOptions& options) {
  const auto read = [](const std::filesystem::path& file) {
    return readFile(file.string(), traceFromText);
  };
  if (!options.page.empty()) {
    const Json old = read(options.old);
    const Json fresh = read(options.fresh);
    writeFile(options.page, [&](std::ostream& out) {
      const std::string title = titleOfPage(options.old) + " \u2192 " + titleOfPage(options.fresh);
      writeDifferencePage(out, title, old, fresh, options.logs);
    });
    return compareTraces(old, fresh, options.logs).empty() ? 0 : 1;
  }
  const Style style = Style::forStandardOutput();
  if (std::filesystem::is_directory(options.old) && std::filesystem::is_directory(options.fresh)) {
    return diffFolders(std::cout, options.old, options.fresh, read, options.logs, style);
  }
  return diffTraces(std::cout, read(options.old), read(options.fresh), options.logs, style);
}

}  // namespace

void addDiff(CLI::App& app, int& status) {
  const auto options = std::make_shared<DiffOptions>();
  CLI::App* command = app.add_subcommand("diff", "Show how two traces in JSON differ");
  command->add_option("OLD", options->old, "The trace, or a folder of traces")->required();
  command->add_option("NEW", options->fresh, "Another, or a folder with traces of the same names")
      ->required();
  command
      ->add_option("--html", options->page,
                   "Write the new trace into this file, a page for any browser, with what differs "
                   "marked; of two traces, not of folders")
      ->check(namesOne("a file"))
      ->type_name("PAGE");
  command->add_flag("--logs", options->logs, "Compare the log records, too");
  command->footer(
      "Of folders it tells what differs by hook and tag.\n"
      "The exit status is 1 where something differs.\n\n"
      "Example:\n  camhook replay --json scenarios/still_capture_dump.json > new.json\n"
      "  camhook diff scenarios/still_capture_dump.trace.json new.json");
  command->callback([options, &status] { status = diff(*options); });
}

}  // namespace camhook
