// The crop region of a still capture in the aspect ratio of the preview, for the zoom transition.

#include "common/HeskParameterUpdater.h"
#include "common/math/SatCrop.h"
#include "common/tags/Metadata.h"
#include "common/updater/StaticMetadata.h"
#include "common/updater/UpdaterLog.h"

namespace {

using namespace hesk;
using NSCam::IMetadata;
using NSCam::MRect;
using NSCam::MSize;

constexpr log::Operation kOperation{kUpdaterSource, "setSATCropInfo"};

/// Returns the real master camera of the frame, by default the sensor that the pipeline opened.
std::int32_t masterSensor(const IMetadata* halMeta, std::int32_t openedSensor) {
  const auto master = readIfPresent(halMeta, tags::MTK_MULTICAM_REAL_MASTER_ID);
  if (!master) return openedSensor;
  HESK_LOGI(kOperation, "Logical devices,set real master id:%d", *master);
  return *master;
}

MSize activeArraySize(std::int32_t sensor) {
  const auto array =
      readIfPresent(deviceCharacteristics(sensor), tags::MTK_SENSOR_INFO_ACTIVE_ARRAY_REGION);
  if (!array) {
    HESK_LOGI(kOperation, "get sensor active size failed");
    return {};
  }
  return {array->w, array->h};
}

}  // namespace

void HeskParameterUpdater::setSATCropInfo(IMetadata* appMeta, IMetadata* halMeta,
                                          IMetadata* outMeta) {
  if (!has(appMeta, tags::HESK_CONTROL_CURRENTMODE)) {
    HESK_LOGE(kOperation, "get currentMode from inputMetadata failed");
    return;
  }
  const auto crop = readIfPresent(halMeta, tags::MTK_P1NODE_SCALAR_CROP_REGION);
  if (!crop) {
    HESK_LOGE(kOperation, "get crop region from app metadata failed");
    return;
  }
  const MSize activeArray = activeArraySize(masterSensor(halMeta, mInstanceId));
  const auto [fittedArray, fitted] = satCropOf(*crop, activeArray, mPreviewSize);
  HESK_LOGI(kOperation, "after cropDim[%d %d]", fitted.w, fitted.h);
  HESK_LOGI(kOperation, "after sensorDim[%d %d]", fittedArray.w, fittedArray.h);
  HESK_LOGI(kOperation, "get crop region is [%d %d %d %d]", crop->x, crop->y, crop->w, crop->h);
  HESK_LOGI(kOperation, "set crop region is [%d %d %d %d]", fitted.x, fitted.y, fitted.w, fitted.h);
  write(outMeta, tags::MTK_RAW_ALGO_SAT_CROP_REGION, fitted);
}
