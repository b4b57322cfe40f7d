// The output, messages and exit statuses of the camhook program.

#include <gtest/gtest.h>

#include <set>
#include <sstream>
#include <string>

#include "common/sensormode/SensorModeTables.h"
#include "tests/support/CamhookProcess.h"
#include "tools/camhook/input/Json.h"
#include "tools/camhook/input/JsonLine.h"

namespace {

using namespace camhook;

const SensorModeTable& anyTable() { return hesk::sensorModeTables().front(); }

TEST(Camhook, RejectsInvalidCommandLines) {
  const std::string product = anyTable().productName;
  const std::pair<std::string, std::string> rows[] = {
      // the message, or its start
      {"", "camhook: missing command: replay, why, decide, "},
      {"replya", "camhook: unknown command \"replya\"; did you mean replay?\n"},
      {"replay", "camhook: FILE is required\n"},
      {"replay --lgos info a", "camhook: unknown option --lgos; did you mean --logs?\n"},
      {"--color always replay a", "camhook: --color must follow the command\n"},
      {"replay a --logs info --logs info", "camhook: --logs: given more than once\n"},
      {"why video_4k60.json 4 return", "video_4k60.json: updateSessionParams returns no value\n"},
      {"replay a b", "camhook: unexpected argument \"b\"\n"},
      {"replay still_burst.json --call 99", "camhook: --call: no call 99: the scenario has "},
      {"replay still_burst.json --hook reslut",
       "camhook: --hook: unknown call \"reslut\"; did you mean result?\n"},
      {"decide --product X --sensor ''", "camhook: --sensor: must not be empty\n"},
      {"replay still_burst.json --logs warn",
       "camhook: --logs: expected debug, info or error, found \"warn\"\n"},
      {"decide --product X --sensor 0 --call 3", "camhook: --call requires --scenario\n"},
      {"decide --product X --sensor 0 --size 640x480p",
       "camhook: --size: expected WxH, found \"640x480p\"\n"},
      {"rules " + product + " --matrix " + product, "camhook: PRODUCT excludes --matrix\n"},
      {"rules x" + product,
       "camhook: no rules for product \"x" + product + "\"; did you mean " + product},
      {"decide --product X --sensor 0 --want CUSTOM5",
       "camhook: --want: unknown sensor mode \"CUSTOM5\"; valid: 0 NORMAL_PREVIEW, "},
      {"scenario raw_capture.json",
       "raw_capture.json: no metadata dump found: expected a line such as "},
      {"scenario - --property a", "camhook: --property: expected NAME=VALUE, found \"a\"\n"},
      {"scenario - --event APP_TYPE=a --app-type b",
       "camhook: --event: duplicate key \"APP_TYPE\"\n"},
      {"why super_moon_zoom.json first return",
       "super_moon_zoom.json: expected a call number from 1, last, or requestNo:N, found "
       "\"first\"\n"},
      {"why super_moon_zoom.json requestNo:12345 return",
       "super_moon_zoom.json: no call has \"requestNo:12345\"\n"},
      {"why third_party_apps.json 1 MTK_CONTROL_AE_TARGET_FPS_RANGE --want 30",
       "camhook: --want: MTK_CONTROL_AE_TARGET_FPS_RANGE has 2 items: [_, 30]\n"},
      {"why super_moon_zoom.json last MTK_CONTROL_RAWTYPE",
       "super_moon_zoom.json: unknown tag \"MTK_CONTROL_RAWTYPE\"; did you mean "
       "MTK_CONTROL_RAW_TYPE?\n"},
      {"why super_moon_zoom.json 1 out:MTK_CONTROL_RAW_TYPE",
       "super_moon_zoom.json: updateRequestMeta has no container \"out\"; it has meta\n"},
      {"why super_moon_zoom.json 1 MTK_CONTROL_RAW_TYPE --want '\"x\"'",
       "camhook: --want[0]: expected an integer of int32, -2147483648 to 2147483647, found "
       "\"x\"\n"},
  };
  for (const auto& [words, message] : rows) {
    const Outcome outcome = camhookWith(words);
    EXPECT_EQ(outcome.status, 2) << words;
    EXPECT_EQ(outcome.output.substr(0, message.size()), message) << words;
    EXPECT_EQ(outcome.output.find('\n'), outcome.output.size() - 1) << outcome.output;
  }
}

TEST(Camhook, RunsNoCallsOfInvalidScenario) {
  const Outcome outcome = camhookWith(
      "replay --json -", R"({"calls": [{"call": "createInstance", "sensor": 0}, {"call": "x"}]})");
  EXPECT_EQ(outcome.status, 2);
  EXPECT_EQ(outcome.output, "standard input:1:62: calls[1].call: unknown call \"x\"\n");
}

TEST(Camhook, FiltersLogRecordsByLevel) {
  const auto levels = [](const std::string& option) {
    std::set<char> letters;
    std::istringstream text(camhookWith("replay phone_without_modules.json" + option).output);
    for (std::string line; std::getline(text, line);) {
      if (line.starts_with("    ") && line.find("  ", 4) == 5) letters.insert(line[4]);
    }
    return letters;
  };
  EXPECT_EQ(levels(""), std::set<char>());
  EXPECT_EQ(levels(" --logs error"), std::set<char>({'E'}));
  EXPECT_EQ(levels(" --logs info"), std::set<char>({'E', 'I'}));
  EXPECT_EQ(levels(" --logs debug"), std::set<char>({'D', 'E', 'I'}));
}

TEST(Camhook, FiltersTrace) {
  const std::string calls = "replay still_burst.json --hook request --call 4 --call last --json";
  EXPECT_EQ(parseJson(camhookWith(calls, "", "2>/dev/null").output)["calls"].size(), 2U);
  const auto partOf = [](const std::string& words) {
    const std::string output = camhookWith("replay super_moon_zoom.json " + words).output;
    return output.substr(output.find("\n\n") + 2);
  };
  EXPECT_EQ(partOf("--tag MTK_CONTROL_RAW_TYPE"), R"(2  updateRequestMeta  sensor 0  requestNo 2
  meta
    MTK_CONTROL_RAW_TYPE                absent → 60

)");
  for (const char* form : {"", " --json"}) {
    const Outcome none =
        camhookWith(std::string("replay super_moon_zoom.json --hook result") + form);
    EXPECT_EQ(none.status, 1);
    EXPECT_NE(none.output.find("camhook: no call matches\n"), std::string::npos) << none.output;
  }
}

TEST(Camhook, ShowsOverridesOfDecision) {
  const std::string decide =
      "decide --product X --sensor 1 --video --app-type heskCamera --night 1 --ui-module 17";
  EXPECT_EQ(camhookWith(decide).output,
            R"(result  2 NORMAL_VIDEO, decided by override 8: video in night mode
base  2 NORMAL_VIDEO (no row matches)
inputs
  ro.product.model.zdm      X  ! no rules for this product
  sensor                    1
  video stream              yes
  APP_TYPE                  heskCamera
  COM_HESK_CURRENTUIMODULE  17  ! no rule names this module
  HESK_CONTROL_NIGHTMODE    1
  absent: APP_NAME, MTK_STREAMING_FEATURE_HFPS_MODE, MTK_CONTROL_AE_TARGET_FPS_RANGE, HESK_CONTROL_EISENABLE, HESK_CONTROL_VIDEOALGOTYPE, MTK_HDR_FEATURE_HDR_MODE, main output size
filters  no rules for this product
overrides
  1  near miss: mtk_ims not wider than 4:3, 0 NORMAL_PREVIEW
     ≠APP_TYPE heskCamera, must be mtk_ims; =size absent
  6  near miss: video HDR on the front camera, 5 CUSTOM1
     ≠MTK_HDR_FEATURE_HDR_MODE absent, must be 3; =sensor 1
  8  decides: video in night mode, 2 NORMAL_VIDEO
     =HESK_CONTROL_NIGHTMODE 1; =video stream yes
  9  near miss: video of the OEM camera app at 640x480, 5 CUSTOM1
     =APP_TYPE heskCamera; =video stream yes; ≠size absent, must be 640x480
  other overrides: 2, 3, 4, 5, 7
)");
}

/// Each line of `rules PRODUCT --check` is a command whose decision is by the row that it names.
TEST(Camhook, PrintsCommandForEachRule) {
  std::istringstream lines(
      camhookWith(std::string("rules ") + anyTable().productName + " --check").output);
  std::string last;
  std::size_t count = 0;
  for (std::string line; std::getline(lines, line); last = line) {
    const std::size_t command = line.find(": camhook ");  // after "KX0105 sensor0Video row 3"
    if (command == std::string::npos) continue;
    const std::string text = camhookWith(line.substr(command + 10)).output;
    const std::size_t number = line.find(" row ");
    const std::string list = line.substr(0, number);
    EXPECT_NE(text.find("filters  " + list + '\n'), std::string::npos) << text;
    const std::string row = ' ' + line.substr(number, command - number) + "  ";
    const std::size_t shown = text.find('\n' + row);
    ASSERT_NE(shown, std::string::npos) << text;
    EXPECT_NE(text.substr(shown + 1, text.find('\n', shown + 1) - shown).find("  matched"),
              std::string::npos)
        << text;
    ++count;
  }
  EXPECT_EQ(last, "all " + std::to_string(count) + " rows can match");
}

TEST(Camhook, DecidesWithContainerOfEarlierCall) {
  const Json inherited =
      parseJson(camhookWith("decide --json --scenario - --call last", R"({"calls": [
          {"call": "updateSessionParams", "sensor": 0, "streams": [],
           "meta": {"HESK_CONTROL_EISENABLE": 1}},
          {"call": "decideSensorScenario", "sensor": 0, "metaOf": 1, "video": true, "width": 4,
           "height": 3, "meta": {"COM_HESK_CURRENTUIMODULE": 53}}]})")
                    .output)["inputs"];
  EXPECT_EQ(inherited["HESK_CONTROL_EISENABLE"], 1);
  EXPECT_EQ(inherited["COM_HESK_CURRENTUIMODULE"], 53);
}

