// Edge cases of the session hook.

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "host/ImageStream.h"
#include "host/Phone.h"
#include "tests/support/TestMetadata.h"
#include "tests/support/TestUpdater.h"

namespace {

struct Stream {
  std::int64_t id;
  std::uint64_t usage;
  NSCam::MSize size;
};

constexpr std::uint64_t kVideo = 0x10000;
constexpr NSCam::MSize kUhd{3840, 2160};
constexpr NSCam::MSize kSmall{640, 480};

HeskParameterUpdater::ImageStreams mapOf(const std::vector<Stream>& streams) {
  HeskParameterUpdater::ImageStreams map;
  for (const auto& [id, usage, size] : streams) {
    map.emplace(id, new host::ImageStream(id, usage, size));
  }
  return map;
}

struct SessionRow {
  std::string appType;
  std::string session;
  std::string written;  // in addition to the tags of every session
  std::vector<Stream> streams = {};
  int sensor = 0;
};

TEST(SessionParams, HandleEdgeCases) {
  const std::string off = R"({"ANDROID_CONTROL_VIDEO_STABILIZATION_MODE": 0})";
  const std::string offAt60 = R"({"ANDROID_CONTROL_VIDEO_STABILIZATION_MODE": 0,
                                  "MTK_STREAMING_FEATURE_HFPS_MODE": 1})";
  const std::string on = R"({"ANDROID_CONTROL_VIDEO_STABILIZATION_MODE": 1,
    "MTK_STREAMING_FEATURE_HFPS_MODE": 1, "HESK_CONTROL_EISENABLE": 0,
    "0x80070000": {"type": "int32", "items": [1]}, "0x80070003": {"type": "int32", "items": [1]}})";
  // clang-format off
  const std::string k60 = R"({"MTK_CONTROL_AE_TARGET_FPS_RANGE": [30, 60]})";
  const SessionRow rows[] = {
      {"CTS", R"({"MTK_CONTROL_AE_TARGET_FPS_RANGE": [60, 120]})", "{}"},
      {"HeskCamera", R"({"MTK_CONTROL_AE_TARGET_FPS_RANGE": [30, 120]})", R"({"0x800f0000": {"type": "int32", "items": [120, 4]}})"},
      {"HeskCamera", R"({"MTK_CONTROL_AE_TARGET_FPS_RANGE": [120, 149]})", R"({"0x800f0000": {"type": "int32", "items": [149, 4]}})"},
      {"HeskCamera", R"({"MTK_CONTROL_AE_TARGET_FPS_RANGE": [30, 119]})", "{}"},
      {"heskCamera", R"({"MTK_CONTROL_AE_TARGET_FPS_RANGE": [30, 120]})", off},
      {"heskCamera", k60, on, {{1, kVideo, kUhd}}},
      // The last video stream in the map's order is used.
      {"heskCamera", k60, on, {{0, kVideo, kUhd}, {1, kVideo, kSmall}}},
      {"heskCamera", k60, offAt60, {{0, kVideo, kSmall}, {1, kVideo, kUhd}}},
      {"heskCamera", k60, offAt60, {{1, ~kVideo, kUhd}}},
      {"heskCamera", k60, offAt60, {{1, kVideo, {2160, 3840}}}},
      {"heskCamera", k60, offAt60, {{1, kVideo, {3840, 2159}}}},
      {"CTS", k60, R"({"MTK_STREAMING_FEATURE_HFPS_MODE": 1})", {{1, kVideo, kUhd}}},
      {"CTS", R"({"0xc003009a": {"type": "int32", "items": [4]}})", R"({"MTK_STREAMING_FEATURE_PIP_DEVICES": [4, 0]})"},
      {"CTS", R"({"HESK_CONTROL_STREAM_FLAGS": [1, 0, 1]})", R"({"MTK_CONTROL_SELECTED_STREAM_ID": 5})", {{0x700000005, 0, kSmall}, {9, 0, kSmall}}},
      {"CTS", "{}", R"({"ANDROID_CONTROL_SCENE_MODE": 9})", {}, 2},
  };
  // clang-format on
  for (const SessionRow& row : rows) {
    const host::Phone phone(phoneWith({{"APP_TYPE", row.appType}, {"APP_NAME", "Production"}}));
    const TestUpdater updater(row.sensor);
    NSCam::IMetadata session = metadataOf(row.session);
    NSCam::IMetadata expected = session;
    expected += metadataOf(R"({"MTK_CONTROL_SELECTED_STREAM_ID": -1,
      "MTK_HESK_MULTICAM_ENABLE": -1, "0x800b000a": {"type": "uint8", "items": [1]}})");
    expected += metadataOf(row.written);
    updater->updateSessionParams(&session, mapOf(row.streams));
    EXPECT_EQ(session, expected) << row.appType << row.session << row.streams.size();
  }
}

