// What requests of other makers' apps get: face detection, and frame rates that leave the phone
// cool. The frame-rate steps look at some modes of the maker's own app, too.

#include <optional>
#include <string_view>

#include "common/HeskParameterUpdater.h"
#include "common/tags/FrameRateRange.h"
#include "common/tags/Metadata.h"
#include "common/tags/ModeBits.h"
#include "common/updater/Events.h"
#include "common/updater/SharedSteps.h"
#include "common/updater/UpdaterLog.h"
#include "platform/Properties.h"

namespace {

using namespace hesk;
using NSCam::IMetadata;

constexpr log::Operation kOperation = updaterOperation("update3rdpartyAppControlMeta");

constexpr FrameRateRange kLimitedRange{.lower = 5, .upper = 24};

/// Short-video apps expose for faces, which must be detected for that.
void forceFaceDetection(IMetadata* request, std::string_view appName) {
  constexpr std::uint8_t kSimple = 1;

  if (appName != "TikTok" && appName != "TikTokExternal") return;
  if (const auto mode = readIfPresent(request, tags::ANDROID_STATISTICS_FACE_DETECT_MODE)) {
    HESK_LOGD(kOperation, "[%s] Pack Name is: %s, FDMode is %d", kOperation.name, appName.data(),
              *mode);
  }
  write(request, tags::ANDROID_STATISTICS_FACE_DETECT_MODE, kSimple);
  HESK_LOGD(kOperation, "[%s] Pack Name is: %s, Force fd open for FaceAE", kOperation.name,
            appName.data());
}

void logTemperatureFrameRate(const IMetadata* request) {
  if (const auto frameRate = readIfPresent(request, tags::HESK_CONTROL_FPS_RANGE_MAX)) {
    HESK_LOGD(kOperation, "[%s] temperaturefps:%d", kOperation.name, *frameRate);
  }
}

/// Whether the request is of a communication app, or of a mode of the maker's app that is to stay
/// cool.
bool isLimitedAppOrMode(const IMetadata* request, std::string_view appName) {
  constexpr std::int64_t kPhotoMode = modeBit(0);
  constexpr std::int64_t kOtherLimitedMode = modeBit(5);
  constexpr std::int32_t kArStickersModule = 24;

  if (appName == "3rd_party" || appName == "mtk_ims" || appName == "Whatsapp") return true;
  const std::int64_t currentMode = read(request, tags::HESK_CONTROL_CURRENTMODE);
  if ((currentMode & kPhotoMode) != 0 && read(request, tags::HESK_CONTROL_VIDEOMODE, 1) == 0) {
    return true;
  }
  return (currentMode & kOtherLimitedMode) != 0 ||
         read(request, tags::COM_HESK_CURRENTUIMODULE) == kArStickersModule;
}

/// The range that the limit writes; none where the request's own is low enough.
std::optional<FrameRateRange> limitedRange(const IMetadata* request, std::int32_t manualLower) {
  constexpr std::int32_t kHighestManual = 30;

  const std::int32_t manualUpper = property_get_int32("vendor.debug.camera.fps.max", 0);
  if (manualLower >= 1 && manualUpper >= manualLower && manualUpper <= kHighestManual) {
    HESK_LOGD(kOperation, "[%s] manul set fps range set default fps range %d ~ %d fps",
              kOperation.name, manualLower, manualUpper);
    return FrameRateRange{manualLower, manualUpper};
  }
  if (!has(request, tags::MTK_CONTROL_AE_TARGET_FPS_RANGE)) {
    HESK_LOGD(kOperation, "[%s] set default fps range 5 ~ 24 fps", kOperation.name);
    return kLimitedRange;
  }
  const FrameRateRange asked = readFrameRateRange(request);
  if (asked.upper <= kLimitedRange.upper) return {};
  HESK_LOGD(kOperation, "[%s] set fps range 5 ~ 24 fps before %d ~ %d fps", kOperation.name,
            asked.lower, asked.upper);
  return kLimitedRange;
}

/// Returns the range that it has written.
std::optional<FrameRateRange> limitFrameRate(IMetadata* request, std::string_view appName) {
  const std::int32_t manualLower = property_get_int32("vendor.debug.camera.fps.low", 0);
  if (!isLimitedAppOrMode(request, appName) && manualLower == 0) return {};
  const auto range = limitedRange(request, manualLower);
  if (range) writeFrameRateRange(request, *range);
  return range;
}

/// Video noise reduction works at certain frame rates alone.
void pinFrameRate(IMetadata* request, const std::optional<FrameRateRange>& limited) {
  if (read(request, tags::HESK_CONTROL_NIGHTMODE) != 1) return;
  const std::int32_t rate = read(request, tags::HESK_CONTROL_FPS_RANGE_MAX);
  if (rate == 12 || rate == 15 || rate == 24) {
    if (limited) {
      // Behind a limit the pinned pair has never counted: what reads the range sees the limit.
      write(request, tags::MTK_CONTROL_AE_TARGET_FPS_RANGE, limited->lower, limited->upper, rate,
            rate);
    } else {
      writeFrameRateRange(request, {rate, rate});
    }
  }
  if (!has(request, tags::MTK_CONTROL_AE_TARGET_FPS_RANGE)) return;
  const FrameRateRange range = readFrameRateRange(request);
  HESK_LOGD(kOperation, "[%s] videonr2.0 set fps range to %d ~ %d fps", kOperation.name,
            range.lower, range.upper);
}

}  // namespace

void HeskParameterUpdater::update3rdpartyAppControlMeta(IMetadata* request,
                                                        std::string_view appType) const {
  const std::string_view appName = eventValue<"APP_NAME">();
  forceFaceDetection(request, appName);
  setProductionScene(request, mInstanceId, appName, kOperation);
  logTemperatureFrameRate(request);
  limitToProviderFrameRate(request, appType);
  const auto limited = limitFrameRate(request, appName);
  pinFrameRate(request, limited);
}
