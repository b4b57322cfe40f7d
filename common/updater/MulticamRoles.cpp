// The main camera and the master camera of a multi-camera device, and the role of the capturing
// camera.

#include <algorithm>

#include "common/HeskParameterUpdater.h"
#include "common/tags/Metadata.h"
#include "common/tags/Values.h"
#include "common/updater/StaticMetadata.h"
#include "common/updater/UpdaterLog.h"
#include "platform/TqcSat.h"

namespace {

using namespace hesk;
using NSCam::IMetadata;

/// Returns the first character of the list of a device's physical cameras (0 if there is none)
/// minus the code of "0".
int firstPhysicalCamera(int deviceId, const log::Operation& operation) {
  const std::uint8_t character =
      read(deviceCharacteristics(deviceId), tags::ANDROID_LOGICAL_MULTI_CAMERA_PHYSICAL_IDS);
  HESK_LOGD(operation, "main %d", character);
  return character - '0';
}

}  // namespace

int HeskParameterUpdater::getMulticamMainID(int deviceId) {
  return firstPhysicalCamera(deviceId, {kUpdaterSource, "getMulticamMainID"});
}

std::int32_t HeskParameterUpdater::getMulticamMasterID(int deviceId, IMetadata* halMeta) {
  constexpr log::Operation kOperation{kUpdaterSource, "getMulticamMasterID"};

  if (const auto master = readIfPresent(halMeta, tags::MTK_MULTICAM_REAL_MASTER_ID)) {
    HESK_LOGD(kOperation, "masterid %d", *master);
    if (mMulticamFeatureMode == multicam::kLogicalMulticam) return *master;
  }
  return firstPhysicalCamera(deviceId, kOperation);
}

void HeskParameterUpdater::setCameraRole(IMetadata* outMeta, int cameraId) {
  constexpr log::Operation kOperation{kUpdaterSource, "setCameraRole"};

  const TqcSat& sat = TqcSat::GetInstance();
  const auto cameras = sat.cameras();
  const auto camera = std::ranges::find(cameras, cameraId, &TqcSat::Camera::id);
  const std::int32_t role = camera != cameras.end() ? camera->role : sat.defaultRole();
  HESK_LOGI(kOperation, "current snapshot cameraRole %d", role);
  write(outMeta, tags::MTK_RAW_ALGO_CAMERA_ROLE, role);
}
