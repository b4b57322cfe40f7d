// Edge cases of the request hook, except still captures.

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "common/Events.h"
#include "common/tags/Metadata.h"
#include "host/Phone.h"
#include "tests/support/AllocationCounter.h"
#include "tests/support/TestMetadata.h"
#include "tests/support/TestUpdater.h"

namespace {

using namespace hesk;
using host::TextMap;
using NSCam::IMetadata;

/// A request, the state of the updater and the phone, and the expected writes.
struct RequestRow {
  std::string request;
  std::string written;  // in addition to MTK_CONTROL_SELECTED_STREAM_ID -1
  int multicamMode = 0;
  std::string product = {};
  TextMap events = {};
  int sensor = 0;
  std::vector<std::uint32_t> streams = {};
};

TEST(RequestMeta, HandlesEdgeCases) {
  const std::string forced = R"({"ANDROID_CONTROL_CAPTURE_INTENT": {"type": "int32", "items": [1]},
                                 "ANDROID_CONTROL_ENABLE_ZSL": {"type": "int32", "items": [0]}})";
  // clang-format off
  const RequestRow rows[] = {
      {R"({"HESK_CONTROL_FPS_RANGE_MAX": 30})", "{}"},
      {R"({"HESK_CONTROL_FPS_RANGE_MAX": 30, "MTK_CONTROL_AE_TARGET_FPS_RANGE": [15]})", "{}"},
      {R"({"HESK_CONTROL_FPS_RANGE_MAX": 31})", R"({"MTK_CONTROL_AE_TARGET_FPS_RANGE": [31, 31]})"},
      // The first flag belongs to no stream; flags without stream and streams without flag are ignored.
      {R"({"HESK_CONTROL_STREAM_FLAGS": [1, 0, 2]})", "{}", 0, "", {}, 0, {3, 7}},
      {R"({"HESK_CONTROL_STREAM_FLAGS": [0, 1]})", R"({"MTK_CONTROL_SELECTED_STREAM_ID": -2})", 0, "", {}, 0, {0xfffffffe, 7}},
      {R"({"HESK_CONTROL_STREAM_FLAGS": [0, 0, 1, 1]})", R"({"MTK_CONTROL_SELECTED_STREAM_ID": 7})", 0, "", {}, 0, {3, 7}},
      {R"({"MTK_HESK_MULTICAM_ENABLE": 5})", R"({"MTK_HESK_MULTICAM_ENABLE": []})", 3},
      {R"({"MTK_HESK_MULTICAM_ENABLE": 5})", "{}", -1},
      {R"({"COM_HESK_CURRENTUIMODULE": 8, "HESK_CONTROL_KEEP_CAPTURE_INTENT": 1})", "{}"},
      {R"({"COM_HESK_CURRENTUIMODULE": 8, "HESK_CONTROL_KEEP_CAPTURE_INTENT": 2})", forced},
      {R"({"HESK_CONTROL_ZOOM_ZOOM_RATIO": "nan"})", "{}", 0, "", {{"APP_NAME", "SuperMoon"}}},
      {R"({"MTK_CONTROL_AE_TARGET_FPS_RANGE": [15, 60], "HESK_CONTROL_FPS_RANGE_MAX": 60})",
       R"({"MTK_CONTROL_AE_TARGET_FPS_RANGE": [60, 60], "MTK_HESK_MULTICAM_ENABLE": 0})", 2, "KX0102"},
      {"{}", R"({"MTK_HESK_MULTICAM_ENABLE": 0})", 2, "KX0102"},
      {R"({"MTK_CONTROL_AE_TARGET_FPS_RANGE": [15, 60]})", R"({"MTK_HESK_MULTICAM_ENABLE": 1})", 1, "KX0102"},
      {R"({"MTK_CONTROL_AE_TARGET_FPS_RANGE": [15, 60]})", R"({"MTK_HESK_MULTICAM_ENABLE": 0})", 2, "KX010"},
      {R"({"HESK_CONTROL_VIDEO_HDR": 2, "MTK_HDR_FEATURE_HDR_MODE": 3})", R"({"MTK_HDR_FEATURE_HDR_MODE": 0})"},
      {"{}", "{}", 0, "KX0107", {{"APP_TYPE", "heskCamera"}}, 1},
      {R"({"HESK_CONTROL_CURRENTMODE": "0x0800000000000000", "COM_HESK_CURRENTUIMODULE": 8, "HESK_CONTROL_KEEP_CAPTURE_INTENT": 1})",
       R"({"MTK_RAW_ALGO_DIAGONAL_FOV": 77})"},
      {R"({"HESK_CONTROL_CURRENTMODE": "0x0800000000000000"})", "{}"},
      {R"({"ANDROID_STATISTICS_FACE_DETECT_MODE": 2})", R"({"ANDROID_STATISTICS_FACE_DETECT_MODE": 1})", 0, "", {{"APP_NAME", "TikTokExternal"}}},
      {R"({"ANDROID_STATISTICS_FACE_DETECT_MODE": 2})", "{}", 0, "", {{"APP_NAME", "TikTokExternal2"}}},
  };
  // clang-format on
  for (const RequestRow& row : rows) {
    host::Phone phone(phoneWith(row.events, {{"ro.product.model.zdm", row.product}}));
    const TestUpdater updater(row.sensor);
    updater.fields.multicamFeatureMode() = row.multicamMode;
    updater.fields.streamIds() = row.streams;
    updater.fields.diagonalFovDegrees() = 77;
    IMetadata request = metadataOf(row.request);
    IMetadata expected = request;
    expected += metadataOf(R"({"MTK_CONTROL_SELECTED_STREAM_ID": -1})");
    expected += metadataOf(row.written);
    if (row.multicamMode == 3) clear(&expected, tags::MTK_HESK_MULTICAM_ENABLE);
    updater->updateRequestMeta(&request, 1);
    EXPECT_EQ(request, expected) << row.request << " mode " << row.multicamMode << row.product;
  }
}