TEST(SessionParams, FollowStaticFeatureOfSensor) {
  host::Phone phone;
  const TestUpdater updater(3);
  NSCam::IMetadata session;
  const std::array<int, 3> rows[] = {{5, 0, -1}, {7, 1, 1},  {17, 2, 0}, {14, 1, 1}, {18, 1, -1},
                                     {17, 2, 0}, {16, 1, 1}, {17, 2, 0}, {20, 1, 1}, {0, 1, -1}};
  for (const auto& [feature, mode, enable] : rows) {
    phone.config.devices[3].statics = metadataOf(R"({"0xc008000e": {"type": "uint8", "items": [)" +
                                                 std::to_string(feature) + "]}}");
    updater->updateSessionParams(&session, {});
    EXPECT_EQ(updater.fields.multicamFeatureMode(), mode) << feature;
    EXPECT_EQ(session.entryFor(0x800a0000).itemAt(0, NSCam::Type2Type<std::int32_t>{}), enable);
  }
}

struct FlipRow {
  std::string session;
  std::string property;
  std::set<std::int64_t> flipped;
};

TEST(SessionParams, RecordAndFlipStreams) {
  const std::string flip = R"({"0xc003009c": {"type": "int32", "items": [1]}})";
  const FlipRow rows[] = {{"{}", "", {}},
                          {flip, "", {2}},
                          {flip, "0", {}},
                          {flip, "none", {2}},
                          {R"({"COM_HESK_CURRENTUIMODULE": 3})", "0x10", {2, 1}}};
  for (const FlipRow& row : rows) {
    host::Phone phone(phoneWith({}, {{"vendor.debug.camera.VideoFlip", row.property}}));
    const TestUpdater updater;
    updater.fields.streamIds() = {99};
    NSCam::IMetadata session = metadataOf(row.session);
    auto streams = mapOf({{1, 0, kSmall}, {2, kVideo, kSmall}});
    streams.emplace(-1, nullptr);
    updater->updateSessionParams(&session, streams);
    const auto& ids = updater.fields.streamIds();
    EXPECT_EQ(std::set(ids.begin(), ids.end()), (std::set<std::uint32_t>{1, 2, 0xffffffff}));
    EXPECT_TRUE(updater.fields.hasVideoStream());
    std::set<std::int64_t> flipped;  // in the map's order
    for (const host::Effect& effect : phone.effects.take()) {
      if (effect.op != "stream.setTransform") continue;
      flipped.insert(std::get<std::int64_t>(effect.fields[0].value));
    }
    EXPECT_EQ(flipped, row.flipped) << row.session << row.property;
  }
}

TEST(SessionParams, CountNullStreamAsVideoInModule3) {
  const host::Phone phone(phoneWith({{"APP_TYPE", "heskCamera"}}, {}));
  const TestUpdater updater;
  for (const int module : {2, 3}) {
    NSCam::IMetadata session =
        metadataOf(R"({"COM_HESK_CURRENTUIMODULE": )" + std::to_string(module) + "}");
    updater->updateSessionParams(&session, {{-1, nullptr}});
    EXPECT_EQ(updater.fields.hasVideoStream(), module == 3);
  }
}

}  // namespace
