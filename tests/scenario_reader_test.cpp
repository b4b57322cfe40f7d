// Values and error messages of the scenario reader.

#include <gtest/gtest.h>

#include <string>

#include "tests/support/TestMetadata.h"
#include "tools/camhook/input/InputError.h"
#include "tools/camhook/input/Json.h"
#include "tools/camhook/input/JsonLine.h"
#include "tools/camhook/input/MetadataJson.h"
#include "tools/camhook/input/ScenarioReader.h"

namespace {

using namespace camhook;
using namespace std::string_literals;

/// Returns the problems of a scenario with their lines and columns; empty if there is none.
std::string faultOf(const std::string& scenario) {
  try {
    (void)readScenario(scenario);
    return {};
  } catch (const InputError& error) {
    return error.what();
  }
}

/// Returns the same without the first line and column.
std::string problemOf(const std::string& scenario) {
  const std::string fault = faultOf(scenario);
  return fault.substr(fault.empty() ? 0 : fault.find(": ") + 2);
}

std::string problemOfMeta(const std::string& meta) {
  return problemOf(
      R"({"calls": [{"call": "updateRequestMeta", "sensor": 0, "requestNo": 1, "meta": )" + meta +
      "}]}");
}

std::string problemOfPlatform(const std::string& platform) {
  return problemOf(R"({"platform": )" + platform + R"(, "calls": []})");
}

const std::string k32Bits = "-2147483648 to 2147483647";

struct Row {
  std::string input;
  std::string problem;
};

/// The rest of a message states what was found and similar names.
void expectBeginning(const std::string& problem, const Row& row) {
  EXPECT_TRUE(problem.starts_with(row.problem)) << problem << " of " << row.input;
}

TEST(ScenarioReader, ReportsPathOfProblem) {
  const Row rows[] = {
      {"", "not JSON: The document is empty."},
      {"{\n  \"calls\": [,]}", "calls[0]: not JSON: Invalid value."},
      {"{}", "calls: missing"},
      {R"({"calls": {}})", "calls: expected a list"},
      {R"({"calls": [], "call": 1})", "call: unknown key"},
      {R"({"calls": [], "about": ["a"]})", "about: expected a text"},
      {R"({"calls": [], "a\nb\u0000c\u001b": 1})", R"(a\u000ab\u0000c\u001b: unknown key)"},
      {R"({"calls": [], "calls": []})", "calls: duplicate key"},
      {R"({"calls": [{"call": "updateSessionParams", "sensor": 0, "meta": null, "streams": [
           {"id": 1, "usage": 0, "width": 1, "height": 1, "id": 1}]}]})",
       "calls[0].streams[0].id: duplicate key"},
      {R"({"calls": [7]})", "calls[0]: expected an object"},
      {R"({"calls": [{"call": "foo"}]})", R"(calls[0].call: unknown call "foo")"},
      {R"({"calls": [{"call": "updateTuningData", "sensor": 0, "meta": null, "size": 67108865}]})",
       "calls[0].size: a block has at most 67108864 bytes"},
      {R"({"calls": [{"call": "matchAspectRatio", "sensor": 0, "reference": [1], "size": [1, 2]}]})",
       "calls[0].reference: expected [width, height]"},
      {R"({"calls": [{"call": "translateResultRegionForHesk", "sensor": 0, "meta": null, "value": 1,
           "cameraId": 0, "tag": "EYES"}]})",
       "calls[0].tag: unknown tag"},
      {R"({"calls": [{"call": "dumpMetadata", "sensor": 0, "meta": null, "frame": -10,
           "name": "0123456789012345678901234567890123456789012345"}]})",
       "calls[0].name: too long: the path would have 100 characters, at most 99 fit"},
      {R"({"calls": [{"call": "createInstance"}]})", "calls[0].sensor: missing"},
      {R"({"calls": [{"call": "createInstance", "sensor": 2147483648}]})",
       "calls[0].sensor: expected an integer of int32, " + k32Bits},
      {R"({"calls": [{"call": "createInstance", "sensor": 1e400}]})",
       "calls[0].sensor: the number is too large"},
      {R"({"calls": [{"call": "updateSessionParams", "sensor": 0, "meta": null, "streams": [
           {"id": 1, "usage": 0, "width": 1, "height": 1},
           {"id": 2, "usage": -1, "width": 1, "height": 1}]}]})",
       "calls[0].streams[1].usage: expected an integer of uint64, 0 to 18446744073709551615"},
      {R"({"calls": [{"call": "updateSessionParams", "sensor": 0, "meta": null, "streams": [
           {"id": 1, "usage": 0, "width": 1, "height": 1},
           {"id": "0x1", "usage": 0, "width": 1, "height": 1}]}]})",
       "calls[0].streams[1].id: duplicate id"},
  };
  for (const Row& row : rows) expectBeginning(problemOf(row.input), row);
}

