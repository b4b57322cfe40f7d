// Compares the stored traces with replays of their scenarios.

#include <gtest/gtest.h>

#include <initializer_list>
#include <sstream>
#include <string>
#include <vector>

#include "host/LogSink.h"
#include "tests/support/CamhookProcess.h"
#include "tools/camhook/input/ScenarioReader.h"
#include "tools/camhook/run/Replay.h"
#include "tools/camhook/show/JsonTrace.h"

namespace {

class StoredTrace : public testing::TestWithParam<std::string> {};

TEST_P(StoredTrace, MatchesReplay) {
  const Outcome outcome =
      camhookWith("replay --logs debug " + GetParam() + ".json", "", "2>/dev/null");
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(contentOf(kScenarios / (GetParam() + ".trace")), outcome.output)
      << "to store it: ./check --traces";
}

INSTANTIATE_TEST_SUITE_P(Scenarios, StoredTrace, testing::ValuesIn(namesOf(".json")),
                         [](const auto& name) { return name.param; });

TEST(StoredTraces, BelongToScenariosWithDescription) {
  EXPECT_EQ(namesOf(".trace"), namesOf(".json"));
  for (const std::string& name : namesOf(".json")) {
    const std::string text = contentOf(kScenarios / (name + ".json"));
    EXPECT_FALSE(camhook::readScenario(text).about.empty()) << name;
  }
}

TEST(StoredTraces, MatchJsonForm) {
  EXPECT_EQ(contentOf(kSourceRoot / "tests/support/still_capture_dump.trace.json"),
            camhookWith("replay --json still_capture_dump.json").output)
      << "to store it: ./check --traces";
}

/// Returns the JSON trace of a replay with these log levels enabled, without log records.
std::string traceWithoutRecords(const std::string& name, std::initializer_list<char> levels) {
  auto scenario = camhook::readScenario(contentOf(kScenarios / (name + ".json")));
  scenario.platform.clock.emplace();
  camhook::Replay replay(std::move(scenario.platform));
  host::LogSink::enableLevels(levels);
  std::ostringstream text;
  camhook::JsonTrace trace(text);
  for (const camhook::ScenarioCall& call : scenario.calls) {
    camhook::CallTrace done = replay.run(call);
    done.logs.clear();
    trace.write(done);
  }
  trace.finish(replay.phone().eventStore.all());
  return text.str();
}

TEST(StoredScenarios, AreIndependentOfLogLevels) {
  for (const std::string& name : namesOf(".json")) {
    // Updaters live as long as the process: both compared replays start from the state that this
    // one leaves.
    traceWithoutRecords(name, {});
    EXPECT_EQ(traceWithoutRecords(name, {'D', 'E', 'I'}), traceWithoutRecords(name, {})) << name;
  }
}

}  // namespace
