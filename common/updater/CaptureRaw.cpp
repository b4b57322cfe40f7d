// The capture hook: prepares the metadata of a still-capture frame for the raw algorithms.

#include <algorithm>
#include <array>
#include <span>
#include <vector>

#include "common/HeskParameterUpdater.h"
#include "common/tags/Metadata.h"
#include "common/tags/Values.h"
#include "common/updater/PlatformHandle.h"
#include "common/updater/StaticMetadata.h"
#include "common/updater/UpdaterLog.h"
#include "platform/DefaultShading.h"
#include "platform/FaceDetection.h"

namespace {

using namespace hesk;
using NSCam::IMetadata;
using NSCam::MRect;
using NSCam::MSize;

constexpr log::Operation kOperation{kUpdaterSource, "updateCaptureRawParameter"};

void appendDefaultShading(IMetadata* outMeta, const IMetadata* appMeta, const IMetadata* halMeta,
                          std::int32_t sensor) {
  const auto create = reinterpret_cast<NSCam::DefaultShadingCreator>(
      NSCam::getMtkcamModuleFactory(NSCam::kModuleDefaultShading));
  const auto shading = create != nullptr ? create(kUpdaterUser, sensor) : nullptr;
  if (shading == nullptr) {
    HESK_LOGE(kOperation, "no default shading for sensor %d", sensor);
    return;
  }
  const IMetadata metadata = shading->query(halMeta, appMeta);
  if (outMeta != nullptr) *outMeta += metadata;
  HESK_LOGD(kOperation, "get shadingtable default");
}

void writeShadingOf3A(IMetadata* outMeta, std::int32_t sensor) {
  constexpr MSize kGrid{17, 13};
  constexpr std::size_t kChannels = 4;

  const auto hal3A = createHal3A(sensor);
  if (hal3A == nullptr) {
    HESK_LOGD(kOperation, "HeskParameterUpdater create IHal3A instance failed");
    return;
  }
  std::array<float, std::size_t{kGrid.w} * kGrid.h * kChannels> table{};
  MSize grid = kGrid;
  hal3A->control(NS3Av3::IHal3A::kGetShadingTable, reinterpret_cast<std::intptr_t>(&grid),
                 reinterpret_cast<std::intptr_t>(table.data()));
  writeAll(outMeta, tags::ANDROID_STATISTICS_LENS_SHADING_MAP, table);
  HESK_LOGD(kOperation, "get shadingtable from 3a");
}

bool isShadingOf3A(std::int64_t mode) { return mode > 0 && (mode & mode::kShadingFrom3A) != 0; }

void markSlave(IMetadata* outMeta, const IMetadata* halMeta, std::int32_t cameraId) {
  const std::int32_t master = readItem(halMeta, tags::MTK_MULTICAM_MASTER_SLAVE_ID, 0);
  const std::int32_t slave = readItem(halMeta, tags::MTK_MULTICAM_MASTER_SLAVE_ID, 1);
  HESK_LOGD(kOperation, "materID %d, slaveID %d, current camera id %d", master, slave, cameraId);
  if (master != slave && slave == cameraId) write(outMeta, tags::HESK_CONTROL_IS_DUAL_SLAVE, 1);
}

void markForRawAlgorithm(IMetadata* halMeta) {
  constexpr std::int32_t kRawAlgorithmProcess = 14;
  write(halMeta, tags::MTK_RAW_ALGO_PROCESS_TYPE, kRawAlgorithmProcess);
  write(halMeta, tags::MTK_CONTROL_RAW_ALGO_ENABLE, 1);
}

/// Returns true if a capture gets the crop region and the role of the zoom transition.
bool usesSat(const IMetadata* appMeta, std::int64_t mode) {
  const std::int32_t uiModule = read(appMeta, tags::COM_HESK_CURRENTUIMODULE);
  return (mode & mode::kBit24) == 0 || uiModule != uimodule::kMoon;
}

float appZoomRatio(const IMetadata* appMeta) {
  HESK_LOGD(kOperation, "no MTK_SENSOR_SCALER_CROP_REGION,use HESK_CONTROL_ZOOM_ZOOM_RATIO");
  if (const auto ratio = readIfPresent(appMeta, tags::HESK_CONTROL_ZOOM_ZOOM_RATIO)) return *ratio;
  HESK_LOGE(kOperation,
            "both MTK_SENSOR_SCALER_CROP_REGION and HESK_CONTROL_ZOOM_ZOOM_RATIO not set,use 1.0f "
            "default!");
  return 1.0F;
}

/// Returns the ratio of the active array's width to the crop's width; 0 without active array, 1
/// without static metadata.
float arrayToCropRatio(MRect crop, const IMetadata* statics, std::int32_t cameraId) {
  if (statics == nullptr) return 1.0F;
  const auto array = readIfPresent(statics, tags::MTK_SENSOR_INFO_ACTIVE_ARRAY_REGION);
  if (array) {
    HESK_LOGD(kOperation, "currentCameraId: %d, active array(%d, %d, %dx%d)", cameraId, array->x,
              array->y, array->w, array->h);
  } else {
    HESK_LOGE(kOperation, " Cann't get MTK_SENSOR_INFO_ACTIVE_ARRAY_REGION");
  }
  return static_cast<float>(array ? array->w : 0) / static_cast<float>(crop.w);
}

void writeZoomRatio(IMetadata* outMeta, const IMetadata* appMeta, const IMetadata* halMeta,
                    const IMetadata* statics, std::int32_t cameraId) {
  const auto crop = readIfPresent(halMeta, tags::MTK_P1NODE_SCALAR_CROP_REGION);
  const float ratio = crop ? arrayToCropRatio(*crop, statics, cameraId) : appZoomRatio(appMeta);
  const int status = write(outMeta, tags::MTK_RAW_ALGO_PHYSICAL_ZOOM_RATIO, ratio);
  HESK_LOGD(kOperation, "Current camera id %d, physicalZoomRatio: %f, result:%d", cameraId, ratio,
            status);
}

/// The phase-detection pixels of a sensor according to its static metadata.
struct PdDescription {
  std::int32_t compensation;  // COM_HESK_ISPDCOMPENSATION
  std::int32_t bufferType;    // COM_HESK_PDBUFFERTYPE

