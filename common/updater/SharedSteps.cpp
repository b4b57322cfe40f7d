#include "common/updater/SharedSteps.h"

#include "common/Product.h"
#include "common/tags/FrameRateRange.h"
#include "common/tags/Metadata.h"
#include "common/updater/CameraProviderService.h"
#include "common/updater/Events.h"

namespace hesk {

void writeSelectedStream(NSCam::IMetadata* metadata, const std::vector<std::uint32_t>& streamIds) {
  std::int32_t selected = -1;
  for (std::size_t k = 0; k < streamIds.size(); ++k) {
    if (read(metadata, tags::HESK_CONTROL_STREAM_FLAGS, 0, k + 1) == 1) {
      selected = static_cast<std::int32_t>(streamIds[k]);
    }
  }
  write(metadata, tags::MTK_CONTROL_SELECTED_STREAM_ID, selected);
}

void writeVideoHdrMode(NSCam::IMetadata* metadata, const log::Operation& operation) {
  constexpr std::int32_t kHdrModeOff = 0;
  constexpr std::int32_t kHdrModeVideoOn = 3;

  const auto videoHdr = readIfPresent(metadata, tags::HESK_CONTROL_VIDEO_HDR);
  if (!videoHdr) return;
  if (*videoHdr == 1) {
    write(metadata, tags::MTK_HDR_FEATURE_HDR_MODE, kHdrModeVideoOn);
    HESK_LOGD(operation, "[%s] set MTK_HDR_FEATURE_HDR_MODE_VIDEO_ON", operation.name);
  } else {
    write(metadata, tags::MTK_HDR_FEATURE_HDR_MODE, kHdrModeOff);
    HESK_LOGD(operation, "[%s] set MTK_HDR_FEATURE_HDR_MODE_OFF", operation.name);
  }
}

void switchOffFrontStabilization(NSCam::IMetadata* metadata, std::int32_t sensor,
                                 std::string_view appType) {
  constexpr std::int32_t kFrontSensor = 1;
  constexpr std::uint8_t kStabilizationOff = 0;

  if (sensor != kFrontSensor || isOwnCameraApp(appType)) return;
  if (!productBeginsWith("KX0107", "default") && !productBeginsWith("KX0106", "default")) return;
  write(metadata, tags::ANDROID_CONTROL_VIDEO_STABILIZATION_MODE, kStabilizationOff);
}

void setProductionScene(NSCam::IMetadata* metadata, std::int32_t sensor, std::string_view appName,
                        const log::Operation& operation) {
  constexpr std::int32_t kUltraWideSensor = 2;
  constexpr std::uint8_t kScene = 9;  // whatever the message says

  if (sensor != kUltraWideSensor || appName != "Production") return;
  write(metadata, tags::ANDROID_CONTROL_SCENE_MODE, kScene);
  HESK_LOGD(operation,
            "[%s] UltraWide Camera in Production line set MTK_CONTROL_SCENE_MODE_LANDSCAPE",
            operation.name);
}

void limitToProviderFrameRate(NSCam::IMetadata* metadata, std::string_view appType) {
  constexpr std::int32_t kLowestFrameRate = 5;
  constexpr std::int32_t kLowestCap = 15;
  constexpr std::int32_t kHighestCap = 25;
  constexpr std::int32_t kLimitedByProvider = 43;

  if (appType == "heskCamera" || appType == "CTS") return;
  const std::int32_t cap = providerFrameRateCap();
  if (cap < kLowestCap || cap > kHighestCap) return;
  writeFrameRateRange(metadata, {.lower = kLowestFrameRate, .upper = cap});
  write(metadata, tags::HESK_CONTROL_FPSLIMITTYPE, kLimitedByProvider);
}

}  // namespace hesk
