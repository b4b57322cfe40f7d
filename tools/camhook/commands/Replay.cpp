#include "tools/camhook/commands/Commands.h"

#include <filesystem>
#include <iostream>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tools/camhook/explain/Decision.h"
#include "tools/camhook/input/InputError.h"
#include "tools/camhook/input/InputFile.h"
#include "tools/camhook/input/MetadataJson.h"
#include "tools/camhook/input/PlainText.h"
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
};

/// The log levels from `least` on; none if it is empty.
std::string_view levelsOf(const std::string& least) {
  if (least == "debug") return kAllLevels;
  if (least == "info") return "IE";
  return least.empty() ? "" : "E";
}

TraceFilter filterOf(const ReplayOptions& options, const ScenarioText& scenario) {
  const auto read = [](const char* option, const std::vector<std::string>& words, auto readWord) {
    std::set<decltype(readWord(words.front()))> selected;
    try {
      for (const std::string& word : words) selected.insert(readWord(word));
    } catch (const InputError& error) {
      throw InputError("camhook: " + std::string(option) + ": " + error.what());
    }
    return selected;
  };
  const auto callAt = [&](std::size_t index) { return scenario.call(index).call; };
  const auto readCall = [&](const std::string& word) {
    return callFromText(word, scenario.callCount(), callAt);
  };
  return {.calls = read("--call", options.calls, readCall),
          .hooks = read("--hook", options.hooks, hookFromText),
          .tags = read("--tag", options.tags, tagFromText)};
}

/// The title of a page: "still_burst" for "scenarios/still_burst.json".
std::string titleOfPage(const std::string& file) {
  return printable(std::filesystem::path(nameOfInput(file)).stem().string());
}

std::unique_ptr<TraceWriter> makeWriter(std::ostream& out, const ReplayOptions& options,
                                        const ScenarioText& scenario) {
  if (!options.page.empty()) {
    return std::make_unique<Page>(out, titleOfPage(options.file), scenario);
  }
  if (options.json) return std::make_unique<JsonTrace>(out);
  return std::make_unique<TextTrace>(out, Style::forStandardOutput(), levelsOf(options.logs),
                                     scenario.about());
}

/// Runs the scenario and writes its trace to `out` in the form that the options request. Returns
/// false if the filters match no call.
bool writeTrace(std::ostream& out, const ReplayOptions& options, const ScenarioText& scenario) {
  const TraceFilter filter = filterOf(options, scenario);
  const std::unique_ptr<TraceWriter> writer = makeWriter(out, options, scenario);
  auto* const page = dynamic_cast<Page*>(writer.get());
  std::optional<Replay> run(std::in_place, scenario.platform());
  if (page == nullptr && !options.json && options.logs.empty()) host::LogSink::enableLevels({});
  StepFinder steps;
  if (options.steps || page != nullptr) run->followSteps(&steps, Replay::StepsOf::writes);
  std::vector<std::pair<std::size_t, DecisionInputs>> decisions;  // for a page
  bool isAnyShown = filter.isWhole();
  for (std::size_t i = 0; i < scenario.callCount(); ++i) {
    const ScenarioCall call = scenario.call(i);
    if (page != nullptr && std::holds_alternative<DecideSensorScenario>(call.call)) {
      const Call decision = run->withMetaOf(call);
      decisions.emplace_back(i + 1, decisionInputsOf(std::get<DecideSensorScenario>(decision)));
    }
    CallTrace trace = run->run(call);
    if (!filter.apply(trace)) continue;
    writer->write(trace);
    isAnyShown = true;
  }
  const host::TextMap eventStore = run->phone().eventStore.all();
  run.reset();  // a process has one phone at a time
  if (!decisions.empty()) {
    DecidingPhone phone;
    for (const auto& [number, inputs] : decisions) {
      page->addDecision(number, phone.explain(inputs));
    }
  }
  if (options.json || filter.isWhole()) writer->finish(eventStore);
  return isAnyShown;
}

int replay(const ReplayOptions& options) {
  const ScenarioText scenario =
      readFile(options.file, [](std::string text) { return ScenarioText(std::move(text)); });
  warn(scenario.warnings(), options.file);
  bool isAnyShown = true;
  writeFile(options.page.empty() ? "-" : options.page,
            [&](std::ostream& out) { isAnyShown = writeTrace(out, options, scenario); });
  if (isAnyShown) return 0;
  std::cerr << "camhook: no call matches\n";
  return 1;
}

}  // namespace

void addReplay(CLI::App& app, int& status) {
  const auto options = std::make_shared<ReplayOptions>();
  CLI::App* command = app.add_subcommand("replay", "Run a scenario and show what each hook did");
  command->add_option("FILE", options->file, "The scenario; - reads it from standard input")
      ->required();
  CLI::Option* json = command->add_flag("--json", options->json, "Write the trace as JSON");
  CLI::Option* page =
      command
          ->add_option("--html", options->page,
                       "Write the trace as a page for any browser; - is standard output")
          ->type_name("PAGE")
          ->excludes(json);
  CLI::Option* steps =
      command->add_flag("--steps", options->steps, "Show which step of the library wrote each tag");
  CLI::Option* logs = command
                          ->add_option("--logs", options->logs,
                                       "Show log records from this level: debug, info, error")
                          ->check(oneOf({"debug", "info", "error"}))
                          ->type_name("LEVEL")
                          ->excludes(page);
  for (CLI::Option* option : {json, page, steps, logs}) option->group("Output");
  const auto addFilter = [command, page](const char* name, std::vector<std::string>& words,
                                         const char* word, const char* meaning) {
    command->add_option(name, words, meaning)
        ->allow_extra_args(false)
        ->type_name(word)
        ->excludes(page)
        ->group("Filters (repeatable)");
  };
  addFilter("--call", options->calls, "CALL",
            "Show this call: its number, from 1, last, or requestNo:N");
  addFilter("--hook", options->hooks, "HOOK",
            "Show calls of this hook: request, result, session, capture or a call name");
  addFilter("--tag", options->tags, "TAG", "Show only the changes of this tag");
  command->footer(
      "The exit status is 1 if no call matches the filters.\n\n"
      "Example:\n  camhook replay scenarios/still_burst.json --logs info");
  command->callback([options, &status] { status = replay(*options); });
}

}  // namespace camhook