TEST(ScenarioReader, RejectsInvalidJson) {
  const Row rows[] = {
      {R"({"calls": []} x)", "1:15: not JSON: The document root must not be followed"},
      {"{calls: []}", "1:2: not JSON: Missing a name for object member."},
      {R"({"calls": [] "a": 1})", "1:14: calls: not JSON: Missing a comma or '}'"},
      {R"({"calls": [1 2]})", "1:14: calls[1]: not JSON: Missing a comma or ']'"},
      {R"({"calls": [], "about": "\ud800 "})", "1:25: about: not JSON: The surrogate pair"},
      {"{\"calls\": [], \"about\": \"a\nb\"}", "1:26: about: not JSON: a control character"},
      {R"({"calls": [], "about": "a)", "1:26: about: not JSON: Missing a closing quotation mark"},
      {"{\"calls\": [], \"about\": \"\xc3(\"}", "1:25: not JSON: a byte that is not UTF-8"},
      {"{\"calls\": [],\n\"about\": \"\0\"}"s, "2:11: not JSON: a zero byte"},
      {R"({"platform": {"clock": [0, 1e400]}, "calls": []})",
       "1:28: platform.clock[1]: the number is too large"},
  };
  for (const Row& row : rows) expectBeginning(faultOf(row.input), row);
}

TEST(ScenarioReader, ReportsPathInMetadata) {
  const Row rows[] = {
      {"7", "calls[0].meta: expected an object from tag to value"},
      {R"({"HESK_CONTROL_FOO": 1})", "calls[0].meta.HESK_CONTROL_FOO: unknown tag"},
      {R"({"0x": 1})", "calls[0].meta.0x: unknown tag"},
      {R"({"HESK_CONTROL_ISO": 1, "0xC0030030": 2})", "calls[0].meta.0xC0030030: duplicate tag"},
      {R"({"0xc008000e": 6})",
       "calls[0].meta.0xc008000e: unlisted tag: a type is required, "
       R"({"type": ..., "items": [...]})"},
      {R"({"0xc008000e": {"type": "byte", "items": [6]}})",
       "calls[0].meta.0xc008000e.type: expected a type: int32, int64, uint8, float, rect or "
       "rational, found \"byte\""},
      {R"({"HESK_CONTROL_ISO": {"type": "int32", "items": [], "count": 0}})",
       "calls[0].meta.HESK_CONTROL_ISO.count: unknown key"},
      {R"({"HESK_CONTROL_ISO": [1, "0xffffffff"]})",
       "calls[0].meta.HESK_CONTROL_ISO[1]: expected an integer of int32, " + k32Bits},
      {R"({"HESK_CONTROL_EV": 1e39})", "calls[0].meta.HESK_CONTROL_EV: does not fit a float"},
      {R"({"HESK_CONTROL_EV": "infinite"})",
       R"(calls[0].meta.HESK_CONTROL_EV: expected a number, or "inf", "-inf", "nan")"},
      {R"({"MTK_P1NODE_SCALAR_CROP_REGION": [[0, 0, 1, 1], [2, 3, 4]]})",
       "calls[0].meta.MTK_P1NODE_SCALAR_CROP_REGION[1]: expected [x, y, width, height]"},
  };
  for (const Row& row : rows) expectBeginning(problemOfMeta(row.input), row);
}

