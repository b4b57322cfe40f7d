#include "tools/camhook/commands/CommandLine.h"

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <utility>

#include "tools/camhook/input/Json.h"
#include "tools/camhook/input/JsonLine.h"
#include "tools/camhook/input/NearNames.h"
#include "tools/camhook/input/PlainText.h"

namespace camhook {
namespace {

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
