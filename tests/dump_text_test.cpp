// Reads metadata dumps in logs and bug reports, and writes them as scenarios.

#include <gtest/gtest.h>

#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/CamhookProcess.h"
#include "tests/support/TestMetadata.h"
#include "tools/camhook/input/DumpScenario.h"
#include "tools/camhook/input/DumpText.h"
#include "tools/camhook/input/InputError.h"
#include "tools/camhook/input/JsonLine.h"
#include "tools/camhook/input/ScenarioReader.h"

namespace {

using namespace camhook;
using namespace std::string_literals;
using NSCam::IMetadata;

std::string sample() { return contentOf(kSourceRoot / "tests/support/phone_dump.txt"); }

/// The metadata of the sample dump.
IMetadata sampleMetadata() {
  return metadataOf(R"({
    "ANDROID_CONTROL_CAPTURE_INTENT": ["PREVIEW"],
    "ANDROID_CONTROL_SCENE_MODE": 77,
    "ANDROID_CONTROL_AWB_MODE": 8,
    "ANDROID_LENS_INFO_AVAILABLE_FOCAL_LENGTHS":
      [4.7, -0.5, "inf", "-inf", "nan", 0, 100, 1e-8, 16777216],
    "ANDROID_SENSOR_EXPOSURE_TIME": [-9223372036854775808, 10000000, 1],
    "ANDROID_SENSOR_NEUTRAL_COLOR_POINT": [[1, 2], [-1, 1], [3, 4]],
    "MTK_SENSOR_INFO_ACTIVE_ARRAY_REGION": [0, 0, 4000, 3000],
    "HESK_CONTROL_DUMPPATH": "20210304050607-1\u0000",
    "HESK_CONTROL_STREAM_FLAGS": [1, 0, 2147483647, -2147483648, 3],
    "0xc0999999": {"type": "int32", "items": [65549, 917506, 74565]}})");
}

IMetadata dumped(const Dump& dump) {
  IMetadata metadata;
  for (const IMetadata::IEntry& entry : dump.entries) metadata.update(entry.tag(), entry);
  return metadata;
}

/// Returns a dump with these entries.
std::string dumpWith(std::size_t count, const std::string& entries) {
  return "Dumping camera metadata array: " + std::to_string(count) +
         " / 40 entries, 0 / 0 bytes of extra data.\n  Version: 1, Flags: 00000000\n" + entries;
}

std::string isoDump(int iso) {
  return dumpWith(1, "  vendor.iso (c0030030): int32[1]\n    [" + std::to_string(iso) + " ]\n");
}

/// Returns the text with `before` and `after` added to each line.
std::string lines(const std::string& text, const std::string& before,
                  const std::string& after = "") {
  std::istringstream in(text);
  std::string all;
  for (std::string line; std::getline(in, line);) {
    all.append(before).append(line).append(after).append("\n");
  }
  return all;
}

/// Returns the warnings about a text.
std::string warningsOf(const std::string& text) { return dumpsIn(text).warnings.lines(""); }

TEST(DumpText, FindsDumpInLogsAndReports) {
  const std::string log = "03-04 05:06:07.123  812  845 D Tag: ";
  const std::string other = "03-04 05:06:07.124  812  845 D Other: opened (12): [0, 1] [3]\n";
  const std::map<std::string, std::string> texts{
      {"alone", sample()},
      {"in a report", "== state\n  open [2 ]\n" + lines(sample(), "      ") + "\n== end [1 ]\n"},
      {"lines of another system", lines(sample(), "", "\r")},
      {"a log", lines(sample(), log)},
      {"a log of long lines", lines(sample(), log, "\n" + other.substr(0, other.size() - 1))},
      {"a log without a time", lines(sample(), "D/Tag  (  812): ")},
      {"a log with headers on their own lines",
       lines(sample(), "[ 03-04 05:06:07.123   812:  845 D/CameraMetadata ]\r\n", "\n")},
      {"among bytes", "\0\xff\x80["s + sample() + "\0\0\xfe] [\n\0"s},
      {"over an older one", sample() + "7 7 ]\n    [7 7 7 ]\n" + isoDump(7).substr(120)}};
  for (const auto& [name, text] : texts) {
    const DumpsOfText found = dumpsIn(text);
    ASSERT_EQ(found.dumps.size(), 1U) << name;
    EXPECT_EQ(dumped(found.dumps[0]), sampleMetadata()) << name;
  }
  EXPECT_EQ(warningsOf(texts.at("a log of long lines")), "");
}