TEST(ScenarioReader, ReportsCallWithoutContainerForMetaOf) {
  const std::string calls = R"({"calls": [
      {"call": "setEvent", "key": "A", "value": ""},
      {"call": "updateCaptureRawParameter", "sensor": 0, "app": {}, "hal": {}, "out": {}},
      {"call": "updateRequestMeta", "sensor": 0, "requestNo": 1, "meta": null},
      {"call": "updateRequestMeta", "sensor": 0, "requestNo": 1, "meta": {}},
      {"call": "updateResultMeta", "sensor": 1, "requestNo": 1, )";
  const std::string earlier = "calls[4].metaOf: expected the number of an earlier call, found ";
  const Row rows[] = {
      {R"("metaOf": 0)", earlier + "0"},
      {R"("metaOf": 5)", earlier + "5"},
      {R"("metaOf": "last")", earlier + R"("last")"},
      {R"("metaOf": 1)", R"(calls[4].metaOf: call 1 has no container "meta")"},
      {R"("metaOf": 3)", R"(calls[4].metaOf: call 3 has no container "meta")"},
      {R"("metaOf": 4, "meta": null)",
       "calls[4].meta: expected an object from tag to value, found null"},
      {R"("metaof": 4, "meta": {})", "calls[4].metaof: unknown key; did you mean metaOf?"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(problemOf(calls + row.input + "}]}"), row.problem) << row.input;
  }
  EXPECT_EQ(problemOf(calls + R"("metaOf": 4}]})"), "");
}

TEST(ScenarioReader, ReportsPathInPlatform) {
  const Row rows[] = {
      {R"({"propertys": {}})", "platform.propertys: unknown key"},
      {R"({"properties": {"a": 1}})", "platform.properties.a: expected a text"},
      {R"({"devices": {"zero": {}}})", "platform.devices.zero: expected a device number"},
      {R"({"devices": {"0": {"hal3a": {"available": 1}}}})",
       "platform.devices.0.hal3a.available: expected true or false"},
      {R"({"devices": {"0": {"faces": [{"rect": [1, 2, 3, 4]}, {"scores": 1}]}}})",
       "platform.devices.0.faces[1].scores: unknown key"},
      {R"({"devices": {"0": {"sensor": {"pdWords": [1, 2, 3, 4, 5, 6]}}}})",
       "platform.devices.0.sensor.pdWords: expected at most 5 items"},
      {R"({"devices": {"0": {"sensor": {"pdLeft": [[1, 2], [3]]}}}})",
       "platform.devices.0.sensor.pdLeft[1]: expected a pair [a, b]"},
      {R"({"clock": "2021-02-30T00:00:00"})",
       R"(platform.clock: expected a time such as "2021-03-04T05:06:07")"},
  };
  for (const Row& row : rows) expectBeginning(problemOfPlatform(row.input), row);
}

TEST(ScenarioReader, ReadsEnumerationNames) {
  const auto expected = metadataOf(R"({"ANDROID_CONTROL_CAPTURE_INTENT": 2})");
  for (const char* value : {R"("STILL_CAPTURE")", R"(["STILL_CAPTURE"])", R"("0x2")",
                            R"({"type": "uint8", "items": "STILL_CAPTURE"})"}) {
    EXPECT_EQ(metadataOf(R"({"ANDROID_CONTROL_CAPTURE_INTENT": )" + std::string(value) + "}"),
              expected)
        << value;
  }
  const Row rows[] = {
      {R"({"ANDROID_CONTROL_CAPTURE_INTENT": "STIL_CAPTURE"})",
       "calls[0].meta.ANDROID_CONTROL_CAPTURE_INTENT: unknown value "
       "\"STIL_CAPTURE\"; did you mean STILL_CAPTURE?"},
      {R"({"ANDROID_CONTROL_CAPTURE_INTENT": {"type": "uint8", "items": "STIL_CAPTURE"}})",
       "calls[0].meta.ANDROID_CONTROL_CAPTURE_INTENT.items: unknown value "
       "\"STIL_CAPTURE\"; did you mean STILL_CAPTURE?"},
      {R"({"ANDROID_CONTROL_CAPTURE_INTENT": "\u0002"})",
       "calls[0].meta.ANDROID_CONTROL_CAPTURE_INTENT: unknown value "
       "\"\\u0002\""},
  };
  for (const Row& row : rows) expectBeginning(problemOfMeta(row.input), row);
}

TEST(ScenarioReader, WarnsAboutItemCounts) {
  const ScenarioText counts(R"({"calls": [
{"call": "updateRequestMeta", "sensor": 0, "requestNo": 5, "meta": {"HESK_CONTROL_HISFRAME": 4,
 "MTK_CONTROL_AE_TARGET_FPS_RANGE": [15, 30, 45], "HESK_CONTROL_ISO": [], "HESK_CONTROL_EV": 1,
 "MTK_P1NODE_SCALAR_CROP_REGION": [1, 2, 3, 4],
 "HESK_CONTROL_CURRENTMODE": {"type": "int64", "items": [1, 2]}}}]})");
  EXPECT_EQ(
      counts.warnings().lines("a.json", "warning: "),
      R"(a.json:2:94: warning: calls[0].meta.HESK_CONTROL_HISFRAME: expected 2 items as in the catalogue, found 1
a.json:3:37: warning: calls[0].meta.MTK_CONTROL_AE_TARGET_FPS_RANGE: expected 2 items as in the catalogue, found 3
a.json:5:57: warning: calls[0].meta.HESK_CONTROL_CURRENTMODE.items: expected 1 item as in the catalogue, found 2)");
}

