// The camhook program as its users run it: output, errors, exit statuses.

#include <gtest/gtest.h>

#include <set>
#include <sstream>
#include <string>

#include "tests/support/CamhookProcess.h"
#include "tools/camhook/input/Json.h"
#include "tools/camhook/show/Terminal.h"

namespace {

using camhook::Json;

TEST(Camhook, RefusesWrongWordsInOneLineWithStatus2) {
  const std::pair<const char*, const char*> rows[] = {
      {"replay", "camhook: FILE is required\n"},
      {"replay no_such.json", "no_such.json: cannot be read: No such file or directory\n"},
      {"replay .", ".: is a folder\n"},
      {"replay still_burst.json --logs warn", "camhook: --logs: warn not in {debug,info,error}\n"},
      {"decide --product X --sensor 0 --fps 15", "camhook: --fps: must be LO,HI, not \"15\"\n"},
      {"decide --product X --sensor 0 --size 640x480p",
       "camhook: --size: must be WxH, not \"640x480p\"\n"},
      {"metadata raw_capture.json",
       "raw_capture.json: line 1: no dump of metadata, which begins with the number of its "
       "entries\n"},
      {"replay still_burst.json --data-root /dev/null",
       "camhook: --data-root /dev/null: Not a directory\n"},
      {"replay -",
       "standard input: line 1, column 1: not JSON: syntax error while parsing "
       "value - unexpected end of input; expected '[', '{', or a literal\n"},
  };
  for (const auto& [words, line] : rows) {
    const Outcome outcome = camhookWith(words);
    EXPECT_EQ(outcome.status, 2) << words;
    EXPECT_EQ(outcome.output, line) << words;
  }
}

TEST(Camhook, RunsNothingBeforeTheWholeScenarioIsRead) {
  const Outcome outcome = camhookWith(
      "replay --json -", R"({"calls": [{"call": "createInstance", "sensor": 0}, {"call": "x"}]})");
  EXPECT_EQ(outcome.status, 2);
  EXPECT_EQ(outcome.output, "standard input: calls[1].call: unknown call \"x\"\n");
}

TEST(Camhook, ShowsRecordsOfALevelAndAbove) {
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

TEST(Terminal, BreaksLinesAtBlanks) {
  const std::string line = "    D  one \x1b[32mtwo three\x1b[0m four";
  EXPECT_EQ(camhook::wrapped(line, 25, 7), line);
  EXPECT_EQ(camhook::wrapped(line, 16, 7),
            "    D  one \x1b[32mtwo\n       three\x1b[0m\n       four");
  EXPECT_EQ(camhook::wrapped("    word", 3, 7), "    word");
}

TEST(Camhook, TellsTheWayToADecision) {
  EXPECT_EQ(camhookWith("decide --product KX0105-EU --sensor 0 --video --app-type heskCamera "
                        "--hfps 2 --eis 1 --video-algo 0 --night 1 --size 640x480")
                .output,
            R"(5 CUSTOM1

rules  KX0105 sensor0Video, 4 rows
filters
  getSensorModeCfgByMultiCondition  row 4 meets 2 of 3: eisMode 1, videoAlgoType 0; isHfpsMode is 2, not 1
                                    row 3 meets 2 of 2: eisMode 1, videoAlgoType 0: row 3 is taken, 5 CUSTOM1
  getSensorModeCfgByEisMode         not asked: a rule is selected already
  getSensorModeCfgByIsHfpsMode      not asked: a rule is selected already
  getSensorModeCfgByApptype         not asked: a rule is selected already
  getSensorModeCfgByFps             not asked: a rule is selected already
  getSensorModeCfgByVideoAlgoType   not asked: a rule is selected already
  getSensorModeCfgByUiMode          not asked: a rule is selected already
base  5 CUSTOM1, of row 3
overrides
  2 NORMAL_VIDEO  video in night mode: overwritten
  5 CUSTOM1       video of the maker's app at 640x480: holds
)");
  EXPECT_EQ(camhookWith("decide --product KX0102 --sensor 1 --video --fps 15,30 --ui-module -2 "
                        "--hdr 3 --app-name Instagram")
                .output,
            R"(5 CUSTOM1

rules  KX0102 sensor1Video, 1 row
filters
  getSensorModeCfgByMultiCondition  no rule of its kind is loaded
  getSensorModeCfgByEisMode         eisMode absent: no row has it
  getSensorModeCfgByIsHfpsMode      not asked: MTK_STREAMING_FEATURE_HFPS_MODE is not 1
  getSensorModeCfgByApptype         appType "": row 1 is taken, 5 CUSTOM1
  getSensorModeCfgByFps             not asked: a rule is selected already
  getSensorModeCfgByVideoAlgoType   not asked: a rule is selected already
  getSensorModeCfgByUiMode          not asked: a rule is selected already
base  5 CUSTOM1, of row 1
overrides
  5 CUSTOM1  video HDR on the front camera: holds
)");
}

TEST(Camhook, GivesADecisionAsData) {
  const Json none = Json::parse(camhookWith("decide --json --product X --sensor 0").output);
  EXPECT_EQ(none.at("scenario"), 255);
  EXPECT_TRUE(none.at("product").is_null());
  EXPECT_TRUE(none.at("base").at("row").is_null());

  const Json decision = Json::parse(
      camhookWith("decide --json --product KX0104 --sensor 1 --app-type QQ --app-name Whatsapp "
                  "--size 640x480")
          .output);
  EXPECT_EQ(decision.at("name"), "NORMAL_PREVIEW");
  EXPECT_EQ(decision.at("list"), "sensor1Preview");
  EXPECT_EQ(decision.at("rules").size(), 10U);
  const Json& byAppType = decision.at("filters").at(3);
  EXPECT_EQ(byAppType.at("filter"), "getSensorModeCfgByApptype");
  EXPECT_EQ(byAppType.at("takenRow"), 5);
  EXPECT_EQ(byAppType.at("trials").at(4), Json::parse(R"({"row": 5, "comparisons": [
    {"field": "appType", "wanted": "QQ", "found": "QQ", "equal": true}]})"));
  EXPECT_EQ(decision.at("base"), Json::parse(R"({"scenario": 0, "row": 5})"));
  EXPECT_EQ(decision.at("overrides").size(), 2U);
  EXPECT_EQ(decision.at("overrides").at(0).at("holds"), false);
  EXPECT_EQ(decision.at("overrides").at(1).at("scenario"), 0);
}

TEST(Camhook, ListsTheCatalogue) {
  const Outcome byName = camhookWith("tags --json frame_count");
  EXPECT_EQ(Json::parse(byName.output), Json::parse(R"([{"name": "MTK_HESK_FRAME_COUNT",
    "value": "0x800b000f", "type": "int32", "count": 1,
    "meaning": "request: frames in the current non-zsl burst"}])"));
  const Outcome byValue = camhookWith("tags --json 0x00010036");
  EXPECT_EQ(Json::parse(byValue.output).at(0).at("name"), "MTK_HESK_SUPER_NIGHT_ON");
  const Json all = Json::parse(camhookWith("tags --json").output);
  EXPECT_GT(all.size(), 100U);
  EXPECT_TRUE(Json::parse(camhookWith("tags --json stream_flags").output)[0].at("count").is_null());
  EXPECT_EQ(camhookWith("tags nothing_has_this_name").output, "no tag matches\n");
}

TEST(Camhook, ReferencePageIsTheCatalogue) {
  EXPECT_EQ(contentOf(kSourceRoot / "docs/tags.md"), camhookWith("tags --markdown").output)
      << "make it anew: ./camhook tags --markdown > docs/tags.md";
}

}  // namespace
