// What `camhook why` says is what comes out: every change that it lists is made in the scenario by
// itself, and the scenario run anew on updaters of its own.

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <string>

#include "fuzz/Updaters.h"
#include "tools/camhook/input/InputError.h"
#include "tools/camhook/input/Json.h"
#include "tools/camhook/input/MetadataJson.h"
#include "tools/camhook/input/ScenarioReader.h"
#include "tools/camhook/run/Replay.h"

namespace {

using camhook::Json;

const std::filesystem::path kScenarios = std::filesystem::path(CAM_SOURCE_DIR) / "scenarios";

struct Outcome {
  int status = -1;
  std::string output;
};

/// Runs camhook with these words of a shell's command line, in the folder of the scenarios, with
/// `input` on standard input. `errors` says where standard error goes.
Outcome camhookWith(const std::string& words, const std::string& input = "",
                    const std::string& errors = "2>&1") {
  const std::string command = "exec " + errors + "; cd '" + kScenarios.string() +
                              "' && printf '%s' '" + input + "' | " CAMHOOK_COMMAND " " + words;
  FILE* pipe = popen(command.c_str(), "r");
  Outcome outcome;
  std::array<char, 65536> block{};
  while (const std::size_t size = std::fread(block.data(), 1, block.size(), pipe)) {
    outcome.output.append(block.data(), size);
  }
  const int status = pclose(pipe);
  outcome.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  return outcome;
}

Json explanationOf(const std::string& words, const std::string& input = "") {
  const Outcome outcome = camhookWith("why --json " + words, input, "2>/dev/null");
  return outcome.output.empty() ? Json() : Json::parse(outcome.output);
}

std::string contentOf(const std::filesystem::path& file) {
  std::ostringstream text;
  text << std::ifstream(file).rdbuf();
  return text.str();
}

/// The tag after a call, counted from 0, as a trace has it.
Json tagAfter(const Json& document, std::size_t call, const std::string& container,
              const std::string& tag) {
  camhook::Scenario scenario = camhook::readScenario(document.dump());
  fuzz::Updaters updaters;
  camhook::Replay replay(std::move(scenario.platform),
                         [&](int sensor) { return updaters.of(sensor); });
  for (std::size_t i = 0; i < call; ++i) replay.run(scenario.calls[i]);
  for (const camhook::ContainerTrace& each : replay.run(scenario.calls[call]).containers) {
    if (each.name != container || !each.after) continue;
    const Json entries = camhook::jsonFromMetadata(*each.after);
    return entries.value(tag, Json());
  }
  return nullptr;
}

void put(Json& object, const std::string& key, const Json& value) {
  if (value.is_null()) {
    object.erase(key);
  } else {
    object[key] = value;
  }
}

/// Sets a place such as "sat.cameras[0].role".
void putAt(Json& object, const std::string& place, const Json& value) {
  const std::size_t end = place.find_first_of(".[", 1);
  const std::string step = place.substr(place.front() == '.' ? 1 : 0, end);
  const std::string rest = end != std::string::npos ? place.substr(end) : "";
  if (step.front() == '[') {
    Json& item = object[std::stoul(step.substr(1))];
    const std::string behind = place.substr(place.find(']') + 1);
    if (behind.empty()) {
      item = value;
    } else {
      putAt(item, behind.substr(behind.front() == '.' ? 1 : 0), value);
    }
  } else if (rest.empty()) {
    put(object, step, value);
  } else {
    putAt(object[step], rest.substr(rest.front() == '.' ? 1 : 0), value);
  }
}

/// The scenario with one change. `call`, from 0, moves with what is put in or left out before it.
Json changed(Json document, std::size_t& call, const Json& input, const Json& to) {
  const auto kind = input["kind"].get<std::string>();
  const std::string key = input.value("key", "");
  Json& calls = document["calls"];
  Json& platform = document["platform"];
  const std::string text = to.is_string() ? to.get<std::string>() : "";
  const auto insertBefore = [&](const Json& inserted) {
    calls.insert(calls.begin() + static_cast<std::ptrdiff_t>(call++), inserted);
  };
  if (kind == "metadata") {
    Json& container = calls[call][input["container"].get<std::string>()];
    if (container.is_null() && to.is_null()) return document;
    put(container, key, to);
  } else if (kind == "static") {
    put(platform["devices"][std::to_string(input["device"].get<int>())]["static"], key, to);
  } else if (kind == "event") {
    insertBefore({{"call", "setEvent"}, {"key", key}, {"value", text}});
  } else if (kind == "property") {
    insertBefore({{"call", "setProperty"}, {"name", key}, {"value", text}});
  } else if (kind == "provider") {
    put(platform, "provider", to.is_null() ? Json() : Json{{"fpsCap", to}});
  } else if (kind == "argument") {
    putAt(calls[call], key, to);
  } else if (kind == "platform") {
    putAt(platform, key, to);
  } else {
    calls.erase(input["index"].get<std::size_t>() - 1);
    --call;
  }
  if (platform.is_null()) document.erase("platform");
  return document;
}

/// Some other value for what was found not to count; none where none is plain.
std::optional<Json> otherValue(const Json& input) {
  const auto kind = input["kind"].get<std::string>();
  if (kind == "call" || (!input["value"].is_null() && kind != "argument" && kind != "platform")) {
    return Json();
  }
  if (kind == "metadata" || kind == "static") return Json{{"type", "int32"}, {"items", {1}}};
  if (kind == "event" || kind == "property") return Json("1");
  if (kind == "provider") return Json(1);
  return {};
}

void expectWhatWhySays(const Json& document, const Json& explanation) {
  const std::size_t call = explanation["call"].get<std::size_t>() - 1;
  const auto container = explanation["container"].get<std::string>();
  const auto tag = explanation["tag"].get<std::string>();
  const auto given = [&](const Json& input, const Json& to) {
    std::size_t at = call;
    const Json variant = changed(document, at, input, to);
    return tagAfter(variant, at, container, tag);
  };
  const Json& after = explanation["after"];
  EXPECT_EQ(tagAfter(document, call, container, tag), after);
  for (const Json& input : explanation["inputs"]) {
    EXPECT_EQ(input["counts"], !input["changes"].empty());
    for (const Json& change : input["changes"]) {
      EXPECT_NE(change["gives"], after);
      EXPECT_EQ(given(input, change["to"]).dump(), change["gives"].dump())
          << tag << " of call " << call + 1 << ", " << input["kind"] << ' '
          << input.value("key", "") << " to " << change["to"].dump();
    }
    if (input["counts"].get<bool>()) continue;
    if (const auto other = otherValue(input)) {
      EXPECT_EQ(given(input, *other).dump(), after.dump())
          << tag << " of call " << call + 1 << ", " << input.dump().substr(0, 200);
    }
  }
}

class ExplainedScenario : public testing::TestWithParam<std::string> {};

TEST_P(ExplainedScenario, GivesWhatWhySays) {
  constexpr std::size_t kSample = 2;  // of what the scenario's calls write
  const std::string file = GetParam() + ".json";
  Json document = Json::parse(contentOf(kScenarios / file));
  document.erase("about");  // may hold a quote, which a shell's word does not
  // Time goes on between the runs that are compared.
  if (!document["platform"].contains("clock"))
    document["platform"]["clock"] = "2021-03-04T05:06:07";

  const Json trace =
      Json::parse(camhookWith("replay --json --steps " + file, "", "2>/dev/null").output);
  std::set<std::string> questions;
  for (std::size_t i = 0; i < trace["calls"].size(); ++i) {
    for (const Json& write : trace["calls"][i].value("writes", Json::array())) {
      questions.insert(std::to_string(i + 1) + " " + write["tag"].get<std::string>() +
                       " --container " + write["container"].get<std::string>());
    }
  }
  const std::size_t stride = std::max<std::size_t>(1, questions.size() / kSample);
  std::size_t number = 0;
  for (const std::string& question : questions) {
    if (number++ % stride != stride / 2) continue;
    const Json explanation = explanationOf("- " + question, document.dump());
    ASSERT_FALSE(explanation.is_null()) << question;
    expectWhatWhySays(document, explanation);
  }
}

std::vector<std::string> scenarioNames() {
  std::vector<std::string> names;
  for (const auto& file : std::filesystem::directory_iterator(kScenarios)) {
    const std::string name = file.path().filename().string();
    if (name == file.path().stem().string() + ".json" && !name.ends_with(".trace.json")) {
      names.push_back(file.path().stem());
    }
  }
  std::erase(names, "tuning_data");  // its blocks of megabytes take too long under an emulator
  std::ranges::sort(names);
  return names;
}

INSTANTIATE_TEST_SUITE_P(Scenarios, ExplainedScenario, testing::ValuesIn(scenarioNames()),
                         [](const auto& name) { return name.param; });

/// What an input's changes give, without the types.
Json outcomesOf(const Json& explanation, const std::string& key) {
  Json outcomes = Json::array();
  for (const Json& input : explanation["inputs"]) {
    if (input.value("key", "") != key) continue;
    for (const Json& change : input["changes"]) {
      const Json& to = change["to"];
      outcomes.push_back({to.is_object() ? to["items"] : to,
                          change["gives"].is_null() ? Json() : change["gives"]["items"]});
    }
  }
  return outcomes;
}

TEST(Why, FindsWhatTheLibraryComparesWith) {
  // A text, a bit of a mask, an edge of numbers, and the field of view that an updater learns once.
  const Json limited = explanationOf("third_party_apps.json 1 MTK_CONTROL_AE_TARGET_FPS_RANGE");
  const Json& step = limited["writes"][0]["step"];
  EXPECT_TRUE(step == "limitFrameRate" || step == "?") << step;  // where nothing tells of steps
  EXPECT_EQ(outcomesOf(limited, "APP_NAME"), Json::parse("[[null, [15, 30]]]"));
  const Json mode = explanationOf("- 1 HESK_EISSTATE", R"({
    "platform": {"eventStore": {"APP_TYPE": "heskCamera"}}, "calls": [
    {"call": "updateRequestMeta", "sensor": 0, "requestNo": 1, "meta": {}}]})");
  EXPECT_EQ(outcomesOf(mode, "COM_HESK_CURRENTUIMODULE"), Json::parse("[[[26], [0]]]"));
  const Json moon = explanationOf("super_moon_zoom.json 1 MTK_CONTROL_RAW_TYPE --want 60");
  EXPECT_EQ(outcomesOf(moon, "HESK_CONTROL_ZOOM_ZOOM_RATIO"), Json::parse("[[[1.0000001], [60]]]"));
}