TEST(ScenarioReader, ReportsAllProblemsWithLines) {
  EXPECT_EQ(
      faultOf(R"({"calls": [
  {"call": "updateRequestMetta"}, {"call": "setEvent", "kye": "A", "value": "\u202e"},
  {"call": "updateRequestMeta", "sensor": 0, "requestNo": [], "meta": {"HESK_CONTROL_IS0": 1,
    "HESK_CONTROL_ISO": "\u202e", "ANDROID_FLASH_MODE": [256, true]}}], "about": "\"",
  "paltform": {}, "\u202e": 1})"),
      R"(2:12: calls[0].call: unknown call "updateRequestMetta"; did you mean updateRequestMeta?
2:35: calls[1].key: missing
2:56: calls[1].kye: unknown key; did you mean key?
3:59: calls[2].requestNo: expected an integer of uint32, 0 to 4294967295, found a list of 0
3:72: calls[2].meta.HESK_CONTROL_IS0: unknown tag; did you mean HESK_CONTROL_ISO?
4:25: calls[2].meta.HESK_CONTROL_ISO: expected an integer of int32, -2147483648 to 2147483647, found "\u202e"
4:58: calls[2].meta.ANDROID_FLASH_MODE[0]: expected an integer of uint8, 0 to 255, found 256
4:63: calls[2].meta.ANDROID_FLASH_MODE[1]: expected an integer of uint8, 0 to 255, found true
5:3: paltform: unknown key; did you mean platform?
5:19: \u202e: unknown key)");
}

