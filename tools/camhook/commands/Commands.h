// The commands of the tool. Each function adds one to the command line, with its options.

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

/// The command runs while the command line is parsed, sets `status`, which must outlive `app`, to
/// its exit status, and may throw InputError.
void addReplay(CLI::App& app, int& status);
void addWhy(CLI::App& app, int& status);
void addDecide(CLI::App& app, int& status);
void addRules(CLI::App& app, int& status);
void addScenario(CLI::App& app, int& status);
void addTags(CLI::App& app, int& status);
void addReference(CLI::App& app);

/// Writes docs/tags.md.
void writeTagsMarkdown(std::ostream& out);

/// Returns `read` of the content of a file. An InputError names the file.
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
