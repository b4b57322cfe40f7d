// The camhook program as its users run it: output, errors, exit statuses.

#include <gtest/gtest.h>

#include <filesystem>
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
      {"",
       "camhook: a command must follow: replay, diff, why, decide, rules, scenario, tags or "
       "reference\n"},
      {"replya", "camhook: unknown command \"replya\"; near: replay\n"},
      {"replay", "camhook: FILE is required\n"},
      {"replay --lgos info a", "camhook: unknown option --lgos; near: --logs\n"},
      {"replay a b", "camhook: one word too many: \"b\"\n"},
      {"replay still_burst.json --call 99",
       "camhook: --call: there is no call 99: the scenario has 6\n"},
      {"replay still_burst.json --hook reslut",
       "camhook: --hook: unknown call \"reslut\"; near: result\n"},
      {"decide --product X --sensor ''",
       "camhook: --sensor: must be a number of 32 bits, not \"\"\n"},
      {"replay no_such.json", "no_such.json: cannot be read: No such file or directory\n"},
      {"replay .", ".: is a folder\n"},
      {"replay still_burst.json --logs warn",
       "camhook: --logs: must be debug, info or error, not \"warn\"\n"},
      {"decide --product X --sensor 0 --fps 15", "camhook: --fps: must be LO,HI, not \"15\"\n"},
      {"decide --product X --sensor 0 --size 640x480p",
       "camhook: --size: must be WxH, not \"640x480p\"\n"},
      {"rules KX0105 --matrix KX0104", "camhook: PRODUCT excludes --matrix\n"},
      {"rules KX015", "camhook: no table is for product \"KX015\"; near: KX0105, KX0107, KX0106\n"},
      {"scenario raw_capture.json",
       "raw_capture.json: no dump of metadata: no line has \"Dumping camera metadata array: "
       "13 / 40 entries\", nor an entry such as \"android.control.captureIntent (1000d): "
       "byte[1]\"\n"},
      {"scenario - --property a", "camhook: --property: must be NAME=VALUE, not \"a\"\n"},
      {"scenario - --event APP_TYPE=a --app-type b",
       "camhook: --event: \"APP_TYPE\" is given twice\n"},
      {"replay still_burst.json --data-root /dev/null",
       "camhook: the data root /dev/null cannot be made: Not a directory\n"},
      {"replay -", "standard input:1:1: not JSON: a value must stand here, not the end\n"},
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
  EXPECT_EQ(outcome.output, "standard input:1:62: calls[1].call: unknown call \"x\"\n");
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

TEST(Camhook, ShowsThePartOfATraceThatIsAskedFor) {
  const std::string calls = "replay still_burst.json --hook request --call 4 --call last";
  const Json trace = Json::parse(camhookWith(calls + " --json --steps", "", "2>/dev/null").output);
  // A still capture's raw type, which the moon scene's step of the same hook overwrites.
  std::vector<Json> values;
  for (const Json& call : trace.at("calls")) {
    for (const Json& write : call.at("writes")) {
      if (write.at("tag") == "MTK_CONTROL_RAW_TYPE") values.push_back(write.at("value"));
    }
  }
  const Json one = {{"type", "int32"}, {"items", {1}}};
  EXPECT_EQ(values, (std::vector<Json>{one, {}, {}, {}}));

  const auto partOf = [](const std::string& words) {
    const std::string output = camhookWith("replay super_moon_zoom.json " + words).output;
    return output.substr(output.find("\n\n") + 2);
  };
  EXPECT_EQ(partOf("--tag MTK_CONTROL_RAW_TYPE"), R"(2  updateRequestMeta  sensor 0  requestNo 2
  meta
    MTK_CONTROL_RAW_TYPE                absent → 60

)");
  EXPECT_EQ(partOf("--hook result"), "no call matches\n");
}

TEST(Terminal, BreaksLinesAtBlanks) {
  const std::string line = "    D  one \x1b[32mtwo three\x1b[0m four";
  EXPECT_EQ(camhook::wrapped(line, 25, 7), line);
  EXPECT_EQ(camhook::wrapped(line, 16, 7),
            "    D  one \x1b[32mtwo\n       three\x1b[0m\n       four");
  EXPECT_EQ(camhook::wrapped("    word", 3, 7), "    word");
}

TEST(Camhook, TellsTheWayToADecision) {
  const std::string text =
      camhookWith(
          "decide --product KX0105-EU --sensor 0 --video --app-type heskCamera --hfps 2 "
          "--eis 1 --video-algo 0 --night 1 --size 640x480 --ui-module 17")
          .output;
  EXPECT_EQ(text.substr(0, text.find("  1  no: mtk_ims")), R"(inputs
  ro.product.model.zdm             KX0105-EU
  sensor                           0
  video stream                     yes
  APP_TYPE                         heskCamera
  APP_NAME                         absent
  MTK_STREAMING_FEATURE_HFPS_MODE  2
  MTK_CONTROL_AE_TARGET_FPS_RANGE  absent
  HESK_CONTROL_EISENABLE           1
  HESK_CONTROL_VIDEOALGOTYPE       0
  COM_HESK_CURRENTUIMODULE         17  ! no rule knows this module
  MTK_HDR_FEATURE_HDR_MODE         absent
  HESK_CONTROL_NIGHTMODE           1
  main output size                 640x480
rules  KX0105 sensor0Video
         hfps  eis  algo
  given  2     1    0
  row 1  ≠1             6 CUSTOM2  hfps is 2
  row 2        ≠2       7 CUSTOM3  eis is 1
  row 3        =1   =0  5 CUSTOM1  taken: meets 2 of 2
  row 4  ≠1    =1   =0  6 CUSTOM2  meets 2 of 3: hfps is 2
base  5 CUSTOM1, of row 3
overrides
)");
  EXPECT_EQ(text.substr(text.find("  7  ")), R"(  7  no: Wechat at 640x480 on the front camera
     ≠APP_TYPE heskCamera, must be Wechat; ≠sensor 0, must be 1; =size 640x480
  8  overwritten: video in night mode, 2 NORMAL_VIDEO
     =HESK_CONTROL_NIGHTMODE 1; =video stream yes
  9  holds: video of the maker's app at 640x480, 5 CUSTOM1
     =APP_TYPE heskCamera; =video stream yes; =size 640x480
result  5 CUSTOM1, decided by override 9: video of the maker's app at 640x480
)");
}