  /// Returns true if the raw algorithms need the layout of the pixels.
  [[nodiscard]] bool isLayoutNeeded() const {
    return bufferType == 2 || bufferType == 4 || bufferType == 18 ||
           (bufferType == 1 && compensation == 0);
  }
};

PdDescription readPdDescription(const IMetadata* statics) {
  const auto compensation = readIfPresent(statics, tags::COM_HESK_ISPDCOMPENSATION);
  if (compensation) {
    HESK_LOGD(kOperation, "preview COM_HESK_ISPDCOMPENSATION:%d", *compensation);
  } else {
    HESK_LOGE(kOperation, "preview Get Meta :COM_HESK_ISPDCOMPENSATION Error");
  }
  const auto bufferType = readIfPresent(statics, tags::COM_HESK_PDBUFFERTYPE);
  if (bufferType) {
    HESK_LOGD(kOperation, "preview COM_HESK_PDBUFFERTYPE:%d", *bufferType);
  } else {
    HESK_LOGE(kOperation, "preview Get Meta :COM_HESK_PDBUFFERTYPE Error");
  }
  return {.compensation = compensation.value_or(0), .bufferType = bufferType.value_or(0)};
}

void writeFaces(IMetadata* outMeta, NSCam::IFDContainer& container, std::int32_t sensor) {
  constexpr int kMaxFaces = 10;
  static_assert(kMaxFaces <= NSCam::FaceRecord::kCapacity);

  NSCam::FaceRecord record;
  container.queryLatest(sensor, record);
  HESK_LOGD(kOperation, "fdChunk FD num:%d, MAX_FACES: %d, sensorId %d", record.count, kMaxFaces,
            sensor);
  std::array<MRect, kMaxFaces> rects;
  const auto count = static_cast<std::size_t>(std::clamp(record.count, 0, kMaxFaces));
  for (std::size_t i = 0; i < count; ++i) rects[i] = record.faces[i].rect;
  if (count > 0) writeAll(outMeta, tags::MTK_RAW_ALGO_FACE_RECTS, std::span(rects).first(count));
}

void copyStaticBytes(IMetadata* outMeta, const IMetadata* statics) {
  constexpr auto kTag = tags::MTK_RAW_ALGO_STATIC_INFO;
  if (!hasEntry(statics, kTag)) return;
  std::vector<std::uint8_t> bytes(count(statics, kTag));
  readAll(statics, kTag, bytes);
  writeAll(outMeta, kTag, bytes);
}

}  // namespace

void HeskParameterUpdater::updateCaptureRawParameter(IMetadata* appMeta, IMetadata* halMeta,
                                                     IMetadata* outMeta) {
  const std::int64_t mode = read(appMeta, tags::HESK_CONTROL_CURRENTMODE);
  const bool isMulticam = mMulticamFeatureMode > 0;
  if (isShadingOf3A(mode)) {
    writeShadingOf3A(outMeta, isMulticam ? getMulticamMasterID(mInstanceId, halMeta) : mInstanceId);
  } else {
    appendDefaultShading(outMeta, appMeta, halMeta, mInstanceId);
  }

  const std::int32_t cameraId = read(halMeta, tags::MTK_HAL_REQUEST_SENSOR_ID, -1);
  write(outMeta, tags::HESK_CONTROL_CURRENT_CAMERA_ID, cameraId);
  if (isMulticam) markSlave(outMeta, halMeta, cameraId);
  update3ACaptureRawParameter(appMeta, halMeta, outMeta);
  if (isNeedRawAlgo(appMeta, outMeta, 0)) markForRawAlgorithm(halMeta);
  if (usesSat(appMeta, mode)) {
    setSATCropInfo(appMeta, halMeta, outMeta);
    setCameraRole(outMeta, cameraId);
  }
  write(outMeta, tags::MTK_RAW_ALGO_CAPTURE_VALUE64,
        read(halMeta, tags::MTK_P1NODE_CAPTURE_VALUE64));

  const IMetadata* statics = cameraCharacteristics(cameraId);
  writeZoomRatio(outMeta, appMeta, halMeta, statics, cameraId);
  if (statics == nullptr) {
    HESK_LOGE(kOperation, "PDAF pMetadataProvider.get() == NULL");
  } else if (const PdDescription pd = readPdDescription(statics); pd.isLayoutNeeded()) {
    updateSensorPdafInfo(cameraId, pd.compensation, pd.bufferType, outMeta);
  }
  if (mMulticamFeatureMode == multicam::kLogicalMulticam) {
    const auto faces =
        NSCam::IFDContainer::createInstance(kUpdaterUser, NSCam::IFDContainer::kRead);
    const std::int32_t master = getMulticamMasterID(mInstanceId, halMeta);
    if (faces != nullptr) writeFaces(outMeta, *faces, master);
  }
  copyStaticBytes(outMeta, statics);
}
