// Checks explanations of `camhook why`: replays scenarios with the changes that an explanation
// lists, on new updaters, and compares the results.

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <optional>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/CamhookProcess.h"
#include "tools/camhook/explain/OwnUpdaters.h"
#include "tools/camhook/explain/Question.h"
#include "tools/camhook/explain/Why.h"
#include "tools/camhook/input/Json.h"
#include "tools/camhook/input/JsonLine.h"
#include "tools/camhook/input/MetadataJson.h"
#include "tools/camhook/input/ScenarioReader.h"
#include "tools/camhook/run/Replay.h"
#include "tools/camhook/show/JsonTrace.h"

namespace {

using namespace camhook;

std::string textOf(const Json& value) { return value.isText() ? value.text() : ""; }

/// Returns the output of `camhook why --json`; `tag` may name its container.
Json explanationOf(const std::string& scenario, const std::string& call, const std::string& tag,
                   const std::string& want = "") {
  const Question question = readQuestion(scenario, call, tag);
  std::optional<Wanted> wanted;
  if (!want.empty()) wanted.emplace(want, question);
  return jsonFrom(question, explain(question, wanted));
}

Json explanationOfStored(const std::string& file, const std::string& call, const std::string& tag,
                         const std::string& want = "") {
  return explanationOf(contentOf(kScenarios / file), call, tag, want);
}

/// Replays a scenario on updaters of its own and passes each call's trace to `use`. Returns the
/// event store at the end.
host::TextMap replay(const std::string& text, Replay::Detail detail,
                     const std::function<void(const CallTrace&)>& use) {
  const Scenario scenario = readScenario(text);
  OwnUpdaters updaters;
  Replay replay(scenario.platform, [&](int sensor) { return updaters.of(sensor); });
  if (detail == Replay::Detail::containers) host::LogSink::enableLevels({});
  for (const ScenarioCall& call : scenario.calls) use(replay.run(call, detail));
  return replay.phone().eventStore.all();
}

/// Returns the value of the tag, or the return value, after the last call of a scenario, in the
/// format of an explanation.
Json answerOf(const Json& document, const Json& explanation) {
  CallTrace trace;
  replay(lineOfJson(document), Replay::Detail::containers,
         [&](const CallTrace& call) { trace = call; });
  if (explanation["container"].isNull()) return trace.result;
  for (const ContainerTrace& each : trace.containers) {
    if (each.name != explanation["container"] || !each.after) continue;
    const auto& entry = each.after->entryFor(tagFromText(explanation["tag"].text()));
    return entry.isEmpty() ? Json() : jsonFromEntry(entry);
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

/// Returns the scenario, whose last call is the explained one, with one input changed.
Json changed(Json document, const Json& input, const Json& to) {
  const auto kind = input["kind"].text();
  const std::string key = textOf(input["key"]);
  Json& calls = document["calls"];
  Json& platform = document["platform"];
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
  } else if (kind == "event" || kind == "property") {
    const bool isEvent = kind == "event";
    calls.items().insert(calls.items().end() - 1,
                         Json{{"call", isEvent ? "setEvent" : "setProperty"},
                              {isEvent ? "key" : "name", key},
                              {"value", textOf(to)}});
  } else if (kind == "provider") {
    put(platform, "provider", to.isNull() ? Json() : Json{{"fpsCap", to}});
  } else if (kind == "argument") {
    setValueAt(calls.items().back(), key, to);
  } else if (kind == "platform") {
    setValueAt(platform, key, to);
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
  constexpr std::size_t kMaxOutcomes = 3;
  EXPECT_EQ(answerOf(document, explanation), explanation["after"]);
  for (const Json& input : explanation["inputs"].items()) {
    const auto where = [&](const Json& to) {
      return lineOfJson(explanation["tag"]) + ": " + lineOfJson(input["kind"]) + ' ' +
             textOf(input["key"]) + " to " + lineOfJson(to);
    };
    const Json& changes = input["changes"];
    EXPECT_EQ(input["counts"], (changes.size() > 0));
    for (std::size_t i = 0; i < std::min(changes.size(), kMaxOutcomes); ++i) {
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
  Json document = parseJson(contentOf(kScenarios / (GetParam() + ".json")));
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
    checkInputs(document, explanationOf(lineOfJson(document), "last", tag));
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
      << lineOfJson(step);  // without debug information
  EXPECT_EQ(outcomesOf(limited, "APP_NAME"), parseJson("[[null, [15, 30]]]"));
  const Json mode = explanationOf(R"({
    "platform": {"eventStore": {"APP_TYPE": "heskCamera"}}, "calls": [
    {"call": "updateRequestMeta", "sensor": 0, "requestNo": 1, "meta": {}}]})",
                                  "1", "HESK_EISSTATE");
  EXPECT_EQ(outcomesOf(mode, "COM_HESK_CURRENTUIMODULE"), parseJson("[[[26], [0]]]"));
  const Json moon = explanationOfStored("super_moon_zoom.json", "1", "MTK_CONTROL_RAW_TYPE", "60");
  EXPECT_EQ(outcomesOf(moon, "HESK_CONTROL_ZOOM_ZOOM_RATIO").size(), 1U);
  const Json decision = explanationOf(R"({
    "platform": {"properties": {"ro.product.model.zdm": "KX0107"},
                 "eventStore": {"APP_TYPE": "other"}}, "calls": [
    {"call": "decideSensorScenario", "sensor": 1, "meta": {}, "video": false, "width": 0,
     "height": 0}]})",
                                      "1", "return");
  EXPECT_EQ(decision["after"], 255);
  const std::string inputs = lineOfJson(decision["inputs"]);
  EXPECT_NE(inputs.find(R"({"to": "FaceUnlock", "gives": 8})"), std::string::npos);
  EXPECT_NE(inputs.find(R"({"to": {"type": "int32", "items": [24]}, "gives": 0})"),
            std::string::npos);
}

TEST(Why, FindsPairsOfChanges) {
  // A pair of properties that one step reads, and a pair of tags that another call has.
  const Json bounds = parseJson(R"({"platform": {"clock": "2021-03-04T05:06:07"}, "calls": [
    {"call": "updateRequestMeta", "sensor": 0, "requestNo": 1,
     "meta": {"MTK_CONTROL_AE_TARGET_FPS_RANGE": [15, 24]}}]})");
  Json moon = parseJson(contentOf(kScenarios / "super_moon_zoom.json"));
  moon["calls"][1]["meta"].erase("HESK_CONTROL_MOONMODE");
  moon["calls"][1]["meta"].erase("HESK_CONTROL_ZOOM_ZOOM_RATIO");
  const std::tuple<Json, std::string, std::string, std::string, std::string> rows[] = {
      {bounds, "1", "MTK_CONTROL_AE_TARGET_FPS_RANGE", "[5, 30]",
       R"("key": "vendor.debug.camera.fps.low", "to": "5"}, )"
       R"({"kind": "property", "key": "vendor.debug.camera.fps.max", "to": "30"})"},
      {moon, "2", "MTK_CONTROL_RAW_TYPE", "60",
       R"("key": "HESK_CONTROL_MOONMODE", "to": {"type": "int32", "items": [3]}}, )"
       R"({"kind": "metadata", "container": "meta", "key": "HESK_CONTROL_ZOOM_ZOOM_RATIO")"}};
  for (const auto& [document, call, tag, want, pair] : rows) {
    const Json found = explanationOf(lineOfJson(document), call, tag, want);
    const std::string together = lineOfJson(found["together"]);
    EXPECT_NE(together.find(pair), std::string::npos) << together;
    for (const Json& each : found["together"].items()) {
      Json both = document;
      both["calls"].items().resize(std::stoul(call));
      for (const Json& change : each["changes"].items()) both = changed(both, change, change["to"]);
      EXPECT_EQ(answerOf(both, found), each["gives"]) << lineOfJson(each);
    }
  }
}

