// The session hook: what each step makes of a session, of the updater and of the phone. Sessions of
// the maker's app and of multi-camera sets are in the shipped scenarios.

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include "host/ImageStream.h"
#include "host/Phone.h"
#include "tests/support/TestMetadata.h"
#include "tests/support/TestUpdater.h"

namespace {

using ImageStreams = HeskParameterUpdater::ImageStreams;

struct Stream {
  std::int64_t id;
  std::uint64_t usage;
  NSCam::MSize size;
};

constexpr std::uint64_t kVideo = 0x10000;
constexpr NSCam::MSize kUhd{3840, 2160};
constexpr NSCam::MSize kSmall{640, 480};

ImageStreams mapOf(const std::vector<Stream>& streams) {
  ImageStreams map;
  for (const auto& [id, usage, size] : streams) {
    map.emplace(id, new host::ImageStream(id, usage, size));
  }
  return map;
}

struct Row {
  std::string name;
  std::string session;
  std::string written;  // besides what every session is given
  const char* appType = "";
  const char* appName = "";
  const char* product = "";
  int sensor = 0;
  std::vector<Stream> streams = {};
};

std::ostream& operator<<(std::ostream& out, const Row& row) { return out << row.name; }

class SessionParams : public testing::TestWithParam<Row> {};

TEST_P(SessionParams, BecomeWhatThePipelineExpects) {
  const Row& row = GetParam();
  host::Phone phone;
  phone.config.provider = host::ProviderConfig{.fpsCap = 25};
  phone.eventStore.set("APP_TYPE", row.appType);
  phone.eventStore.set("APP_NAME", row.appName);
  phone.properties.set("ro.product.model.zdm", row.product);
  const TestUpdater updater(row.sensor);
  NSCam::IMetadata session = metadataOf(row.session);
  NSCam::IMetadata expected = session;
  expected += metadataOf(R"({"MTK_CONTROL_SELECTED_STREAM_ID": -1, "MTK_HESK_MULTICAM_ENABLE": -1,
                             "0x800b000a": {"type": "uint8", "items": [1]}})");
  expected += metadataOf(row.written);
  updater->updateSessionParams(&session, mapOf(row.streams));
  EXPECT_EQ(session, expected);
}

const char* const kEisOff = R"({"ANDROID_CONTROL_VIDEO_STABILIZATION_MODE": 0})";
const char* const kEisOn = R"({"ANDROID_CONTROL_VIDEO_STABILIZATION_MODE": 1,
  "MTK_STREAMING_FEATURE_HFPS_MODE": 1, "HESK_CONTROL_EISENABLE": 0,
  "0x80070000": {"type": "int32", "items": [1]}, "0x80070003": {"type": "int32", "items": [1]}})";
const char* const kEisOffAt60 = R"({"ANDROID_CONTROL_VIDEO_STABILIZATION_MODE": 0,
                                    "MTK_STREAMING_FEATURE_HFPS_MODE": 1})";
const char* const k60 = R"({"MTK_CONTROL_AE_TARGET_FPS_RANGE": [30, 60]})";
const char* const kHfps = R"({"MTK_STREAMING_FEATURE_HFPS_MODE": 1})";
const char* const kCapped = R"({"MTK_CONTROL_AE_TARGET_FPS_RANGE": [5, 25],
                                "HESK_CONTROL_FPSLIMITTYPE": 43})";

