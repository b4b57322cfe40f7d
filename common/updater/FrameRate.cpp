#include "common/updater/FrameRate.h"

#include <cstdint>
#include <mutex>
#include <optional>

#include "common/Product.h"
#include "common/tags/FrameRateRange.h"
#include "common/tags/Metadata.h"
#include "common/tags/Values.h"
#include "common/updater/UpdaterLog.h"
#include "platform/CameraProvider.h"
#include "platform/Properties.h"

namespace {

using namespace hesk;
using NSCam::IMetadata;

constexpr std::size_t kUpperBound = 1;

/// Returns the camera provider service, null if it is not running. Once available, it is kept. Any
/// thread.
android::sp<CameraProvider> cameraProvider() {
  static std::mutex mutex;
  const std::lock_guard lock(mutex);
  android::sp<CameraProvider>& handle = cameraProviderHandle();
  if (handle == nullptr) handle = CameraProvider::tryGetService("default", false);
  return handle;
}

bool isLimitedAppOrMode(const IMetadata* request, std::string_view appName) {
  if (appName == "3rd_party" || appName == "mtk_ims" || appName == "Whatsapp") return true;
  const std::int64_t currentMode = read(request, tags::HESK_CONTROL_CURRENTMODE);
  if ((currentMode & mode::kPhoto) != 0 && read(request, tags::HESK_CONTROL_VIDEOMODE, 1) == 0) {
    return true;
  }
  return (currentMode & mode::kBit5) != 0 ||
         read(request, tags::COM_HESK_CURRENTUIMODULE) == uimodule::kArStickers;
}

/// Returns the range that was written, if any.
std::optional<FrameRateRange> limitFrameRate(IMetadata* request, std::string_view appName) {
  constexpr FrameRateRange kLimit{.lower = 5, .upper = 24};
  constexpr std::int32_t kHighestManual = 30;

  const FrameRateRange manual{.lower = property_get_int32("vendor.debug.camera.fps.low", 0),
                              .upper = property_get_int32("vendor.debug.camera.fps.max", 0)};
  if (!isLimitedAppOrMode(request, appName) && manual.lower == 0) return {};
  if (manual.lower >= 1 && manual.lower <= manual.upper && manual.upper <= kHighestManual) {
    writeFrameRateRange(request, manual);
    HESK_LOGD(kAppOperation, "manul set fps range set default fps range %d ~ %d fps", manual.lower,
              manual.upper);
    return manual;
  }
  if (!has(request, tags::MTK_CONTROL_AE_TARGET_FPS_RANGE)) {
    writeFrameRateRange(request, kLimit);
    HESK_LOGD(kAppOperation, "set default fps range 5 ~ 24 fps");
    return kLimit;
  }
  const FrameRateRange requested = readFrameRateRange(request);
  if (requested.upper <= kLimit.upper) return {};
  writeFrameRateRange(request, kLimit);
  HESK_LOGD(kAppOperation, "set fps range 5 ~ 24 fps before %d ~ %d fps", requested.lower,
            requested.upper);
  return kLimit;
}

/// Pins the range for video noise reduction in night mode. `limited` is the range that the limit
/// wrote, if any; the pinned range is appended to it.
void pinFrameRate(IMetadata* request, const std::optional<FrameRateRange>& limited) {
  if (read(request, tags::HESK_CONTROL_NIGHTMODE) != 1) return;
  const std::int32_t rate = read(request, tags::HESK_CONTROL_FPS_RANGE_MAX);
  if (rate == 12 || rate == 15 || rate == 24) {
    if (limited) {
      write(request, tags::MTK_CONTROL_AE_TARGET_FPS_RANGE, limited->lower, limited->upper, rate,
            rate);
    } else {
      writeFrameRateRange(request, {.lower = rate, .upper = rate});
    }
  }
  if (!has(request, tags::MTK_CONTROL_AE_TARGET_FPS_RANGE)) return;
  const FrameRateRange range = readFrameRateRange(request);
  HESK_LOGD(kAppOperation, "videonr2.0 set fps range to %d ~ %d fps", range.lower, range.upper);
}

}  // namespace

android::sp<CameraProvider>& hesk::cameraProviderHandle() {
  static android::sp<CameraProvider> handle;
  return handle;
}

void hesk::replaceUpperFrameRate(IMetadata* request) {
  if (const auto frameRate = readIfPresent(request, tags::HESK_CONTROL_FPS_RANGE_MAX)) {
    replaceItem(request, tags::MTK_CONTROL_AE_TARGET_FPS_RANGE, kUpperBound, *frameRate);
  }
}

void hesk::applyProviderCap(IMetadata* metadata, std::string_view appType) {
  constexpr std::int32_t kLowerBound = 5;
  constexpr std::int32_t kLowestCap = 15;
  constexpr std::int32_t kHighestCap = 25;
  constexpr std::int32_t kLimitedByProvider = 43;

  // The service is looked up for every app, but queried only for third-party apps.
  const android::sp<CameraProvider> provider = cameraProvider();
  if (appType == "heskCamera" || appType == "CTS" || provider == nullptr) return;
  const std::int32_t cap = provider->query(CameraProvider::kFrameRateCap).withDefault(0);
  if (cap < kLowestCap || cap > kHighestCap) return;
  writeFrameRateRange(metadata, {.lower = kLowerBound, .upper = cap});
  write(metadata, tags::HESK_CONTROL_FPSLIMITTYPE, kLimitedByProvider);
}

void hesk::limitAndPinFrameRate(IMetadata* request, std::string_view appName) {
  const std::optional<FrameRateRange> limited = limitFrameRate(request, appName);
  pinFrameRate(request, limited);
}

void hesk::setLogicalMulticamFrameRate(IMetadata* request) {
  constexpr std::int32_t kFrameRate = 29;
  if (!std::string_view(productModel("0").data()).starts_with("KX0102")) return;
  replaceItem(request, tags::MTK_CONTROL_AE_TARGET_FPS_RANGE, kUpperBound, kFrameRate);
}

void hesk::fixHighFrameRate(IMetadata* request) {
  constexpr std::int32_t kLowestFixed = 31;
  const std::int32_t frameRate = read(request, tags::HESK_CONTROL_FPS_RANGE_MAX);
  if (frameRate < kLowestFixed) return;
  writeFrameRateRange(request, {.lower = frameRate, .upper = frameRate});
  HESK_LOGI(kRequestOperation, "update MTK_CONTROL_AE_TARGET_FPS_RANGE:%d", frameRate);
}
