// The names of the library functions that wrote each tag, in the output of camhook.

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <utility>

#include "tests/support/CamhookProcess.h"
#include "tools/camhook/input/Json.h"

namespace {

using camhook::Json;

/// Returns the functions, with their source files, that wrote each tag in a call of a stored
/// scenario.
std::multimap<std::string, std::string> writers(const std::string& scenario, std::size_t call) {
  const Json trace = camhook::parseJson(
      camhookWith("replay --json --steps " + scenario + ".json", "", "2>/dev/null").output);
  std::multimap<std::string, std::string> writers;
  for (const Json& write : trace["calls"][call]["writes"].items()) {
    EXPECT_GT(write["line"].integer<int>(), 0);
    writers.emplace(write["tag"].text(), write["step"].text() + " in " + write["file"].text() +
                                             (write["value"].isNull() ? ", cleared" : ""));
  }
  return writers;
}

TEST(Steps, NameFunctionsThatWroteTag) {
  using Writers = std::multimap<std::string, std::string>;
  EXPECT_EQ(writers("super_moon_zoom", 0),
            (Writers{{"MTK_CONTROL_RAW_TYPE",
                      "writeMoonRawType in common/updater/RequestMeta.cpp, cleared"},
                     {"MTK_CONTROL_SELECTED_STREAM_ID",
                      "writeSelectedStream in common/updater/SharedSteps.cpp"}}));

  const Writers still = writers("super_moon_zoom", 2);
  // A member function, a function that another step calls, and two steps that write one tag.
  EXPECT_EQ(still.find("MTK_HESK_STILL_CAPTURE")->second,
            "updateStillCapture in common/updater/StillCapture.cpp");
  EXPECT_EQ(still.find("HESK_CONTROL_DUMPPATH")->second,
            "setDumpPathForHeskDump in common/updater/StillCapture.cpp");
  EXPECT_EQ(still.count("MTK_CONTROL_RAW_TYPE"), 2U);
}

TEST(Steps, FollowChanges) {
  const std::string text = camhookWith("replay --steps - | sed -E 's/cpp:[0-9]+/cpp:N/' | head -5",
                                       R"({"calls": [{"call": "updateRequestMeta", "sensor": 0,
        "requestNo": 7, "meta": {"MTK_CONTROL_AE_TARGET_FPS_RANGE": [15, 30],
                                 "HESK_CONTROL_FPS_RANGE_MAX": 60}}]})",
                                       "2>/dev/null")
                               .output;
  EXPECT_EQ(text, R"(1  updateRequestMeta  sensor 0  requestNo 7
  meta  1 unchanged
    MTK_CONTROL_AE_TARGET_FPS_RANGE     [15, 30] → [60, 60]  fixHighFrameRate       FrameRate.cpp:N
      overwritten                       → [15, 60]           replaceUpperFrameRate  FrameRate.cpp:N
    MTK_CONTROL_SELECTED_STREAM_ID      absent → -1          writeSelectedStream    SharedSteps.cpp:N
)");
}

TEST(Steps, HaveReferencePage) { expectStoredPages("*.json", {"hooks.md"}); }

}  // namespace