TEST(DumpScenario, RejectsDumpWithoutReadableEntries) {
  const std::string unread =
      dumpWith(2, "  a.mode (10003): byte[1]\n    [ON ]\n  a.b (c0030030): int32[1]\n");
  try {
    (void)dumpFile("a", isoDump(1) + unread);
    FAIL();
  } catch (const InputError& error) {
    EXPECT_STREQ(
        error.what(),
        "5:1: no entry of the dump can be read; a.mode (10003): items[0]: expected an integer of "
        "uint8, 0 to 255, found \"ON\"");
  }
}

TEST(DumpText, FindsConsecutiveAndInterleavedDumps) {
  const std::string null = "Dumping camera metadata array: Not allocated\n";
  for (const std::string head : {"05:06:07.123  812  845 D Tag: ",
                                 "[ 03-04 05:06:07.123   812:  845 D/CameraMetadata ]\n"}) {
    std::string otherHead = head;
    otherHead.replace(head.find("845"), 3, "846");
    std::istringstream first(isoDump(1));
    std::istringstream second(isoDump(2));
    std::string mixed;
    for (std::string line; std::getline(first, line);) {
      mixed.append(head).append(line).append("\n");
      if (std::getline(second, line)) mixed.append(otherHead).append(line).append("\n");
    }
    mixed.append("\n").append(dumpWith(0, "")).append(null).append(isoDump(3));
    const DumpsOfText found = dumpsIn(mixed);
    ASSERT_EQ(found.dumps.size(), 5U) << head;
    EXPECT_EQ(dumped(found.dumps[0]), metadataOf(R"({"HESK_CONTROL_ISO": 1})"));
    EXPECT_EQ(dumped(found.dumps[1]), metadataOf(R"({"HESK_CONTROL_ISO": 2})"));
    EXPECT_EQ(dumped(found.dumps[2]), metadataOf("{}"));
    EXPECT_TRUE(found.dumps[3].isNull);
    EXPECT_EQ(dumped(found.dumps[4]), metadataOf(R"({"HESK_CONTROL_ISO": 3})"));
    EXPECT_TRUE(found.warnings.isEmpty());
  }
}

TEST(DumpText, ReadsTruncatedDumps) {
  const std::string head = "  vendor.pair (c0030085): int32[5]\n    [1 2 3 4 ]\n    [5 ]\n";
  const std::string whole = dumpWith(2, "  vendor.iso (c0030030): int32[1]\n    [7 ]\n" + head);
  for (std::size_t cut = whole.find(head) + 1; cut + 3 < whole.size(); ++cut) {
    const DumpsOfText found = dumpsIn(whole.substr(0, cut));
    ASSERT_EQ(found.dumps.size(), 1U);
    EXPECT_EQ(dumped(found.dumps[0]), metadataOf(R"({"HESK_CONTROL_ISO": 7})")) << cut;
    EXPECT_FALSE(found.warnings.isEmpty()) << cut;
  }
  EXPECT_EQ(warningsOf(whole.substr(0, whole.find("    [5"))),
            "5:1: vendor.pair (c0030085): skipped: has 4 of 5 values");
  EXPECT_EQ(warningsOf(whole.substr(0, whole.find(head))),
            "1:1: the dump is cut off: 1 of 2 entries");
  EXPECT_EQ(warningsOf("Dumping camera metadata array: 1"),
            "1:1: the dump's first line has no entry count");

  const std::string end = "    [6 ]\n" + head;
  EXPECT_EQ(dumped(dumpsIn(end).dumps.at(0)),
            metadataOf(R"({"HESK_CONTROL_HISFRAME": [1, 2, 3, 4, 5]})"));
  EXPECT_EQ(warningsOf(end), "2:1: the text begins within a dump");
}

