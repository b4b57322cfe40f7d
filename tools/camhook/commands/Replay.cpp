#include "tools/camhook/commands/Commands.h"

#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "common/tags/TagCatalogue.h"
#include "tools/camhook/explain/DecisionText.h"
#include "tools/camhook/input/InputError.h"
#include "tools/camhook/input/ScenarioReader.h"
#include "tools/camhook/run/Replay.h"
#include "tools/camhook/run/StepFinder.h"
#include "tools/camhook/run/TraceFilter.h"
#include "tools/camhook/show/JsonTrace.h"
#include "tools/camhook/show/Page.h"
#include "tools/camhook/show/Terminal.h"
#include "tools/camhook/show/TextTrace.h"

namespace camhook {
namespace {

struct ReplayOptions {
  std::string file;
  bool json = false;
  std::string page;
  bool steps = false;
  std::vector<std::string> calls;
  std::vector<std::string> hooks;
  std::vector<std::string> tags;
  std::string logs;
  bool noWarnings = false;
};

TextTrace::Records recordsFromName(const std::string& level) {
  if (level == "debug") return TextTrace::Records::debug;
  if (level == "info") return TextTrace::Records::info;
  if (level == "error") return TextTrace::Records::error;
  return TextTrace::Records::none;
}

TraceFilter filterOf(const ReplayOptions& options, std::size_t callCount) {
  TraceFilter filter;
  const auto addAll = [](const char* option, const std::vector<std::string>& words, auto add) {
    try {
      for (const std::string& word : words) add(word);
    } catch (const InputError& error) {
      throw InputError("camhook: " + std::string(option) + ": " + error.what());
    }
  };
  addAll("--call", options.calls, [&](const auto& word) { filter.addCall(word, callCount); });
  addAll("--hook", options.hooks, [&](const auto& word) { filter.addHook(word); });
  addAll("--tag", options.tags, [&](const auto& word) { filter.addTag(word); });
  return filter;
}

/// A phone of this scenario, which names the catalogue's tags.
host::PhoneConfig platformOf(const ScenarioText& scenario) {
  host::PhoneConfig platform = scenario.platform();
  platform.tagName = [](std::uint32_t tag) {
    const hesk::TagDescription* info = hesk::findTag(tag);
    return info != nullptr ? info->name : std::string_view();
  };
  return platform;
}

/// Runs the scenario and writes its trace to `out` in the form that the options request. Returns
/// false if a filter leaves no call.
bool writeTrace(std::ostream& out, const ReplayOptions& options, const ScenarioText& scenario) {
  const bool isPage = !options.page.empty();
  const TraceFilter filter = filterOf(options, scenario.callCount());
  std::unique_ptr<TraceWriter> writer;
  Page* page = nullptr;
  if (isPage) {
    auto made = std::make_unique<Page>(out, titleOfPage(options.file), scenario);
    page = made.get();
    writer = std::move(made);
  } else if (options.json) {
    writer = std::make_unique<JsonTrace>(out);
  } else {
    writer = std::make_unique<TextTrace>(out, Style::forStandardOutput(),
                                         recordsFromName(options.logs), scenario.about());
    if (options.logs.empty()) host::LogSink::openLevels({});  // records are not shown
  }
  std::optional<Replay> run(std::in_place, platformOf(scenario));
  std::optional<StepFinder> steps;
  if (options.steps || isPage) run->followSteps(&steps.emplace(), Replay::StepsOf::writes);
  std::vector<std::pair<std::size_t, Inputs>> decisions;
  bool isAnyShown = filter.isWhole();
  for (std::size_t i = 0; i < scenario.callCount(); ++i) {
    const ScenarioCall call = scenario.call(i);
    CallTrace trace = run->run(call);
    trace.number = i + 1;
    if (!filter.shows(i, trace)) continue;
    filter.trim(trace);
    writer->write(trace);
    isAnyShown = true;
    const auto* decision = std::get_if<DecideSensorScenario>(&call.call);
    if (isPage && decision != nullptr) decisions.emplace_back(i + 1, inputsOf(*decision));
  }
  const host::TextMap eventStore = run->phone().eventStore.all();
  run.reset();  // a process has one phone at a time
  if (!decisions.empty()) {
    DecidingPhone phone;
    for (const auto& [number, inputs] : decisions) {
      page->addDecision(number, jsonFromDecision(phone.explain(inputs)));
    }
  }
  if (isPage || options.json || filter.isWhole()) writer->finish(eventStore);
  return isAnyShown;
}

int replay(const ReplayOptions& options) {
  const ScenarioText scenario =
      readFile(options.file, [](std::string text) { return ScenarioText(std::move(text)); });
  const Faults& warnings = scenario.warnings();
  if (!options.noWarnings && !warnings.isEmpty()) {
    std::cerr << warnings.lines(nameOfInput(options.file), "warning: ") << '\n';
  }
  bool isAnyShown = true;
  const auto write = [&](std::ostream& out) { isAnyShown = writeTrace(out, options, scenario); };
  if (options.page.empty()) {
    write(std::cout);
  } else {
    writeFile(options.page, write);
  }
  if (!isAnyShown && !options.json) std::cout << "no call matches\n";
  return 0;
}

}  // namespace

void addReplay(CLI::App& app, int& status) {
  const auto options = std::make_shared<ReplayOptions>();
  CLI::App* command = app.add_subcommand("replay", "Run a scenario and show what each hook did");
  command->add_option("FILE", options->file, "The scenario; - reads it from standard input")
      ->required();
  CLI::Option* json = command->add_flag("--json", options->json, "Write the trace as JSON");
  CLI::Option* page = command
                          ->add_option("--html", options->page,
                                       "Write the whole trace, its steps and its records into this "
                                       "file, a page for any browser")
                          ->check(namesOne("a file"))
                          ->type_name("PAGE")
                          ->excludes(json);
  const auto addNarrowing = [command, page](const char* name, std::vector<std::string>& words,
                                            const char* word, const char* meaning) {
    command->add_option(name, words, meaning)
        ->allow_extra_args(false)
        ->type_name(word)
        ->excludes(page);
  };
  addNarrowing("--call", options->calls, "CALL",
               "Show only this call, by its number, from 1, or last; may be given again");
  addNarrowing("--hook", options->hooks, "HOOK",
               "Show only the calls of this hook: request, result, session, capture or the call's "
               "own name; likewise");
  addNarrowing("--tag", options->tags, "TAG",
               "Show only where this tag changes, and nothing else of the call; likewise");
  command->add_flag("--steps", options->steps, "Show which step of the library wrote each tag");
  command->add_flag("--no-warnings", options->noWarnings,
                    "Say nothing of what the scenario probably does not mean");
  command->add_option("--logs", options->logs, "Show log records of this level and above")
      ->check(oneOf({"debug", "info", "error"}))
      ->type_name("LEVEL")
      ->excludes(page);
  command->footer("Example:\n  camhook replay scenarios/still_burst.json --logs info");
  command->callback([options, &status] { status = replay(*options); });
}

}  // namespace camhook
