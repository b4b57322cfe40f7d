// The command line of camhook.

#include <exception>
#include <iostream>
#include <sstream>
#include <string>

#include <CLI/CLI.hpp>

#include "tools/camhook/commands/Commands.h"
#include "tools/camhook/commands/Version.h"
#include "tools/camhook/show/StandardOutput.h"
#include "tools/camhook/show/Terminal.h"

namespace {

using namespace camhook;

constexpr int kFailed = 2;

/// Meanings of options that are too long for a line go on below their beginning.
void writeHelp(std::ostream& out, const std::string& help, std::size_t width) {
  constexpr std::size_t kMeaningColumn = 30;
  std::istringstream lines(help);
  for (std::string line; std::getline(lines, line);) {
    out << wrapped(line, width, line.starts_with(' ') ? kMeaningColumn : 0) << '\n';
  }
}

int run(int argc, char** argv) {
  int status = 0;
  CLI::App app("Replays scenarios through the camera hooks and shows what each hook did.",
               "camhook");
  app.set_version_flag("--version", version());
  app.require_subcommand(1);
  app.footer(
      "Example:\n  camhook replay scenarios/still_burst.json\n\n"
      "camhook COMMAND --help tells about a command.");
  addReplay(app, status);
  addWhy(app, status);
  addDecide(app, status);
  addRules(app, status);
  addScenario(app, status);
  addTags(app, status);
  addReference(app, status);
  checkNumbers(app);
  try {
    app.parse(argc, argv);
  } catch (const CLI::CallForHelp&) {
    writeHelp(std::cout, app.help(), Style::forStandardOutput().width());
  } catch (const CLI::Success& request) {  // --version
    return app.exit(request);
  } catch (const CLI::ParseError& error) {
    throw InputError("camhook: " + problemOf(app, error));
  }
  return status;
}

}  // namespace

int main(int argc, char** argv) {
  std::ios::sync_with_stdio(false);
  const StandardOutput output;
  try {
    const int status = run(argc, argv);
    std::cout.flush();
    return status;
  } catch (const InputError& error) {
    std::cerr << error.what() << '\n';
  } catch (const OutputError& error) {
    if (!error.isUnheard()) std::cerr << "camhook: " << error.what() << '\n';
  } catch (const std::exception& error) {
    std::cerr << "camhook: " << printable(error.what()) << '\n';
  }
  return kFailed;
}