const Row kRows[] = {
    {.name = "NothingAsked", .session = "{}", .written = "{}", .appType = "CTS"},
    {.name = "HighFrameRate60", .session = k60, .written = kHfps, .appType = "CTS"},
    {.name = "HighFrameRate50",
     .session = R"({"MTK_CONTROL_AE_TARGET_FPS_RANGE": [50, 50]})",
     .written = kHfps,
     .appType = "CTS"},
    {.name = "HighFrameRateIsNotTheLowerBound",
     .session = R"({"MTK_CONTROL_AE_TARGET_FPS_RANGE": [60, 120]})",
     .written = "{}",
     .appType = "CTS"},
    {.name = "HighSpeedFrom120",
     .session = R"({"MTK_CONTROL_AE_TARGET_FPS_RANGE": [30, 120]})",
     .written = R"({"0x800f0000": {"type": "int32", "items": [120, 4]},
                    "MTK_CONTROL_AE_TARGET_FPS_RANGE": [5, 25], "HESK_CONTROL_FPSLIMITTYPE": 43})",
     .appType = "HeskCamera"},
    {.name = "HighSpeedInWholeBatches",
     .session = R"({"MTK_CONTROL_AE_TARGET_FPS_RANGE": [120, 149]})",
     .written = R"({"0x800f0000": {"type": "int32", "items": [149, 4]},
                    "MTK_CONTROL_AE_TARGET_FPS_RANGE": [5, 25], "HESK_CONTROL_FPSLIMITTYPE": 43})",
     .appType = "HeskCamera"},
    {.name = "HighSpeedNotAt119",
     .session = R"({"MTK_CONTROL_AE_TARGET_FPS_RANGE": [30, 119]})",
     .written = kCapped,
     .appType = "HeskCamera"},
    {.name = "HighSpeedOfTheOtherApp",
     .session = R"({"MTK_CONTROL_AE_TARGET_FPS_RANGE": [30, 120]})",
     .written = kEisOff,
     .appType = "heskCamera"},
    {.name = "Uhd60WithoutEisTag",
     .session = k60,
     .written = kEisOn,
     .appType = "heskCamera",
     .streams = {{1, kVideo, kUhd}}},
    {.name = "Uhd60OfTheLastVideoStream",
     .session = k60,
     .written = kEisOn,  // the map gives 1 first: what was put in last
     .appType = "heskCamera",
     .streams = {{0, kVideo, kUhd}, {1, kVideo, kSmall}}},
    {.name = "Uhd60OfAnotherThanTheLastVideoStream",
     .session = k60,
     .written = kEisOffAt60,
     .appType = "heskCamera",
     .streams = {{0, kVideo, kSmall}, {1, kVideo, kUhd}}},
    {.name = "Uhd60NotForVideo",
     .session = k60,
     .written = kEisOffAt60,
     .appType = "heskCamera",
     .streams = {{1, ~kVideo, kUhd}}},
    {.name = "Uhd60UprightIsNone",
     .session = k60,
     .written = kEisOffAt60,
     .appType = "heskCamera",
     .streams = {{1, kVideo, {2160, 3840}}}},
    {.name = "Uhd60ALineTooLow",
     .session = k60,
     .written = kEisOffAt60,
     .appType = "heskCamera",
     .streams = {{1, kVideo, {3840, 2159}}}},
    {.name = "Uhd60OfAnotherApp",
     .session = k60,
     .written = kHfps,
     .appType = "CTS",
     .streams = {{1, kVideo, kUhd}}},
    {.name = "PictureInPicture",
     .session = R"({"0xc003009a": {"type": "int32", "items": [4]}})",
     .written = R"({"MTK_STREAMING_FEATURE_PIP_DEVICES": [4, 0]})",
     .appType = "CTS"},
    {.name = "VideoHdrOff",
     .session = R"({"HESK_CONTROL_VIDEO_HDR": 0})",
     .written = R"({"MTK_HDR_FEATURE_HDR_MODE": 0})",
     .appType = "CTS"},
    {.name = "SelectedStream",
     .session = R"({"HESK_CONTROL_STREAM_FLAGS": [1, 0, 1]})",
     .written = R"({"MTK_CONTROL_SELECTED_STREAM_ID": 5})",
     .appType = "CTS",
     .streams = {{0x700000005, 0, kSmall}, {9, 0, kSmall}}},
    {.name = "FrontStabilization",
     .session = "{}",
     .written = kEisOff,
     .appType = "CTS",
     .product = "KX0106",
     .sensor = 1},
    {.name = "FrontStabilizationOfTheEngineeringApp",
     .session = "{}",
     .written = kCapped,
     .appType = "engcamera",
     .product = "KX0106",
     .sensor = 1},
    {.name = "FrontStabilizationOfAnotherProduct",
     .session = "{}",
     .written = "{}",
     .appType = "CTS",
     .product = "XKX0106",
     .sensor = 1},
    {.name = "ProductionLine",
     .session = "{}",
     .written = R"({"ANDROID_CONTROL_SCENE_MODE": 9})",
     .appType = "CTS",
     .appName = "Production",
     .sensor = 2},
    {.name = "ProductionLineOfAnotherSensor",
     .session = "{}",
     .written = "{}",
     .appType = "CTS",
     .appName = "Production",
     .sensor = 1},
    {.name = "ProviderCap", .session = k60, .written = R"({"MTK_STREAMING_FEATURE_HFPS_MODE": 1,
       "MTK_CONTROL_AE_TARGET_FPS_RANGE": [5, 25], "HESK_CONTROL_FPSLIMITTYPE": 43})"},
};

INSTANTIATE_TEST_SUITE_P(Steps, SessionParams, testing::ValuesIn(kRows),
                         [](const auto& row) { return row.param.name; });

TEST(SessionParamsProvider, CapIsTakenFrom15To25) {
  for (const int cap : {14, 15, 25, 26, -1}) {
    host::Phone phone;
    phone.config.provider = host::ProviderConfig{.fpsCap = cap};
    const TestUpdater updater;
    NSCam::IMetadata session;
    updater->updateSessionParams(&session, {});
    EXPECT_EQ(!session.entryFor(0xc003009e).isEmpty(), cap == 15 || cap == 25) << cap;
    EXPECT_EQ(phone.effects.take().back(), (host::Effect{"provider.query", {{"argument", 20}}}));
  }
  host::Phone phone;  // which has no such service, though an earlier one had
  const TestUpdater updater;
  NSCam::IMetadata session;
  updater->updateSessionParams(&session, {});
  EXPECT_TRUE(session.entryFor(0xc003009e).isEmpty());
  EXPECT_EQ(phone.effects.take().size(), 2U);
}

