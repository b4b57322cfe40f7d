// The scenarios, and the traces stored beside them.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "host/LogSink.h"
#include "tests/support/CamhookProcess.h"
#include "tools/camhook/input/ScenarioReader.h"
#include "tools/camhook/run/Replay.h"
#include "tools/camhook/show/JsonTrace.h"

namespace {

const std::filesystem::path kFolder = kSourceRoot / "scenarios";

/// The names of the files with this ending.
std::vector<std::string> namesOf(const std::string& ending) {
  std::vector<std::string> names;
  for (const auto& file : std::filesystem::directory_iterator(kFolder)) {
    const std::string name = file.path().filename().string();
    const std::string stem = name.substr(0, name.find('.'));
    if (name == stem + ending) names.push_back(stem);
  }
  std::ranges::sort(names);
  return names;
}

class StoredTrace : public testing::TestWithParam<std::string> {};

TEST_P(StoredTrace, IsWhatTheScenarioGives) {
  const Outcome outcome =
      camhookWith("replay --logs debug " + GetParam() + ".json", "", "2>/dev/null");
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(contentOf(kFolder / (GetParam() + ".trace")), outcome.output)
      << "store it: ./check --traces";
}

INSTANTIATE_TEST_SUITE_P(Scenarios, StoredTrace, testing::ValuesIn(namesOf(".json")),
                         [](const auto& name) { return name.param; });

TEST(StoredTraces, BelongToScenariosThatSayWhatTheyShow) {
  EXPECT_EQ(namesOf(".trace"), namesOf(".json"));
  for (const std::string& name : namesOf(".json")) {
    const std::string text = contentOf(kFolder / (name + ".json"));
    EXPECT_FALSE(camhook::readScenario(text).about.empty()) << name;
  }
}

TEST(StoredTraces, FixTheFormOfJson) {
  const std::vector<std::string> names = namesOf(".trace.json");
  ASSERT_EQ(names.size(), 1U);
  const std::string given = camhookWith("replay --json " + names.front() + ".json").output;
  EXPECT_EQ(contentOf(kFolder / (names.front() + ".trace.json")), given)
      << "store it: ./check --traces";
}

/// What a scenario does but for its records, with these log levels open.
std::string traceWithoutRecords(const std::string& name, std::initializer_list<char> levels) {
  auto scenario = camhook::readScenario(contentOf(kFolder / (name + ".json")));
  scenario.platform.clock.emplace();
  camhook::Replay replay(std::move(scenario.platform));
  host::LogSink::openLevels(levels);
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

TEST(Scenarios, DoTheSameWithTheLogClosed) {
  for (const std::string& name : namesOf(".json")) {
    // The updaters outlive a replay: both begin with what the first leaves behind.
    traceWithoutRecords(name, {});
    EXPECT_EQ(traceWithoutRecords(name, {'D', 'E', 'I'}), traceWithoutRecords(name, {})) << name;
  }
}

}  // namespace
