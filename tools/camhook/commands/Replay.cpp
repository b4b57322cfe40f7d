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
#include "tools/camhook/run/DataRoot.h"
#include "tools/camhook/run/Replay.h"
#include "tools/camhook/run/StepFinder.h"
#include "tools/camhook/show/JsonTrace.h"
#include "tools/camhook/show/Page.h"
#include "tools/camhook/show/Terminal.h"
#include "tools/camhook/show/TextTrace.h"
#include "tools/camhook/show/TraceFilter.h"

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
  std::string dataRoot;
  bool noWarnings = false;
};

TextTrace::Records recordsFromName(const std::string& level) {
  if (level == "debug") return TextTrace::Records::debug;
  if (level == "info") return TextTrace::Records::info;
  if (level == "error") return TextTrace::Records::error;
  return TextTrace::Records::none;
}

TraceFilter filterOf(const ReplayOptions& options, const ScenarioText& scenario) {
  TraceFilter filter;
  const auto addAll = [](const char* option, const std::vector<std::string>& words, auto add) {
    try {
      for (const std::string& word : words) add(word);
    } catch (const InputError& error) {
      throw InputError("camhook: " + std::string(option) + ": " + error.what());
    }
  };
  const auto callAt = [&](std::size_t index) { return scenario.call(index).call; };
  addAll("--call", options.calls,
         [&](const auto& word) { filter.addCall(word, scenario.callCount(), callAt); });
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

/// Runs the calls one by one: `before` sees each as it is about to run, `after` what it did.
template <typename Before, typename After>
void runCalls(Replay& run, const ScenarioText& scenario, const DataRoot& dataRoot, Before before,
              After after) {
  ProgressLine progress(scenario.callCount());
  for (std::size_t i = 0; i < scenario.callCount(); ++i) {
    const ScenarioCall call = scenario.call(i);
    if (opensFiles(call)) run.phone().config.dataRoot = dataRoot.path().string();
    before(i, call);
    CallTrace trace = run.run(call);
    trace.number = i + 1;
    after(i, trace);
    progress.advance(i + 1);
  }
}

void writeTrace(const ReplayOptions& options, const ScenarioText& scenario,
                const DataRoot& dataRoot) {
  const TraceFilter filter = filterOf(options, scenario);
  std::unique_ptr<TraceWriter> writer;
  if (options.json) {
    writer = std::make_unique<JsonTrace>(std::cout);
  } else {
    writer = std::make_unique<TextTrace>(std::cout, Style::forStandardOutput(),
                                         recordsFromName(options.logs), scenario.about());
  }
  Replay run(platformOf(scenario));
  if (!options.json && options.logs.empty()) host::LogSink::openLevels({});  // nobody sees records
  std::optional<StepFinder> steps;
  if (options.steps) run.followSteps(&steps.emplace(), Replay::StepsOf::writes);
  bool isAnyShown = false;
  const auto show = [&](std::size_t index, CallTrace& trace) {
    if (!filter.shows(index, trace)) return;
    filter.trim(trace);
    writer->write(trace);
    isAnyShown = true;
  };
  runCalls(
      run, scenario, dataRoot, [](std::size_t, const ScenarioCall&) {}, show);
  if (options.json || filter.isWhole()) {
    writer->finish(run.phone().eventStore.all());
  } else if (!isAnyShown) {
    std::cout << "no call matches\n";
  }
}

void writePage(std::ostream& out, const ReplayOptions& options, const ScenarioText& scenario,
               const DataRoot& dataRoot) {
  Page page(out, titleOfPage(options.file), scenario);
  std::optional<Replay> run(std::in_place, platformOf(scenario));
  StepFinder steps;
  run->followSteps(&steps, Replay::StepsOf::writes);
  std::vector<std::pair<std::size_t, Inputs>> decisions;
  const auto noteDecision = [&](std::size_t index, const ScenarioCall& call) {
    const auto* decision = std::get_if<DecideSensorScenario>(&call.call);
    if (decision != nullptr) decisions.emplace_back(index + 1, inputsOf(*decision));
  };
  runCalls(*run, scenario, dataRoot, noteDecision,
           [&](std::size_t /*index*/, const CallTrace& trace) { page.write(trace); });
  const host::TextMap eventStore = run->phone().eventStore.all();
  run.reset();  // a process has one phone at a time
  DecidingPhone phone;
  for (const auto& [number, inputs] : decisions) {
    page.addDecision(number, jsonFromDecision(phone.explain(inputs)));
  }
  page.finish(eventStore);
}

int replay(const ReplayOptions& options) {
  const ScenarioText scenario =
      readFile(options.file, [](std::string text) { return ScenarioText(std::move(text)); });
  const Faults& warnings = scenario.warnings();
  if (!options.noWarnings && !warnings.isEmpty()) {
    std::cerr << warnings.lines(nameOfInput(options.file), "warning: ") << '\n';
  }
  DataRoot dataRoot(options.dataRoot);
  dataRoot.removeAtAnyEnd();
  if (options.page.empty()) {
    writeTrace(options, scenario, dataRoot);
  } else {
    writeFile(options.page,
              [&](std::ostream& out) { writePage(out, options, scenario, dataRoot); });
  }
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
  command
      ->add_option("--data-root", options->dataRoot,
                   "Folder that stands for the root of the phone's file system; by default a fresh "
                   "one that goes when the scenario has run")
      ->check(namesOne("a folder"))
      ->type_name("DIR");
  command->footer("Example:\n  camhook replay scenarios/still_burst.json --logs info");
  command->callback([options, &status] { status = replay(*options); });
}

}  // namespace camhook
