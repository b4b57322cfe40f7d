// Tapes of fuzzers: a scenario comes back from its tape, and every sequence of bytes is a tape.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <numeric>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "fuzz/RunTape.h"
#include "fuzz/Tape.h"
#include "fuzz/Updaters.h"
#include "tools/camhook/input/ScenarioReader.h"
#include "tools/camhook/run/DataRoot.h"
#include "tools/camhook/run/Replay.h"
#include "tools/camhook/show/JsonTrace.h"

namespace {

using namespace fuzz;
using Bytes = std::vector<std::uint8_t>;

/// Every kind of call.
CallFamily wholeFamily() {
  CallFamily family{.name = "whole",
                    .kinds = std::vector<std::size_t>(std::variant_size_v<camhook::Call>)};
  std::iota(family.kinds.begin(), family.kinds.end(), std::size_t{0});
  return family;
}

/// What the library makes of a scenario, at a time at which no clock is on its way.
std::string traceOf(camhook::Scenario scenario) {
  const camhook::DataRoot root("");
  scenario.platform.dataRoot = root.path().string();
  if (!scenario.platform.clock) scenario.platform.clock.emplace().tm_mday = 1;
  Updaters updaters;
  camhook::Replay replay(scenario.platform, [&](int sensor) { return updaters.of(sensor); });
  std::ostringstream out;
  camhook::JsonTrace trace(out);
  for (const auto& [call, arguments] : scenario.calls) trace.write(replay.run({call}));
  trace.finish(replay.phone().eventStore.all());
  return out.str();
}

TEST(RunTape, GivesAScenarioBack) {
  int count = 0;
  for (const auto& entry :
       std::filesystem::directory_iterator(std::string(CAM_SOURCE_DIR) + "/scenarios")) {
    if (entry.path().string().find(".trace.") != std::string::npos) continue;
    std::ifstream in(entry.path());
    const std::string text{std::istreambuf_iterator<char>(in), {}};
    const camhook::Scenario scenario = camhook::readScenario(text);
    const Bytes tape = writeRun(wholeFamily(), {.scenario = scenario});
    EXPECT_EQ(traceOf(readRun(wholeFamily(), tape).scenario), traceOf(scenario)) << entry.path();
    ++count;
  }
  EXPECT_GT(count, 20);
}

TEST(RunTape, ReadsWhatItWroteFromAnyBytes) {
  std::mt19937 random(1);
  for (int round = 0; round < 300; ++round) {
    Bytes bytes(random() % 600);
    // Small numbers are lengths that a tape of this size has room for.
    for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(random() >> random() % 32);
    for (const CallFamily& family : callFamilies()) {
      const Bytes tape = writeRun(family, readRun(family, bytes));
      EXPECT_EQ(writeRun(family, readRun(family, tape)), tape) << round << ' ' << family.name;
    }
  }
}

TEST(RunTape, KeepsLongListsWithinTheirLimit) {
  // The length 255: longer; 0x1000 items on the tape, of which it has one, doubled three times.
  const Bytes tape = {255, 0x00, 0x10, 3, 0, 7};
  const auto itemsWithin = [&](std::size_t limit) {
    TapeReader reader(tape);
    reader.limitItems(limit);
    std::vector<std::int16_t> items;
    transfer(reader, items);
    return items;
  };
  EXPECT_EQ(itemsWithin(100'000).size(), 0x8000U);
  EXPECT_EQ(itemsWithin(100'000).front(), 7);
  EXPECT_EQ(itemsWithin(100'000).back(), 0);
  EXPECT_EQ(itemsWithin(1), std::vector<std::int16_t>{7});
  EXPECT_TRUE(itemsWithin(0).empty());
}

TEST(RunTape, KnowsTheLimitsOfNumbers) {
  const auto numberOf = []<typename T>(T number, const Bytes& tape) {
    TapeReader reader(tape);
    transfer(reader, number);
    return number;
  };
  EXPECT_EQ(numberOf(0, {0, 0xff}), 255);
  EXPECT_EQ(numberOf(0, {1, 1, 2, 0, 0x80}), INT32_MIN + 0x201);
  EXPECT_EQ(numberOf(0, {2}), INT32_MIN);
  EXPECT_EQ(numberOf(std::int64_t{0}, {5}), INT64_MAX);
  EXPECT_EQ(numberOf(0U, {14}), UINT32_MAX);
  EXPECT_TRUE(std::isnan(numberOf(0.0F, {2})));
}

}  // namespace
