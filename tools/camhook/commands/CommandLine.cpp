#include "tools/camhook/commands/CommandLine.h"

#include <algorithm>
#include <cstdint>
#include <iostream>
#include <string_view>
#include <utility>

#include "tools/camhook/input/InputFile.h"
#include "tools/camhook/input/Joined.h"
#include "tools/camhook/input/JsonLine.h"
#include "tools/camhook/input/NearNames.h"
#include "tools/camhook/input/PlainText.h"
#include "tools/camhook/show/Terminal.h"

namespace camhook {
namespace {

bool warningsAreShown = true;

std::vector<std::string> commandNames(const CLI::App& app) {
  std::vector<std::string> names;
  for (const CLI::App* command : app.get_subcommands({})) names.push_back(command->get_name());
  return names;
}

std::vector<std::string> optionNames(const CLI::App& app) {
  std::vector<std::string> names;
  for (const CLI::Option* option : app.get_options()) {
    for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
  }
  return names;
}

std::string nearest(const std::string& word, const std::vector<std::string>& names) {
  return nearNames(word, std::vector<std::string_view>(names.begin(), names.end()));
}

}  // namespace

CLI::Validator oneOf(std::vector<std::string> words) {
  const auto check = [words = std::move(words)](const std::string& word) {
    if (std::ranges::find(words, word) != words.end()) return std::string();
    return "expected " + listed(words, " or ") + ", found " + jsonText(word) + nearest(word, words);
  };
  return {check, ""};
}

CLI::Validator isNumber() {
  const auto check = [](const std::string& word) {
    std::int32_t number = 0;
    if (CLI::detail::lexical_cast(word, number)) return std::string();
    return "expected a 32-bit integer, found " + jsonText(word);
  };
  return {check, ""};
}

void addCommonOptions(CLI::App& app) {
  const CLI::Validator isNotEmpty(
      [](const std::string& word) {
        return word.empty() ? std::string("must not be empty") : std::string();
      },
      "");
  const auto choose = [](const std::string& when) {
    using enum Style::Colour;
    Style::choose(when == "auto" ? automatic : when == "always" ? always : never);
  };
  for (CLI::App* command : app.get_subcommands({})) {
    for (CLI::Option* option : command->get_options()) {
      if (option->get_type_size() != 0) option->check(isNotEmpty);
    }
    const std::string& name = command->get_name();
    if (name == "reference") continue;
    if (name != "scenario") {
      command
          ->add_option_function<std::string>(
              "--color", choose, "Colour the output: auto (on a terminal), always, never")
          ->check(oneOf({"auto", "always", "never"}))
          ->type_name("WHEN")
          ->group("Messages and colour");
    }
    if (name == "rules" || name == "tags") continue;
    command
        ->add_flag_callback(
            "--no-warnings", [] { warningsAreShown = false; }, "Print no warnings about the input")
        ->group("Messages and colour");
  }
}

void warn(const std::string& lines) {
  if (warningsAreShown) std::cerr << lines << '\n';
}

void warn(const Faults& warnings, const std::string& file) {
  if (!warnings.isEmpty()) warn(warnings.lines(nameOfInput(file), "warning: "));
}

std::string HelpFormatter::make_option_opts(const CLI::Option* option) const {
  const bool isList = option->get_expected_max() == CLI::detail::expected_max_vector_size;
  if (option->get_positional()) return isList ? " ..." : "";
  return option->get_type_size() == 0 ? "" : ' ' + option->get_type_name();
}

std::string problemOf(const CLI::App& app, const CLI::ParseError& error) {
  const std::vector<CLI::App*> commands = app.get_subcommands();
  const std::vector<std::string> extra = app.remaining(true);
  const auto option =
      std::ranges::find_if(extra, [](const auto& word) { return word.starts_with('-'); });
  if (option != extra.end()) {
    const CLI::App& owner = commands.empty() ? app : *commands.front();
    const std::vector<std::string> names = optionNames(owner);
    if (std::ranges::find(names, *option) != names.end()) {
      return printable(*option) + " must follow the command";
    }
    return "unknown option " + printable(*option) + nearest(*option, names);
  }
  if (!extra.empty()) {
    const std::string word = jsonText(extra.front());
    if (!commands.empty()) return "unexpected argument " + word;
    return "unknown command " + word + nearest(extra.front(), commandNames(app));
  }
  if (commands.empty()) return "missing command: " + listed(commandNames(app), " or ");
  const std::string problem = error.what();
  if (dynamic_cast<const CLI::ArgumentMismatch*>(&error) != nullptr) {
    const bool isRepeated = problem.find("At Most") != std::string::npos;
    return printable(problem.substr(0, problem.find(':'))) +
           (isRepeated ? ": given more than once" : ": missing value");
  }
  return printable(problem);
}

}  // namespace camhook
