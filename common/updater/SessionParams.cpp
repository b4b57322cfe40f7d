// The session hook as the list of its steps. A step can overwrite the tags of the steps before it.

#include <string>
#include <string_view>

#include "common/Events.h"
#include "common/HeskParameterUpdater.h"
#include "common/tags/Metadata.h"
#include "common/tags/Values.h"
#include "common/updater/FrameRate.h"
#include "common/updater/SharedSteps.h"
#include "common/updater/StaticMetadata.h"
#include "common/updater/UpdaterLog.h"
#include "platform/Properties.h"
#include "platform/StereoSettingProvider.h"

namespace {

using namespace hesk;
using NSCam::IMetadata;
using ImageStreams = HeskParameterUpdater::ImageStreams;

constexpr log::Operation kOperation{kUpdaterSource, "updateSessionParams"};

constexpr std::int32_t kAbsent = -1;

/// Returns item `index` of `tag`: -1 if the session is null, 0 if the item is absent.
std::int32_t readItemOfSession(const IMetadata* session, Tag<std::int32_t> tag,
                               std::size_t index = 0) {
  return session != nullptr ? readItem(session, tag, index) : kAbsent;
}

bool isForVideoEncoder(const NSCam::v3::IImageStreamInfo& stream) {
  return (stream.getUsageForConsumer() & GRALLOC_USAGE_HW_VIDEO_ENCODER) != 0;
}

void passToStereoSettings(const IMetadata* session) {
  const std::int32_t eisEnable = read(session, tags::HESK_CONTROL_EISENABLE, kAbsent);
  StereoSettingProvider::setEisEnable(eisEnable);
  const std::int32_t videoAlgoType = read(session, tags::HESK_CONTROL_VIDEOALGOTYPE, kAbsent);
  HESK_LOGD(kOperation, "set eisEnable = %d, videoAlgoType = %d", eisEnable, videoAlgoType);
  StereoSettingProvider::setVideoAlgoType(videoAlgoType);
}

std::int32_t readUiModule(const IMetadata* session) {
  const std::int32_t uiModule = read(session, tags::COM_HESK_CURRENTUIMODULE, kAbsent);
  HESK_LOGD(kOperation, "COM_HESK_CURRENTUIMODULE %d", uiModule);
  return uiModule;
}

/// Returns the upper bound of the fps range.
std::int32_t readFrameRate(const IMetadata* session) {
  const std::int32_t lower = readItemOfSession(session, tags::MTK_CONTROL_AE_TARGET_FPS_RANGE, 0);
  const std::int32_t upper = readItemOfSession(session, tags::MTK_CONTROL_AE_TARGET_FPS_RANGE, 1);
  HESK_LOGD(kOperation, "aeTargetFpsRange %d, %d", lower, upper);
  return upper;
}

void markHighFrameRatePreview(IMetadata* session, std::int32_t frameRate) {
  if (frameRate == 60 || frameRate == 50) {
    write(session, tags::MTK_STREAMING_FEATURE_HFPS_MODE, 1);
  }
}

void writeHighSpeedVideo(IMetadata* session, std::string_view appType, std::int32_t frameRate) {
  constexpr std::int32_t kLowestHighSpeed = 120;
  constexpr std::int32_t kDivisor = 30;
  // With a capital H, unlike the app type of the next step.
  if (appType != "HeskCamera" || frameRate < kLowestHighSpeed) return;
  write(session, tags::SESSION_HIGH_SPEED, frameRate, frameRate / kDivisor);
}

/// Returns true if the last stream for a video encoder is 4K or larger.
bool isVideo4K(const ImageStreams& streams) {
  constexpr NSCam::MSize k4K{3840, 2160};
  bool is4K = false;
  for (const auto& [id, stream] : streams) {
    if (stream == nullptr || !isForVideoEncoder(*stream)) continue;
    const NSCam::MSize size = stream->getImgSize();
    is4K = size.w >= k4K.w && size.h >= k4K.h;
  }
  return is4K;
}

/// 4K video at 60 fps uses the platform's stabilisation, unless the app disables stabilisation.
void chooseStabilization(IMetadata* session, const ImageStreams& streams, std::string_view appType,
                         std::int32_t frameRate) {
  if (appType != "heskCamera") return;
  const bool is4K = isVideo4K(streams);
  const std::int32_t eisEnable = read(session, tags::HESK_CONTROL_EISENABLE, kAbsent);
  if (!is4K || eisEnable == 0 || frameRate != 60) {
    write(session, tags::ANDROID_CONTROL_VIDEO_STABILIZATION_MODE, std::uint8_t{0});
    return;
  }
  HESK_LOGD(kOperation, "use mtk eis for 4k and 60fps video");
  write(session, tags::HESK_CONTROL_EISENABLE, 0);
  write(session, tags::ANDROID_CONTROL_VIDEO_STABILIZATION_MODE, std::uint8_t{1});
  write(session, tags::SESSION_4K60_0, 1);
  write(session, tags::SESSION_4K60_3, 1);
}

bool isVideoFlipped(const IMetadata* session) {
  const std::int32_t flip = readItemOfSession(session, tags::APP_VIDEO_FLIP);
  return property_get_int32("vendor.debug.camera.VideoFlip", flip) != 0;
}

void copyPictureInPictureDevices(IMetadata* session) {
  if (!has(session, tags::APP_PIP_DEVICES)) return;
  const std::int32_t first = readItem(session, tags::APP_PIP_DEVICES, 0);
  const std::int32_t second = readItem(session, tags::APP_PIP_DEVICES, 1);
  HESK_LOGD(kOperation, "update MTK_STREAMING_FEATURE_PIP_DEVICES %d, %d", first, second);
  write(session, tags::MTK_STREAMING_FEATURE_PIP_DEVICES, first, second);
}

}  // namespace

