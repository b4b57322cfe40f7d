// The request steps for third-party apps: face detection, the scene of the production line and fps
// ranges. The fps steps also apply to some modes of the OEM camera app.

#include "common/Events.h"
#include "common/HeskParameterUpdater.h"
#include "common/tags/Metadata.h"
#include "common/updater/FrameRate.h"
#include "common/updater/SharedSteps.h"
#include "common/updater/UpdaterLog.h"

namespace {

using namespace hesk;
using NSCam::IMetadata;

/// Enables face detection for apps whose exposure follows faces.
void forceFaceDetection(IMetadata* request, const std::string& appName) {
  constexpr std::uint8_t kSimple = 1;

  if (appName != "TikTok" && appName != "TikTokExternal") return;
  if (const auto mode = readIfPresent(request, tags::ANDROID_STATISTICS_FACE_DETECT_MODE)) {
    HESK_LOGD(kAppOperation, "Pack Name is: %s, FDMode is %d", appName.c_str(), *mode);
  }
  write(request, tags::ANDROID_STATISTICS_FACE_DETECT_MODE, kSimple);
  HESK_LOGD(kAppOperation, "Pack Name is: %s, Force fd open for FaceAE", appName.c_str());
}

void logTemperatureFrameRate(const IMetadata* request) {
  if (const auto frameRate = readIfPresent(request, tags::HESK_CONTROL_FPS_RANGE_MAX)) {
    HESK_LOGD(kAppOperation, "temperaturefps:%d", *frameRate);
  }
}

}  // namespace

void HeskParameterUpdater::update3rdpartyAppControlMeta(IMetadata* request, unsigned int) {
  const std::string appName = eventValue("APP_NAME");
  forceFaceDetection(request, appName);
  setProductionScene(request, mInstanceId, appName, kAppOperation);
  logTemperatureFrameRate(request);
  applyProviderCap(request, eventValue("APP_TYPE"));
  limitAndPinFrameRate(request, appName);
}