/// A request of the OEM camera app and the expected tuning profile.
struct TuningRow {
  std::string request;
  std::string appName;
  std::string written = "{}";  // only the tags that tuning writes
};

TEST(AppTuning, UsesLastMatchingProfile) {
  // clang-format off
  const TuningRow rows[] = {
      {R"({"HESK_CONTROL_CURRENTMODE": "0x10000"})", "Panorama", R"({"ANDROID_CONTROL_SCENE_MODE": 4})"},
      {R"({"HESK_CONTROL_CURRENTMODE": "0x0800000000000000"})", "Panorama", R"({"ANDROID_CONTROL_SCENE_MODE": 4})"},
      {R"({"HESK_CONTROL_CURRENTMODE": "0x8001"})", "FaceBeauty"},
      {R"({"HESK_CONTROL_CURRENTMODE": "0x4000"})", "heskCamera"},
      {R"({"HESK_CONTROL_CURRENTMODE": 1, "HESK_CONTROL_NATIVEMODE": 2})", "NativeMode"},
      {R"({"COM_HESK_CURRENTUIMODULE": 31, "HESK_CONTROL_CURRENTMODE": 0, "HESK_CONTROL_NATIVEMODE": 1, "HESK_CONTROL_ISSECONDSNAPSHOT": 2})", "NativeMode"},
      {R"({"HESK_CONTROL_NATIVEMODE": 1, "HESK_CONTROL_ISSECONDSNAPSHOT": 1})", "PartyPortrait"},
      {R"({"HESK_CONTROL_VIDEOMODE": 2, "HESK_CONTROL_NIGHTMODE": 2})", "Video"},
      {R"({"HESK_CONTROL_CURRENTMODE": 0, "HESK_CONTROL_NIGHTMODE": 1})", "heskCamera"},
      {R"({"HESK_CONTROL_VIDEOMODE": 1, "COM_HESK_CURRENTUIMODULE": 12})", "TimeLapse"},
      {R"({"HESK_CONTROL_VIDEOMODE": 1, "HESK_CONTROL_CURRENTMODE": 2})", "HDR"},
      {R"({"HESK_CONTROL_CURRENTMODE": -1})", "FaceBeauty"},  // no HDR in a negative mode
      {R"({"COM_HESK_CURRENTUIMODULE": 32, "HESK_CONTROL_MOONMODE": 2})", "NormalMoon"},
      {R"({"COM_HESK_CURRENTUIMODULE": 7, "COM_HESK_SCENETYPE": "0x180000", "ANDROID_CONTROL_CAPTURE_INTENT": 1})",
       "SuperNightTripod", R"({"ANDROID_CONTROL_SCENE_MODE": 5})"},
      {R"({"COM_HESK_CURRENTUIMODULE": 53, "HESK_CONTROL_EISENABLE": 2})", "FaceBeauty", R"({"HESK_EISSTATE": 1})"},
      {R"({"COM_HESK_CURRENTUIMODULE": 26, "HESK_CONTROL_EISENABLE": 0})", "FunVideo", R"({"HESK_EISSTATE": 0})"},
      {R"({"COM_HESK_CURRENTUIMODULE": 53})", "FaceBeauty", R"({"HESK_EISSTATE": 0})"},
  };
  // clang-format on
  for (const TuningRow& row : rows) {
    host::Phone phone(phoneWith({{"APP_TYPE", "heskCamera"}, {"APP_MODE", "before"}}));
    const TestUpdater updater;
    IMetadata request = metadataOf(row.request);
    updater->updateRequestMeta(&request, 1);
    EXPECT_EQ(phone.eventStore.get("APP_NAME"), row.appName) << row.request;
    EXPECT_EQ(phone.eventStore.get("APP_MODE"), "") << row.request;
    IMetadata written;
    for (const std::uint32_t tag :
         {tags::ANDROID_CONTROL_SCENE_MODE.value, tags::HESK_EISSTATE.value,
          tags::MTK_HESK_SUPER_NIGHT_ON.value}) {
      written.update(tag, request.entryFor(tag));
    }
    EXPECT_EQ(written, metadataOf(row.written)) << row.request;
  }
}

