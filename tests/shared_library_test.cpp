// Replays scenarios through the shared library. The tool and most other tests link its objects
// instead.

#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "tests/support/CamhookProcess.h"
#include "tools/camhook/input/ScenarioReader.h"
#include "tools/camhook/run/Replay.h"
#include "tools/camhook/show/TextTrace.h"

namespace {

using namespace camhook;

std::string traceOf(const std::string& name) {
  Scenario scenario = readScenario(contentOf(kScenarios / (name + ".json")));
  Replay replay(std::move(scenario.platform));
  std::ostringstream out;
  TextTrace trace(out, Style(false), kAllLevels, scenario.about);
  for (const ScenarioCall& call : scenario.calls) trace.write(replay.run(call));
  trace.finish(replay.phone().eventStore.all());
  return out.str();
}

// Updaters live as long as the process, so only one of these scenarios may call their hooks.
TEST(SharedLibrary, ProducesStoredTraces) {
  for (const char* name : {"still_burst", "sensor_modes"}) {
    EXPECT_EQ(traceOf(name), contentOf(kScenarios / (std::string(name) + ".trace")));
  }
}

}  // namespace
