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
#include "tools/camhook/show/LineDiff.h"

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

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

/// What is stored and not given, and the other way round, under the titles of the calls. Titles
/// alone begin a line with a digit or a letter.
std::string differenceOf(const std::string& stored, const std::string& given) {
  const std::vector<std::string> old = linesOf(stored);
  const std::vector<std::string> fresh = linesOf(given);
  std::string difference;
  std::string title;
  for (const auto& [mark, text] : camhook::diffLines(old, fresh)) {
    const bool isTitle = !text.empty() && std::isalnum(static_cast<unsigned char>(text.front()));
    if (mark == ' ' && isTitle) title = std::string(text) + '\n';
    if (mark == ' ') continue;
    difference += title;
    title.clear();
    difference.append(1, mark).append(" ").append(text).append("\n");
  }
  return difference;
}

class StoredTrace : public testing::TestWithParam<std::string> {};

TEST_P(StoredTrace, IsWhatTheScenarioGives) {
  const Outcome outcome = camhookWith("replay --logs debug " + GetParam() + ".json");
  EXPECT_EQ(outcome.status, 0);
  const std::string stored = contentOf(kFolder / (GetParam() + ".trace"));
  if (outcome.output == stored) return;
  ADD_FAILURE() << differenceOf(stored, outcome.output) << "store it: ./check --traces";
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
  EXPECT_EQ(differenceOf(contentOf(kFolder / (names.front() + ".trace.json")), given), "")
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
