// What `camhook why` says is what comes out: every change that it lists is made in the scenario by
// itself, and the scenario run anew on updaters of its own.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <optional>
#include <set>
#include <string>

#include "fuzz/Updaters.h"
#include "tests/support/CamhookProcess.h"
#include "tools/camhook/input/InputError.h"
#include "tools/camhook/input/Json.h"
#include "tools/camhook/input/MetadataJson.h"
#include "tools/camhook/input/ScenarioReader.h"
#include "tools/camhook/run/Replay.h"

namespace {

using camhook::Json;

const std::filesystem::path kScenarios = kSourceRoot / "scenarios";

Json explanationOf(const std::string& words, const std::string& input = "") {
  const Outcome outcome = camhookWith("why --json " + words, input, "2>/dev/null");
  return outcome.output.empty() ? Json() : Json::parse(outcome.output);
}

/// The container after the scenario's last call.
NSCam::IMetadata containerAfter(const Json& document, const std::string& container) {
  camhook::Scenario scenario = camhook::readScenario(document.dump());
  fuzz::Updaters updaters;
  camhook::Replay replay(std::move(scenario.platform),
                         [&](int sensor) { return updaters.of(sensor); });
  host::LogSink::openLevels({});  // expanding its records would take most of the time
  camhook::CallTrace trace;
  for (const camhook::ScenarioCall& call : scenario.calls) {
    trace = replay.run(call, camhook::Replay::Detail::containers);
  }
  for (const camhook::ContainerTrace& each : trace.containers) {
    if (each.name == container && each.after) return *each.after;
  }
  return {};
}

/// A tag in it, as an explanation has it.
std::string textOf(const NSCam::IMetadata& container, const std::string& tag) {
  const auto& entry = container.entryFor(camhook::tagFromText(tag));
  return entry.isEmpty() ? "null" : camhook::jsonFromEntry(entry).dump();
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

/// The scenario, which ends with the call in question, with one change.
Json changed(Json document, const Json& input, const Json& to) {
  const auto kind = input["kind"].get<std::string>();
  const std::string key = input.value("key", "");
  Json& calls = document["calls"];
  Json& platform = document["platform"];
  const std::string text = to.is_string() ? to.get<std::string>() : "";
  if (kind == "metadata") {
    Json& container = calls.back()[input["container"].get<std::string>()];
    if (!container.is_null() || !to.is_null()) put(container, key, to);
  } else if (kind == "static") {
    put(platform["devices"][std::to_string(input["device"].get<int>())]["static"], key, to);
  } else if (kind == "event") {
    calls.insert(calls.end() - 1, Json{{"call", "setEvent"}, {"key", key}, {"value", text}});
  } else if (kind == "property") {
    calls.insert(calls.end() - 1, Json{{"call", "setProperty"}, {"name", key}, {"value", text}});
  } else if (kind == "provider") {
    put(platform, "provider", to.is_null() ? Json() : Json{{"fpsCap", to}});
  } else if (kind == "argument") {
    putAt(calls.back(), key, to);
  } else if (kind == "platform") {
    putAt(platform, key, to);
  } else {
    calls.erase(input["index"].get<std::size_t>() - 1);
  }
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

/// What explanations say of one change: what it gives for each tag.
using Gives = std::map<std::string, Json>;

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define CAM_HAS_SANITIZER
#endif
#endif

/// Whether all runs ten times as long: with a sanitizer, or with an emulator's words before the
/// program's. Then a sample is tried.
bool isSlow() {
#ifdef CAM_HAS_SANITIZER
  return true;
#else
  return std::string_view(CAMHOOK_COMMAND).find(' ') != std::string_view::npos;
#endif
}

/// Every change of one input, as text, that the explanations of a call's tags tell of, and one for
/// a tag of which it does not count.
std::map<std::string, Gives> changesOf(const Json& explanations, std::size_t input) {
  std::map<std::string, Gives> changes;
  for (const Json& explanation : explanations) {
    const Json& told = explanation["inputs"][input];
    const auto tag = explanation["tag"].get<std::string>();
    EXPECT_EQ(told["counts"], !told["changes"].empty());
    for (const Json& change : told["changes"]) {
      EXPECT_NE(change["gives"], explanation["after"]);
      changes[change["to"].dump()][tag] = change["gives"];
    }
    if (const auto other = otherValue(told); other && !told["counts"].get<bool>()) {
      changes[other->dump()][tag] = explanation["after"];
    }
  }
  return changes;
}

void expectWhatWhySays(const Json& document, const Json& explanations) {
  const auto container = explanations[0]["container"].get<std::string>();
  const NSCam::IMetadata unchanged = containerAfter(document, container);
  for (const Json& explanation : explanations) {
    EXPECT_EQ(textOf(unchanged, explanation["tag"]), explanation["after"].dump());
  }
  const Json& inputs = explanations[0]["inputs"];
  const std::size_t stride = isSlow() ? 20 : 1;
  std::size_t number = 0;
  for (std::size_t i = 0; i < inputs.size(); ++i) {
    for (const auto& [to, gives] : changesOf(explanations, i)) {
      if (number++ % stride != 0) continue;
      const Json scenario = changed(document, inputs[i], Json::parse(to));
      const NSCam::IMetadata after = containerAfter(scenario, container);
      for (const auto& [tag, value] : gives) {
        EXPECT_EQ(textOf(after, tag), value.dump())
            << inputs[i]["kind"] << ' ' << inputs[i].value("key", "") << " to " << to << ", "
            << tag;
      }
    }
  }
}

class ExplainedScenario : public testing::TestWithParam<std::string> {};

TEST_P(ExplainedScenario, GivesWhatWhySays) {
  const std::string file = GetParam() + ".json";
  Json document = Json::parse(contentOf(kScenarios / file));
  document.erase("about");  // may hold a quote, which a shell's word does not
  // Time goes on between the runs that are compared.
  if (!document["platform"].contains("clock"))
    document["platform"]["clock"] = "2021-03-04T05:06:07";

  const Json trace =
      Json::parse(camhookWith("replay --json --steps " + file, "", "2>/dev/null").output);
  std::set<std::string> asked;
  for (std::size_t i = 0; i < trace["calls"].size(); ++i) {
    std::map<std::string, std::set<std::string>> written;  // tags by container
    bool isNew = false;
    for (const Json& write : trace["calls"][i].value("writes", Json::array())) {
      const auto tag = write["tag"].get<std::string>();
      written[write["container"]].insert(tag);
      isNew |= asked.insert(tag).second;
    }
    // A call is asked for all that it writes, where no call before it writes all of that.
    if (!isNew) continue;
    Json scenario = document;
    Json& calls = scenario["calls"];
    calls.erase(calls.begin() + static_cast<std::ptrdiff_t>(i) + 1, calls.end());
    for (const auto& [container, tags] : written) {
      std::string words = "- last --container " + container;
      for (const std::string& tag : tags) words += " " + tag;
      Json explanations = explanationOf(words, scenario.dump());
      ASSERT_FALSE(explanations.is_null()) << words;
      if (explanations.is_object()) explanations = Json::array({explanations});
      expectWhatWhySays(scenario, explanations);
    }
    if (isSlow()) break;
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
  if (isSlow()) std::erase(names, "tuning_data");  // has blocks of megabytes
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

TEST(Why, FindsWhatRulesAskFor) {
  const Json decision = explanationOf("- 1 return", R"({
    "platform": {"properties": {"ro.product.model.zdm": "KX0107"},
                 "eventStore": {"APP_TYPE": "other"}}, "calls": [
    {"call": "decideSensorScenario", "sensor": 1, "meta": {}, "video": false, "width": 0,
     "height": 0}]})");
  EXPECT_EQ(decision["after"], 255);
  const std::string inputs = decision["inputs"].dump();
  EXPECT_NE(inputs.find(R"({"to":"FaceUnlock","gives":8})"), std::string::npos);
  EXPECT_NE(inputs.find(R"({"to":{"type":"int32","items":[24]},"gives":0})"), std::string::npos);
}

TEST(Why, FindsTwoChangesWhereNoSingleOneIsEnough) {
  constexpr const char* kTooSlow = "the search ends after ten seconds";
#ifdef CAM_COUNTS_LINES
  GTEST_SKIP() << kTooSlow;
#endif
  if (isSlow()) GTEST_SKIP() << kTooSlow;
  const Json moved = explanationOf(
      "- 1 0xc00e0017 --want '{\"type\":\"int32\",\"items\":[11,21,111,221]}'", R"({"calls": [
    {"call": "translateResultRegionForHesk", "sensor": 0,
     "meta": {"0xc00e0017": {"type": "int32", "items": [10, 20, 110, 220]}},
     "value": 160.0, "cameraId": 0, "tag": "0xc00e0017"}]})");
  ASSERT_FALSE(moved.value("together", Json::array()).empty());
  EXPECT_EQ(moved["together"][0]["changes"], Json::parse(R"([
    {"kind": "platform", "key": "sat.translate.dx", "to": 1},
    {"kind": "platform", "key": "sat.translate.dy", "to": 1}])"));
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
       "--want: must be an integer of int32, -2147483648 to 2147483647, not \"x\"\n"},
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