TEST(Why, FollowsContainerOfEarlierCall) {
  const Json document = parseJson(R"({
    "platform": {"provider": {"fpsCap": 24}, "clock": "2021-03-04T05:06:07"}, "calls": [
      {"call": "createInstance", "sensor": 1},
      {"call": "updateRequestMeta", "sensor": 1, "requestNo": 1,
       "meta": {"MTK_CONTROL_AE_TARGET_FPS_RANGE": [15, 30], "HESK_CONTROL_MOONMODE": 3}},
      {"call": "updateResultMeta", "sensor": 1, "requestNo": 1, "metaOf": 2,
       "meta": {"HESK_CONTROL_MOONMODE": []}}]})");
  const Json range = explanationOf(lineOfJson(document), "3", "MTK_CONTROL_AE_TARGET_FPS_RANGE");
  checkInputs(document, range);
  EXPECT_EQ(range["after"]["items"], parseJson("[5, 24]"));
  // Only call 2 reads the provider.
  EXPECT_EQ(outcomesOf(range, "")[0], parseJson("[null, [15, 30]]"));
  EXPECT_EQ(range["inputs"].items().back()["index"], 1) << "call 2 cannot be left out";
}

TEST(OwnUpdaters, KeepNoStateForNextReplay) {
  const std::string calls = R"("clock": "2021-03-04T05:06:07"}, "calls": [
      {"call": "updateRequestMeta", "sensor": 0, "requestNo": 1, "meta": {}},
      {"call": "updateSessionParams", "sensor": 0, "meta": {}, "streams": []},
      {"call": "updateRequestMeta", "sensor": 0, "requestNo": 2, "meta": {}}]})";
  for (const bool hasProvider : {true, false, true}) {
    const std::string provider = hasProvider ? R"("provider": {"fpsCap": 20}, )" : "";
    const std::string scenario = std::string(R"({"platform": {)").append(provider).append(calls);
    std::size_t reads = 0;
    replay(scenario, Replay::Detail::accesses, [&](const CallTrace& call) {
      for (const StepAccess& each : *call.accesses) {
        const auto* read = std::get_if<host::ServiceRead>(&each.access);
        if (read != nullptr && read->place == "provider") ++reads;
      }
    });
    // Each call uses the service; the first one also asks for it.
    EXPECT_EQ(reads, hasProvider ? 4U : 3U);
    std::ostringstream out;
    JsonTrace trace(out);
    trace.finish(
        replay(scenario, Replay::Detail::all, [&](const CallTrace& call) { trace.write(call); }));
    EXPECT_EQ(out.str(), camhookWith("replay --json -", scenario).output) << "in a new process";
  }
}