TEST(Camhook, TellsWhyRowsAndOverridesDoNotDecide) {
  const std::string text =
      camhookWith(
          "decide --product KX0105 --sensor 0 --app-name Dingding --size 1335x1000 "
          "--ui-module 53 --eis 1")
          .output;
  for (const char* line :
       {"  given  absent      1    53\n",
        "  row 1  =none            ≠26  2 NORMAL_VIDEO    too late: row 9 was taken\n",
        "  row 4  ≠QQ                   5 CUSTOM1         app type is absent\n",
        "  row 9  =none       =1   =53  2 NORMAL_VIDEO    taken: meets 2 of 2\n",
        "  2  near miss: Dingding near 4:3\n",
        "     =APP_NAME Dingding; ≠aspect ratio 1.335, must be below 1.334\n",
        "result  2 NORMAL_VIDEO, decided by row 9 of KX0105 sensor0Preview\n"}) {
    EXPECT_NE(text.find(line), std::string::npos) << line << text;
  }
}

TEST(Camhook, TellsWhatWouldDecideOtherwise) {
  const std::string inputs = "decide --product KX0105 --sensor 0 --video --eis 1 --app-type a ";
  EXPECT_EQ(camhookWith(inputs + "--what-if video-algo=0 --what-if APP_NAME=Kuaishou").output,
            R"(APP_NAME absent → Kuaishou
HESK_CONTROL_VIDEOALGOTYPE absent → 0
            before                                        after
rules       KX0105 sensor0Video                           KX0105 sensor0Video
row 1       hfps is absent                                hfps is absent
row 2       eis is 1                                      eis is 1
row 3       meets 1 of 2: algo is absent                  taken: meets 2 of 2
row 4       meets 1 of 3: hfps is absent, algo is absent  meets 2 of 3: hfps is absent
base        2 NORMAL_VIDEO                                5 CUSTOM1
override 1  no                                            no
override 2  no                                            no
override 3  no                                            holds
override 4  no                                            no
override 5  no                                            no
override 6  no                                            no
override 7  no                                            no
override 8  no                                            no
override 9  no                                            no
result      2 NORMAL_VIDEO                                2 NORMAL_VIDEO
)");
  const Outcome never = camhookWith(inputs + "--want CUSTOM4");
  EXPECT_EQ(never.status, 1);
  EXPECT_TRUE(never.output.ends_with("unreachable for KX0105, sensor 0, video\n"));
  const Json want = Json::parse(camhookWith(inputs + "--want 7 --json").output).at("want");
  EXPECT_EQ(want, Json::parse(R"({"scenario": 7, "reachable": true, "smallest": [
    {"changes": {"HESK_CONTROL_EISENABLE": 2},
     "decidedBy": "7 CUSTOM3, decided by row 2 of KX0105 sensor0Video"}]})"));
}

TEST(Camhook, DecidesAsACallOfAScenarioDoes) {
  const Json trace = Json::parse(camhookWith("replay --json sensor_modes.json").output);
  std::size_t number = 0;
  for (const Json& call : trace.at("calls")) {
    ++number;
    if (call.at("call") != "decideSensorScenario") continue;
    const Json decision = Json::parse(
        camhookWith("decide --json --scenario sensor_modes.json --call " + std::to_string(number))
            .output);
    EXPECT_EQ(decision.at("scenario"), call.at("return")) << number;
  }
  EXPECT_EQ(camhookWith("decide --scenario sensor_modes.json --call 1000").status, 2);
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

TEST(Camhook, GivesTheRulesOfOneProduct) {
  const Json rules = Json::parse(camhookWith("rules KX0104-EU --json").output);
  EXPECT_EQ(rules.at("tables").size(), 1U);
  EXPECT_EQ(rules.at("tables").at(0).at("product"), "KX0104");
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

TEST(Camhook, WritesThePagesOfTheDocumentation) {
  const std::string folder = testing::TempDir() + "/camhook_reference";
  std::filesystem::create_directory(folder);
  EXPECT_EQ(camhookWith("reference " + folder + " still_burst.json", "", "2>/dev/null").status, 0);
  for (const char* page : {"tags.md", "rules.md", "scenario.schema.json"}) {
    EXPECT_EQ(contentOf(kSourceRoot / "docs" / page),
              contentOf(std::filesystem::path(folder) / page))
        << "write it again: ./camhook reference docs scenarios/*.json";
  }
  std::filesystem::remove_all(folder);
}

}  // namespace
