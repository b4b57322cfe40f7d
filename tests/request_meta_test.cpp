// The request hook but for still captures: what each step makes of a request. The moon scene and
// the products whose front camera does not stabilise are in the shipped scenarios.

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "common/Events.h"
#include "common/tags/Metadata.h"
#include "host/Phone.h"
#include "tests/support/AllocationCounter.h"
#include "tests/support/TestMetadata.h"
#include "tests/support/TestUpdater.h"

namespace {

using namespace hesk;

struct Row {
  std::string name;
  std::string request;
  std::string expected;  // without MTK_CONTROL_SELECTED_STREAM_ID, where that is -1
  int sensor = 0;
  std::function<void(host::Phone&, TestUpdater&)> prepare = [](auto&, auto&) {};
};

std::ostream& operator<<(std::ostream& out, const Row& row) { return out << row.name; }

std::function<void(host::Phone&, TestUpdater&)> product(const std::string& model,
                                                        int multicamMode = 0) {
  return [=](host::Phone& phone, TestUpdater& updater) {
    phone.properties.set("ro.product.model.zdm", model);
    updater.fields.setMulticamFeatureMode(multicamMode);
  };
}

std::function<void(host::Phone&, TestUpdater&)> app(const std::string& type,
                                                    const std::string& name,
                                                    const std::string& model = "") {
  return [=](host::Phone& phone, TestUpdater&) {
    phone.eventStore.set("APP_TYPE", type);
    phone.eventStore.set("APP_NAME", name);
    phone.properties.set("ro.product.model.zdm", model);
  };
}

std::function<void(host::Phone&, TestUpdater&)> streams(const std::vector<std::uint32_t>& ids) {
  return [=](host::Phone&, TestUpdater& updater) { updater.fields.streamIds() = ids; };
}

std::function<void(host::Phone&, TestUpdater&)> multicam(int mode) { return product("", mode); }

class RequestMeta : public testing::TestWithParam<Row> {};

TEST_P(RequestMeta, BecomesWhatThePipelineExpects) {
  const Row& row = GetParam();
  host::Phone phone;
  TestUpdater updater(row.sensor);
  row.prepare(phone, updater);
  NSCam::IMetadata request = metadataOf(row.request);
  NSCam::IMetadata expected = metadataOf(R"({"MTK_CONTROL_SELECTED_STREAM_ID": -1})");
  expected += metadataOf(row.expected);

  updater->updateRequestMeta(&request, 1);
  EXPECT_EQ(request, expected);
}

const Row kRows[] = {
    {.name = "NothingAsked", .request = "{}", .expected = "{}"},
    {.name = "UpperFrameRateReplaced",
     .request =
         R"({"HESK_CONTROL_FPS_RANGE_MAX": 30, "MTK_CONTROL_AE_TARGET_FPS_RANGE": [15, 60]})",
     .expected =
         R"({"HESK_CONTROL_FPS_RANGE_MAX": 30, "MTK_CONTROL_AE_TARGET_FPS_RANGE": [15, 30]})"},
    {.name = "UpperFrameRateWithoutRange",
     .request = R"({"HESK_CONTROL_FPS_RANGE_MAX": 30})",
     .expected = R"({"HESK_CONTROL_FPS_RANGE_MAX": 30})"},
    {.name = "UpperFrameRateOfARangeCutShort",
     .request = R"({"HESK_CONTROL_FPS_RANGE_MAX": 30, "MTK_CONTROL_AE_TARGET_FPS_RANGE": [15]})",
     .expected = R"({"HESK_CONTROL_FPS_RANGE_MAX": 30, "MTK_CONTROL_AE_TARGET_FPS_RANGE": [15]})"},
    {.name = "FrameRateFixedFrom31",
     .request = R"({"HESK_CONTROL_FPS_RANGE_MAX": 31})",
     .expected =
         R"({"HESK_CONTROL_FPS_RANGE_MAX": 31, "MTK_CONTROL_AE_TARGET_FPS_RANGE": [31, 31]})"},
    {.name = "LastFlaggedStream",
     .request = R"({"HESK_CONTROL_STREAM_FLAGS": [0, 1, 1]})",
     .expected = R"({"HESK_CONTROL_STREAM_FLAGS": [0, 1, 1], "MTK_CONTROL_SELECTED_STREAM_ID": 7})",
     .prepare = streams({3, 7})},
    {.name = "FirstFlagMarksNoStream",
     .request = R"({"HESK_CONTROL_STREAM_FLAGS": [1, 0, 2]})",
     .expected = R"({"HESK_CONTROL_STREAM_FLAGS": [1, 0, 2]})",
     .prepare = streams({3, 7})},
    {.name = "FlagsShorterThanStreams",
     .request = R"({"HESK_CONTROL_STREAM_FLAGS": [0, 1]})",
     .expected = R"({"HESK_CONTROL_STREAM_FLAGS": [0, 1], "MTK_CONTROL_SELECTED_STREAM_ID": -2})",
     .prepare = streams({0xfffffffe, 7})},
    {.name = "MulticamMode1",
     .request = "{}",
     .expected = R"({"MTK_HESK_MULTICAM_ENABLE": 1})",
     .prepare = multicam(1)},
    {.name = "MulticamMode2",
     .request = "{}",
     .expected = R"({"MTK_HESK_MULTICAM_ENABLE": 0})",
     .prepare = multicam(2)},
    {.name = "MulticamOtherModeEmptiesTheTag",
     .request = R"({"MTK_HESK_MULTICAM_ENABLE": 1})",
     .expected = "{}",
     .prepare = multicam(3)},
    {.name = "SingleCameraLeavesTheTag",
     .request = R"({"MTK_HESK_MULTICAM_ENABLE": 5})",
     .expected = R"({"MTK_HESK_MULTICAM_ENABLE": 5})"},
    {.name = "MulticamNegativeModeLeavesTheTag",
     .request = R"({"MTK_HESK_MULTICAM_ENABLE": 5})",
     .expected = R"({"MTK_HESK_MULTICAM_ENABLE": 5})",
     .prepare = multicam(-1)},
    {.name = "ForcedPreview",
     .request = R"({"COM_HESK_CURRENTUIMODULE": 8, "ANDROID_CONTROL_CAPTURE_INTENT": 2})",
     .expected = R"({"COM_HESK_CURRENTUIMODULE": 8,
                     "ANDROID_CONTROL_CAPTURE_INTENT": {"type": "int32", "items": [1]},
                     "ANDROID_CONTROL_ENABLE_ZSL": {"type": "int32", "items": [0]}})"},
    {.name = "ForcedPreviewDeclined",
     .request = R"({"COM_HESK_CURRENTUIMODULE": 8, "HESK_CONTROL_KEEP_CAPTURE_INTENT": 1,
                    "ANDROID_CONTROL_CAPTURE_INTENT": 3})",
     .expected = R"({"COM_HESK_CURRENTUIMODULE": 8, "HESK_CONTROL_KEEP_CAPTURE_INTENT": 1,
                     "ANDROID_CONTROL_CAPTURE_INTENT": 3})"},
    {.name = "ForcedPreviewDeclinedByAnotherValue",
     .request = R"({"COM_HESK_CURRENTUIMODULE": 8, "HESK_CONTROL_KEEP_CAPTURE_INTENT": 2})",
     .expected = R"({"COM_HESK_CURRENTUIMODULE": 8, "HESK_CONTROL_KEEP_CAPTURE_INTENT": 2,
                     "ANDROID_CONTROL_CAPTURE_INTENT": {"type": "int32", "items": [1]},
                     "ANDROID_CONTROL_ENABLE_ZSL": {"type": "int32", "items": [0]}})"},
    {.name = "SuperMoonZoomIsNoNumber",
     .request = R"({"HESK_CONTROL_ZOOM_ZOOM_RATIO": "nan"})",
     .expected = R"({"HESK_CONTROL_ZOOM_ZOOM_RATIO": "nan"})",
     .prepare = app("", "SuperMoon")},
    {.name = "DualCameraFrameRate",
     .request = R"({"MTK_CONTROL_AE_TARGET_FPS_RANGE": [15, 60]})",
     .expected = R"({"MTK_CONTROL_AE_TARGET_FPS_RANGE": [15, 29], "MTK_HESK_MULTICAM_ENABLE": 0})",
     .prepare = product("KX0102-EU", 2)},
    {.name = "DualCameraFrameRateThenFixed",
     .request =
         R"({"MTK_CONTROL_AE_TARGET_FPS_RANGE": [15, 60], "HESK_CONTROL_FPS_RANGE_MAX": 60})",
     .expected = R"({"MTK_CONTROL_AE_TARGET_FPS_RANGE": [60, 60], "HESK_CONTROL_FPS_RANGE_MAX": 60,
                     "MTK_HESK_MULTICAM_ENABLE": 0})",
     .prepare = product("KX0102", 2)},
    {.name = "DualCameraFrameRateWithoutRange",
     .request = "{}",
     .expected = R"({"MTK_HESK_MULTICAM_ENABLE": 0})",
     .prepare = product("KX0102", 2)},
    {.name = "DualCameraFrameRateInTheOtherMode",
     .request = R"({"MTK_CONTROL_AE_TARGET_FPS_RANGE": [15, 60]})",
     .expected = R"({"MTK_CONTROL_AE_TARGET_FPS_RANGE": [15, 60], "MTK_HESK_MULTICAM_ENABLE": 1})",
     .prepare = product("KX0102", 1)},
    {.name = "DualCameraFrameRateOfAnotherProduct",
     .request = R"({"MTK_CONTROL_AE_TARGET_FPS_RANGE": [15, 60]})",
     .expected = R"({"MTK_CONTROL_AE_TARGET_FPS_RANGE": [15, 60], "MTK_HESK_MULTICAM_ENABLE": 0})",
     .prepare = product("KX010", 2)},
    {.name = "VideoHdrOn",
     .request = R"({"HESK_CONTROL_VIDEO_HDR": 1})",
     .expected = R"({"HESK_CONTROL_VIDEO_HDR": 1, "MTK_HDR_FEATURE_HDR_MODE": 3})"},
    {.name = "VideoHdrOff",
     .request = R"({"HESK_CONTROL_VIDEO_HDR": 2, "MTK_HDR_FEATURE_HDR_MODE": 3})",
     .expected = R"({"HESK_CONTROL_VIDEO_HDR": 2, "MTK_HDR_FEATURE_HDR_MODE": 0})"},
    {.name = "VideoHdrNotAsked",
     .request = R"({"MTK_HDR_FEATURE_HDR_MODE": 3})",
     .expected = R"({"MTK_HDR_FEATURE_HDR_MODE": 3})"},
    {.name = "FrontStabilizationOfTheMakersApp",
     .request = "{}",
     .expected = "{}",
     .sensor = 1,
     .prepare = app("heskCamera", "", "KX0107")},
    {.name = "DiagonalFovInMode59OfModule8",
     .request = R"({"HESK_CONTROL_CURRENTMODE": "0x0800000000000000", "COM_HESK_CURRENTUIMODULE": 8,
                    "HESK_CONTROL_KEEP_CAPTURE_INTENT": 1})",
     .expected =
         R"({"HESK_CONTROL_CURRENTMODE": "0x0800000000000000", "COM_HESK_CURRENTUIMODULE": 8,
                     "HESK_CONTROL_KEEP_CAPTURE_INTENT": 1, "MTK_RAW_ALGO_DIAGONAL_FOV": 77})",
     .prepare = [](auto&, TestUpdater& updater) { updater.fields.diagonalFovDegrees() = 77; }},
    {.name = "NoDiagonalFovInAnotherModule",
     .request = R"({"HESK_CONTROL_CURRENTMODE": "0x0800000000000000"})",
     .expected = R"({"HESK_CONTROL_CURRENTMODE": "0x0800000000000000"})"},
};

