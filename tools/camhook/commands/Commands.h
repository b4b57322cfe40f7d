// The commands of the tool. Each function adds one command and its options to the command line.

#pragma once

#include <iosfwd>

#include <CLI/CLI.hpp>

#include "tools/camhook/commands/CommandLine.h"

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

/// Writes docs/tags.md.
void writeTagsMarkdown(std::ostream& out);

}  // namespace camhook
