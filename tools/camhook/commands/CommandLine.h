// What the commands of the tool have in common as the command line goes.

#pragma once

#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "tools/camhook/input/InputError.h"

namespace camhook {

/// Accepts these words alone.
CLI::Validator oneOf(std::vector<std::string> words);

/// Accepts no empty name of what is called "a file" or "a folder".
CLI::Validator namesOne(const std::string& what);

/// Adds --color to every command, and --no-warnings to those that read a scenario or dumps.
void addCommonOptions(CLI::App& app);

/// Prints lines to standard error unless --no-warnings is given.
void warn(const std::string& lines);

/// The same for the warnings about a scenario's file.
void warn(const Faults& warnings, const std::string& file);

/// Help that groups options and does not repeat which options exclude one another.
class HelpFormatter final : public CLI::Formatter {
 public:
  [[nodiscard]] std::string make_option_opts(const CLI::Option* option) const override;
};

/// Has every option of a number, of all commands, refuse what is none.
void checkNumbers(CLI::App& app);

/// What is wrong with the words that `app` has not taken, in one line.
std::string problemOf(const CLI::App& app, const CLI::ParseError& error);

}  // namespace camhook