TEST(AppTuning, ReportsVideoStabilization) {
  const host::Phone phone(phoneWith({{"APP_TYPE", "heskCamera"}}));
  const TestUpdater updater;
  for (const bool hasVideo : {false, true}) {
    updater.fields.hasVideoStream() = hasVideo;
    IMetadata request = metadataOf(R"({"HESK_CONTROL_EISENABLE": 1})");
    updater->updateRequestMeta(&request, 1);
    EXPECT_EQ(read(&request, tags::HESK_EISSTATE, -1), hasVideo ? 1 : -1);
  }
}

struct RangeRow {
  std::string request;
  std::string range;  // after the hook; "[]": absent
  std::string appName = {};
  std::string appType = "CTS";
  std::string low = {};
  std::string max = {};
};

TEST(FrameRateLimit, DependsOnAppAndMode) {
  const std::string range = R"("MTK_CONTROL_AE_TARGET_FPS_RANGE": [15, 30])";
  // clang-format off
  const RangeRow rows[] = {
      {range, "[15, 30]"},
      {range, "[5, 24]", "3rd_party"},
      {R"("MTK_CONTROL_AE_TARGET_FPS_RANGE": [7, 25])", "[5, 24]", "mtk_ims"},
      {"", "[]", "whatsapp"},
      {range + R"(, "HESK_CONTROL_CURRENTMODE": 1, "HESK_CONTROL_VIDEOMODE": 0)", "[5, 24]"},
      {range + R"(, "HESK_CONTROL_CURRENTMODE": 1)", "[15, 30]"},
      {range + R"(, "HESK_CONTROL_CURRENTMODE": 1, "HESK_CONTROL_VIDEOMODE": 1)", "[15, 30]"},
      {range + R"(, "HESK_CONTROL_CURRENTMODE": 32)", "[5, 24]"},
      {range + R"(, "COM_HESK_CURRENTUIMODULE": 24)", "[5, 24]"},
      {"", "[30, 30]", "", "CTS", "30", "30"},
      {range, "[1, 20]", "", "CTS", "1", "20"},
      {range, "[5, 24]", "", "CTS", "10", "31"},
      {range, "[5, 24]", "", "CTS", "20", "10"},
      {range, "[5, 24]", "", "CTS", "-1", "20"},
      {range, "[5, 24]", "", "CTS", "10", ""},
      {range, "[15, 30]", "", "CTS", "", "20"},
      {R"("HESK_CONTROL_NIGHTMODE": 1, "HESK_CONTROL_FPS_RANGE_MAX": 12)", "[12, 12]"},
      {R"("HESK_CONTROL_NIGHTMODE": 1, "HESK_CONTROL_FPS_RANGE_MAX": 20)", "[]"},
      {R"("HESK_CONTROL_NIGHTMODE": 2, "HESK_CONTROL_FPS_RANGE_MAX": 24)", "[]"},
      {range, "[5, 25]", "", "other"},
      {range, "[5, 24]", "mtk_ims", "other"},
      {R"("HESK_CONTROL_NIGHTMODE": 1, "HESK_CONTROL_FPS_RANGE_MAX": 24)", "[24, 24]", "", "other"},
  };
  // clang-format on
  for (const RangeRow& row : rows) {
    host::PhoneConfig config = phoneWith(
        {{"APP_TYPE", row.appType}, {"APP_NAME", row.appName}},
        {{"vendor.debug.camera.fps.low", row.low}, {"vendor.debug.camera.fps.max", row.max}});
    config.provider = host::ProviderConfig{.fpsCap = 25};
    const host::Phone phone(std::move(config));
    const TestUpdater updater;
    IMetadata request = metadataOf("{" + row.request + "}");
    updater->updateRequestMeta(&request, 1);
    IMetadata limited;
    limited.update(0x00010005, request.entryFor(0x00010005));
    EXPECT_EQ(limited, metadataOf(R"({"MTK_CONTROL_AE_TARGET_FPS_RANGE": )" + row.range + "}"))
        << row.request << row.appName << row.appType << row.low << '-' << row.max;
  }
}

