// What the commands of the tool have in common as the command line goes.

#pragma once

#include <string>
#include <vector>

#include <CLI/CLI.hpp>

namespace camhook {

/// Accepts these words alone.
CLI::Validator oneOf(std::vector<std::string> words);

/// Accepts no empty name of what is called "a file" or "a folder".
CLI::Validator namesOne(const std::string& what);

/// Has every option of a number, of all commands, refuse what is none.
void checkNumbers(CLI::App& app);

/// What is wrong with the words that `app` has not taken, in one line.
std::string problemOf(const CLI::App& app, const CLI::ParseError& error);

}  // namespace camhook
