// The request hook as the list of its steps. A step can overwrite the tags of the steps before it.

#include <string>
#include <string_view>

#include "common/Events.h"
#include "common/HeskParameterUpdater.h"
#include "common/tags/Metadata.h"
#include "common/tags/Values.h"
#include "common/updater/FrameRate.h"
#include "common/updater/SharedSteps.h"
#include "common/updater/UpdaterLog.h"

namespace {

using namespace hesk;
using NSCam::IMetadata;

void writeMulticamEnable(IMetadata* meta, std::int32_t mode) {
  if (mode == multicam::kMulticam) {
    write(meta, tags::MTK_HESK_MULTICAM_ENABLE, 1);
  } else if (mode == multicam::kLogicalMulticam) {
    write(meta, tags::MTK_HESK_MULTICAM_ENABLE, 0);
  } else if (mode > 0) {
    clear(meta, tags::MTK_HESK_MULTICAM_ENABLE);
  }
}

void forcePreview(IMetadata* meta, std::int32_t uiModule) {
  const std::int32_t keep = read(meta, tags::HESK_CONTROL_KEEP_CAPTURE_INTENT);
  if (uiModule != uimodule::k8 || keep == 1) return;
  // These byte tags get int32 items.
  writeAs<std::int32_t>(meta, tags::ANDROID_CONTROL_CAPTURE_INTENT, intent::kPreview);
  writeAs<std::int32_t>(meta, tags::ANDROID_CONTROL_ENABLE_ZSL, 0);
}

bool isStillCapture(const IMetadata* meta) {
  return read(meta, tags::ANDROID_CONTROL_CAPTURE_INTENT) == intent::kStillCapture;
}

void writeMoonRawType(IMetadata* meta, std::string_view appName) {
  constexpr std::int32_t kSuperMoonRawTypes = 4 + 8 + 16 + 32;
  const bool isZoomed = read(meta, tags::HESK_CONTROL_ZOOM_ZOOM_RATIO, 1.0F) > 1.0F;
  if (isZoomed && appName == "SuperMoon") {
    write(meta, tags::MTK_CONTROL_RAW_TYPE, kSuperMoonRawTypes);
    HESK_LOGD(kRequestOperation, "superMoon update rawtype 4+8+16+32");
  } else {
    clear(meta, tags::MTK_CONTROL_RAW_TYPE);
  }
}

void writeDiagonalFov(IMetadata* meta, std::int64_t currentMode, std::int32_t uiModule,
                      std::int32_t fovDegrees) {
  if ((currentMode & mode::kPanorama59) == 0 || uiModule != uimodule::k8) return;
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
  if (mMulticamFeatureMode == multicam::kLogicalMulticam) setLogicalMulticamFrameRate(meta);
  writeVideoHdrMode(meta, kRequestOperation);
  disableFrontStabilization(meta, mInstanceId, eventValue("APP_TYPE"));
  fixHighFrameRate(meta);
  writeDiagonalFov(meta, currentMode, uiModule, mPrimaryCameraDiagonalFov);
}
