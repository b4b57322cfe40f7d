// Still captures in the request hook: the book of multi-frame captures.

#include <gtest/gtest.h>

#include <ctime>
#include <map>
#include <string>

#include "common/tags/Metadata.h"
#include "host/Phone.h"
#include "tests/support/TestMetadata.h"
#include "tests/support/TestUpdater.h"

namespace {

using namespace hesk;
using Frames = std::map<std::uint32_t, std::uint32_t>;
using Effects = std::vector<host::Effect>;

class StillCapture : public testing::Test {
 protected:
  /// A still capture with these tags besides its intent; returns what the hook made of it.
  NSCam::IMetadata capture(unsigned int requestNo, const std::string& tags = "{}") {
    NSCam::IMetadata request = metadataOf(R"({"ANDROID_CONTROL_CAPTURE_INTENT": 2})");
    request += metadataOf(tags);
    mUpdater->updateRequestMeta(&request, requestNo);
    return request;
  }

  /// What was done to 3A since the last call.
  Effects hal3AEffects() {
    Effects effects = mPhone.effects.take();
    std::erase_if(effects,
                  [](const host::Effect& effect) { return !effect.op.starts_with("hal3a"); });
    return effects;
  }

  /// The messages of the request hook since the last call, behind their levels.
  std::vector<std::string> messages() {
    std::vector<std::string> messages;
    for (const auto& record : mPhone.log.take()) {
      if (record.function == "updateRequestMeta") messages.push_back(record.level + record.message);
    }
    return messages;
  }

  [[nodiscard]] auto& frames() const { return mUpdater.fields.nonZslFrames(); }
  [[nodiscard]] auto& captureCount() const { return mUpdater.fields.captureCount(); }