TEST(ScenarioReader, WarnsAboutLikelyMistakes) {
  const ScenarioText doubtful(
      R"({"platform": {"devices": {"0": {}}, "properties": {"ro.product.model.zd": "",
 "other": ""}, "eventStore": {"APP_TYPE": "heskcamera", "AP_NAME": "", "MINE": "", "HESK_EV": ""}}, "calls": [
{"call": "updateRequestMeta", "sensor": 0, "requestNo": 5, "meta": {"HESK_CONTROL_ISO": {"type": "int64", "items": [1]}}},
{"call": "updateRequestMeta", "sensor": 0, "requestNo": 4, "meta": {"HESK_CONTROL_ISO": {"type": "int32", "items": [1]}}},
{"call": "updateSessionParams", "sensor": 0, "meta": null, "streams": []},
{"call": "updateRequestMeta", "sensor": 0, "requestNo": 3, "meta": null},
{"call": "setEvent", "key": "APP_TYPE", "value": "HeskCamera"}, {"call": "setEvent", "key": "APP_TYPE", "value": "Q"},
{"call": "createInstance", "sensor": 1}, {"call": "createInstance", "sensor": 1}]})");
  EXPECT_EQ(
      doubtful.warnings().lines("a.json", "warning: "),
      R"(a.json:1:52: warning: platform.properties.ro.product.model.zd: unknown property; did you mean ro.product.model.zdm?
a.json:2:43: warning: platform.eventStore.APP_TYPE: no rule has app type "heskcamera"; did you mean heskCamera?
a.json:2:57: warning: platform.eventStore.AP_NAME: unknown event; did you mean APP_NAME?
a.json:3:98: warning: calls[0].meta.HESK_CONTROL_ISO.type: expected int32 as in the catalogue, found int64
a.json:4:57: warning: calls[1].requestNo: less than the previous request number, 5
a.json:7:114: warning: calls[5].value: no rule has app type "Q"; did you mean QQ?
a.json:8:38: warning: calls[6].sensor: device 1 is not in platform.devices)");
}

TEST(ScenarioReader, WarnsAboutUnknownProducts) {
  const auto warningsOf = [](const std::string& properties, const std::string& calls) {
    const ScenarioText scenario(R"({"platform": {"properties": {)" + properties +
                                R"(}}, "calls": [)" + calls + "]}");
    return scenario.warnings().lines("a.json");
  };
  const std::string product = R"("ro.product.model.zdm": )";
  const std::string model = R"("ro.product.model": "KX0107")";
  const std::string set = R"({"call": "setProperty", "name": "ro.product.model.zdm", "value": )";
  const std::string decide =
      R"({"call": "decideSensorScenario", "sensor": 0, "meta": {}, "video": true, "width": 4,
          "height": 3})";
  const std::string place = "platform.properties.ro.product.model";
  EXPECT_EQ(
      warningsOf(product + R"("KX0170")", ""),
      "a.json:1:54: " + place + R"(.zdm: no rules for product "KX0170"; did you mean KX0107?)");
  EXPECT_EQ(warningsOf(product + R"("KX9")", ""),
            "a.json:1:54: " + place + R"(.zdm: no rules for product "KX9")");
  EXPECT_EQ(warningsOf(model, ""), "a.json:1:50: " + place +
                                       ": the library does not read "
                                       "ro.product.model; set ro.product.model.zdm");
  EXPECT_EQ(warningsOf("", set + R"("kx0105"})"),
            R"(a.json:1:109: calls[0].value: no rules for product "kx0105"; did you mean KX0105?)");
  for (const char* name : {"KX0107B", "KX0103", ""}) {
    EXPECT_EQ(warningsOf(product + '"' + name + '"', set + '"' + name + "\"}"), "") << name;
  }
  EXPECT_EQ(warningsOf(model, set + R"("KX0107"})"), "");
  EXPECT_EQ(warningsOf(product + R"("KX0107")", decide), "");
  EXPECT_EQ(warningsOf(product + R"("KX0103")", set + R"("KX0101"}, )" + decide),
            "a.json:1:54: " + place +
                R"(.zdm: no rules for product "KX0103"; did you mean KX0102, KX0104 or KX0105?
a.json:1:141: calls[0].value: no rules for product "KX0101"; did you mean KX0102, KX0104 or KX0105?)");
}

