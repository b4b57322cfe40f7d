// Fuzzes hooks: an input is a scenario, of which only the calls in CAM_FUZZ_CALLS are run.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

#include "host/LogSink.h"
#include "tools/camhook/explain/OwnUpdaters.h"
#include "tools/camhook/input/InputError.h"
#include "tools/camhook/input/ScenarioReader.h"
#include "tools/camhook/run/Replay.h"
#include "tools/camhook/show/JsonTrace.h"
#include "tools/camhook/show/TextTrace.h"

namespace {

using namespace camhook;

bool isMade(const ScenarioCall& call) {
  const std::string_view name = std::visit([](const auto& each) { return each.kName; }, call.call);
  return (' ' + std::string(CAM_FUZZ_CALLS) + ' ').find(' ' + std::string(name) + ' ') !=
         std::string::npos;
}

/// Limits buffer sizes, to save memory and time.
void limitMemory(Scenario& scenario) {
  constexpr std::int32_t kMaxBuffer = 1 << 22;
  constexpr std::uint32_t kMaxData = 1 << 16;
  if (auto& buffer = scenario.platform.tuningBuffer; buffer && buffer->bufferSize) {
    buffer->bufferSize = std::clamp(*buffer->bufferSize, 0, kMaxBuffer);
  }
  for (ScenarioCall& call : scenario.calls) {
    if (auto* tuning = std::get_if<UpdateTuningData>(&call.call)) tuning->size %= kMaxData;
  }
}

/// Runs the calls on a new phone, with new updaters and without a handle of the camera provider
/// service. The input's size selects whether the log is enabled and which trace is written.
void replay(const Scenario& scenario, std::size_t size) {
  OwnUpdaters updaters;
  Replay replay(scenario.platform, [&](int sensor) { return updaters.of(sensor); });
  if (size % 5 == 0) host::LogSink::enableLevels({});
  std::ostringstream out;
  std::unique_ptr<TraceWriter> writer;
  if (size % 3 == 1) writer = std::make_unique<JsonTrace>(out);
  if (size % 3 == 2) {
    writer = std::make_unique<TextTrace>(out, Style(false), kAllLevels);
  }
  for (const ScenarioCall& call : scenario.calls) {
    const CallTrace trace = replay.run(call);
    if (writer != nullptr) writer->write(trace);
  }
  if (writer == nullptr) return;
  writer->finish(replay.phone().eventStore.all());
  if (size % 3 == 1) (void)parseJson(out.str());  // throws if the text is not JSON
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Scenario scenario;
  try {
    scenario = readScenario({reinterpret_cast<const char*>(data), size});
  } catch (const InputError&) {
    return -1;  // not added to the corpus
  }
  std::erase_if(scenario.calls, std::not_fn(isMade));
  if (scenario.calls.empty()) return -1;
  limitMemory(scenario);
  replay(scenario, size);
  return 0;
}