TEST(Why, SaysWhatItCannotAnswerInOneLine) {
  const std::tuple<const char*, int, const char*> rows[] = {
      {"super_moon_zoom.json 7 MTK_CONTROL_RAW_TYPE", 2,
       "super_moon_zoom.json: there is no call 7: the scenario has 6\n"},
      {"super_moon_zoom.json 0 MTK_CONTROL_RAW_TYPE", 2,
       "super_moon_zoom.json: there is no call 0: the scenario has 6\n"},
      {"super_moon_zoom.json first MTK_CONTROL_RAW_TYPE", 2,
       "super_moon_zoom.json: CALL must be a number from 1, or last, not \"first\"\n"},
      {"super_moon_zoom.json last MTK_CONTROL_RAWTYPE", 2,
       "super_moon_zoom.json: unknown tag \"MTK_CONTROL_RAWTYPE\"; near: MTK_CONTROL_RAW_TYPE\n"},
      {"super_moon_zoom.json 1 MTK_CONTROL_RAW_TYPE --container out", 2,
       "super_moon_zoom.json: the call has no container \"out\"; it has meta\n"},
      {"super_moon_zoom.json 1 MTK_CONTROL_RAW_TYPE --want '\"x\"'", 2,
       "--want: must be an integer of int32, -2147483648 to 2147483647\n"},
      {"no_such.json 1 MTK_CONTROL_RAW_TYPE", 2,
       "no_such.json: cannot be read: No such file or directory\n"},
  };
  for (const auto& [words, status, line] : rows) {
    const Outcome outcome = camhookWith(std::string("why ") + words);
    EXPECT_EQ(outcome.status, status) << words;
    EXPECT_EQ(outcome.output, line) << words;
  }
  EXPECT_EQ(camhookWith("why super_moon_zoom.json 1 MTK_CONTROL_RAW_TYPE --want 60").status, 0);
  EXPECT_EQ(camhookWith("why - 2 MTK_CONTROL_RAW_TYPE --want 77",
                        R"({"calls": [{"call": "createInstance", "sensor": 11},
                            {"call": "updateResultMeta", "sensor": 11, "requestNo": 1, "meta": {}}]})")
                .status,
            1);
}

}  // namespace
