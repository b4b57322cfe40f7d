#include <iostream>
#include <memory>
#include <optional>
#include <string>

#include "tools/camhook/commands/Commands.h"
#include "tools/camhook/explain/Why.h"
#include "tools/camhook/input/InputFile.h"
#include "tools/camhook/input/JsonLine.h"
#include "tools/camhook/show/Terminal.h"

namespace camhook {
namespace {

struct WhyArguments {
  std::string file;
  std::string call;
  std::string tag;
  std::string want;  // as JSON; empty: not given
  bool all = false;
  bool json = false;
};

int why(const WhyArguments& arguments) {
  const Question question = readFile(arguments.file, [&](const std::string& text) {
    return readQuestion(text, arguments.call, arguments.tag);
  });
  warn(question.scenario.warnings, arguments.file);
  std::optional<Wanted> wanted;
  if (!arguments.want.empty()) wanted.emplace(arguments.want, question);
  const Explanation explanation = explain(question, wanted);
  if (arguments.json) {
    writeJson(std::cout, jsonFrom(question, explanation));
  } else {
    writeText(std::cout, question, explanation, arguments.want, arguments.all,
              Style::forStandardOutput());
  }
  return explanation.isUnmet() ? 1 : 0;
}

}  // namespace

void addWhy(CLI::App& app, int& status) {
  const auto arguments = std::make_shared<WhyArguments>();
  CLI::App* command = app.add_subcommand(
      "why", "Explain a tag after a call: what wrote it, and what would change it");
  command->add_option("FILE", arguments->file, "The scenario; - reads it from standard input")
      ->required();
  command->add_option("CALL", arguments->call, "Number of the call, from 1; last; or requestNo:N")
      ->required();
  command
      ->add_option("TAG", arguments->tag,
                   "Tag name or value; CONTAINER:TAG if the call only reads the container "
                   "(hal:MTK_CONTROL_RAW_TYPE); return for the return value")
      ->required();
  command
      ->add_option("--want", arguments->want,
                   "Search for changes that give this value; null: absent, _: any item")
      ->type_name("VALUE");
  command->add_flag("--all", arguments->all, "Also list all outcomes, and inputs without effect");
  command->add_flag("--json", arguments->json, "Write the explanation as JSON");
  command->footer(
      "With --want the exit status is 1 if nothing gives that value.\n\n"
      "Example:\n  camhook why scenarios/third_party_apps.json 1 "
      "MTK_CONTROL_AE_TARGET_FPS_RANGE");
  command->callback([arguments, &status] { status = why(*arguments); });
}

}  // namespace camhook
