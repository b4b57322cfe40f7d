// Checks explanations of `camhook why`: replays scenarios with the changes that an explanation
// lists, on new updaters, and compares the results.

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <functional>
#include <optional>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/CamhookProcess.h"
#include "tools/camhook/explain/Why.h"
#include "tools/camhook/input/Json.h"
#include "tools/camhook/input/JsonLine.h"
#include "tools/camhook/input/MetadataJson.h"
#include "tools/camhook/input/ScenarioReader.h"
#include "tools/camhook/run/OwnUpdaters.h"
#include "tools/camhook/run/Replay.h"
#include "tools/camhook/show/JsonTrace.h"

namespace {

using camhook::Json;

std::string textOf(const Json& value) { return value.isText() ? value.text() : ""; }

/// Returns the output of `camhook why --json`; `tag` may name its container.
Json explanationOf(const std::string& scenario, const std::string& call, const std::string& tag,
                   const std::string& want = "") {
  const camhook::Question question = camhook::readQuestion(scenario, call, tag);
  std::optional<camhook::Wanted> wanted;
  if (!want.empty()) wanted.emplace(want, question);
  std::ostringstream out;
  camhook::writeJson(out, question, camhook::explain(question, wanted));
  return camhook::parseJson(out.str());
}

Json explanationOfStored(const std::string& file, const std::string& call, const std::string& tag,
                         const std::string& want = "") {
  return explanationOf(contentOf(kScenarios / file), call, tag, want);
}

/// Returns the value of the tag, or the return value, after the last call of a scenario, in the
/// format of an explanation.
Json answerOf(const Json& document, const Json& explanation) {
  const camhook::Scenario scenario = camhook::readScenario(camhook::lineOfJson(document));
  camhook::OwnUpdaters updaters;
  camhook::Replay replay(scenario.platform, [&](int sensor) { return updaters.of(sensor); });
  host::LogSink::enableLevels({});
  camhook::CallTrace trace;
  for (const camhook::ScenarioCall& call : scenario.calls) {
    trace = replay.run(call, camhook::Replay::Detail::containers);
  }
  if (explanation["container"].isNull()) return trace.result;
  for (const camhook::ContainerTrace& each : trace.containers) {
    if (each.name != explanation["container"] || !each.after) continue;
    const auto& entry = each.after->entryFor(camhook::tagFromText(explanation["tag"].text()));
    return entry.isEmpty() ? Json() : camhook::jsonFromEntry(entry);
  }
  return {};
}

void put(Json& object, const std::string& key, const Json& value) {
  if (value.isNull()) {
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

/// Returns the scenario, whose last call is the explained one, with one input changed.
Json changed(Json document, const Json& input, const Json& to) {
  const auto kind = input["kind"].text();
  const std::string key = textOf(input["key"]);
  Json& calls = document["calls"];
  Json& platform = document["platform"];
  const std::string text = to.isText() ? to.text() : "";
  if (kind == "metadata") {
    Json& call = calls.items().back();
    const bool hasMetaOf = call.find("metaOf") != nullptr;
    Json& container = call[input["container"].text()];
    if (hasMetaOf && to.isNull()) {
      container[key] = Json::List();
    } else if (!container.isNull() || !to.isNull()) {
      put(container, key, to);
    }
  } else if (kind == "static") {
    put(platform["devices"][std::to_string(input["device"].integer<int>().value())]["static"], key,
        to);
  } else if (kind == "event") {
    calls.items().insert(calls.items().end() - 1,
                         Json{{"call", "setEvent"}, {"key", key}, {"value", text}});
  } else if (kind == "property") {
    calls.items().insert(calls.items().end() - 1,
                         Json{{"call", "setProperty"}, {"name", key}, {"value", text}});
  } else if (kind == "provider") {
    put(platform, "provider", to.isNull() ? Json() : Json{{"fpsCap", to}});
  } else if (kind == "argument") {
    putAt(calls.items().back(), key, to);
  } else if (kind == "platform") {
    putAt(platform, key, to);
  } else {
    const auto index = input["index"].integer<std::ptrdiff_t>().value();
    calls.items().erase(calls.items().begin() + index - 1);
    for (Json& call : calls.items()) {
      Json* const of = call.find("metaOf");
      if (of != nullptr && of->integer<int>() > index) *of = *of->integer<int>() - 1;
    }
  }
  return document;
}

/// Returns another value for an input without effect, if there is an obvious one.
std::optional<Json> otherValue(const Json& input) {
  const auto kind = input["kind"].text();
  if (kind == "call" || (!input["value"].isNull() && kind != "argument" && kind != "platform")) {
    return Json();
  }
  if (kind == "metadata" || kind == "static")
    return Json{{"type", "int32"}, {"items", Json::List{1}}};
  if (kind == "event" || kind == "property") return Json("1");
  if (kind == "provider") return Json(1);
  return {};
}

/// Checks up to three of the listed changes of each input, and that another value of an input
/// without effect changes nothing.
void checkInputs(const Json& document, const Json& explanation) {
  constexpr std::size_t kMostOutcomes = 3;
  EXPECT_EQ(answerOf(document, explanation), explanation["after"]);
  for (const Json& input : explanation["inputs"].items()) {
    const auto where = [&](const Json& to) {
      return camhook::lineOfJson(explanation["tag"]) + ": " + camhook::lineOfJson(input["kind"]) +
             ' ' + textOf(input["key"]) + " to " + camhook::lineOfJson(to);
    };
    const Json& changes = input["changes"];
    EXPECT_EQ(input["counts"], (changes.size() > 0));
    for (std::size_t i = 0; i < std::min(changes.size(), kMostOutcomes); ++i) {
      const Json& to = changes[i]["to"];
      EXPECT_NE(changes[i]["gives"], explanation["after"]) << where(to);
      EXPECT_EQ(answerOf(changed(document, input, to), explanation), changes[i]["gives"])
          << where(to);
    }
    const std::optional<Json> other = otherValue(input);
    if ((changes.size() > 0) || !other) continue;
    EXPECT_EQ(answerOf(changed(document, input, *other), explanation), explanation["after"])
        << where(*other);
  }
}

/// Returns the tags that a call writes, as "container:tag".
std::set<std::string> writtenBy(const Json& call) {
  std::set<std::string> tags;
  for (const char* container : {"meta", "app", "hal", "out"}) {
    if (!call[container].isObject()) continue;
    for (const auto& [tag, entry] : call[container].members()) {
      tags.insert(std::string(container).append(":").append(tag));
    }
  }
  return tags;
}

class ExplainedScenario : public testing::TestWithParam<std::string> {};

/// Checks one tag for each hook; the scenario's name selects the tag.
TEST_P(ExplainedScenario, MatchesReplays) {
  Json document = camhook::parseJson(contentOf(kScenarios / (GetParam() + ".json")));
  if (document["platform"].find("clock") == nullptr)
    document["platform"]["clock"] = "2021-03-04T05:06:07";
  const Json calls = document["calls"];
  const std::size_t seed = std::hash<std::string>()(GetParam());
  std::set<std::string> hooks;
  for (std::size_t count = calls.size(); count > 0; --count) {
    const Json& call = calls[count - 1];
    const std::set<std::string> tags = writtenBy(call);
    if (tags.empty() || !hooks.insert(call["call"].text()).second) continue;
    document["calls"] = Json::List(calls.items().begin(),
                                   calls.items().begin() + static_cast<std::ptrdiff_t>(count));
    const std::string& tag =
        *std::next(tags.begin(), static_cast<std::ptrdiff_t>(seed % tags.size()));
    checkInputs(document, explanationOf(camhook::lineOfJson(document), "last", tag));
  }
}

INSTANTIATE_TEST_SUITE_P(Scenarios, ExplainedScenario, testing::ValuesIn(namesOf(".json")),
                         [](const auto& name) { return name.param; });

/// Returns pairs of a new value of an input and the result, without types.
Json outcomesOf(const Json& explanation, const std::string& key) {
  Json::List outcomes;
  const auto plain = [](const Json& value) { return value.isObject() ? value["items"] : value; };
  for (const Json& input : explanation["inputs"].items()) {
    if (textOf(input["key"]) != key) continue;
    for (const Json& change : input["changes"].items()) {
      outcomes.push_back(Json::List{plain(change["to"]), plain(change["gives"])});
    }
  }
  return outcomes;
}

TEST(Why, FindsValuesThatLibraryComparesWith) {
  // An app's name, a bit of a mask, the limit of a float, and conditions of rules.
  const Json limited =
      explanationOfStored("third_party_apps.json", "1", "MTK_CONTROL_AE_TARGET_FPS_RANGE");
  const Json& step = limited["writes"][0]["step"];
  EXPECT_TRUE(step == "limitFrameRate" || step == "?")
      << camhook::lineOfJson(step);  // without debug information
  EXPECT_EQ(outcomesOf(limited, "APP_NAME"), camhook::parseJson("[[null, [15, 30]]]"));
  const Json mode = explanationOf(R"({
    "platform": {"eventStore": {"APP_TYPE": "heskCamera"}}, "calls": [
    {"call": "updateRequestMeta", "sensor": 0, "requestNo": 1, "meta": {}}]})",
                                  "1", "HESK_EISSTATE");
  EXPECT_EQ(outcomesOf(mode, "COM_HESK_CURRENTUIMODULE"), camhook::parseJson("[[[26], [0]]]"));
  const Json moon = explanationOfStored("super_moon_zoom.json", "1", "MTK_CONTROL_RAW_TYPE", "60");
  EXPECT_EQ(outcomesOf(moon, "HESK_CONTROL_ZOOM_ZOOM_RATIO").size(), 1U);
  const Json decision = explanationOf(R"({
    "platform": {"properties": {"ro.product.model.zdm": "KX0107"},
                 "eventStore": {"APP_TYPE": "other"}}, "calls": [
    {"call": "decideSensorScenario", "sensor": 1, "meta": {}, "video": false, "width": 0,
     "height": 0}]})",
                                      "1", "return");
  EXPECT_EQ(decision["after"], 255);
  const std::string inputs = camhook::lineOfJson(decision["inputs"]);
  EXPECT_NE(inputs.find(R"({"to": "FaceUnlock", "gives": 8})"), std::string::npos);
  EXPECT_NE(inputs.find(R"({"to": {"type": "int32", "items": [24]}, "gives": 0})"),
            std::string::npos);
}

