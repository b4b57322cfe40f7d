#include "common/updater/SharedSteps.h"

#include "common/Product.h"
#include "common/tags/Metadata.h"
#include "common/tags/Values.h"

namespace hesk {

bool isOemCameraApp(std::string_view appType) {
  return appType == "heskCamera" || appType == "engcamera";
}

void writeSelectedStream(NSCam::IMetadata* metadata, const std::vector<std::uint32_t>& streamIds) {
  write(metadata, tags::MTK_CONTROL_SELECTED_STREAM_ID, -1);
  for (std::size_t k = 0; k < streamIds.size(); ++k) {
    if (readItem(metadata, tags::HESK_CONTROL_STREAM_FLAGS, k + 1) != 1) continue;
    write(metadata, tags::MTK_CONTROL_SELECTED_STREAM_ID, static_cast<std::int32_t>(streamIds[k]));
  }
}

void writeVideoHdrMode(NSCam::IMetadata* metadata, const log::Operation& operation) {
  const auto videoHdr = readIfPresent(metadata, tags::HESK_CONTROL_VIDEO_HDR);
  if (!videoHdr) return;
  if (*videoHdr == 1) {
    write(metadata, tags::MTK_HDR_FEATURE_HDR_MODE, hdr::kVideoOn);
    HESK_LOGD(operation, "set MTK_HDR_FEATURE_HDR_MODE_VIDEO_ON");
  } else {
    write(metadata, tags::MTK_HDR_FEATURE_HDR_MODE, hdr::kOff);
    HESK_LOGD(operation, "set MTK_HDR_FEATURE_HDR_MODE_OFF");
  }
}

void disableFrontStabilization(NSCam::IMetadata* metadata, std::int32_t sensor,
                               std::string_view appType) {
  constexpr std::uint8_t kStabilizationOff = 0;

  if (sensor != kFrontSensor || isOemCameraApp(appType)) return;
  const auto model = productModel("default");
  const std::string_view product(model.data());
  if (!product.starts_with("KX0107") && !product.starts_with("KX0106")) return;
  write(metadata, tags::ANDROID_CONTROL_VIDEO_STABILIZATION_MODE, kStabilizationOff);
}

void setProductionScene(NSCam::IMetadata* metadata, std::int32_t sensor, std::string_view appName,
                        const log::Operation& operation) {
  constexpr std::int32_t kUltraWideSensor = 2;
  constexpr std::uint8_t kSnow = 9;  // the message names another scene

  if (sensor != kUltraWideSensor || appName != "Production") return;
  write(metadata, tags::ANDROID_CONTROL_SCENE_MODE, kSnow);
  HESK_LOGD(operation, "UltraWide Camera in Production line set MTK_CONTROL_SCENE_MODE_LANDSCAPE");
}

void copyColourTemperatureUse(const NSCam::IMetadata* source, NSCam::IMetadata* target,
                              const log::Operation& operation) {
  const std::int32_t aeCctUseData = read(source, tags::MTK_3A_AE_CCT_USE_DATA);
  HESK_LOGD(operation, "[%s]aeCctUseData: %d", operation.name, aeCctUseData);
  write(target, tags::MTK_RAW_ALGO_AE_CCT_USE_DATA, aeCctUseData);
}

}  // namespace hesk
