// Who is who in a logical multi-camera device: its main and its master camera, the role of the
// camera that captured, and whether its frame goes through the raw algorithm.

#include "common/HeskParameterUpdater.h"
#include "common/tags/Metadata.h"
#include "common/tags/ModeBits.h"
#include "common/updater/SatCameras.h"
#include "common/updater/StaticMetadata.h"
#include "common/updater/UpdaterLog.h"

namespace {

using namespace hesk;
using NSCam::IMetadata;

/// The character that the list of a device's physical cameras begins with; 0 where there is none.
std::uint8_t firstPhysicalId(int deviceId) {
  return read(staticCharacteristics(deviceId), tags::ANDROID_LOGICAL_MULTI_CAMERA_PHYSICAL_IDS);
}

}  // namespace

int HeskParameterUpdater::getMulticamMainID(int deviceId) {
  constexpr log::Operation kOperation = updaterOperation("getMulticamMainID");

  const std::uint8_t digit = firstPhysicalId(deviceId);
  HESK_LOGD(kOperation, "[%s] main %d", kOperation.name, digit);
  return digit - '0';
}

// NOLINTNEXTLINE(readability-make-member-function-const): the pipeline's binaries call it so.
std::int32_t HeskParameterUpdater::getMulticamMasterID(int deviceId, IMetadata* halMeta) {
  constexpr log::Operation kOperation = updaterOperation("getMulticamMasterID");
  constexpr std::int32_t kLogicalMulticam = 2;

  if (const auto master = readIfPresent(halMeta, tags::MTK_MULTICAM_REAL_MASTER_ID)) {
    HESK_LOGD(kOperation, "[%s] masterid %d", kOperation.name, *master);
    if (mMulticamFeatureMode == kLogicalMulticam) return *master;
  }
  const std::uint8_t digit = firstPhysicalId(deviceId);
  HESK_LOGD(kOperation, "[%s] main %d", kOperation.name, digit);
  return digit - '0';
}

bool HeskParameterUpdater::isNeedRawAlgo(IMetadata* appMeta, IMetadata* outMeta, int /*unused*/) {
  constexpr log::Operation kOperation = updaterOperation("isNeedRawAlgo");
  constexpr std::int64_t kRawAlgoModes = 0x00F80008080C000C;
  constexpr std::int64_t kOverriddenMode = modeBit(3);
  constexpr std::int64_t kSlaveWithoutRawMode = modeBit(5);

  const std::int64_t mode = read(appMeta, tags::HESK_CONTROL_CURRENTMODE);
  const std::int32_t isDualSlave = read(outMeta, tags::HESK_CONTROL_IS_DUAL_SLAVE, -1);
  if (outMeta != nullptr) HESK_LOGI(kOperation, "isDualSlave %d", isDualSlave);

  bool isNeeded = false;
  if (read(appMeta, tags::HESK_CONTROL_ALGO_OVERRIDE) != 0) {
    isNeeded = (mode & kOverriddenMode) != 0;
  } else if (isDualSlave == 1) {
    isNeeded = (mode & kSlaveWithoutRawMode) == 0;
  } else {
    isNeeded = (mode & kRawAlgoModes) != 0;
  }
  HESK_LOGI(kOperation, "isNeedRawAlgo %d", isNeeded);
  return isNeeded;
}

void HeskParameterUpdater::setCameraRole(IMetadata* outMeta, int cameraId) {
  constexpr log::Operation kOperation = updaterOperation("setCameraRole");

  const TqcSat& sat = TqcSat::GetInstance();
  const int index = satCameraIndex(sat, cameraId);
  const std::int32_t role =
      index >= 0 ? sat.cameras()[static_cast<std::size_t>(index)].role : sat.defaultRole();
  HESK_LOGI(kOperation, "[%s] current snapshot cameraRole %d", kOperation.name, role);
  write(outMeta, tags::MTK_RAW_ALGO_CAMERA_ROLE, role);
}