TEST(Why, FindsPairsOfChanges) {
  const Json bounds = explanationOf(R"({"calls": [
    {"call": "updateRequestMeta", "sensor": 0, "requestNo": 1,
     "meta": {"MTK_CONTROL_AE_TARGET_FPS_RANGE": [15, 24]}}]})",
                                    "1", "MTK_CONTROL_AE_TARGET_FPS_RANGE", "[5, 30]");
  EXPECT_NE(camhook::lineOfJson(bounds["together"])
                .find(R"("key": "vendor.debug.camera.fps.low", "to": "5"}, )"
                      R"({"kind": "property", "key": "vendor.debug.camera.fps.max", "to": "30"})"),
            std::string::npos)
      << camhook::lineOfJson(bounds["together"]);
  Json moon = camhook::parseJson(contentOf(kScenarios / "super_moon_zoom.json"));
  Json& meta = moon["calls"][1]["meta"];
  meta.erase("HESK_CONTROL_MOONMODE");
  meta.erase("HESK_CONTROL_ZOOM_ZOOM_RATIO");
  const Json found = explanationOf(camhook::lineOfJson(moon), "2", "MTK_CONTROL_RAW_TYPE", "60");
  EXPECT_NE(
      camhook::lineOfJson(found["together"])
          .find(
              R"("key": "HESK_CONTROL_MOONMODE", "to": {"type": "int32", "items": [3]}}, )"
              R"({"kind": "metadata", "container": "meta", "key": "HESK_CONTROL_ZOOM_ZOOM_RATIO")"),
      std::string::npos)
      << camhook::lineOfJson(found["together"]);
}

