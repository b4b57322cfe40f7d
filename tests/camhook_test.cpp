// The output, messages and exit statuses of the camhook program.

#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <sstream>
#include <string>

#include "common/sensormode/SensorModeTables.h"
#include "tests/support/CamhookProcess.h"
#include "tools/camhook/input/Json.h"
#include "tools/camhook/input/JsonLine.h"

namespace {

using camhook::Json;

const SensorModeTable& anyTable() { return hesk::sensorModeTables().front(); }

TEST(Camhook, RejectsInvalidCommandLines) {
  const std::string product = anyTable().productName;
  const std::pair<std::string, std::string> rows[] = {
      // the message, or its start
      {"", "camhook: missing command: replay, why, decide, "},
      {"replya", "camhook: unknown command \"replya\"; did you mean replay?\n"},
      {"replay", "camhook: FILE is required\n"},
      {"replay --lgos info a", "camhook: unknown option --lgos; did you mean --logs?\n"},
      {"replay a b", "camhook: unexpected argument \"b\"\n"},
      {"replay still_burst.json --call 99", "camhook: --call: no call 99: the scenario has "},
      {"replay still_burst.json --hook reslut",
       "camhook: --hook: unknown call \"reslut\"; did you mean result?\n"},
      {"decide --product X --sensor ''",
       "camhook: --sensor: expected a 32-bit integer, found \"\"\n"},
      {"replay no_such.json", "no_such.json: cannot be read: No such file or directory\n"},
      {"replay .", ".: is a directory\n"},
      {"replay still_burst.json --logs warn",
       "camhook: --logs: expected debug, info or error, found \"warn\"\n"},
      {"decide --product X --sensor 0 --fps 15", "camhook: --fps: expected LO,HI, found \"15\"\n"},
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
      {"replay -", "standard input:1:1: not JSON: The document is empty.\n"},
  };
  for (const auto& [words, message] : rows) {
    const Outcome outcome = camhookWith(words);
    EXPECT_EQ(outcome.status, 2) << words;
    EXPECT_EQ(outcome.output.substr(0, message.size()), message) << words;
    EXPECT_EQ(outcome.output.find('\n'), outcome.output.size() - 1) << outcome.output;
  }
}

TEST(Camhook, OpensNoFilesOutsideCameraDirectory) {
  const std::string dump =
      R"({"call": "dumpMetadata", "sensor": 0, "meta": {"ANDROID_CONTROL_CAPTURE_INTENT": 2},)"
      R"( "frame": 1, "name": ")";
  const Outcome outcome =
      camhookWith("replay --json -",
                  R"({"platform": {"clock": "2021-03-04T05:06:07",)"
                  R"( "properties": {"vendor.camera.dumprawhifmetadata": "1"}}, "calls": [)" +
                      dump + R"(../../../../x"}, )" + dump + R"(../camera/x"}]})");
  const Json calls = camhook::parseJson(outcome.output)["calls"];
  EXPECT_EQ(calls[0]["file"], Json());
  EXPECT_EQ(calls[0].find("text"), nullptr);
  EXPECT_EQ(calls[1]["file"], "/data/vendor/camera/../camera/x_metadata_[1]_20210304050607.txt");
  EXPECT_TRUE(calls[1]["text"].text().starts_with("Dumping camera metadata array: 1"));
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
  const std::string calls = "replay still_burst.json --hook request --call 4 --call last";
  const Json trace =
      camhook::parseJson(camhookWith(calls + " --json --steps", "", "2>/dev/null").output);
  // Two steps of a still capture write the raw type; the second one clears it.
  std::vector<Json> values;
  for (const Json& call : trace["calls"].items()) {
    for (const Json& write : call["writes"].items()) {
      if (write["tag"] == "MTK_CONTROL_RAW_TYPE") values.push_back(write["value"]);
    }
  }
  const Json one = Json::Object{{"type", "int32"}, {"items", Json::List{1}}};
  EXPECT_EQ(values, (std::vector<Json>{one, {}, {}, {}}));

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
      "decide --product X --sensor 0 --video --app-type heskCamera --night 1 --size 640x480 "
      "--ui-module 17";
  EXPECT_EQ(camhookWith(decide).output,
            R"(result  5 CUSTOM1, decided by override 9: video of the OEM camera app at 640x480
base  2 NORMAL_VIDEO (no row matches)
inputs
  ro.product.model.zdm      X  ! no rules for this product
  sensor                    0
  video stream              yes
  APP_TYPE                  heskCamera
  COM_HESK_CURRENTUIMODULE  17  ! no rule names this module
  HESK_CONTROL_NIGHTMODE    1
  main output size          640x480
  absent: APP_NAME, MTK_STREAMING_FEATURE_HFPS_MODE, MTK_CONTROL_AE_TARGET_FPS_RANGE, HESK_CONTROL_EISENABLE, HESK_CONTROL_VIDEOALGOTYPE, MTK_HDR_FEATURE_HDR_MODE
filters  no rules for this product
overrides
  1  near miss: mtk_ims not wider than 4:3, 0 NORMAL_PREVIEW
     ≠APP_TYPE heskCamera, must be mtk_ims; =size 640x480
  2  near miss: Dingding near 4:3, 0 NORMAL_PREVIEW
     ≠APP_NAME absent, must be Dingding; =size 640x480, aspect ratio 1.33333
  4  near miss: Instagram on any camera except the front camera, 2 NORMAL_VIDEO
     ≠APP_NAME absent, must be Instagram; =sensor 0
  5  near miss: Whatsapp, Messenger or a third party at 640x480, 0 NORMAL_PREVIEW
     ≠APP_TYPE heskCamera, APP_NAME absent, must be 3rd_party or Whatsapp/Messenger; =size 640x480
  8  overwritten: video in night mode, 2 NORMAL_VIDEO
     =HESK_CONTROL_NIGHTMODE 1; =video stream yes
  9  decides: video of the OEM camera app at 640x480, 5 CUSTOM1
     =APP_TYPE heskCamera; =video stream yes; =size 640x480
  other overrides: 3, 6, 7
)");
}

