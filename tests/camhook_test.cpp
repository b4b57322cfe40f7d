// The camhook program as its users run it: output, errors, exit statuses, and the shipped
// scenarios' expected traces.

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>

#include "tools/camhook/input/Json.h"
#include "tools/camhook/input/ScenarioReader.h"
#include "tools/camhook/run/DataRoot.h"
#include "tools/camhook/run/Replay.h"
#include "tools/camhook/show/JsonTrace.h"

namespace {

using camhook::Json;

const std::filesystem::path kRoot = CAM_SOURCE_DIR;

struct Outcome {
  int status = -1;
  std::string output;  // of both streams
};

/// Runs camhook with these words of a shell's command line, in the folder of the scenarios, with
/// `input` on standard input.
Outcome camhookWith(const std::string& words, const std::string& input = "") {
  const std::string command = "exec 2>&1; cd '" + (kRoot / "scenarios").string() +
                              "' && printf '%s' '" + input + "' | " CAMHOOK_COMMAND " " + words;
  FILE* pipe = popen(command.c_str(), "r");
  Outcome outcome;
  std::array<char, 4096> block{};
  while (const std::size_t size = std::fread(block.data(), 1, block.size(), pipe)) {
    outcome.output.append(block.data(), size);
  }
  const int status = pclose(pipe);
  outcome.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  return outcome;
}

std::string contentOf(const std::filesystem::path& file) {
  std::ostringstream text;
  text << std::ifstream(file).rdbuf();
  return text.str();
}

class ShippedScenario : public testing::TestWithParam<std::string> {};

TEST_P(ShippedScenario, GivesItsExpectedTrace) {
  const Outcome outcome = camhookWith("replay --json " + GetParam() + ".json");
  ASSERT_EQ(outcome.status, 0) << outcome.output;
  const Json trace = Json::parse(outcome.output);
  const Json expected = Json::parse(contentOf(kRoot / "scenarios" / (GetParam() + ".trace.json")));
  ASSERT_EQ(trace.at("calls").size(), expected.at("calls").size());
  for (std::size_t i = 0; i < expected.at("calls").size(); ++i) {
    EXPECT_EQ(trace.at("calls")[i].dump(1), expected.at("calls")[i].dump(1)) << "call " << i;
  }
  EXPECT_EQ(trace.at("eventStore"), expected.at("eventStore"));
  EXPECT_EQ(camhookWith("replay " + GetParam() + ".json --logs debug").status, 0);
}

std::vector<std::string> shippedScenarios() {
  std::vector<std::string> names;
  for (const auto& file : std::filesystem::directory_iterator(kRoot / "scenarios")) {
    if (file.path().string().ends_with(".trace.json")) continue;
    names.push_back(file.path().stem().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

INSTANTIATE_TEST_SUITE_P(Scenarios, ShippedScenario, testing::ValuesIn(shippedScenarios()),
                         [](const auto& name) { return name.param; });

/// What a shipped scenario does but for its records, with these log levels open.
std::string traceWithoutRecords(const std::string& name, std::initializer_list<char> levels) {
  const camhook::DataRoot dataRoot{""};
  auto scenario = camhook::readScenario(contentOf(kRoot / "scenarios" / (name + ".json")));
  scenario.platform.dataRoot = dataRoot.path().string();
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
  for (const std::string& name : shippedScenarios()) {
    // The updaters outlive a replay: both begin with what the first leaves behind.
    traceWithoutRecords(name, {});
    EXPECT_EQ(traceWithoutRecords(name, {'D', 'E', 'I'}), traceWithoutRecords(name, {})) << name;
  }
}

TEST(Camhook, RefusesWrongWordsInOneLineWithStatus2) {
  const std::pair<const char*, const char*> rows[] = {
      {"", "camhook: A subcommand is required\n"},
      {"replay", "camhook: FILE is required\n"},
      {"replay no_such.json", "no_such.json: cannot be read: No such file or directory\n"},
      {"replay .", ".: is a folder\n"},
      {"replay still_burst.json --jsn",
       "camhook: The following argument was not expected: --jsn\n"},
      {"replay still_burst.json --logs warn", "camhook: --logs: warn not in {debug,info,error}\n"},
      {"decide --sensor 0", "camhook: --product is required\n"},
      {"decide --product X --sensor 0 --fps 15", "camhook: --fps: must be LO,HI, not \"15\"\n"},
      {"decide --product X --sensor 0 --size 640x480p",
       "camhook: --size: must be WxH, not \"640x480p\"\n"},
      {"decide --product X --sensor 0 --eis 2147483648",
       "camhook: Could not convert: --eis = 2147483648\n"},
      {"metadata raw_capture.json",
       "raw_capture.json: line 1: no dump of metadata, which begins with the number of its "
       "entries\n"},
      {"tags a b", "camhook: The following argument was not expected: b\n"},
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

TEST(Camhook, TellsWhatACallDidWithoutAnUpdater) {
  const Outcome outcome = camhookWith("replay --json -", R"({"calls": [
    {"call": "createInstance", "sensor": 11},
    {"call": "updateRequestMeta", "sensor": -1, "requestNo": 1, "meta": null},
    {"call": "updateRequestMeta", "sensor": 0, "requestNo": 1, "meta": null},
    {"call": "setEvent", "key": "A", "value": "b"},
    {"call": "setProperty", "name": "A", "value": "b"}]})");
  ASSERT_EQ(outcome.status, 0) << outcome.output;
  const Json trace = Json::parse(outcome.output);
  const Json refused = Json::parse(R"([{"level": "D", "tag": "HeskParameterUpdater",
    "file": "HeskParameterUpdater.cpp", "function": "createInstance",
    "message": "[createInstance] HeskParameterUpdater createInstance failed!"}])");
  const Json& calls = trace.at("calls");
  EXPECT_EQ(calls[0].at("return"), false);
  EXPECT_TRUE(calls[0].at("state").is_null());
  EXPECT_EQ(calls[0].at("logs"), refused);
  EXPECT_EQ(calls[1].at("logs"), refused);
  EXPECT_TRUE(calls[1].at("meta").is_null());
  EXPECT_TRUE(calls[1].at("state").is_null());
  EXPECT_EQ(calls[2].at("state").at("mInstanceId"), 0);
  EXPECT_EQ(calls[3], Json::parse(R"({"call": "setEvent", "args": {"key": "A", "value": "b"},
                                      "return": null, "effects": [], "logs": []})"));
  EXPECT_FALSE(calls[4].contains("state"));
  EXPECT_EQ(trace.at("eventStore"), Json::parse(R"({"A": "b", "HESK_MOTIONLEVEL": "-1"})"));
}

TEST(Camhook, ShowsPeopleWhatChanged) {
  const Outcome outcome = camhookWith("replay --logs info -", R"({"calls": [
    {"call": "updateRequestMeta", "sensor": 0, "requestNo": 7, "meta": {
      "COM_HESK_CURRENTUIMODULE": 8, "ANDROID_CONTROL_CAPTURE_INTENT": 2,
      "MTK_CONTROL_AE_TARGET_FPS_RANGE": [15, 30], "HESK_CONTROL_FPS_RANGE_MAX": 60}},
    {"call": "createInstance", "sensor": 11}]})");
  EXPECT_EQ(outcome.output, R"(1/2  updateRequestMeta  sensor 0  requestNo 7
  meta  2 unchanged
    MTK_CONTROL_AE_TARGET_FPS_RANGE  [15, 30]  →  [60, 60]
    ANDROID_CONTROL_CAPTURE_INTENT   2         →  1 (int32)
    ANDROID_CONTROL_ENABLE_ZSL       absent    →  0 (int32)
    MTK_CONTROL_SELECTED_STREAM_ID   absent    →  -1
  state
    mInstanceId                new  →  0
    mHasVideoStream            new  →  false
    mNonZslFrames              new  →  []
    mMulticamFeatureMode       new  →  0
    mPreviewSize               new  →  [0, 0]
    mCaptureCount              new  →  0
    mStreamIds                 new  →  []
    mPrimaryCameraDiagonalFov  new  →  0
  effects
    eventStore.set  key=HESK_CURRENTUIMODE value=8
    eventStore.set  key=HESK_MOTIONLEVEL value=-1
  log
    I  [updateRequestMeta] update MTK_CONTROL_AE_TARGET_FPS_RANGE:60

2/2  createInstance  sensor 11  →  false
  no updater for this sensor

event store at the end
  HESK_CURRENTUIMODE  "8"
  HESK_MOTIONLEVEL    "-1"
)");
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
  EXPECT_EQ(all.size(), 107U);
  EXPECT_TRUE(Json::parse(camhookWith("tags --json stream_flags").output)[0].at("count").is_null());
  EXPECT_EQ(camhookWith("tags nothing_has_this_name").output, "no tag matches\n");
}

TEST(Camhook, ReferencePageIsTheCatalogue) {
  EXPECT_EQ(contentOf(kRoot / "docs/tags.md"), camhookWith("tags --markdown").output)
      << "make it anew: ./camhook tags --markdown > docs/tags.md";
}

TEST(Camhook, HelpsWithExamples) {
  for (const char* words :
       {"--help", "replay --help", "decide --help", "metadata --help", "tags --help"}) {
    const Outcome outcome = camhookWith(words);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_NE(outcome.output.find("Example:\n  camhook "), std::string::npos) << words;
  }
  EXPECT_TRUE(camhookWith("--version").output.starts_with("camhook "));
}

}  // namespace