TEST(Why, FollowsContainerOfEarlierCall) {
  const Json document = camhook::parseJson(R"({
    "platform": {"provider": {"fpsCap": 24}, "clock": "2021-03-04T05:06:07"}, "calls": [
      {"call": "createInstance", "sensor": 1},
      {"call": "updateRequestMeta", "sensor": 1, "requestNo": 1,
       "meta": {"MTK_CONTROL_AE_TARGET_FPS_RANGE": [15, 30], "HESK_CONTROL_MOONMODE": 3}},
      {"call": "updateResultMeta", "sensor": 1, "requestNo": 1, "metaOf": 2,
       "meta": {"HESK_CONTROL_MOONMODE": []}}]})");
  const Json range =
      explanationOf(camhook::lineOfJson(document), "3", "MTK_CONTROL_AE_TARGET_FPS_RANGE");
  checkInputs(document, range);
  EXPECT_EQ(range["after"]["items"], camhook::parseJson("[5, 24]"));
  // Only call 2 reads the provider.
  EXPECT_EQ(outcomesOf(range, "")[0], camhook::parseJson("[null, [15, 30]]"));
  EXPECT_EQ(range["inputs"].items().back()["index"], 1) << "call 2 cannot be left out";
}

/// Returns the result of `work`, which runs in a child process.
std::string inProcess(const std::function<std::string()>& work) {
  std::array<int, 2> ends{};
  EXPECT_EQ(pipe(ends.data()), 0);
  const pid_t child = fork();
  if (child == 0) {
    const std::string text = work();
    const bool isWritten = write(ends[1], text.data(), text.size()) == ssize_t(text.size());
    _exit(isWritten ? 0 : 1);
  }
  close(ends[1]);
  std::string text;
  std::array<char, 4096> block{};
  while (const ssize_t size = read(ends[0], block.data(), block.size())) {
    text.append(block.data(), static_cast<std::size_t>(size));
  }
  close(ends[0]);
  waitpid(child, nullptr, 0);
  return text;
}

