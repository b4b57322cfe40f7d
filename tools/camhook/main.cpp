// The command line of camhook.

#include <cerrno>
#include <csignal>
#include <cstring>
#include <exception>
#include <ios>
#include <iostream>
#include <memory>
#include <string_view>

#include <CLI/CLI.hpp>

#include "tools/camhook/commands/Commands.h"
#include "tools/camhook/commands/Version.h"
#include "tools/camhook/input/PlainText.h"

namespace {

using namespace camhook;

constexpr int kFailed = 2;

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
  addReference(app);
  addCommonOptions(app);
  static char helpOption[] = "--help";
  if (argc > 1 && std::string_view(argv[1]) == "help") argv[1] = helpOption;
  try {
    app.parse(argc, argv);
  } catch (const CLI::CallForHelp& help) {
    // Invalid words are an error, also with --help.
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
  std::signal(SIGPIPE, SIG_IGN);  // a write to a closed pipe fails instead
  std::ios::sync_with_stdio(false);
  std::cout.exceptions(std::ios::badbit);
  std::cerr.tie(nullptr);  // cerr does not flush cout, whose write may have failed
  try {
    const int status = run(argc, argv);
    std::cout.flush();
    return status;
  } catch (const InputError& error) {
    std::cerr << error.what() << '\n';
  } catch (const std::ios::failure&) {
    // If the reader closed the pipe, there is nothing to report.
    if (errno != EPIPE) {
      std::cerr << "camhook: the output cannot be written: " << std::strerror(errno) << '\n';
    }
  } catch (const std::exception& error) {
    std::cerr << "camhook: " << printable(error.what()) << '\n';
  }
  return kFailed;
}