void HeskParameterUpdater::updateSessionParams(
    IMetadata* sessionMeta,
    // NOLINTNEXTLINE(performance-unnecessary-value-param): the platform fixes the signature
    ImageStreams streams) {
  passToStereoSettings(sessionMeta);
  chooseMulticamFeatureMode(sessionMeta);
  const std::int32_t uiModule = readUiModule(sessionMeta);
  write(sessionMeta, tags::SESSION_MARK, std::uint8_t{1});

  const std::int32_t frameRate = readFrameRate(sessionMeta);
  markHighFrameRatePreview(sessionMeta, frameRate);
  const std::string appType = eventValue("APP_TYPE");
  writeHighSpeedVideo(sessionMeta, appType, frameRate);
  chooseStabilization(sessionMeta, streams, appType, frameRate);

  recordStreams(sessionMeta, streams, uiModule);
  copyPictureInPictureDevices(sessionMeta);
  writeVideoHdrMode(sessionMeta, kOperation);
  writeSelectedStream(sessionMeta, mStreamIds);

  // A value that another thread has set meanwhile takes effect here.
  const std::string appTypeAgain = eventValue("APP_TYPE");
  disableFrontStabilization(sessionMeta, mInstanceId, appTypeAgain);
  setProductionScene(sessionMeta, mInstanceId, eventValue("APP_NAME"), kOperation);
  applyProviderCap(sessionMeta, appTypeAgain);
}

void HeskParameterUpdater::chooseMulticamFeatureMode(IMetadata* session) {
  std::int32_t multicamEnable = -1;
  switch (read(deviceCharacteristics(mInstanceId), tags::STATIC_MULTICAM_FEATURE)) {
    case 6:
    case 7:
    case 14:
    case 16:
    case 20:
      mMulticamFeatureMode = multicam::kMulticam;
      multicamEnable = 1;
      break;
    case 17:
      mMulticamFeatureMode = multicam::kLogicalMulticam;
      multicamEnable = 0;
      break;
    default: HESK_LOGD(kOperation, "multicam get wrong FeatureMode"); break;
  }
  write(session, tags::MTK_HESK_MULTICAM_ENABLE, multicamEnable);
}

void HeskParameterUpdater::recordStreams(const IMetadata* session, const ImageStreams& streams,
                                         std::int32_t uiModule) {
  mHasVideoStream = false;
  mStreamIds.clear();
  const bool isFlipped = isVideoFlipped(session);
  for (const auto& [id, stream] : streams) {
    mStreamIds.push_back(static_cast<std::uint32_t>(id));
    const bool isForEncoder = stream != nullptr && isForVideoEncoder(*stream);
    if (uiModule != uimodule::k3 && !isForEncoder) continue;
    mHasVideoStream = true;
    if (!isFlipped || stream == nullptr) continue;
    stream->setTransform(NSCam::eTransform_FLIP_V);
    HESK_LOGD(kOperation, "set VideoFlip to eTransform_FLIP_V");
  }
}
