#include "fuzz/HookTarget.h"

#include <cstddef>
#include <filesystem>
#include <memory>
#include <sstream>
#include <string>

#include "fuzz/RunTape.h"
#include "fuzz/Updaters.h"
#include "host/LogSink.h"
#include "tools/camhook/input/Json.h"
#include "tools/camhook/run/DataRoot.h"
#include "tools/camhook/run/Replay.h"
#include "tools/camhook/show/JsonTrace.h"
#include "tools/camhook/show/TextTrace.h"

namespace fuzz {
namespace {

using namespace camhook;

void openLog(const HookRun& run) {
  // A level that stays shut is named by a letter that no level has.
  host::LogSink::openLevels(
      {run.isDebugOpen ? 'D' : ' ', run.isErrorOpen ? 'E' : ' ', run.isInfoOpen ? 'I' : ' '});
  host::Phone::current().log.setTagsWanted(run.areTagsWanted);
}

std::unique_ptr<TraceWriter> traceWriter(const HookRun& run, std::ostream& out) {
  switch (run.trace) {
    case TraceForm::text:
      return std::make_unique<TextTrace>(out, Style(false), TextTrace::Records::debug);
    case TraceForm::json: return std::make_unique<JsonTrace>(out);
    case TraceForm::none: break;
  }
  return nullptr;
}

void makeCalls(const HookRun& run) {
  Updaters updaters;
  Replay replay(run.scenario.platform, [&](int sensor) { return updaters.of(sensor); });
  openLog(run);
  std::ostringstream out;
  const auto writer = traceWriter(run, out);
  for (const ScenarioCall& call : run.scenario.calls) {
    const CallTrace trace = replay.run(call);
    if (writer != nullptr) writer->write(trace);
  }
  if (writer == nullptr) return;
  writer->finish(replay.phone().eventStore.all());
  // What is written for programs is JSON, whatever stands in it; else this throws. Keys that are no
  // UTF-8, which no scenario has, may be written alike.
  if (run.trace == TraceForm::json) (void)Json::parse(out.str());
}

}  // namespace

void runHooks(const CallFamily& family, std::span<const std::uint8_t> tape) {
  static const DataRoot root("");
  HookRun run = readRun(family, tape);
  run.scenario.platform.dataRoot = root.path().string();
  makeCalls(run);
  for (const auto& entry : std::filesystem::recursive_directory_iterator(root.path())) {
    if (entry.is_regular_file()) std::filesystem::remove(entry);
  }
}

}  // namespace fuzz