class FrameRateCap : public testing::TestWithParam<int> {};

TEST_P(FrameRateCap, AppliesCapsFrom15To25ToThirdPartyApps) {
  for (const char* const appType : {"other", "CTS", "heskCamera"}) {
    SCOPED_TRACE(appType);
    const bool isQueried = appType == std::string("other");
    const bool isLimited = isQueried && GetParam() >= 15 && GetParam() <= 25;
    host::PhoneConfig config = phoneWith({{"APP_TYPE", appType}, {"APP_NAME", "other"}});
    config.provider = host::ProviderConfig{.fpsCap = GetParam()};
    host::Phone phone(std::move(config));
    const TestUpdater updater;
    IMetadata request = metadataOf(R"({"MTK_CONTROL_AE_TARGET_FPS_RANGE": [15, 30]})");
    IMetadata session = request;
    updater->updateRequestMeta(&request, 1);
    updater->updateSessionParams(&session, {});
    for (const IMetadata& limited : {request, session}) {
      EXPECT_EQ(readItem(&limited, tags::MTK_CONTROL_AE_TARGET_FPS_RANGE, 0), isLimited ? 5 : 15);
      EXPECT_EQ(readItem(&limited, tags::MTK_CONTROL_AE_TARGET_FPS_RANGE, 1),
                isLimited ? GetParam() : 30);
      EXPECT_EQ(read(&limited, tags::HESK_CONTROL_FPSLIMITTYPE, -1), isLimited ? 43 : -1);
    }
    const auto effects = phone.effects.take();
    EXPECT_EQ(std::ranges::count(effects, "provider.query", &host::Effect::op), isQueried ? 2 : 0);
  }
}

INSTANTIATE_TEST_SUITE_P(Caps, FrameRateCap, testing::Values(14, 15, 25, 26));

TEST(ProfessionalMode, PublishesExtremeValues) {
  host::Phone phone;
  const TestUpdater updater;
  IMetadata request = metadataOf(R"({"ANDROID_SENSOR_EXPOSURE_TIME": -9223372036854775808,
    "ANDROID_SENSOR_SENSITIVITY": 2147483647, "HESK_CONTROL_COLOURTEMPERATURE": 0,
    "HESK_CONTROL_MOTIONLEVEL": -2147483648})");
  updater->updateRequestMeta(&request, 1);
  EXPECT_EQ(phone.eventStore.all(), (TextMap{{"MTK_EXPTIME", "-9223372036854775808"},
                                             {"MTK_ISO", "2147483647"},
                                             {"HESK_COLOURTEMPERATURE", "0"},
                                             {"MTK_AWBMODE", "0"},
                                             {"HESK_MOTIONLEVEL", "-2147483648"}}));
}

TEST(RequestMeta, AcceptsNull) {
  host::Phone phone(phoneWith({{"APP_TYPE", "heskCamera"}}, {{"ro.product.model.zdm", "KX0107"}}));
  const TestUpdater updater(1);
  updater.fields.streamIds() = {3};
  updater.fields.multicamFeatureMode() = 2;
  updater->updateRequestMeta(nullptr, 1);
  EXPECT_EQ(phone.eventStore.all(), (TextMap{{"APP_TYPE", "heskCamera"},
                                             {"APP_NAME", "FaceBeauty"},
                                             {"APP_MODE", ""},
                                             {"HESK_MOTIONLEVEL", "-1"}}));
}

TEST(RequestMeta, AllocatesOnlyForItsWrites) {
  host::Phone phone(phoneWith({{"APP_TYPE", "heskCamera"}}, {{"ro.product.model.zdm", "KX0107"}}));
  phone.setObserver(nullptr);
  host::LogSink::enableLevels({});
  const TestUpdater updater(1);
  updater.fields.streamIds() = {3, 7};
  IMetadata request = metadataOf(R"({"HESK_CONTROL_VIDEO_HDR": 1,
    "HESK_CONTROL_STREAM_FLAGS": [0, 1], "MTK_CONTROL_AE_TARGET_FPS_RANGE": [15, 30],
    "COM_HESK_CURRENTUIMODULE": 31, "HESK_CONTROL_CURRENTMODE": 1})");
  updater->updateRequestMeta(&request, 1);  // adds the new entries
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