TEST(DumpText, SkipsEntriesThatItCannotRead) {
  const std::pair<const char*, const char*> rows[] = {
      {"android.control.aeMode (10003): byte[1]\n [ON ]",
       R"(items[0]: expected an integer of uint8, 0 to 255, found "ON")"},
      {"a.b (c0030030): float[1]\n [340282366920938463463374607431768211456.0 ]",
       R"(items[0]: expected a number, or "inf", "-inf", "nan", found )"
       R"("3402823669209384634633746074317682114...")"},
      {"a.b (c0030030): rational[1]\n [(1 / 4294967296) ]",
       "items[0][1]: expected an integer of int32, -2147483648 to 2147483647, found 4294967296"},
      {"a.b (c0030030): double[2]\n [1.5 2.5 ]", "scenarios have no type double"},
      {"a.b (c0030030): int32[0]", "has no values"},
      {"a.b (c0030030): int32[2]\n [1 2 3 ]", "has 3 of 2 values"},
      {"a.b (c0030030): byte[18]\n [1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 ]",
       "has 16 of 18 values, cut by the dump's verbosity"},
      {"com.maker.iso (c0030005): int32[1]\n [1 ]\n a.b (c0030005): int32[1]\n [1 ]",
       "duplicate tag"},
  };
  for (const auto& [entry, reason] : rows) {
    const std::string text = dumpWith(2, " "s + entry + "\n x.y (c0030091): int32[1]\n [1 ]\n");
    const DumpsOfText found = dumpsIn(text);
    ASSERT_FALSE(found.warnings.isEmpty()) << entry;
    EXPECT_EQ(found.warnings.shown().front().problem, "skipped: "s + reason) << entry;
    for (const auto& read : found.dumps.at(0).entries) EXPECT_NE(read.tag(), 0xc0030030U);
  }
}

TEST(DumpText, WarnsAboutMismatchesWithCatalogue) {
  const std::pair<const char*, const char*> rows[] = {
      {"android.control.awbMode (1000b): byte[1]\n [AUTO ]",
       "3:1: android.control.awbMode (1000b): has type uint8; the catalogue has int32"},
      {"android.control.zoomMethod (10036): byte[1]\n [1 ]",
       "3:1: android.control.zoomMethod (10036): has the tag value of "
       "MTK_HESK_SUPER_NIGHT_ON and type uint8; the catalogue has int32"},
      {"a.region (c00e0031): int32[5]\n [1 2 3 4 ]\n [5 ]",
       "3:1: a.region (c00e0031): has type int32; the catalogue has rect"},
      {"a.region (c00e0031): int32[8]\n [1 2 3 4 ]\n [5 6 7 8 ]", ""},
      {"a.number (10036): int32[1]\n [1 ]", ""},
      {"a.b (c0999999): float[1]\n [1 ]", ""},
  };
  for (const auto& [entry, warning] : rows) {
    EXPECT_EQ(warningsOf(dumpWith(1, " "s + entry + "\n")), warning);
  }
}

Json madeOf(const std::vector<std::pair<std::string, std::string>>& texts,
            const DumpOptions& options = {}) {
  std::vector<DumpFile> files;
  files.reserve(texts.size());
  for (const auto& [name, text] : texts) files.push_back(dumpFile(name, text));
  return scenarioOfDumps(files, options);
}

TEST(DumpScenario, RoundTrips) {
  const Scenario read = readScenario(brokenJson(madeOf({{"a", sample()}})));
  const auto& call = std::get<UpdateRequestMeta>(read.calls.at(0).call);
  EXPECT_EQ(call.meta.value(), sampleMetadata());
}