TEST(Camhook, WritesDecisionAsJson) {
  const Json none = parseJson(camhookWith("decide --json --product X --sensor 0").output);
  EXPECT_EQ(none["scenario"], 255);
  EXPECT_TRUE(none["product"].isNull());
  EXPECT_EQ(none["decidedBy"]["kind"], "default");
  EXPECT_TRUE(none["inputs"]["main output size"].isNull());

  const Json decision = parseJson(
      camhookWith("decide --json --product KX0104 --sensor 1 --app-type QQ --app-name Whatsapp "
                  "--size 640x480")
          .output);
  EXPECT_EQ(decision["name"], "NORMAL_PREVIEW");
  EXPECT_EQ(decision["list"], "sensor1Preview");
  EXPECT_EQ(decision["decidedBy"]["kind"], "override");
  EXPECT_EQ(decision["rows"][decision["base"]["row"].integer<std::size_t>().value() - 1]["verdict"],
            "matched by app type");
  std::vector<std::string> verdicts;
  for (const Json& override : decision["overrides"].items()) {
    if (override["verdict"] != "no") verdicts.push_back(override["verdict"].text());
  }
  EXPECT_EQ(verdicts, (std::vector<std::string>{"near miss", "near miss", "overwritten", "decides",
                                                "near miss", "near miss"}));
}

