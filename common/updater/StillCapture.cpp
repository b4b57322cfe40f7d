// Still captures in the request hook: burst tracking.
//
// The camera app announces a capture with HESK_CONTROL_HISFRAME: its numbers of "hisframes" and
// "nonhisframes". mNonZslFrames then maps each request of the burst to its frame index, and
// mCaptureCount is the number of frames still expected.

#include <algorithm>
#include <cstring>
#include <span>
#include <string_view>

#include "common/HeskParameterUpdater.h"
#include "common/math/Conversion.h"
#include "common/tags/Metadata.h"
#include "common/tags/Values.h"
#include "common/updater/PlatformHandle.h"
#include "common/updater/SharedSteps.h"
#include "common/updater/TimeStamp.h"
#include "common/updater/UpdaterLog.h"

namespace {

using namespace hesk;
using NSCam::IMetadata;

// The number of frames comes from an app: this limit protects against memory exhaustion.
constexpr std::int32_t kMaxBurstFrames = 1024;

void writeRawType(IMetadata* meta, std::int64_t currentMode) {
  // writeMoonRawType always overwrites this value.
  if ((currentMode & mode::kRawType) != 0) {
    write(meta, tags::MTK_CONTROL_RAW_TYPE, 1);
  } else {
    clear(meta, tags::MTK_CONTROL_RAW_TYPE);
  }
}

}  // namespace

void HeskParameterUpdater::updateStillCapture(IMetadata* meta, unsigned int requestNo,
                                              std::string_view appType, std::int64_t currentMode) {
  const std::uint8_t enableZsl = read(meta, tags::ANDROID_CONTROL_ENABLE_ZSL, 255);
  const bool isZslOff = enableZsl == 0;
  HESK_LOGE(kRequestOperation, "cap request app enableZsl %d, currentMode %lld, requestNo %d",
            enableZsl, static_cast<long long>(currentMode), static_cast<std::int32_t>(requestNo));

  const int mainId = mMulticamFeatureMode > 0 ? getMulticamMainID(mInstanceId) : mInstanceId;
  if (has(meta, tags::HESK_CONTROL_HISFRAME)) {
    recordAnnouncedFrames(meta, requestNo, mainId);
  } else if (isZslOff) {
    mNonZslFrames.clear();
    mNonZslFrames.emplace(requestNo, 0);
  }
  if (currentMode >= 1 && (currentMode & mode::kSingleFrame) != 0) mCaptureCount = 1;

  if (isZslOff) write(meta, tags::MTK_HESK_NON_ZSL_CAPTURE, 1);
  writeBurstFrame(meta, requestNo);
  if (!mHasVideoStream && isOemCameraApp(appType)) {
    write(meta, tags::MTK_HESK_NO_VIDEO_STREAM, std::uint8_t{1});
  }
  write(meta, tags::MTK_HESK_STILL_CAPTURE, 1);
  writeRawType(meta, currentMode);
  write(meta, tags::MTK_HAL_REQUEST_CAPTURE_FLAG1, 1);
  write(meta, tags::MTK_HAL_REQUEST_CAPTURE_FLAG0, 0);
  write(meta, tags::MTK_HESK_CAPTURE_COUNT, mCaptureCount);
  HESK_LOGD(kRequestOperation, "update CaptureCount:%d", mCaptureCount);
  setDumpPathForHeskDump(mInstanceId, meta);
  write(meta, tags::HESK_CONTROL_MULTICAM_FEATURE_MODE, mMulticamFeatureMode);
}

void HeskParameterUpdater::recordAnnouncedFrames(const IMetadata* meta, unsigned int requestNo,
                                                 int mainId) {
  const std::int32_t hisFrames = readItem(meta, tags::HESK_CONTROL_HISFRAME, 0);
  const std::int32_t nonHisFrames = readItem(meta, tags::HESK_CONTROL_HISFRAME, 1);
  HESK_LOGE(kRequestOperation, "cap request hisframe %d, nonhisframe %d", hisFrames, nonHisFrames);

  const auto hal3A = createHal3A(mainId);
  if (hal3A == nullptr) {
    HESK_LOGD(kRequestOperation, "HeskParameterUpdater create IHal3A instance failed");
  }

  if (nonHisFrames >= 1) {
    if (hal3A != nullptr) hal3A->control(NS3Av3::IHal3A::kSetNonZslFrameCount, nonHisFrames, 0);
    if (hisFrames == 0) recordBurst(requestNo, nonHisFrames);
  }

  const std::int32_t announced = wrappingAdd(hisFrames, nonHisFrames);
  if (announced != 0) {
    mCaptureCount = announced;
  } else if (mCaptureCount >= 2) {
    --mCaptureCount;
  }
}

void HeskParameterUpdater::recordBurst(unsigned int firstRequestNo, std::int32_t frameCount) {
  mNonZslFrames.clear();
  const auto recorded = static_cast<std::uint32_t>(std::min(frameCount, kMaxBurstFrames));
  for (std::uint32_t index = 0; index < recorded; ++index) {
    const std::uint32_t requestNo = firstRequestNo + index;  // request numbers wrap
    mNonZslFrames.emplace(requestNo, index);
    HESK_LOGD(kRequestOperation, "non-zsl Frames[frameNo %d/index %d]",
              static_cast<std::int32_t>(requestNo), static_cast<std::int32_t>(index));
  }
  if (frameCount > kMaxBurstFrames) {
    HESK_LOGE(kRequestOperation, "non-zsl burst of %d frames, only the first %d are recorded",
              frameCount, kMaxBurstFrames);
  }
}

void HeskParameterUpdater::writeBurstFrame(IMetadata* meta, unsigned int requestNo) const {
  const auto frame = mNonZslFrames.find(requestNo);
  const std::uint32_t frameIndex = frame != mNonZslFrames.end() ? frame->second : 0;
  const std::size_t frameCount = mNonZslFrames.size();

  const bool isFlashOn = read(meta, tags::ANDROID_FLASH_MODE) == 1;
  const bool isOverridden = read(meta, tags::HESK_CONTROL_ALGO_OVERRIDE) == 1;
  const bool isLastFrame = frameCount == std::size_t{frameIndex} + 1;
  if (!isFlashOn && !isOverridden && !isLastFrame) return;

  const auto count = static_cast<std::int32_t>(frameCount);
  const auto index = static_cast<std::int32_t>(frameIndex);
  write(meta, tags::MTK_HESK_FRAME_COUNT, count);
  write(meta, tags::MTK_HESK_FRAME_INDEX, index);
  HESK_LOGD(kRequestOperation, "frameCount %d, frameIndex %d", count, index);
}

void HeskParameterUpdater::setDumpPathForHeskDump(int, IMetadata* request) {
  const TimeStamp stamp = currentTimeStamp();
  const std::size_t sizeWithZero = std::strlen(stamp.data()) + 1;
  writeAll(request, tags::HESK_CONTROL_DUMPPATH,
           std::span(reinterpret_cast<const std::uint8_t*>(stamp.data()), sizeWithZero));
}