/// Returns the trace of a replay on new updaters, and the services that its calls read.
std::string runOf(const std::string& text) {
  const camhook::Scenario scenario = camhook::readScenario(text);
  camhook::OwnUpdaters updaters;
  camhook::Replay replay(scenario.platform, [&](int sensor) { return updaters.of(sensor); });
  std::ostringstream out;
  camhook::JsonTrace trace(out);
  std::string reads;
  for (const camhook::ScenarioCall& each : scenario.calls) {
    camhook::StepFinder steps;
    replay.followSteps(&steps);
    const camhook::CallTrace call = replay.run(each);
    trace.write(call);
    for (const camhook::StepAccess& access : *call.accesses) {
      if (const auto* read = std::get_if<host::ServiceRead>(&access.access)) {
        reads += read->place + '\n';
      }
    }
  }
  trace.finish(replay.phone().eventStore.all());
  return out.str() + reads;
}

TEST(OwnUpdaters, KeepNoStateForNextReplay) {
  const auto scenario = [](const std::string& platform) {
    return R"({"platform": {)" + platform + R"("clock": "2021-03-04T05:06:07"}, "calls": [
      {"call": "updateRequestMeta", "sensor": 0, "requestNo": 1, "meta": {}},
      {"call": "updateSessionParams", "sensor": 0, "meta": {}, "streams": []},
      {"call": "updateRequestMeta", "sensor": 0, "requestNo": 2, "meta": {}}]})";
  };
  const std::string with = scenario(R"("provider": {"fpsCap": 20}, )");
  const std::string without = scenario("");
  for (const std::string& each : {with, without, with}) {
    const std::string expected = inProcess([&] { return runOf(each); });
    EXPECT_FALSE(expected.empty());
    EXPECT_EQ(runOf(each), expected);
  }
}

TEST(Why, BeginsWithAnswer) {
  const std::tuple<const char*, const char*> rows[] = {
      {"third_party_apps.json 1 MTK_CONTROL_AE_TARGET_FPS_RANGE",
       "MTK_CONTROL_AE_TARGET_FPS_RANGE is [5, 24]: limitFrameRate wrote it, because of event "
       "APP_NAME \"Whatsapp\"\n"},
      {"still_burst.json 5 MTK_HESK_FRAME_INDEX",
       "; request 200 is not in the burst of 100 to 102; "
       "0 by default\n"},
      {"still_burst.json requestNo:200 MTK_HESK_FRAME_INDEX", "is not in the burst of 100 to 102"},
      {"third_party_apps.json 1 MTK_HESK_STILL_CAPTURE", ": no step of this call writes it"},
      {"third_party_apps.json 1 MTK_HESK_STILL_CAPTURE",
       "  updateStillCapture of updateRequestMeta\n"},
  };
  for (const auto& [words, text] : rows) {
    const std::string output = camhookWith(std::string("why ") + words).output;
    if (output.find(": ? wrote") != std::string::npos) continue;  // without debug information
    EXPECT_NE(output.find(text), std::string::npos) << output;
  }
}

TEST(Why, RejectsInvalidQuestions) {
  const std::tuple<const char*, int, const char*> rows[] = {
      {"super_moon_zoom.json 7 MTK_CONTROL_RAW_TYPE", 2,
       "super_moon_zoom.json: no call 7: the scenario has 6 calls\n"},
      {"super_moon_zoom.json first MTK_CONTROL_RAW_TYPE", 2,
       "super_moon_zoom.json: expected a call number from 1, last, or requestNo:N, found "
       "\"first\"\n"},
      {"super_moon_zoom.json requestNo:12345 MTK_CONTROL_RAW_TYPE", 2,
       "super_moon_zoom.json: no call has \"requestNo:12345\"\n"},
      {"third_party_apps.json 1 MTK_CONTROL_AE_TARGET_FPS_RANGE --want 30", 2,
       "camhook: --want: MTK_CONTROL_AE_TARGET_FPS_RANGE has 2 items: [_, 30]\n"},
      {"super_moon_zoom.json last MTK_CONTROL_RAWTYPE", 2,
       "super_moon_zoom.json: unknown tag \"MTK_CONTROL_RAWTYPE\"; did you mean "
       "MTK_CONTROL_RAW_TYPE?\n"},
      {"super_moon_zoom.json 1 out:MTK_CONTROL_RAW_TYPE", 2,
       "super_moon_zoom.json: the call has no container \"out\"; it has meta\n"},
      {"super_moon_zoom.json 1 MTK_CONTROL_RAW_TYPE --want '\"x\"'", 2,
       "--want[0]: expected an integer of int32, -2147483648 to 2147483647, found \"x\"\n"},
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