TEST(Camhook, ListsTags) {
  EXPECT_EQ(parseJson(camhookWith("tags --json frame_count").output),
            parseJson(R"([{"name": "MTK_HESK_FRAME_COUNT",
    "value": "0x800b000f", "type": "int32", "count": 1,
    "meaning": "request: frames in the current non-zsl burst"}])"));
  EXPECT_EQ(parseJson(camhookWith("tags --json 0x800b000a").output),
            parseJson(R"([{"name": "0x800b000a", "value": "0x800b000a", "type": "uint8",
                             "count": 1, "meaning": "session: always 1"}])"));
  EXPECT_GT(parseJson(camhookWith("tags --json").output).size(), 100U);
  const Outcome none = camhookWith("tags frmae_count");
  EXPECT_EQ(none.status, 1);
  EXPECT_TRUE(none.output.starts_with("camhook: no tag matches \"frmae_count\"")) << none.output;
  const std::string values = camhookWith("tags ANDROID_CONTROL_CAPTURE_INTENT").output;
  EXPECT_NE(values.find("\n  2  STILL_CAPTURE\n"), std::string::npos) << values;
  EXPECT_EQ(camhookWith("tags HESK_CONTROL_IS_DUAL_SLAVE").output,
            "HESK_CONTROL_IS_DUAL_SLAVE  0xc00300a0  int32[1]  1 when the capturing camera is the "
            "slave of a master/slave pair\n"
            "  updateCaptureRawParameter  out  read by     isNeedRawAlgo\n"
            "  updateCaptureRawParameter  out  written by  markSlave\n");
  // The meaning of another tag contains this name.
  EXPECT_EQ(parseJson(camhookWith("tags --json MTK_P1NODE_CAPTURE_VALUE64").output).size(), 1U);
}

TEST(Camhook, WritesReferencePages) {
  expectStoredPages("still_burst.json", {"tags.md", "rules.md", "scenario.schema.json"});
}

}  // namespace
