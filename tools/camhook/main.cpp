// The command line of camhook.

#include <algorithm>
#include <exception>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "tools/camhook/commands/Commands.h"
#include "tools/camhook/commands/Version.h"
#include "tools/camhook/show/StandardOutput.h"

namespace {

using namespace camhook;

constexpr int kFailed = 2;

/// The words after the program's name, in reverse order: CLI11 takes them from the end. "help"
/// means --help.
std::vector<std::string> wordsOf(int argc, char** argv) {
  std::vector<std::string> words(argv + std::min(argc, 1), argv + argc);
  if (!words.empty() && words.front() == "help") {
    words.erase(words.begin());
    words.emplace_back("--help");
  }
  std::ranges::reverse(words);
  return words;
}

int run(int argc, char** argv) {
  int status = 0;
  CLI::App app("Replays scenarios through the camera hooks and shows what each hook did.",
               "camhook");
  app.formatter(std::make_shared<HelpFormatter>());
  app.set_version_flag("--version", version());
  app.require_subcommand(1);
  app.footer(
      "Example:\n  camhook replay scenarios/still_burst.json\n\n"
      "camhook help COMMAND describes a command.");
  addReplay(app, status);
  addWhy(app, status);
  addDecide(app, status);
  addRules(app, status);
  addScenario(app, status);
  addTags(app, status);
  addReference(app, status);
  checkNumbers(app);
  addCommonOptions(app);
  try {
    app.parse(wordsOf(argc, argv));
  } catch (const CLI::CallForHelp& help) {
    // Help is not an answer to words that are wrong.
    if (!app.remaining(true).empty()) throw InputError("camhook: " + problemOf(app, help));
    std::cout << app.help();
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
