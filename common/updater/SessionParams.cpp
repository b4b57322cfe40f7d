// The session hook, as the list of its steps. Later steps overwrite what earlier ones wrote.

#include <string_view>

#include "common/HeskParameterUpdater.h"
#include "common/tags/FrameRateRange.h"
#include "common/tags/Metadata.h"
#include "common/updater/Events.h"
#include "common/updater/SharedSteps.h"
#include "common/updater/StaticMetadata.h"
#include "common/updater/UpdaterLog.h"
#include "platform/Properties.h"
#include "platform/StereoSettingProvider.h"

namespace {

using namespace hesk;
using NSCam::IMetadata;
using ImageStreams = HeskParameterUpdater::ImageStreams;

constexpr log::Operation kOperation = updaterOperation("updateSessionParams");

constexpr std::int32_t kMissing = -1;  // what is read of a session without the entry

bool isForVideoEncoder(const NSCam::v3::IImageStreamInfo& stream) {
  return (stream.getUsageForConsumer() & GRALLOC_USAGE_HW_VIDEO_ENCODER) != 0;
}

void tellStereoSettings(const IMetadata* session, std::int32_t eisEnable) {
  StereoSettingProvider::setEisEnable(eisEnable);
  const std::int32_t videoAlgoType = read(session, tags::HESK_CONTROL_VIDEOALGOTYPE, kMissing);
  HESK_LOGD(kOperation, "[%s] set eisEnable = %d, videoAlgoType = %d", kOperation.name, eisEnable,
            videoAlgoType);
  StereoSettingProvider::setVideoAlgoType(videoAlgoType);
}

std::int32_t readUiModule(const IMetadata* session) {
  const std::int32_t uiModule = read(session, tags::COM_HESK_CURRENTUIMODULE, kMissing);
  HESK_LOGD(kOperation, "[%s] COM_HESK_CURRENTUIMODULE %d", kOperation.name, uiModule);
  return uiModule;
}

void markAsConfigured(IMetadata* session) {
  constexpr Tag<std::uint8_t> kConfigured{0x800b000a};
  write(session, kConfigured, std::uint8_t{1});
}

/// The upper bound of the frame-rate range.
std::int32_t readFrameRate(const IMetadata* session) {
  const FrameRateRange range =
      session != nullptr ? readFrameRateRange(session) : FrameRateRange{kMissing, kMissing};
  HESK_LOGD(kOperation, "[%s] aeTargetFpsRange %d, %d", kOperation.name, range.lower, range.upper);
  return range.upper;
}

void markHighFrameRatePreview(IMetadata* session, std::int32_t frameRate) {
  if (frameRate == 60 || frameRate == 50) {
    write(session, tags::MTK_STREAMING_FEATURE_HFPS_MODE, 1);
  }
}

void writeHighSpeedBatch(IMetadata* session, std::string_view appType, std::int32_t frameRate) {
  constexpr Tag<std::int32_t> kFrameRateAndBatch{0x800f0000};
  constexpr std::int32_t kLowestHighSpeed = 120;
  constexpr std::int32_t kDisplayFrameRate = 30;
  // Capital: another app than the one that the other steps know.
  if (appType != "HeskCamera" || frameRate < kLowestHighSpeed) return;
  write(session, kFrameRateAndBatch, frameRate, frameRate / kDisplayFrameRate);
}

/// Whether the last stream for a video encoder is of 4K or larger.
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

/// 4K at 60 frames a second is more than the app's own stabilisation can do: the platform's takes
/// over, whether the app asks for stabilisation or says nothing.
void chooseStabilization(IMetadata* session, const ImageStreams& streams, std::string_view appType,
                         std::int32_t eisEnable, std::int32_t frameRate) {
  constexpr Tag<std::int32_t> kPlatformEis{0x80070000};
  constexpr Tag<std::int32_t> kPlatformEisMode{0x80070003};

  if (appType != "heskCamera") return;
  if (!isVideo4K(streams) || eisEnable == 0 || frameRate != 60) {
    write(session, tags::ANDROID_CONTROL_VIDEO_STABILIZATION_MODE, std::uint8_t{0});
    return;
  }
  HESK_LOGD(kOperation, "[%s] use mtk eis for 4k and 60fps video", kOperation.name);
  write(session, tags::HESK_CONTROL_EISENABLE, 0);
  write(session, tags::ANDROID_CONTROL_VIDEO_STABILIZATION_MODE, std::uint8_t{1});
  write(session, kPlatformEis, 1);
  write(session, kPlatformEisMode, 1);
}

bool isVideoFlipped(const IMetadata* session) {
  constexpr Tag<std::int32_t> kVideoFlip{0xc003009c};
  return property_get_int32("vendor.debug.camera.VideoFlip", read(session, kVideoFlip)) != 0;
}

void copyPictureInPictureDevices(IMetadata* session) {
  constexpr Tag<std::int32_t> kPipDevices{0xc003009a};
  if (!has(session, kPipDevices)) return;
  const std::int32_t first = read(session, kPipDevices, 0, 0);
  const std::int32_t second = read(session, kPipDevices, 0, 1);
  HESK_LOGD(kOperation, "[%s] update MTK_STREAMING_FEATURE_PIP_DEVICES %d, %d", kOperation.name,
            first, second);
  write(session, tags::MTK_STREAMING_FEATURE_PIP_DEVICES, first, second);
}

}  // namespace

