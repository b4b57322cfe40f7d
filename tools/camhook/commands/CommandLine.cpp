#include "tools/camhook/commands/CommandLine.h"

#include <algorithm>
#include <cstdint>
#include <iostream>
#include <string_view>
#include <utility>

#include "tools/camhook/input/InputFile.h"
#include "tools/camhook/input/Json.h"
#include "tools/camhook/input/JsonLine.h"
#include "tools/camhook/input/NearNames.h"
#include "tools/camhook/input/PlainText.h"
#include "tools/camhook/show/Terminal.h"

namespace camhook {
namespace {

bool warningsAreShown = true;

/// "a, b or c".
std::string alternatives(const std::vector<std::string>& words) {
  std::string text;
  for (std::size_t i = 0; i < words.size(); ++i) {
    const bool isLast = i + 1 == words.size();
    text += (i == 0 ? "" : isLast ? " or " : ", ") + words[i];
  }
  return text;
}

std::vector<std::string> commandNames(const CLI::App& app) {
  std::vector<std::string> names;
  for (const CLI::App* command : app.get_subcommands({})) names.push_back(command->get_name());
  return names;
}

std::vector<std::string> optionNames(const CLI::App& app) {
  std::vector<std::string> names;
  for (const CLI::Option* option : app.get_options()) {
    for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
    for (const std::string& name : option->get_snames()) names.push_back("-" + name);
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
    return "must be " + alternatives(words) + ", not " + jsonText(word) + nearest(word, words);
  };
  return {check, ""};
}

CLI::Validator namesOne(const std::string& what) {
  const auto check = [what](const std::string& name) {
    return name.empty() ? "must name " + what : std::string();
  };
  return {check, ""};
}

void addCommonOptions(CLI::App& app) {
  constexpr std::string_view kWithoutWarnings[] = {"rules", "tags"};
  const auto choose = [](const std::string& when) {
    using enum Style::Colour;
    Style::choose(when == "auto" ? automatic : when == "always" ? always : never);
  };
  for (CLI::App* command : app.get_subcommands({})) {
    command
        ->add_option_function<std::string>("--color", choose,
                                           "Colour the output: auto (on a terminal), always, never")
        ->check(oneOf({"auto", "always", "never"}))
        ->type_name("WHEN")
        ->group("Messages and colour");
    if (std::ranges::find(kWithoutWarnings, command->get_name()) != std::end(kWithoutWarnings)) {
      continue;
    }
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
  if (option->get_type_size() == 0) return "";
  const bool isList = option->get_expected_max() == CLI::detail::expected_max_vector_size;
  return ' ' + option->get_type_name() + (isList && option->get_positional() ? " ..." : "");
}

void checkNumbers(CLI::App& app) {
  const auto check = [](const std::string& word) {
    std::int32_t number = 0;
    if (CLI::detail::lexical_cast(word, number)) return std::string();
    return "must be a number of 32 bits, not " + jsonText(word);
  };
  for (CLI::App* command : app.get_subcommands({})) {
    for (CLI::Option* option : command->get_options()) {
      if (option->get_type_name() != CLI::detail::type_name<std::int32_t>()) continue;
      option->check(check)->type_name("NUMBER");
    }
  }
}

std::string problemOf(const CLI::App& app, const CLI::ParseError& error) {
  const std::vector<CLI::App*> commands = app.get_subcommands();
  const std::vector<std::string> extra = app.remaining(true);
  if (!extra.empty()) {
    const auto isOption = [](const std::string& word) { return word.starts_with('-'); };
    const auto option = std::ranges::find_if(extra, isOption);
    if (option != extra.end()) {
      const CLI::App& owner = commands.empty() ? app : *commands.front();
      return "unknown option " + printable(*option) + nearest(*option, optionNames(owner));
    }
    if (commands.empty()) {
      return "unknown command " + jsonText(extra.front()) +
             nearest(extra.front(), commandNames(app));
    }
    return "one word too many: " + jsonText(extra.front());
  }
  if (commands.empty()) return "a command must follow: " + alternatives(commandNames(app));
  const std::string problem = error.what();
  if (dynamic_cast<const CLI::ArgumentMismatch*>(&error) != nullptr) {
    return printable(problem.substr(0, problem.find(':'))) + ": a value must follow";
  }
  return printable(problem);
}

}  // namespace camhook