TEST(SessionParamsState, FollowsTheStaticFeatureOfTheSensor) {
  host::Phone phone;
  const TestUpdater updater(3);
  NSCam::IMetadata session;
  const std::array<int, 3> rows[] = {{5, 0, -1}, {6, 1, 1},   {17, 2, 0},  {7, 1, 1},   {17, 2, 0},
                                     {14, 1, 1}, {18, 1, -1}, {17, 2, 0},  {16, 1, 1},  {17, 2, 0},
                                     {20, 1, 1}, {0, 1, -1},  {38, 1, -1}, {255, 1, -1}};
  for (const auto& [feature, mode, enable] : rows) {
    phone.config.devices[3].statics = metadataOf(R"({"0xc008000e": {"type": "uint8", "items": [)" +
                                                 std::to_string(feature) + "]}}");
    updater->updateSessionParams(&session, {});
    EXPECT_EQ(updater.fields.multicamFeatureMode(), mode) << feature;
    EXPECT_EQ(session.entryFor(0x800a0000).itemAt(0, NSCam::Type2Type<std::int32_t>{}), enable);
  }
}

TEST(SessionParamsState, RecordsAndFlipsTheStreams) {
  struct FlipRow {
    std::string session;
    std::string property;
    bool hasVideo;
    std::set<std::int64_t> flipped;
  };
  const FlipRow rows[] = {
      {"{}", "", true, {}},
      {R"({"0xc003009c": {"type": "int32", "items": [1]}})", "", true, {2}},
      {R"({"0xc003009c": {"type": "int32", "items": [1]}})", "0", true, {}},
      {R"({"0xc003009c": {"type": "int32", "items": [1]}})", "none", true, {2}},
      {R"({"COM_HESK_CURRENTUIMODULE": 3})", "0x10", true, {2, 1}},
  };
  for (const FlipRow& row : rows) {
    host::Phone phone;
    phone.properties.set("vendor.debug.camera.VideoFlip", row.property);
    const TestUpdater updater;
    updater.fields.streamIds() = {99};
    NSCam::IMetadata session = metadataOf(row.session);
    ImageStreams streams = mapOf({{1, 0, kSmall}, {2, kVideo, kSmall}});
    streams.emplace(99, nullptr);
    updater->updateSessionParams(&session, streams);
    const auto& ids = updater.fields.streamIds();
    EXPECT_EQ(std::set(ids.begin(), ids.end()), (std::set<std::uint32_t>{1, 2, 99}));
    EXPECT_EQ(updater.fields.hasVideoStream(), row.hasVideo);
    // In whatever order the map has them.
    std::set<std::int64_t> flipped;
    for (const host::Effect& effect : phone.effects.take()) {
      if (effect.op != "stream.setTransform") continue;
      flipped.insert(std::get<std::int64_t>(effect.fields[0].value));
      EXPECT_EQ(effect.fields[1], (host::Effect::Field{"value", 2}));
    }
    EXPECT_EQ(flipped, row.flipped) << row.session << row.property;
  }
}

TEST(SessionParamsState, TakesANullStreamForVideoByItsModule) {
  host::Phone phone;
  const TestUpdater updater;
  for (const auto& [module, hasVideo] : {std::pair{2, false}, {3, true}}) {
    NSCam::IMetadata session = metadataOf(
        R"({"0xc003009c": {"type": "int32", "items": [1]}, "COM_HESK_CURRENTUIMODULE": )" +
        std::to_string(module) + "}");
    updater->updateSessionParams(&session, {{-1, nullptr}});
    EXPECT_EQ(updater.fields.streamIds(), std::vector<std::uint32_t>{0xffffffff});
    EXPECT_EQ(updater.fields.hasVideoStream(), hasVideo);
  }
  EXPECT_EQ(std::ranges::count(phone.effects.take(), "stream.setTransform", &host::Effect::op), 0);
}

TEST(SessionParamsState, IsSetWithoutSession) {
  host::Phone phone;
  phone.eventStore.set("APP_TYPE", "heskCamera");
  phone.config.devices[0].statics =
      metadataOf(R"({"0xc008000e": {"type": "uint8", "items": [6]}})");
  const TestUpdater updater;
  updater->updateSessionParams(nullptr, mapOf({{1, kVideo, kUhd}}));
  EXPECT_EQ(updater.fields.multicamFeatureMode(), 1);
  EXPECT_TRUE(updater.fields.hasVideoStream());
  // What is not there is -1, the video flip too.
  EXPECT_EQ(phone.effects.take(),
            (std::vector<host::Effect>{{"stereo.setEisEnable", {{"value", -1}}},
                                       {"stereo.setVideoAlgoType", {{"value", -1}}},
                                       {"stream.setTransform", {{"id", 1}, {"value", 2}}}}));
  const std::string ofFrameRates = "[updateSessionParams] aeTargetFpsRange -1, -1";
  EXPECT_EQ(std::ranges::count(phone.log.take(), ofFrameRates, &host::LogRecord::message), 1);
  updater->updateSessionParams(nullptr, {});
  EXPECT_FALSE(updater.fields.hasVideoStream());
}

}  // namespace