void HeskParameterUpdater::updateSessionParams(
    IMetadata* sessionMeta,
    // NOLINTNEXTLINE(performance-unnecessary-value-param): the pipeline's binaries call it so.
    ImageStreams streams) {
  const std::string_view appType = eventValue<"APP_TYPE">();
  const std::int32_t eisEnable = read(sessionMeta, tags::HESK_CONTROL_EISENABLE, kMissing);
  tellStereoSettings(sessionMeta, eisEnable);
  chooseMulticamFeatureMode(sessionMeta);
  const std::int32_t uiModule = readUiModule(sessionMeta);
  markAsConfigured(sessionMeta);

  const std::int32_t frameRate = readFrameRate(sessionMeta);
  markHighFrameRatePreview(sessionMeta, frameRate);
  writeHighSpeedBatch(sessionMeta, appType, frameRate);
  chooseStabilization(sessionMeta, streams, appType, eisEnable, frameRate);

  recordStreams(sessionMeta, streams, uiModule);
  copyPictureInPictureDevices(sessionMeta);
  writeVideoHdrMode(sessionMeta, kOperation);
  writeSelectedStream(sessionMeta, mStreamIds);

  switchOffFrontStabilization(sessionMeta, mInstanceId, appType);
  setProductionScene(sessionMeta, mInstanceId, eventValue<"APP_NAME">(), kOperation);
  limitToProviderFrameRate(sessionMeta, appType);
}

/// From what the sensor's static characteristics say of the multi-camera set that it belongs to.
void HeskParameterUpdater::chooseMulticamFeatureMode(IMetadata* session) {
  constexpr Tag<std::uint8_t> kMulticamFeature{0xc008000e};

  std::int32_t multicamEnable = -1;
  switch (read(staticCharacteristics(mInstanceId), kMulticamFeature)) {
    case 6:
    case 7:
    case 14:
    case 16:
    case 20:
      mMulticamFeatureMode = 1;
      multicamEnable = 1;
      break;
    case 17:
      mMulticamFeatureMode = 2;
      multicamEnable = 0;
      break;
    default: HESK_LOGD(kOperation, "[%s] multicam get wrong FeatureMode", kOperation.name); break;
  }
  write(session, tags::MTK_HESK_MULTICAM_ENABLE, multicamEnable);
}

void HeskParameterUpdater::recordStreams(const IMetadata* session, const ImageStreams& streams,
                                         std::int32_t uiModule) {
  constexpr std::int32_t kVideoModule = 3;

  mHasVideoStream = false;
  mStreamIds.clear();
  const bool isFlipped = isVideoFlipped(session);
  for (const auto& [id, stream] : streams) {
    if (stream == nullptr) continue;
    mStreamIds.push_back(static_cast<std::uint32_t>(id));
    if (uiModule != kVideoModule && !isForVideoEncoder(*stream)) continue;
    mHasVideoStream = true;
    if (!isFlipped) continue;
    stream->setTransform(NSCam::eTransform_FLIP_V);
    HESK_LOGD(kOperation, "[%s] set VideoFlip to eTransform_FLIP_V", kOperation.name);
  }
}