TEST(DumpScenario, UsesReadableValues) {
  DumpOptions options;
  options.sensor = 2;
  options.properties = {{"ro.product.model.zdm", "KX0107"}};
  options.eventStore = {{"APP_TYPE", "heskCamera"}};
  options.statics = dumpFile("static.txt", dumpWith(1, " a.size (f0005): float[2]\n [6.4 4.8 ]"));
  const std::string text = dumpWith(5, R"(
    android.control.awbMode (1000b): byte[2]
      [7 9 ]
    android.control.captureIntent (1000d): byte[1]
      [STILL_CAPTURE ]
    a.ids (1a0000): byte[2]
      [50 0 ]
    a.region (c00e0031): int32[4]
      [1 2 3 4 ]
    android.control.aeMode (10003): byte[1]
      [ON ])");
  const auto made = madeOf({{"dir/result_metadata_[12]_20210304050607.txt", text}}, options);
  EXPECT_EQ(brokenJson(made), R"({
  "about": "1 dump of a phone, from result_metadata_[12]_20210304050607.txt. Assumed: hook request, clock from the file name.",
  "platform": {
    "properties": {"ro.product.model.zdm": "KX0107"},
    "eventStore": {"APP_TYPE": "heskCamera"},
    "devices": {"2": {"static": {"ANDROID_SENSOR_INFO_PHYSICAL_SIZE": [6.4, 4.8]}}},
    "clock": "2021-03-04T05:06:07"
  },
  "calls": [
    {
      "call": "updateRequestMeta",
      "sensor": 2,
      "requestNo": 12,
      "meta": {
        "ANDROID_CONTROL_AWB_MODE": {"type": "uint8", "items": ["TWILIGHT", 9]},
        "ANDROID_CONTROL_CAPTURE_INTENT": "STILL_CAPTURE",
        "ANDROID_LOGICAL_MULTI_CAMERA_PHYSICAL_IDS": [50, 0],
        "MTK_RAW_ALGO_FACE_RECTS": [1, 2, 3, 4]
      }
    }
  ]
})");
}

TEST(DumpScenario, PrintsWarnings) {
  const std::string text = dumpWith(2, " a.size (f0005): float[2]\n [6.4 4.8 ]\n");
  EXPECT_EQ(camhookWith("scenario --product KX0107 - -o /dev/null", text).output,
            R"(standard input:1:1: warning: the dump is cut off: 1 of 2 entries
standard input: warning: a dump contains static metadata; use --static
1 dump of a phone, from standard input. Assumed: hook request, sensor 0, request numbers from 1, no app type.
)");
}

TEST(DumpScenario, OrdersFilesByFrame) {
  const auto made = madeOf({{"log", isoDump(1) + isoDump(2)},
                            {"a/request_metadata_[10]_20210304050608.txt", isoDump(10)},
                            {"a/request_metadata_[9]_20210304250607.txt", isoDump(9) + isoDump(8)},
                            {"request_metadata_[x]_1.txt", isoDump(3)}});
  std::vector<std::pair<unsigned, int>> calls;
  for (const Json& call : made["calls"].items()) {
    calls.emplace_back(call["requestNo"].integer<unsigned>().value(),
                       call["meta"]["HESK_CONTROL_ISO"].integer<int>().value());
  }
  EXPECT_EQ(calls, (std::vector<std::pair<unsigned, int>>{
                       {9, 9}, {9, 8}, {10, 10}, {11, 1}, {12, 2}, {13, 3}}));
  EXPECT_EQ(made.find("platform"), nullptr);  // the first frame's name has no such hour
}

TEST(DumpScenario, FillsContainersOfHook) {
  DumpOptions options;
  options.hook = findDumpHook("capture");
  const auto made =
      madeOf({{"log", isoDump(1) + isoDump(2) + isoDump(3)}, {"-", isoDump(4)}}, options);
  const Scenario read = readScenario(brokenJson(made));
  ASSERT_EQ(read.calls.size(), 2U);
  const auto& first = std::get<UpdateCaptureRawParameter>(read.calls[0].call);
  EXPECT_EQ(first.app.value(), metadataOf(R"({"HESK_CONTROL_ISO": 1})"));
  EXPECT_EQ(first.hal.value(), metadataOf(R"({"HESK_CONTROL_ISO": 2})"));
  EXPECT_EQ(first.out.value(), metadataOf(R"({"HESK_CONTROL_ISO": 3})"));
  const auto& second = std::get<UpdateCaptureRawParameter>(read.calls[1].call);
  EXPECT_EQ(second.app.value(), metadataOf(R"({"HESK_CONTROL_ISO": 4})"));
  EXPECT_EQ(second.out.value(), metadataOf("{}"));
  EXPECT_EQ(made["about"],
            "4 dumps of a phone, from log and 1 more file. Assumed: sensor 0, \"hal\" empty, "
            "\"out\" empty, no product, no app type.");

  options.hook = findDumpHook("updateSessionParams");
  const std::string null = "Dumping camera metadata array: Not allocated";
  const auto session = readScenario(brokenJson(madeOf({{"log", null}}, options)));
  EXPECT_FALSE(std::get<UpdateSessionParams>(session.calls.at(0).call).meta.has_value());
}

}  // namespace