/// Each line of `rules PRODUCT --check` is a command whose decision is by the row that it names.
TEST(Camhook, PrintsCommandForEachRule) {
  std::istringstream lines(
      camhookWith(std::string("rules ") + anyTable().productName + " --check").output);
  std::string list;
  std::size_t count = 0;
  for (std::string line; std::getline(lines, line);) {
    const std::size_t command = line.find("camhook ");
    if (command == std::string::npos) {
      list = line;
      continue;
    }
    const std::string row = line.substr(0, command);  // "  row 3  "
    const std::string text = camhookWith(line.substr(command + 8)).output;
    EXPECT_NE(text.find("filters  " + (anyTable().productName + (' ' + list)) + '\n'),
              std::string::npos)
        << text;
    const std::size_t shown = text.find('\n' + row);
    ASSERT_NE(shown, std::string::npos) << text;
    EXPECT_NE(text.substr(shown + 1, text.find('\n', shown + 1) - shown).find("  matched"),
              std::string::npos)
        << text;
    ++count;
  }
  EXPECT_EQ(list, "all " + std::to_string(count) + " rows can match");
}

/// Returns the mode that a replay gives with changed inputs; APP_TYPE is "a" unless changed.
Json replayedMode(const Json& changes) {
  Json call{{"call", "decideSensorScenario"},
            {"sensor", 0},
            {"meta", Json::Object()},
            {"video", true},
            {"width", 0},
            {"height", 0}};
  Json events{{"APP_TYPE", "a"}};
  for (const auto& [name, value] : changes.members()) {
    if (name.starts_with("APP_")) {
      events[name] = value.isNull() ? Json("") : value;
    } else if (name == "main output size") {
      call["width"] = value[0];
      call["height"] = value[1];
    } else {
      call["meta"][name] = value;
    }
  }
  const Json properties{{"ro.product.model.zdm", anyTable().productName}};
  const Json scenario{{"platform", Json{{"properties", properties}, {"eventStore", events}}},
                      {"calls", Json::List{call}}};
  const Outcome replay = camhookWith("replay --json -", camhook::lineOfJson(scenario));
  return camhook::parseJson(replay.output)["calls"][0]["return"];
}

TEST(Camhook, FindsChangesThatGiveMode) {
  const std::string inputs =
      std::string("decide --app-type a --sensor 0 --video --product ") + anyTable().productName;
  const Outcome none = camhookWith(inputs + " --want NORMAL_CAPTURE");
  EXPECT_EQ(none.status, 1);
  EXPECT_TRUE(none.output.ends_with("no change of one or two inputs gives it\n"));
  std::set<std::int32_t> modes;
  for (const SensorModeCfg& rule : anyTable().sensor0Video) {
    if (!modes.insert(rule.sensorMode).second) continue;
    const std::string want = std::to_string(rule.sensorMode);
    const Json found =
        camhook::parseJson(camhookWith(inputs + " --json --want " + want).output)["want"];
    EXPECT_EQ(found["scenario"], rule.sensorMode);
    ASSERT_GT(found["smallest"].size(), 0U) << want;
    for (const Json& each : found["smallest"].items()) {
      EXPECT_EQ(replayedMode(each["changes"]), rule.sensorMode) << camhook::lineOfJson(each);
    }
  }
}