INSTANTIATE_TEST_SUITE_P(Steps, RequestMeta, testing::ValuesIn(kRows),
                         [](const auto& row) { return row.param.name; });

TEST(RequestMetaRecords, TellTheStepsThatFired) {
  host::Phone phone;
  phone.eventStore.set("APP_NAME", "SuperMoon");
  const TestUpdater updater;
  phone.log.take();
  NSCam::IMetadata request = metadataOf(R"({"HESK_CONTROL_ZOOM_ZOOM_RATIO": 2.0,
    "HESK_CONTROL_VIDEO_HDR": 1, "HESK_CONTROL_FPS_RANGE_MAX": 60})");
  updater->updateRequestMeta(&request, 1);
  request = metadataOf(R"({"HESK_CONTROL_VIDEO_HDR": 0})");
  updater->updateRequestMeta(&request, 1);

  std::vector<std::string> lines;
  for (const auto& record : phone.log.take()) {
    if (record.function == "updateRequestMeta") lines.push_back(record.level + record.message);
  }
  EXPECT_EQ(lines, (std::vector<std::string>{
                       "D[updateRequestMeta] superMoon update rawtype 4+8+16+32",
                       "D[updateRequestMeta] set MTK_HDR_FEATURE_HDR_MODE_VIDEO_ON",
                       "I[updateRequestMeta] update MTK_CONTROL_AE_TARGET_FPS_RANGE:60",
                       "D[updateRequestMeta] set MTK_HDR_FEATURE_HDR_MODE_OFF"}));
}