  host::Phone mPhone;
  TestUpdater mUpdater{2};
};

TEST_F(StillCapture, MarksTheRequest) {
  std::tm& clock = mPhone.config.clock.emplace();
  strptime("2021-03-04 05:06:07", "%Y-%m-%d %H:%M:%S", &clock);
  EXPECT_EQ(capture(5), metadataOf(R"({
      "ANDROID_CONTROL_CAPTURE_INTENT": 2, "MTK_CONTROL_SELECTED_STREAM_ID": -1,
      "MTK_HESK_STILL_CAPTURE": 1, "MTK_HESK_CAPTURE_COUNT": 0,
      "MTK_HAL_REQUEST_CAPTURE_FLAG0": 0, "MTK_HAL_REQUEST_CAPTURE_FLAG1": 1,
      "HESK_CONTROL_DUMPPATH": "20210304050607\u0000",
      "HESK_CONTROL_MULTICAM_FEATURE_MODE": 0})"));
  EXPECT_TRUE(hal3AEffects().empty());
}

TEST_F(StillCapture, ReadsTheIntentAsAByte) {
  NSCam::IMetadata request =
      metadataOf(R"({"ANDROID_CONTROL_CAPTURE_INTENT": {"type": "int32", "items": [258]}})");
  mUpdater->updateRequestMeta(&request, 5);
  EXPECT_TRUE(has(&request, tags::MTK_HESK_STILL_CAPTURE));
}

TEST_F(StillCapture, BooksABurstAndCountsItDown) {
  NSCam::IMetadata first = capture(100, R"({"HESK_CONTROL_HISFRAME": [0, 3]})");
  EXPECT_EQ(frames(), (Frames{{100, 0}, {101, 1}, {102, 2}}));
  EXPECT_EQ(read(&first, tags::MTK_HESK_CAPTURE_COUNT), 3);
  EXPECT_FALSE(has(&first, tags::MTK_HESK_FRAME_COUNT));

  const NSCam::IMetadata second = capture(101, R"({"ANDROID_CONTROL_ENABLE_ZSL": 1})");
  EXPECT_FALSE(has(&second, tags::MTK_HESK_FRAME_COUNT));
  EXPECT_EQ(captureCount(), 3);  // nothing announced: nothing counted

  const NSCam::IMetadata last = capture(102, R"({"HESK_CONTROL_HISFRAME": [0, 0]})");
  EXPECT_EQ(read(&last, tags::MTK_HESK_FRAME_COUNT), 3);
  EXPECT_EQ(read(&last, tags::MTK_HESK_FRAME_INDEX), 2);
  EXPECT_EQ(captureCount(), 2);
  capture(103, R"({"HESK_CONTROL_HISFRAME": [0, 0]})");
  capture(104, R"({"HESK_CONTROL_HISFRAME": [0, 0]})");
  EXPECT_EQ(captureCount(), 1);  // never below
}

TEST_F(StillCapture, AnnouncesTheBurstTo3A) {
  capture(100, R"({"HESK_CONTROL_HISFRAME": [2, 3]})");
  EXPECT_EQ(
      hal3AEffects(),
      (Effects{{"hal3a.create",
                {{"sensor", 2}, {"user", std::string("HeskParameterUpdater")}, {"ok", true}}},
               {"hal3a.control",
                {{"sensor", 2}, {"command", 541}, {"args", std::vector<std::int64_t>{3, 0}}}},
               {"hal3a.release", {{"sensor", 2}, {"user", std::string("HeskParameterUpdater")}}}}));
  EXPECT_TRUE(frames().empty());  // with frames from history the burst is not booked
  EXPECT_EQ(captureCount(), 5);

  frames() = {{7, 0}};
  capture(101, R"({"HESK_CONTROL_HISFRAME": [1, -1]})");
  EXPECT_EQ(hal3AEffects().size(), 2U);  // borrowed and given back: there is nothing to announce
  EXPECT_EQ(frames(), (Frames{{7, 0}}));
}

TEST_F(StillCapture, GoesOnWithout3A) {
  mPhone.config.devices[2].hal3A.available = false;
  mPhone.log.take();
  capture(100, R"({"HESK_CONTROL_HISFRAME": [0, 2]})");
  EXPECT_EQ(hal3AEffects().size(), 1U);  // the attempt
  EXPECT_EQ(frames().size(), 2U);
  EXPECT_EQ(captureCount(), 2);
  EXPECT_EQ(messages(),
            (std::vector<std::string>{
                "E[updateRequestMeta] cap request app enableZsl 255, currentMode 0, requestNo 100",
                "E[updateRequestMeta] cap request hisframe 0, nonhisframe 2",
                "D[updateRequestMeta] HeskParameterUpdater create IHal3A instance failed",
                "D[updateRequestMeta] non-zsl Frames[frameNo 100/index 0]",
                "D[updateRequestMeta] non-zsl Frames[frameNo 101/index 1]",
                "D[updateRequestMeta] update CaptureCount:2"}));
}

TEST_F(StillCapture, WithZslOffAndNothingAnnouncedIsABurstOfOne) {
  frames() = {{7, 0}, {8, 1}};
  const NSCam::IMetadata request = capture(50, R"({"ANDROID_CONTROL_ENABLE_ZSL": 0})");
  EXPECT_EQ(frames(), (Frames{{50, 0}}));
  EXPECT_EQ(read(&request, tags::MTK_HESK_NON_ZSL_CAPTURE), 1);
  EXPECT_EQ(read(&request, tags::MTK_HESK_FRAME_COUNT), 1);
  EXPECT_EQ(read(&request, tags::MTK_HESK_FRAME_INDEX, 9), 0);
}

TEST_F(StillCapture, GivesEveryFrameItsNumberWithFlashOrOverride) {
  frames() = {{7, 0}, {8, 1}, {9, 2}};
  for (const char* tags :
       {R"({"ANDROID_FLASH_MODE": 1})", R"({"HESK_CONTROL_ALGO_OVERRIDE": 1})"}) {
    const NSCam::IMetadata request = capture(8, tags);
    EXPECT_EQ(read(&request, tags::MTK_HESK_FRAME_COUNT), 3) << tags;
    EXPECT_EQ(read(&request, tags::MTK_HESK_FRAME_INDEX), 1) << tags;
  }
  const NSCam::IMetadata other = capture(8, R"({"ANDROID_FLASH_MODE": 2})");
  EXPECT_FALSE(has(&other, tags::MTK_HESK_FRAME_COUNT));
}

TEST_F(StillCapture, BooksAtMost1024Frames) {
  mPhone.log.take();
  capture(0xffffffff, R"({"HESK_CONTROL_HISFRAME": [0, 2147483647]})");
  EXPECT_EQ(frames().size(), 1024U);
  EXPECT_EQ(frames().at(0xffffffff), 0U);
  EXPECT_EQ(frames().at(1022), 1023U);  // request numbers wrap
  EXPECT_EQ(captureCount(), 2147483647);
  EXPECT_EQ(hal3AEffects()[1].fields[2].value,
            host::Effect::Value(std::vector<std::int64_t>{2147483647, 0}));
  EXPECT_EQ(
      messages().at(1026),
      "E[updateRequestMeta] non-zsl burst of 2147483647 frames, only the first 1024 are booked");

  host::LogSink::openLevels({'E'});
  capture(1, R"({"HESK_CONTROL_HISFRAME": [0, 1024]})");
  EXPECT_EQ(mPhone.log.take().size(), 2U);  // 1,024 frames are no news
}

TEST_F(StillCapture, CountsWhatTheAppAnnouncesWhateverItIs) {
  const std::pair<const char*, int> rows[] = {
      {R"({"HESK_CONTROL_HISFRAME": [4, 0]})", 4},
      {R"({"HESK_CONTROL_HISFRAME": [-1, -1]})", -2},
      {R"({"HESK_CONTROL_HISFRAME": [2147483647, 2]})", -2147483647},
      {R"({"HESK_CONTROL_HISFRAME": [6]})", 6},
      {R"({"HESK_CONTROL_HISFRAME": [4, 0], "HESK_CONTROL_CURRENTMODE": "0x2000"})", 1},
  };
  for (const auto& [tags, count] : rows) {
    capture(1, tags);
    EXPECT_EQ(captureCount(), count) << tags;
  }
  captureCount() = 5;
  capture(1, R"({"HESK_CONTROL_HISFRAME": [3, -3]})");
  EXPECT_EQ(captureCount(), 4);
  captureCount() = 1;
  capture(1, R"({"HESK_CONTROL_HISFRAME": [0, 0]})");
  EXPECT_EQ(captureCount(), 1);
  captureCount() = 5;
  capture(1, R"({"HESK_CONTROL_CURRENTMODE": -1})");  // bit 13 of a negative mode does not count
  EXPECT_EQ(captureCount(), 5);
}

TEST_F(StillCapture, TellsOwnAppsThatNoVideoStreamIsThere) {
  const auto marked = [&](const char* appType, bool hasVideoStream) {
    mPhone.eventStore.set("APP_TYPE", appType);
    mUpdater.fields.hasVideoStream() = hasVideoStream;
    const NSCam::IMetadata request = capture(1);
    return read(&request, tags::MTK_HESK_NO_VIDEO_STREAM) == 1;
  };
  EXPECT_TRUE(marked("heskCamera", false));
  EXPECT_TRUE(marked("engcamera", false));
  EXPECT_FALSE(marked("heskCamera", true));
  EXPECT_FALSE(marked("HeskCamera", false));
}

TEST_F(StillCapture, CarriesTheMulticamMode) {
  mUpdater.fields.setMulticamFeatureMode(1);
  const NSCam::IMetadata request = capture(1);
  EXPECT_EQ(read(&request, tags::HESK_CONTROL_MULTICAM_FEATURE_MODE), 1);
}

TEST_F(StillCapture, LeavesTheRawTypeToTheMoonScene) {
  const NSCam::IMetadata request = capture(1, R"({"HESK_CONTROL_CURRENTMODE": 2})");
  EXPECT_FALSE(has(&request, tags::MTK_CONTROL_RAW_TYPE));
}

}  // namespace
