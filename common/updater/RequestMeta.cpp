// The request hook, as the list of its steps. Later steps overwrite what earlier ones wrote.

#include <string>
#include <string_view>

#include "common/Events.h"
#include "common/HeskParameterUpdater.h"
#include "common/tags/Metadata.h"
#include "common/tags/ModeBits.h"
#include "common/updater/FrameRate.h"
#include "common/updater/SharedSteps.h"
#include "common/updater/UpdaterLog.h"

namespace {

using namespace hesk;
using NSCam::IMetadata;

constexpr log::Operation kOperation = updaterOperation("updateRequestMeta");

constexpr std::int32_t kUiModule8 = 8;

void writeMulticamEnable(IMetadata* meta, MulticamFeatureMode mode) {
  if (!isMulticam(mode)) return;
  switch (mode) {
    case MulticamFeatureMode::multicam: write(meta, tags::MTK_HESK_MULTICAM_ENABLE, 1); break;
    case MulticamFeatureMode::logicalMulticam:
      write(meta, tags::MTK_HESK_MULTICAM_ENABLE, 0);
      break;
    default: clear(meta, tags::MTK_HESK_MULTICAM_ENABLE); break;
  }
}

void forcePreview(IMetadata* meta, std::int32_t uiModule) {
  const std::int32_t keep = read(meta, tags::HESK_CONTROL_KEEP_CAPTURE_INTENT);
  if (uiModule != kUiModule8 || keep == 1) return;
  // int32 items in byte tags: established behaviour, which is kept.
  writeAs<std::int32_t>(meta, tags::ANDROID_CONTROL_CAPTURE_INTENT, 1);
  writeAs<std::int32_t>(meta, tags::ANDROID_CONTROL_ENABLE_ZSL, 0);
}

bool isStillCapture(const IMetadata* meta) {
  constexpr std::uint8_t kStillCapture = 2;
  return read(meta, tags::ANDROID_CONTROL_CAPTURE_INTENT) == kStillCapture;
}

void writeMoonRawType(IMetadata* meta, std::string_view appName) {
  constexpr std::int32_t kSuperMoonRawTypes = 4 + 8 + 16 + 32;
  const bool isZoomed = read(meta, tags::HESK_CONTROL_ZOOM_ZOOM_RATIO, 1.0F) > 1.0F;
  if (isZoomed && appName == "SuperMoon") {
    write(meta, tags::MTK_CONTROL_RAW_TYPE, kSuperMoonRawTypes);
    HESK_LOGD(kOperation, "superMoon update rawtype 4+8+16+32");
  } else {
    clear(meta, tags::MTK_CONTROL_RAW_TYPE);
  }
}

void writeDiagonalFov(IMetadata* meta, std::int64_t currentMode, std::int32_t uiModule,
                      std::int32_t fovDegrees) {
  constexpr std::int64_t kDiagonalFovMode = modeBit(59);
  if ((currentMode & kDiagonalFovMode) == 0 || uiModule != kUiModule8) return;
  write(meta, tags::MTK_RAW_ALGO_DIAGONAL_FOV, fovDegrees);
}

}  // namespace

void HeskParameterUpdater::updateRequestMeta(IMetadata* meta, unsigned int requestNo) {
  replaceUpperFrameRate(meta);
  update3rdpartyAppControlMeta(meta, requestNo);
  updateTuningAppName(meta, requestNo);
  updateProfModeControlMeta(meta, requestNo);
  writeSelectedStream(meta, mStreamIds);

  const std::int64_t currentMode = read(meta, tags::HESK_CONTROL_CURRENTMODE);
  const std::string appType = eventValue("APP_TYPE");
  writeMulticamEnable(meta, mMulticamFeatureMode);
  const std::int32_t uiModule = read(meta, tags::COM_HESK_CURRENTUIMODULE);
  forcePreview(meta, uiModule);
  if (isStillCapture(meta)) updateStillCapture(meta, requestNo, appType, currentMode);

  writeMoonRawType(meta, eventValue("APP_NAME"));
  if (mMulticamFeatureMode == MulticamFeatureMode::logicalMulticam) {
    setLogicalMulticamFrameRate(meta);
  }
  writeVideoHdrMode(meta, kOperation);
  switchOffFrontStabilization(meta, mInstanceId, eventValue("APP_TYPE"));
  fixHighFrameRate(meta);
  writeDiagonalFov(meta, currentMode, uiModule, mPrimaryCameraDiagonalFov);
}