TEST(Why, BeginsWithAnswer) {
  const std::tuple<const char*, const char*> rows[] = {
      {"third_party_apps.json 1 MTK_CONTROL_AE_TARGET_FPS_RANGE",
       "MTK_CONTROL_AE_TARGET_FPS_RANGE is [5, 24]: limitFrameRate wrote it, because of event "
       "APP_NAME \"Whatsapp\"\n"},
      {"still_burst.json requestNo:200 MTK_HESK_FRAME_INDEX",
       "; request 200 is not in the burst of 100 to 102; 0 by default\n"},
      {"third_party_apps.json 1 MTK_HESK_STILL_CAPTURE",
       "  updateStillCapture of updateRequestMeta\n"},
  };
  for (const auto& [words, text] : rows) {
    const std::string output = camhookWith(std::string("why ") + words).output;
    if (output.find(": ? wrote") != std::string::npos) continue;  // without debug information
    EXPECT_NE(output.find(text), std::string::npos) << output;
  }
}

TEST(Why, ExitsWith1IfNoChangeGivesValue) {
  EXPECT_EQ(camhookWith("why super_moon_zoom.json 1 MTK_CONTROL_RAW_TYPE --want 60").status, 0);
  EXPECT_EQ(camhookWith("why - 2 MTK_CONTROL_RAW_TYPE --want 77",
                        R"({"calls": [{"call": "createInstance", "sensor": 11},
                            {"call": "updateResultMeta", "sensor": 11, "requestNo": 1, "meta": {}}]})")
                .status,
            1);
  // Pairs in which one change removes the item that the other one changes.
  EXPECT_EQ(camhookWith("why video_4k60.json 4 MTK_STREAMING_FEATURE_HFPS_MODE --want 7").status,
            1);
}

TEST(Why, FindsAnyItemsOfRectangle) {
  const std::string output =
      camhookWith("why raw_capture.json 2 MTK_RAW_ALGO_SAT_CROP_REGION --want '[_, 562, _, _]'")
          .output;
  EXPECT_NE(output.find("\u2192  [999, 562, 2000, 1125]"), std::string::npos) << output;
}

}  // namespace
