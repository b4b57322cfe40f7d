// The steps that camhook names, as its users see them.

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <map>
#include <string>
#include <utility>

#include "tools/camhook/input/Json.h"

namespace {

using camhook::Json;

const std::filesystem::path kRoot = CAM_SOURCE_DIR;

/// What a command of a shell, run in the root of the sources, writes.
std::string outputOf(const std::string& command) {
  FILE* pipe = popen(("cd '" + kRoot.string() + "' && " + command).c_str(), "r");
  std::string output;
  std::array<char, 4096> block{};
  while (const std::size_t size = std::fread(block.data(), 1, block.size(), pipe)) {
    output.append(block.data(), size);
  }
  pclose(pipe);
  return output;
}

/// The steps that wrote each tag in a call of a stored scenario, in order, with their sources.
std::multimap<std::string, std::string> writers(const std::string& scenario, std::size_t call) {
  const Json trace = camhook::parseJson(
      outputOf(CAMHOOK_COMMAND " replay --json --steps scenarios/" + scenario + ".json"));
  std::multimap<std::string, std::string> writers;
  for (const Json& write : trace["calls"][call]["writes"].items()) {
    EXPECT_GT(write["line"].integer<int>(), 0);
    writers.emplace(write["tag"].text(), write["step"].text() + " in " + write["file"].text() +
                                             (write["value"].isNull() ? ", cleared" : ""));
  }
  return writers;
}

TEST(Steps, AreTheFunctionsThatWroteATag) {
  using Writers = std::multimap<std::string, std::string>;
  EXPECT_EQ(writers("super_moon_zoom", 0),
            (Writers{{"MTK_CONTROL_RAW_TYPE",
                      "writeMoonRawType in common/updater/RequestMeta.cpp, cleared"},
                     {"MTK_CONTROL_SELECTED_STREAM_ID",
                      "writeSelectedStream in common/updater/SharedSteps.cpp"}}));

  const Writers still = writers("super_moon_zoom", 2);
  // A member, one that is called by another step, and two steps that write one tag.
  EXPECT_EQ(still.find("MTK_HESK_STILL_CAPTURE")->second,
            "updateStillCapture in common/updater/StillCapture.cpp");
  EXPECT_EQ(still.find("HESK_CONTROL_DUMPPATH")->second,
            "setDumpPathForHeskDump in common/updater/DumpPath.cpp");
  EXPECT_EQ(still.count("MTK_CONTROL_RAW_TYPE"), 2U);
}

TEST(Steps, StandBehindWhatTheyChanged) {
  const std::string text =
      outputOf(R"(printf '%s' '{"calls": [{"call": "updateRequestMeta", "sensor": 0,
        "requestNo": 7, "meta": {"MTK_CONTROL_AE_TARGET_FPS_RANGE": [15, 30],
                                 "HESK_CONTROL_FPS_RANGE_MAX": 60}}]}' | )" CAMHOOK_COMMAND
               " replay --steps - | sed -E 's/cpp:[0-9]+/cpp:N/' | head -5");
  EXPECT_EQ(text, R"(1  updateRequestMeta  sensor 0  requestNo 7
  meta  1 unchanged
    MTK_CONTROL_AE_TARGET_FPS_RANGE     [15, 30] → [60, 60]  fixHighFrameRate       FrameRate.cpp:N
      overwritten                       → [15, 60]           replaceUpperFrameRate  FrameRate.cpp:N
    MTK_CONTROL_SELECTED_STREAM_ID      absent → -1          writeSelectedStream    SharedSteps.cpp:N
)");
}

TEST(Steps, AndHooksHaveTheirReferencePage) {
  EXPECT_EQ(
      outputOf("cat docs/hooks.md"),
      outputOf("folder=$(mktemp -d); " CAMHOOK_COMMAND
               R"( reference "$folder" scenarios/*.json; cat "$folder/hooks.md"; rm -r "$folder")"))
      << "write it again: ./camhook reference docs scenarios/*.json";
}

TEST(Steps, AreUnknownWithoutDebugInformation) {
  const std::string output =
      outputOf(R"(folder=$(mktemp -d); strip -o "$folder/camhook" )" CAMHOOK_COMMAND
               R"(; "$folder/camhook" replay --json --steps scenarios/super_moon_zoom.json )"
               R"(2> "$folder/warnings"; cat "$folder/warnings"; rm -r "$folder")");
  const std::string warning =
      "camhook: steps without debug information of the library are shown as ?\n";
  ASSERT_TRUE(output.ends_with("}\n" + warning)) << output;
  const Json trace = camhook::parseJson(output.substr(0, output.size() - warning.size()));
  std::size_t writes = 0;
  for (const Json& call : trace["calls"].items()) {
    if (call.find("writes") == nullptr) continue;
    for (const Json& write : call["writes"].items()) {
      ++writes;
      EXPECT_EQ(write["step"], "?");
      EXPECT_EQ(write["file"], "?");
      EXPECT_EQ(write["line"], 0);
    }
  }
  EXPECT_GT(writes, 10U);
}

}  // namespace
