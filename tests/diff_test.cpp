// `camhook diff`: what it tells of two traces, and of two folders of them.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "tests/support/CamhookProcess.h"
#include "tools/camhook/input/Json.h"

namespace {

using camhook::Json;

const std::string kStored = "still_capture_dump.trace.json";

Json storedTrace() { return Json::parse(contentOf(kSourceRoot / "scenarios" / kStored)); }

Json entry(const char* type, std::initializer_list<Json> items) {
  return {{"type", type}, {"items", Json(items)}};
}

/// Something of every kind that a call tells is changed.
Json changedTrace() {
  Json trace = storedTrace();
  Json& request = trace["calls"][0];
  Json& meta = request["meta"];
  meta["MTK_HESK_CAPTURE_COUNT"] = entry("int32", {5});
  meta["MTK_HESK_STILL_CAPTURE"] = entry("uint8", {1});
  meta["HESK_CONTROL_DUMPPATH"]["items"][13] = 56;
  meta["HESK_CONTROL_EV"] = entry("float", {"nan"});
  meta.erase("MTK_HAL_REQUEST_CAPTURE_FLAG1");
  request["state"]["mStreamIds"] = {1, 2};
  request["effects"].erase(4);
  request["logs"].erase(0);
  request["writes"] = Json::array();
  trace["calls"][1]["args"]["frame"] = 99;
  std::string text = trace["calls"][1]["text"];
  trace["calls"][1]["text"] = text.replace(text.find("[31 ]"), 5, "[32 ]");
  trace["calls"].erase(3);
  trace["calls"].push_back(trace["calls"][2]);
  trace["calls"].back()["sensor"] = 7;
  trace["eventStore"].erase("APP_MODE");
  return trace;
}

TEST(Diff, LooksAtRecordsOnlyWhereAsked) {
  Json trace = storedTrace();
  EXPECT_EQ(camhookWith("diff --logs " + kStored + " -", trace.dump()).output, "");
  trace["calls"][0]["logs"][0]["message"] = "other";
  for (Json& call : trace["calls"]) call.erase("args");  // as older traces have none
  EXPECT_EQ(camhookWith("diff " + kStored + " -", trace.dump()).status, 0);
  const Outcome outcome = camhookWith("diff --logs " + kStored + " -", trace.dump());
  EXPECT_EQ(outcome.status, 1);
  EXPECT_NE(outcome.output.find("added  D  other"), std::string::npos) << outcome.output;
}

TEST(Diff, TellsCallByCallWhatDiffers) {
  const Outcome outcome = camhookWith("diff " + kStored + " -", changedTrace().dump());
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.output, R"(1  updateRequestMeta  sensor 0  requestNo 12
  meta MTK_HESK_CAPTURE_COUNT         4 → 5
  meta MTK_HESK_STILL_CAPTURE         1 → 1 (uint8)
  meta HESK_CONTROL_DUMPPATH          [50, 48, 50, 49, 48, 51, 48, 52, 48, 53, 48, 54, ... 15 items, sum bbf5ff94] → [50, 48, 50, 49, 48, 51, 48, 52, 48, 53, 48, 54, ... 15 items, sum 1e1ee345]; 1 of 15 items, from [13] on: 55 → 56
  meta HESK_CONTROL_EV                absent → nan
  meta MTK_HAL_REQUEST_CAPTURE_FLAG1  1 → absent
  state mStreamIds                    [] → [1, 2]
  effects                             gone   hal3a.create  sensor=0 user=HeskParameterUpdater ok=true

2  dumpMetadata  sensor 0  name request  frame 99
  args frame                          12 → 99
  text                                gone       [31 ]
  text                                added      [32 ]

4  setProperty  name vendor.camera.dumprawhifmetadata  value 0
  call                                gone

5  dumpMetadata  sensor 7  name request  frame 13
  call                                added

event store at the end
  APP_MODE                            "" → absent

)");
}

TEST(Diff, GroupsTheTracesOfFoldersByHookAndTag) {
  const std::filesystem::path folders =
      testing::TempDir() + "camhook_diff_" + std::to_string(::getpid());
  const auto write = [&](const char* file, const Json& trace) {
    const std::filesystem::path path = folders / file;
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path) << trace;
  };
  write("old/a.json", storedTrace());
  write("old/b.json", storedTrace());
  write("old/gone.json", storedTrace());
  write("new/a.json", storedTrace());
  write("new/b.json", storedTrace());
  const std::string words =
      "diff '" + (folders / "old").string() + "' '" + (folders / "new").string() + "'";
  EXPECT_EQ(camhookWith(words).output, "gone.json  only in " + (folders / "old").string() + "\n");
  Json trace = storedTrace();
  for (const std::size_t call : {0U, 1U}) {
    trace["calls"][call]["meta"]["HESK_CONTROL_ISO"] = entry("int32", {100});
  }
  write("new/a.json", trace);
  trace["calls"][1]["meta"].erase("HESK_CONTROL_ISO");
  write("new/b.json", trace);
  write("new/gone.json", storedTrace());
  const Outcome outcome = camhookWith(words);
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.output, R"(dumpMetadata
  meta HESK_CONTROL_ISO
    absent → 100                      a 2

updateRequestMeta
  meta HESK_CONTROL_ISO
    absent → 100                      a 1; b 1

)");
}

TEST(Diff, RefusesWhatIsNoTrace) {
  const std::pair<const char*, const char*> rows[] = {
      {"[]", " not as in a trace of camhook replay --json"},
      {"{\"calls\": []}", " eventStore: not as in a trace of camhook replay --json"},
      {"{\"calls\": [], \"calls\": [], \"eventStore\": {}}", "1:15: calls: given twice"},
      {"{\"calls\": [1]}", " calls[0]: not as in a trace of camhook replay --json"},
      {"{\"calls\": [{\"call\": \"x\", \"effects\": [1]}]}",
       " calls[0].effects[0]: not as in a trace of camhook replay --json"},
      {"{\"calls\": [{\"call\": \"x\", \"args\": []}]}",
       " calls[0].args: not as in a trace of camhook replay --json"},
  };
  for (const auto& [text, problem] : rows) {
    const Outcome outcome = camhookWith("diff - " + kStored, text);
    EXPECT_EQ(outcome.status, 2) << text;
    EXPECT_EQ(outcome.output, "standard input:" + std::string(problem) + "\n");
  }
  // Members that no trace has are compared as they are.
  const char* strange = R"({"calls": [{"call": "x", "sensor": {}, "args": {"streams": [1, {}]},
    "effects": [{"op": 1}, {}], "logs": [{}], "meta": [1], "text": 5}], "eventStore": {}})";
  EXPECT_EQ(camhookWith("diff --logs - " + kStored, strange).status, 1);
}

}  // namespace
