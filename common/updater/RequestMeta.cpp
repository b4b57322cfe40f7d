// The request hook, as the list of its steps. Later steps overwrite what earlier ones wrote: the
// order is part of what the pipeline relies on.

#include <string_view>

#include "common/HeskParameterUpdater.h"
#include "common/Product.h"
#include "common/tags/FrameRateRange.h"
#include "common/tags/Metadata.h"
#include "common/tags/ModeBits.h"
#include "common/updater/Events.h"
#include "common/updater/SharedSteps.h"
#include "common/updater/UpdaterLog.h"

namespace {

using namespace hesk;
using NSCam::IMetadata;

constexpr log::Operation kOperation = updaterOperation("updateRequestMeta");

constexpr std::size_t kUpperBound = 1;  // of MTK_CONTROL_AE_TARGET_FPS_RANGE
constexpr std::int32_t kForcedPreviewModule = 8;
constexpr std::int64_t kDiagonalFovMode = modeBit(59);

void replaceUpperFrameRate(IMetadata* meta) {
  if (const auto frameRate = readIfPresent(meta, tags::HESK_CONTROL_FPS_RANGE_MAX)) {
    replaceItem(meta, tags::MTK_CONTROL_AE_TARGET_FPS_RANGE, kUpperBound, *frameRate);
  }
}

void writeMulticamEnable(IMetadata* meta, std::int32_t multicamFeatureMode) {
  if (multicamFeatureMode <= 0) return;
  switch (multicamFeatureMode) {
    case 1: write(meta, tags::MTK_HESK_MULTICAM_ENABLE, 1); break;
    case 2: write(meta, tags::MTK_HESK_MULTICAM_ENABLE, 0); break;
    default: clear(meta, tags::MTK_HESK_MULTICAM_ENABLE); break;
  }
}

void forcePreview(IMetadata* meta, std::int32_t uiModule) {
  if (uiModule != kForcedPreviewModule) return;
  if (read(meta, tags::HESK_CONTROL_KEEP_CAPTURE_INTENT) == 1) return;
  // int32 items in byte tags: what reads them downstream has come to rely on it.
  writeAs<std::int32_t>(meta, tags::ANDROID_CONTROL_CAPTURE_INTENT, 1);
  writeAs<std::int32_t>(meta, tags::ANDROID_CONTROL_ENABLE_ZSL, 0);
}

bool isStillCapture(const IMetadata* meta) {
  constexpr std::uint8_t kStillCapture = 2;
  return read(meta, tags::ANDROID_CONTROL_CAPTURE_INTENT) == kStillCapture;
}

void writeMoonRawType(IMetadata* meta) {
  constexpr std::int32_t kSuperMoonRawTypes = 4 + 8 + 16 + 32;
  const bool isZoomed = read(meta, tags::HESK_CONTROL_ZOOM_ZOOM_RATIO, 1.0F) > 1.0F;
  if (isZoomed && eventValue<"APP_NAME">() == "SuperMoon") {
    write(meta, tags::MTK_CONTROL_RAW_TYPE, kSuperMoonRawTypes);
    HESK_LOGD(kOperation, "[%s] superMoon update rawtype 4+8+16+32", kOperation.name);
  } else {
    clear(meta, tags::MTK_CONTROL_RAW_TYPE);
  }
}

void capDualCameraFrameRate(IMetadata* meta, std::int32_t multicamFeatureMode) {
  constexpr std::int32_t kDualCameraFrameRate = 29;
  if (multicamFeatureMode == 2 && productBeginsWith("KX0102", "0")) {
    replaceItem(meta, tags::MTK_CONTROL_AE_TARGET_FPS_RANGE, kUpperBound, kDualCameraFrameRate);
  }
}

void fixFrameRate(IMetadata* meta) {
  constexpr std::int32_t kLowestFixedFrameRate = 31;
  const std::int32_t frameRate = read(meta, tags::HESK_CONTROL_FPS_RANGE_MAX);
  if (frameRate < kLowestFixedFrameRate) return;
  writeFrameRateRange(meta, {.lower = frameRate, .upper = frameRate});
  HESK_LOGI(kOperation, "[%s] update MTK_CONTROL_AE_TARGET_FPS_RANGE:%d", kOperation.name,
            frameRate);
}

}  // namespace

void HeskParameterUpdater::updateRequestMeta(IMetadata* meta, unsigned int requestNo) {
  const std::string_view appType = eventValue<"APP_TYPE">();
  replaceUpperFrameRate(meta);
  update3rdpartyAppControlMeta(meta, appType);
  updateTuningAppName(meta, appType);
  updateProfModeControlMeta(meta);
  writeSelectedStream(meta, mStreamIds);

  const std::int64_t currentMode = read(meta, tags::HESK_CONTROL_CURRENTMODE);
  const std::int32_t uiModule = read(meta, tags::COM_HESK_CURRENTUIMODULE);
  writeMulticamEnable(meta, mMulticamFeatureMode);
  forcePreview(meta, uiModule);
  if (isStillCapture(meta)) updateStillCapture(meta, requestNo, appType, currentMode);

  writeMoonRawType(meta);
  capDualCameraFrameRate(meta, mMulticamFeatureMode);
  writeVideoHdrMode(meta, kOperation);
  switchOffFrontStabilization(meta, mInstanceId, appType);
  fixFrameRate(meta);
  if ((currentMode & kDiagonalFovMode) != 0 && uiModule == kForcedPreviewModule) {
    write(meta, tags::MTK_RAW_ALGO_DIAGONAL_FOV, mPrimaryCameraDiagonalFov);
  }
}
