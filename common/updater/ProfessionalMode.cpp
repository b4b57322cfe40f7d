// Publishes settings of a request in the event store, each number as a decimal text: exposure,
// sensitivity, white balance, UI module, motion level, second snapshot. Runs for every app.

#include <concepts>
#include <string>
#include <string_view>

#include "common/Events.h"
#include "common/HeskParameterUpdater.h"
#include "common/tags/Metadata.h"
#include "common/updater/UpdaterLog.h"

namespace {

using namespace hesk;
using NSCam::IMetadata;

constexpr log::Operation kOperation{kUpdaterSource, "updateProfModeControlMeta"};

void publish(std::string_view key, std::integral auto number) {
  setEvent(key, std::to_string(number));
}

void publishExposureTime(IMetadata* request) {
  const auto exposureNs = readIfPresent(request, tags::ANDROID_SENSOR_EXPOSURE_TIME);
  if (!exposureNs) return;
  // In professional mode the tag keeps the value that the app set.
  if (eventValue("APP_MODE") != "Professional") {
    write(request, tags::HESK_CONTROL_EXPTIME, *exposureNs);
  }
  publish("MTK_EXPTIME", *exposureNs);
}

void publishSensitivity(IMetadata* request) {
  const auto sensitivity = readIfPresent(request, tags::ANDROID_SENSOR_SENSITIVITY);
  if (!sensitivity) return;
  write(request, tags::HESK_CONTROL_ISO, *sensitivity);
  publish("MTK_ISO", *sensitivity);
}

void copyRemosaic(IMetadata* request) {
  const auto remosaic = readIfPresent(request, tags::HESK_CONTROL_ALGO_OVERRIDE);
  if (!remosaic) return;
  write(request, tags::MTK_CONTROL_CAPTURE_REMOSAIC_EN, *remosaic);
  HESK_LOGD(kOperation, "MTK_CONTROL_CAPTURE_REMOSAIC_EN: %d", *remosaic);
}

void publishWhiteBalance(const IMetadata* request) {
  const auto colourTemperature = readIfPresent(request, tags::HESK_CONTROL_COLOURTEMPERATURE);
  if (!colourTemperature) return;
  publish("HESK_COLOURTEMPERATURE", *colourTemperature);
  publish("MTK_AWBMODE", read(request, tags::ANDROID_CONTROL_AWB_MODE));
}

void publishUiModule(const IMetadata* request) {
  const auto uiModule = readIfPresent(request, tags::COM_HESK_CURRENTUIMODULE);
  if (!uiModule) return;
  publish("HESK_CURRENTUIMODE", *uiModule);
  HESK_LOG_RECORD(kOperation, log::kDebug, "HESK_CURRENTUIMODE: %d", *uiModule);
}

void publishMotionLevel(const IMetadata* request) {
  const std::int32_t motionLevel = read(request, tags::HESK_CONTROL_MOTIONLEVEL, -1);
  HESK_LOG_RECORD(kOperation, log::kDebug, "HESK_MOTIONLEVEL : %d", motionLevel);
  publish("HESK_MOTIONLEVEL", motionLevel);
}

void publishSecondSnapshot(const IMetadata* request) {
  const auto secondSnapshot = readIfPresent(request, tags::HESK_CONTROL_ISSECONDSNAPSHOT);
  if (!secondSnapshot) return;
  publish("HESK_ISSECONDSNAPSHOT", *secondSnapshot);
  HESK_LOG_RECORD(kOperation, log::kDebug, "HESK_ISSECONDSNAPSHOT : %d", *secondSnapshot);
}

}  // namespace

void HeskParameterUpdater::updateProfModeControlMeta(IMetadata* request, unsigned int) {
  publishExposureTime(request);
  publishSensitivity(request);
  copyRemosaic(request);
  publishWhiteBalance(request);
  publishUiModule(request);
  publishMotionLevel(request);
  publishSecondSnapshot(request);
}
