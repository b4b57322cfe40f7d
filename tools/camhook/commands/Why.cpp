#include "tools/camhook/commands/Commands.h"

#include <iostream>
#include <memory>
#include <string>

#include "tools/camhook/explain/WhyCommand.h"
#include "tools/camhook/show/Terminal.h"

namespace camhook {
namespace {

struct WhyArguments {
  WhyOptions options;
  std::string file;
};

int why(const WhyArguments& arguments) {
  const WhyQuestion question = readFile(arguments.file, [&](const std::string& text) {
    return readQuestion(text, arguments.options);
  });
  return camhook::why(std::cout, question, arguments.options, Style::forStandardOutput());
}

}  // namespace

void addWhy(CLI::App& app, int& status) {
  const auto arguments = std::make_shared<WhyArguments>();
  CLI::App* command = app.add_subcommand(
      "why", "Explain a tag after a call: what wrote it, and what would change it");
  command->add_option("FILE", arguments->file, "The scenario; - reads it from standard input")
      ->required();
  command->add_option("CALL", arguments->options.call, "Number of the call, from 1, or last")
      ->required();
  command
      ->add_option("TAG", arguments->options.tags,
                   "The tag, written or not, or several; return for what the call returns")
      ->required();
  command
      ->add_option("--container", arguments->options.container,
                   "Container of the call; by default the one that it writes")
      ->type_name("NAME");
  command
      ->add_option("--want", arguments->options.want, "Find what gives this value; null for absent")
      ->type_name("VALUE");
  command->add_flag("--all", arguments->options.all, "Show what was read and does not count, too");
  command->add_flag("--json", arguments->options.json, "Write the explanation as JSON");
  command->footer(
      "With --want the exit status is 1 where nothing gives that value.\n\n"
      "Example:\n  camhook why scenarios/third_party_apps.json 1 MTK_CONTROL_AE_TARGET_FPS_RANGE");
  command->callback([arguments, &status] { status = why(*arguments); });
}

}  // namespace camhook