TEST(RequestMetaNull, IsSkipped) {
  host::Phone phone;
  phone.properties.set("ro.product.model.zdm", "KX0107");
  const TestUpdater updater(1);
  updater.fields.streamIds() = {3};
  updater.fields.setMulticamFeatureMode(2);
  updater->updateRequestMeta(nullptr, 1);
  EXPECT_EQ(phone.effects.take(),
            (std::vector<host::Effect>{
                {"eventStore.set",
                 {{"key", std::string("HESK_MOTIONLEVEL")}, {"value", std::string("-1")}}}}));
}

TEST(RequestMetaAllocations, PreviewAllocatesWhatItsWritesDo) {
  host::Phone phone;
  phone.eventStore.set("APP_TYPE", "heskCamera");
  phone.properties.set("ro.product.model.zdm", "KX0107");
  phone.setObserver(nullptr);
  host::LogSink::openLevels({});
  const TestUpdater updater(1);
  updater.fields.streamIds() = {3, 7};
  NSCam::IMetadata request = metadataOf(R"({"HESK_CONTROL_VIDEO_HDR": 1,
    "HESK_CONTROL_STREAM_FLAGS": [0, 1], "MTK_CONTROL_AE_TARGET_FPS_RANGE": [15, 30],
    "COM_HESK_CURRENTUIMODULE": 31, "HESK_CONTROL_CURRENTMODE": 1})");
  updater->updateRequestMeta(&request, 1);  // the containers take room for what is new
  const auto makeItsWrites = [&] {
    for (const char* key : {"APP_NAME", "APP_MODE", "HESK_CURRENTUIMODE", "HESK_MOTIONLEVEL"}) {
      setEvent(key, "31");
    }
    write(&request, tags::MTK_CONTROL_SELECTED_STREAM_ID, -1);
    write(&request, tags::MTK_CONTROL_SELECTED_STREAM_ID, 3);
    clear(&request, tags::MTK_CONTROL_RAW_TYPE);
    write(&request, tags::MTK_HDR_FEATURE_HDR_MODE, 3);
  };
  EXPECT_EQ(allocationsIn([&] { updater->updateRequestMeta(&request, 2); }),
            allocationsIn(makeItsWrites));
}

}  // namespace
