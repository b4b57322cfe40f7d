// Burst tracking of still captures in the request hook. Complete captures are in scenarios/.

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <utility>

#include "common/tags/Metadata.h"
#include "host/Phone.h"
#include "tests/support/TestMetadata.h"
#include "tests/support/TestUpdater.h"

namespace {

using namespace hesk;

class StillCapture : public testing::Test {
 protected:
  /// Runs the hook on a still capture with these additional tags and returns the request.
  NSCam::IMetadata capture(unsigned int requestNo, const std::string& tags = "{}") {
    NSCam::IMetadata request = metadataOf(R"({"ANDROID_CONTROL_CAPTURE_INTENT": 2})");
    request += metadataOf(tags);
    mUpdater->updateRequestMeta(&request, requestNo);
    return request;
  }

  [[nodiscard]] auto& frames() const { return mUpdater.fields.nonZslFrames(); }
  [[nodiscard]] auto& captureCount() const { return mUpdater.fields.captureCount(); }

  host::Phone mPhone;
  TestUpdater mUpdater{2};
};

struct Step {
  unsigned int requestNo;
  std::string tags;
  std::pair<unsigned int, std::size_t> recorded;  // first request and number of frames
  int captureCount;
  std::optional<std::pair<int, int>> frame = {};  // MTK_HESK_FRAME_COUNT and _INDEX
};

TEST_F(StillCapture, RecordsAndCountsBursts) {
  const std::string flash = R"({"ANDROID_FLASH_MODE": 1})";
  const std::string override = R"({"HESK_CONTROL_ALGO_OVERRIDE": 1})";
  const std::string none = R"({"HESK_CONTROL_HISFRAME": [0, 0]})";
  const Step steps[] = {
      {90, R"({"HESK_CONTROL_HISFRAME": [0, 1]})", {90, 1}, 1, {{1, 0}}},
      {100, R"({"HESK_CONTROL_HISFRAME": [0, 3]})", {100, 3}, 3},
      {101, R"({"ANDROID_CONTROL_ENABLE_ZSL": 1})", {100, 3}, 3},
      {101, R"({"ANDROID_FLASH_MODE": 2})", {100, 3}, 3},
      {101, flash, {100, 3}, 3, {{3, 1}}},
      {101, override, {100, 3}, 3, {{3, 1}}},
      {99, flash, {100, 3}, 3, {{3, 0}}},  // not recorded
      {102, none, {100, 3}, 2, {{3, 2}}},
      {103, none, {100, 3}, 1},
      {104, none, {100, 3}, 1},  // never below 1
      // A burst with frames from history, or without further frames, is not recorded.
      {110, R"({"HESK_CONTROL_HISFRAME": [2, 3]})", {100, 3}, 5},
      {111, R"({"HESK_CONTROL_HISFRAME": [1, -1]})", {100, 3}, 4},
      {112, R"({"HESK_CONTROL_HISFRAME": [6]})", {100, 3}, 6},
      {113, R"({"HESK_CONTROL_HISFRAME": [-1, -1]})", {100, 3}, -2},
      {114, R"({"HESK_CONTROL_HISFRAME": [2147483647, 2]})", {100, 3}, -2147483647},
      {115,
       R"({"HESK_CONTROL_HISFRAME": [4, 0], "HESK_CONTROL_CURRENTMODE": "0x2000"})",
       {100, 3},
       1},
      {116, R"({"HESK_CONTROL_HISFRAME": [4, 0], "HESK_CONTROL_CURRENTMODE": -1})", {100, 3}, 4},
      {120, R"({"ANDROID_CONTROL_ENABLE_ZSL": 0})", {120, 1}, 4, {{1, 0}}},
  };
  for (const auto& [requestNo, tags, recorded, count, frame] : steps) {
    const NSCam::IMetadata request = capture(requestNo, tags);
    EXPECT_EQ(std::pair(frames().begin()->first, frames().size()), recorded) << requestNo << tags;
    for (const auto& [number, index] : frames()) EXPECT_EQ(number, recorded.first + index);
    EXPECT_EQ(captureCount(), count) << requestNo << tags;
    EXPECT_EQ(read(&request, tags::MTK_HESK_FRAME_COUNT, -1), frame ? frame->first : -1) << tags;
    EXPECT_EQ(read(&request, tags::MTK_HESK_FRAME_INDEX, -1), frame ? frame->second : -1) << tags;
  }
}

TEST_F(StillCapture, ReadsIntentAsByte) {
  NSCam::IMetadata request =
      metadataOf(R"({"ANDROID_CONTROL_CAPTURE_INTENT": {"type": "int32", "items": [258]}})");
  mUpdater->updateRequestMeta(&request, 5);
  EXPECT_TRUE(has(&request, tags::MTK_HESK_STILL_CAPTURE));
}

TEST_F(StillCapture, WorksWithout3A) {
  mPhone.config.devices[2].hal3A.available = false;
  capture(100, R"({"HESK_CONTROL_HISFRAME": [0, 2]})");
  EXPECT_EQ(frames().size(), 2U);
  EXPECT_EQ(captureCount(), 2);
}

TEST_F(StillCapture, RecordsAtMost1024Frames) {
  mPhone.log.take();
  host::LogSink::enableLevels({'E'});
  capture(0xffffffff, R"({"HESK_CONTROL_HISFRAME": [0, 2147483647]})");
  EXPECT_EQ(frames().size(), 1024U);
  EXPECT_EQ(frames().at(1022), 1023U);  // request numbers wrap
  EXPECT_EQ(captureCount(), 2147483647);
  EXPECT_EQ(mPhone.effects.take()[2].fields[2].value,  // 3A gets the whole number
            host::Effect::Value(std::vector<std::int64_t>{2147483647, 0}));

  EXPECT_EQ(mPhone.log.take().size(), 3U);
  capture(1, R"({"HESK_CONTROL_HISFRAME": [0, 1024]})");
  EXPECT_EQ(mPhone.log.take().size(), 2U);  // no record about 1,024 frames
  host::LogSink::enableLevels({});
  capture(2, R"({"HESK_CONTROL_HISFRAME": [0, 1025]})");
  EXPECT_EQ(frames().size(), 1024U);
}

TEST_F(StillCapture, ReportsMissingVideoStreamToOemApps) {
  const std::pair<const char*, bool> rows[] = {
      {"heskCamera", true}, {"engcamera", true}, {"HeskCamera", false}};
  for (const auto& [appType, isOwn] : rows) {
    mPhone.eventStore.set("APP_TYPE", appType);
    for (const bool hasVideo : {false, true}) {
      mUpdater.fields.hasVideoStream() = hasVideo;
      const NSCam::IMetadata request = capture(1);
      EXPECT_EQ(read(&request, tags::MTK_HESK_NO_VIDEO_STREAM) == 1, isOwn && !hasVideo) << appType;
    }
  }
}

TEST_F(StillCapture, HasMulticamMode) {
  mUpdater.fields.multicamFeatureMode() = 1;
  const NSCam::IMetadata request = capture(1);
  EXPECT_EQ(read(&request, tags::HESK_CONTROL_MULTICAM_FEATURE_MODE), 1);
}

TEST_F(StillCapture, MainSensorIsFirstCharacterOfPhysicalIds) {
  mUpdater.fields.multicamFeatureMode() = 1;
  const std::pair<const char*, int> rows[] = {
      {R"("2\u00003")", 2}, {R"("12\u0000")", 1}, {R"("x")", 72}, {"[]", -48}};
  for (const auto& [ids, sensor] : rows) {
    mPhone.config.devices[2].statics =
        metadataOf(R"({"ANDROID_LOGICAL_MULTI_CAMERA_PHYSICAL_IDS": )" + std::string(ids) + "}");
    mPhone.effects.take();
    capture(1, R"({"HESK_CONTROL_HISFRAME": [1, 0]})");
    EXPECT_EQ(mPhone.effects.take()[1].fields[0].value, host::Effect::Value(sensor)) << ids;
  }
}

}  // namespace
