// Which physical sensor is the main one of a logical multi-camera device.

#include "common/HeskParameterUpdater.h"
#include "common/tags/Metadata.h"
#include "common/updater/StaticMetadata.h"
#include "common/updater/UpdaterLog.h"

int HeskParameterUpdater::getMulticamMainID(int deviceId) {
  using namespace hesk;
  constexpr log::Operation kOperation = updaterOperation("getMulticamMainID");

  const std::uint8_t digit =
      read(staticCharacteristics(deviceId), tags::ANDROID_LOGICAL_MULTI_CAMERA_PHYSICAL_IDS);
  HESK_LOGD(kOperation)("[%s] main %d", digit);
  return digit - '0';
}
