// The commands of the tool. Each function adds one command and its options to the command line.

#pragma once

#include <cerrno>
#include <cstring>
#include <fstream>
#include <iostream>
#include <string>

#include <CLI/CLI.hpp>

#include "tools/camhook/commands/CommandLine.h"
#include "tools/camhook/input/InputError.h"
#include "tools/camhook/input/InputFile.h"

namespace camhook {

/// The command runs during parsing and may throw InputError. `status` receives its exit status and
/// must outlive `app`.
void addReplay(CLI::App& app, int& status);
void addWhy(CLI::App& app, int& status);
void addDecide(CLI::App& app, int& status);
void addRules(CLI::App& app, int& status);
void addScenario(CLI::App& app, int& status);
void addTags(CLI::App& app, int& status);
void addReference(CLI::App& app);

/// "camhook 0.1.0", and the commit if it was built in a git checkout.
const char* version();

/// Writes docs/tags.md.
void writeTagsMarkdown(std::ostream& out);

/// Calls `read` with the file's content and returns the result. An InputError names the file.
auto readFile(const std::string& file, auto read) {
  try {
    return read(readInput(file));
  } catch (const InputError& error) {
    throw InputError(error.faults(), nameOfInput(file));
  }
}

/// Calls `write` with the stream of a file, or of standard output for "-". Throws InputError if the
/// file cannot be written.
void writeFile(const std::string& file, auto write) {
  if (file == "-") return write(std::cout);
  std::ofstream out(file, std::ios::binary);
  if (out) write(out);
  out.close();
  if (!out) {
    throw InputError(printable(file) + ": cannot be written: " + std::strerror(errno));
  }
}

}  // namespace camhook
