// Reads the layout of a sensor's phase-detection pixels from its driver.

#include "common/HeskParameterUpdater.h"
#include "common/sensormode/SensorScenario.h"
#include "common/tags/Metadata.h"
#include "common/updater/PdafRecord.h"
#include "common/updater/PlatformHandle.h"
#include "common/updater/UpdaterLog.h"
#include "platform/HalSensor.h"
#include "platform/ModuleFactory.h"

namespace {

using namespace hesk;

constexpr log::Operation kOperation{kUpdaterSource, "updateSensorPdafInfo"};

// The sensor is created with this name and released with the name of the class.
constexpr const char* kUser = "LOG_TAG";

constexpr int kNothingWritten = -1;

NSCam::IHalSensorList* sensorList() {
  const auto get = reinterpret_cast<NSCam::HalSensorListGetter>(
      NSCam::getMtkcamModuleFactory(NSCam::kModuleSensorList));
  return get != nullptr ? get() : nullptr;
}

}  // namespace

int HeskParameterUpdater::updateSensorPdafInfo(int openId, int isPDComp, int pdBufferType,
                                               NSCam::IMetadata* outMeta) {
  NSCam::IHalSensorList* const list = sensorList();
  if (list == nullptr) {
    HESK_LOGE(kOperation, "pHalSensorList == NULL");
    return kNothingWritten;
  }
  const PlatformHandle<NSCam::IHalSensor> sensor(list->createSensor(kUser, openId));
  if (sensor == nullptr) {
    HESK_LOGE(kOperation, "pIHalSensor is NULL");
    return kNothingWritten;
  }

  std::int32_t sensorMode = NORMAL_CAPTURE;
  std::int32_t pdSupport = 0;
  NSCam::SensorPdBlock block{};
  std::int32_t deviceIndex = 0;
  const auto send = [&](std::int32_t command, auto& result) {
    deviceIndex = list->queryDeviceIndex(openId);
    sensor->sendCommand(deviceIndex, command, reinterpret_cast<std::intptr_t>(&sensorMode),
                        reinterpret_cast<std::intptr_t>(&result), 0);
  };

  int status = kNothingWritten;
  send(NSCam::IHalSensor::kSupportsPd, pdSupport);
  if (pdSupport != 0) {
    send(NSCam::IHalSensor::kGetPdBlock, block);
    HESK_LOGD(kOperation, "PDAF_STATS_DATA_SIZE %d.", static_cast<int>(PDAF_STATS_DATA_SIZE));
    status = writeAll(outMeta, tags::MTK_RAW_ALGO_PDAF_INFO, pdafRecordOf(block, pdBufferType));
  }
  HESK_LOGD(kOperation,
            "pdaf openid %d queryId %d isPDComp %d bSensorModeSupportPD %d PDAFInfo %d %d, %d "
            "%d, %d. ret = %d",
            openId, deviceIndex, isPDComp, pdSupport, block.words[2], block.words[3],
            block.words[0], block.words[1], block.words[4], status);
  return status;
}
