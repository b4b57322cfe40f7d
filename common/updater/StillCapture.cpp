// Still captures in the request hook: the book of multi-frame captures.
//
// The camera app announces a capture with HESK_CONTROL_HISFRAME: its counts of "hisframes" and
// "nonhisframes". From then on the book knows of every request which frame of the burst it is
// (mNonZslFrames) and how many frames are still to come (mCaptureCount).

#include <algorithm>
#include <string_view>

#include "common/HeskParameterUpdater.h"
#include "common/math/Conversion.h"
#include "common/tags/Metadata.h"
#include "common/tags/ModeBits.h"
#include "common/updater/Borrowed.h"
#include "common/updater/SharedSteps.h"
#include "common/updater/UpdaterLog.h"

namespace {

using namespace hesk;
using NSCam::IMetadata;

constexpr log::Operation kOperation = updaterOperation("updateRequestMeta");

constexpr std::uint8_t kAbsentByte = 255;

constexpr std::int64_t kSingleFrameMode = modeBit(13);
constexpr std::int64_t kRawModes =
    modeBit(1) | modeBit(18) | modeBit(19) | modeBit(27) | modeBit(51) | modeBit(52);

// The counts come from an app: a burst beyond this is booked in part, so that it cannot exhaust
// memory.
constexpr std::int32_t kMostBookedFrames = 1024;

void writeRawType(IMetadata* meta, std::int64_t currentMode) {
  // The moon scene's step of the same hook overwrites this. Kept in its place.
  if ((currentMode & kRawModes) != 0) {
    write(meta, tags::MTK_CONTROL_RAW_TYPE, 1);
  } else {
    clear(meta, tags::MTK_CONTROL_RAW_TYPE);
  }
}

}  // namespace

void HeskParameterUpdater::updateStillCapture(IMetadata* meta, unsigned int requestNo,
                                              std::string_view appType, std::int64_t currentMode) {
  const std::uint8_t enableZsl = read(meta, tags::ANDROID_CONTROL_ENABLE_ZSL, kAbsentByte);
  const bool isZslOff = enableZsl == 0;
  HESK_LOGE(kOperation, "cap request app enableZsl %d, currentMode %lld, requestNo %d", enableZsl,
            static_cast<long long>(currentMode), static_cast<std::int32_t>(requestNo));

  const int mainId =
      isMulticam(mMulticamFeatureMode) ? getMulticamMainID(mInstanceId) : mInstanceId;
  if (has(meta, tags::HESK_CONTROL_HISFRAME)) {
    bookAnnouncedFrames(meta, requestNo, mainId);
  } else if (isZslOff) {
    mNonZslFrames.clear();
    mNonZslFrames.emplace(requestNo, 0);
  }
  if (currentMode >= 1 && (currentMode & kSingleFrameMode) != 0) mCaptureCount = 1;

  if (isZslOff) write(meta, tags::MTK_HESK_NON_ZSL_CAPTURE, 1);
  writeBurstFrame(meta, requestNo);
  if (!mHasVideoStream && isOwnCameraApp(appType)) {
    write(meta, tags::MTK_HESK_NO_VIDEO_STREAM, std::uint8_t{1});
  }
  write(meta, tags::MTK_HESK_STILL_CAPTURE, 1);
  writeRawType(meta, currentMode);
  write(meta, tags::MTK_HAL_REQUEST_CAPTURE_FLAG1, 1);
  write(meta, tags::MTK_HAL_REQUEST_CAPTURE_FLAG0, 0);
  write(meta, tags::MTK_HESK_CAPTURE_COUNT, mCaptureCount);
  HESK_LOGD(kOperation, "update CaptureCount:%d", mCaptureCount);
  setDumpPathForHeskDump(mInstanceId, meta);
  write(meta, tags::HESK_CONTROL_MULTICAM_FEATURE_MODE,
        static_cast<std::int32_t>(mMulticamFeatureMode));
}

void HeskParameterUpdater::bookAnnouncedFrames(const IMetadata* meta, unsigned int requestNo,
                                               int mainId) {
  const std::int32_t hisFrames = read(meta, tags::HESK_CONTROL_HISFRAME, 0, 0);
  const std::int32_t nonHisFrames = read(meta, tags::HESK_CONTROL_HISFRAME, 0, 1);
  HESK_LOGE(kOperation, "cap request hisframe %d, nonhisframe %d", hisFrames, nonHisFrames);

  const auto hal3A = borrowHal3A(mainId);
  if (hal3A == nullptr) {
    HESK_LOGD(kOperation, "HeskParameterUpdater create IHal3A instance failed");
  }

  if (nonHisFrames >= 1) {
    if (hal3A != nullptr) hal3A->control(NS3Av3::IHal3A::kSetNonZslFrameCount, nonHisFrames, 0);
    if (hisFrames == 0) bookBurst(requestNo, nonHisFrames);
  }

  const std::int32_t announced = wrappingAdd(hisFrames, nonHisFrames);
  if (announced != 0) {
    mCaptureCount = announced;
  } else if (mCaptureCount >= 2) {
    --mCaptureCount;
  }
}

void HeskParameterUpdater::bookBurst(unsigned int firstRequestNo, std::int32_t frameCount) {
  mNonZslFrames.clear();
  const auto booked = static_cast<std::uint32_t>(std::min(frameCount, kMostBookedFrames));
  for (std::uint32_t index = 0; index < booked; ++index) {
    const std::uint32_t requestNo = firstRequestNo + index;  // request numbers wrap
    mNonZslFrames.emplace(requestNo, index);
    HESK_LOGD(kOperation, "non-zsl Frames[frameNo %d/index %d]",
              static_cast<std::int32_t>(requestNo), static_cast<std::int32_t>(index));
  }
  if (frameCount > kMostBookedFrames) {
    HESK_LOGE(kOperation, "non-zsl burst of %d frames, only the first %d are booked", frameCount,
              kMostBookedFrames);
  }
}

void HeskParameterUpdater::writeBurstFrame(IMetadata* meta, unsigned int requestNo) const {
  const auto booked = mNonZslFrames.find(requestNo);
  const std::uint32_t frameIndex = booked != mNonZslFrames.end() ? booked->second : 0;
  const std::size_t frameCount = mNonZslFrames.size();

  const bool isFlashOn = read(meta, tags::ANDROID_FLASH_MODE, kAbsentByte) == 1;
  const bool isOverridden = read(meta, tags::HESK_CONTROL_ALGO_OVERRIDE) == 1;
  const bool isLastFrame = frameCount == std::size_t{frameIndex} + 1;
  if (!isFlashOn && !isOverridden && !isLastFrame) return;

  const auto count = static_cast<std::int32_t>(frameCount);
  const auto index = static_cast<std::int32_t>(frameIndex);
  write(meta, tags::MTK_HESK_FRAME_COUNT, count);
  write(meta, tags::MTK_HESK_FRAME_INDEX, index);
  HESK_LOGD(kOperation, "frameCount %d, frameIndex %d", count, index);
}
