// The command line of all commands: common options, validators, help and messages.

#pragma once

#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "tools/camhook/input/InputError.h"

namespace camhook {

/// Accepts one of these words.
CLI::Validator oneOf(std::vector<std::string> words);

/// Accepts a 32-bit integer.
CLI::Validator isNumber();

/// Adds --color and --no-warnings to the commands that use them, and rejects empty values of all
/// options.
void addCommonOptions(CLI::App& app);

/// Prints lines to standard error unless --no-warnings is given.
void warn(const std::string& lines);

/// Prints the warnings about a file unless --no-warnings is given.
void warn(const Faults& warnings, const std::string& file);

/// Help without the lists of excluded options.
class HelpFormatter final : public CLI::Formatter {
 public:
  [[nodiscard]] std::string make_option_opts(const CLI::Option* option) const override;
};

/// Returns the message for a command line that `app` rejected.
std::string problemOf(const CLI::App& app, const CLI::ParseError& error);

}  // namespace camhook