TEST(ScenarioReader, ReadsAllFormsOfValues) {
  const NSCam::IMetadata metadata = metadataOf(R"({
    "HESK_CONTROL_ISO": 100,
    "0xc0030014": "0x0800000000000000",
    "ANDROID_LOGICAL_MULTI_CAMERA_PHYSICAL_IDS": "2\u00003",
    "0xC008000E": {"type": "uint8", "items": [6]},
    "0x80000001": [],
    "ANDROID_SENSOR_NEUTRAL_COLOR_POINT": [[1, 2], [3, 4]],
    "MTK_P1NODE_SCALAR_CROP_REGION": [-1, 2, "0x3", 4],
    "HESK_CONTROL_AE_RESULT": [0.1, -1, "inf", "-inf", "nan", 3.4028235e38, 1e-45]
  })");
  const Json expected = parseJson(R"({
    "ANDROID_SENSOR_NEUTRAL_COLOR_POINT": {"type": "rational", "items": [[1, 2], [3, 4]]},
    "ANDROID_LOGICAL_MULTI_CAMERA_PHYSICAL_IDS": {"type": "uint8", "items": [50, 0, 51]},
    "MTK_P1NODE_SCALAR_CROP_REGION": {"type": "rect", "items": [[-1, 2, 3, 4]]},
    "HESK_CONTROL_CURRENTMODE": {"type": "int64", "items": [576460752303423488]},
    "HESK_CONTROL_ISO": {"type": "int32", "items": [100]},
    "HESK_CONTROL_AE_RESULT": {"type": "float",
      "items": [0.1, -1.0, "inf", "-inf", "nan", 3.4028235e38, 1e-45]},
    "0xc008000e": {"type": "uint8", "items": [6]}
  })");
  EXPECT_EQ(jsonFromMetadata(metadata), expected);
  EXPECT_EQ(metadataOf(lineOfJson(expected)), metadata);  // the format of a trace can be read
}

/// Replays of the stored scenarios use the other keys of a platform.
TEST(ScenarioReader, ReadsPlatform) {
  const Scenario scenario = readScenario(R"({"$schema": "s.json", "about": "All.", "platform": {
    "devices": {"0": {}, "-3": {"static": {"HESK_CONTROL_ISO": 1}, "hal3a": {"shadingBase": 2.5},
                                "faces": [{}], "sensor": {"index": 2, "pdWords": [1]}}},
    "sat": {"configured": 3, "translate": {"dx": 5}}, "provider": {}, "tuningBuffer": {}},
    "calls": []})");
  EXPECT_EQ(scenario.about, "All.");
  const host::PhoneConfig& phone = scenario.platform;
  EXPECT_TRUE(phone.devices.at(0).hal3A.available);
  EXPECT_FALSE(phone.devices.at(0).sensor);
  const host::DeviceConfig& device = phone.devices.at(-3);
  EXPECT_EQ(device.statics, metadataOf(R"({"HESK_CONTROL_ISO": 1})"));
  EXPECT_EQ(device.hal3A.shadingBase, 2.5F);
  EXPECT_EQ(device.faces.at(0).score, 0);
  EXPECT_EQ(device.sensor->pdWords, (std::array<std::int32_t, 5>{1, 0, 0, 0, 0}));
  EXPECT_EQ(phone.sat.configured, 3);
  EXPECT_EQ(phone.sat.translate.scale, 1);
  EXPECT_EQ(phone.provider->fpsCap, 0);
  EXPECT_FALSE(phone.tuningBuffer->fd);
}

TEST(JsonFloat, IsShortestThatRoundTrips) {
  EXPECT_EQ(lineOfJson(-0.0F), "-0.0");
  EXPECT_EQ(lineOfJson(16777216.0F), "16777216.0");
}

}  // namespace