TEST(Camhook, DecidesLikeCallOfScenario) {
  const Json trace = camhook::parseJson(camhookWith("replay --json sensor_modes.json").output);
  std::size_t number = 0;
  for (const Json& call : trace["calls"].items()) {
    ++number;
    if (call["call"] != "decideSensorScenario") continue;
    const Json decision = camhook::parseJson(
        camhookWith("decide --json --scenario sensor_modes.json --call " + std::to_string(number))
            .output);
    EXPECT_EQ(decision["scenario"], call["return"]) << number;
  }
  EXPECT_EQ(camhookWith("decide --scenario sensor_modes.json --call 1000").status, 2);
  const Json inherited =
      camhook::parseJson(camhookWith("decide --json --scenario - --call last", R"({"calls": [
          {"call": "updateSessionParams", "sensor": 0, "streams": [],
           "meta": {"HESK_CONTROL_EISENABLE": 1}},
          {"call": "decideSensorScenario", "sensor": 0, "metaOf": 1, "video": true, "width": 4,
           "height": 3, "meta": {"COM_HESK_CURRENTUIMODULE": 53}}]})")
                             .output)["inputs"];
  EXPECT_EQ(inherited["HESK_CONTROL_EISENABLE"], 1);
  EXPECT_EQ(inherited["COM_HESK_CURRENTUIMODULE"], 53);
}

TEST(Camhook, WritesDecisionAsJson) {
  const Json none = camhook::parseJson(camhookWith("decide --json --product X --sensor 0").output);
  EXPECT_EQ(none["scenario"], 255);
  EXPECT_TRUE(none["product"].isNull());
  EXPECT_EQ(none["decidedBy"]["kind"], "default");
  EXPECT_TRUE(none["inputs"]["main output size"].isNull());

  const Json decision = camhook::parseJson(
      camhookWith("decide --json --product KX0104 --sensor 1 --app-type QQ --app-name Whatsapp "
                  "--size 640x480")
          .output);
  EXPECT_EQ(decision["name"], "NORMAL_PREVIEW");
  EXPECT_EQ(decision["list"], "sensor1Preview");
  EXPECT_EQ(decision["decidedBy"]["kind"], "override");
  const Json& row = decision["base"]["row"];
  const Json& byAppType = decision["filters"][3];
  EXPECT_EQ(byAppType["filter"], "getSensorModeCfgByApptype");
  EXPECT_EQ(byAppType["found"], row);
  EXPECT_EQ(byAppType["rows"].items().back(),
            camhook::parseJson(R"({"row": )" + camhook::lineOfJson(row) +
                               R"(, "asked": ["appType"],
                                                                 "met": ["appType"], "needed": 1})"));
  const Json& taken = decision["rows"][row.integer<std::size_t>().value() - 1];
  EXPECT_EQ(taken["conditions"], (Json{{"appType", "QQ"}}));
  EXPECT_EQ(taken["verdict"], "matched by app type");
  std::vector<std::string> verdicts;
  for (const Json& override : decision["overrides"].items()) {
    if (override["verdict"] != "no") verdicts.push_back(override["verdict"].text());
  }
  EXPECT_EQ(verdicts, (std::vector<std::string>{"near miss", "near miss", "overwritten", "decides",
                                                "near miss", "near miss"}));
}

TEST(Camhook, ListsTags) {
  const Outcome byName = camhookWith("tags --json frame_count");
  EXPECT_EQ(camhook::parseJson(byName.output),
            camhook::parseJson(R"([{"name": "MTK_HESK_FRAME_COUNT",
    "value": "0x800b000f", "type": "int32", "count": 1,
    "meaning": "request: frames in the current non-zsl burst"}])"));
  const Outcome byValue = camhookWith("tags --json 0x00010036");
  EXPECT_EQ(camhook::parseJson(byValue.output)[0]["name"], "MTK_HESK_SUPER_NIGHT_ON");
  EXPECT_EQ(camhook::parseJson(camhookWith("tags --json 0x800b000a").output),
            camhook::parseJson(R"([{"name": "0x800b000a", "value": "0x800b000a", "type": "uint8",
                             "count": 1, "meaning": "session: always 1"}])"));
  const Json all = camhook::parseJson(camhookWith("tags --json").output);
  EXPECT_GT(all.size(), 100U);
  EXPECT_TRUE(
      camhook::parseJson(camhookWith("tags --json stream_flags").output)[0]["count"].isNull());
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
  EXPECT_EQ(camhook::parseJson(camhookWith("tags --json MTK_P1NODE_CAPTURE_VALUE64").output).size(),
            1U);
}

TEST(Camhook, WritesReferencePages) {
  const std::string folder = testing::TempDir() + "/camhook_reference";
  std::filesystem::create_directory(folder);
  EXPECT_EQ(camhookWith("reference " + folder + " still_burst.json", "", "2>/dev/null").status, 0);
  for (const char* page : {"tags.md", "rules.md", "scenario.schema.json"}) {
    EXPECT_EQ(contentOf(kSourceRoot / "docs" / page),
              contentOf(std::filesystem::path(folder) / page))
        << "to write it: ./camhook reference docs scenarios/*.json";
  }
  std::filesystem::remove_all(folder);
}

}  // namespace
