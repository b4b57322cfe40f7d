// The overrides: scenarios that certain apps need whatever the rules say.

#include <string_view>

#include "common/HeskSensorModeControl.h"
#include "common/sensormode/DecisionObserver.h"
#include "common/sensormode/SensorModeLog.h"
#include "common/sensormode/SensorScenario.h"
#include "common/tags/Metadata.h"
#include "common/updater/Events.h"

using namespace hesk;

namespace {

constexpr log::Operation kOperation = sensorModeOperation("specialCustomize");

constexpr std::int32_t kFrontSensor = 1;
constexpr NSCam::MSize kCallSize{640, 480};

/// What the overrides look at.
struct Configuration {
  std::string_view appType;
  std::string_view appName;
  std::int32_t sensorId;
  const NSCam::IMetadata* meta;
  bool hasVideo;
  NSCam::MSize size;
};

bool isImsCallNotWiderThan4To3(const Configuration& configuration) {
  return configuration.appType == "mtk_ims" && configuration.size.h / 3 >= configuration.size.w / 4;
}

bool isDingdingNear4To3(const Configuration& configuration) {
  // The middle is 1.33, not 4/3. A height of 0 gives an infinity or a NaN, which are not near.
  constexpr double kMiddle = 1.33;
  constexpr double kTolerance = 0.004;
  const float ratio =
      static_cast<float>(configuration.size.w) / static_cast<float>(configuration.size.h);
  const double distance = static_cast<double>(ratio) - kMiddle;
  return configuration.appName == "Dingding" && -kTolerance < distance && distance < kTolerance;
}

bool isAppThatNeedsVideo(const Configuration& configuration) {
  return configuration.appName == "Whatsapp" || configuration.appName == "Facebook" ||
         configuration.appName == "Kuaishou";
}

bool isInstagramBehind(const Configuration& configuration) {
  return configuration.appName == "Instagram" && configuration.sensorId != kFrontSensor;
}

bool isThirdPartyCall(const Configuration& configuration) {
  const bool isCallApp = configuration.appName == "Whatsapp" ||
                         configuration.appName == "Messenger" ||
                         configuration.appType == "3rd_party";
  return isCallApp && configuration.size == kCallSize;
}

bool isFrontVideoHdr(const Configuration& configuration) {
  constexpr std::int32_t kHdrModeVideoOn = 3;
  return read(configuration.meta, tags::MTK_HDR_FEATURE_HDR_MODE) == kHdrModeVideoOn &&
         configuration.sensorId == kFrontSensor;
}

bool isFrontWechatCall(const Configuration& configuration) {
  return configuration.appType == "Wechat" && configuration.sensorId == kFrontSensor &&
         configuration.size == kCallSize;
}

bool isNightVideo(const Configuration& configuration) {
  return read(configuration.meta, tags::HESK_CONTROL_NIGHTMODE) == 1 && configuration.hasVideo;
}

bool isMessageVideo(const Configuration& configuration) {
  return configuration.appType == "heskCamera" && configuration.hasVideo &&
         configuration.size == kCallSize;
}

}  // namespace

// Later choices overwrite earlier ones. Messages may name other apps than are meant: field tools
// know them as they are.
int HeskSensorModeControl::specialCustomize(
    NSCam::IMetadata* meta,
    // NOLINTNEXTLINE(performance-unnecessary-value-param): the platform's binaries call it so.
    std::shared_ptr<StreamInfo> info) {
  const StreamInfo stream = info != nullptr ? *info : StreamInfo{};
  const Configuration configuration{.appType = eventValue<"APP_TYPE">(),
                                    .appName = eventValue<"APP_NAME">(),
                                    .sensorId = mSensorId,
                                    .meta = meta,
                                    .hasVideo = stream.hasVideoConsumer,
                                    .size = stream.mainOutputSize};
  std::int32_t scenario = NO_DECISION;
  const auto chooseIf = [&](bool isCase, SensorScenario choice, const char* when) {
    if (!isCase) return false;
    scenario = choice;
    if (mObserver != nullptr) mObserver->onOverride(when, scenario);
    return true;
  };

  if (chooseIf(isImsCallNotWiderThan4To3(configuration), NORMAL_PREVIEW,
               "an IMS call not wider than 4:3")) {
    HESK_LOGD(kOperation, "[%s] NORMAL_PREVIEW for wechat or ims", kOperation.name);
  }
  if (chooseIf(isDingdingNear4To3(configuration), NORMAL_PREVIEW, "Dingding near 4:3")) {
    HESK_LOGD(kOperation, "[%s] NORMAL_PREVIEW for Dingding", kOperation.name);
  }
  if (chooseIf(isAppThatNeedsVideo(configuration), NORMAL_VIDEO,
               "Whatsapp, Facebook or Kuaishou")) {
    HESK_LOGD(kOperation, "[%s] some 3rd_party app need VIDEO sensor mode", kOperation.name);
  }
  if (chooseIf(isInstagramBehind(configuration), NORMAL_VIDEO,
               "Instagram on another than the front camera")) {
    HESK_LOGD(kOperation, "[%s] Instagram need VIDEO sensor mode except camera 1", kOperation.name);
  }
  if (chooseIf(isThirdPartyCall(configuration), NORMAL_PREVIEW,
               "Whatsapp, Messenger or a third party at 640x480")) {
    HESK_LOGD(kOperation, "[%s] NORMAL_PREVIEW for third party app", kOperation.name);
  }
  if (chooseIf(isFrontVideoHdr(configuration), CUSTOM1, "video HDR on the front camera")) {
    HESK_LOGD(kOperation, "[%s] VIDEO_HDR for front camera", kOperation.name);
  }
  if (chooseIf(isFrontWechatCall(configuration), CUSTOM2,
               "Wechat at 640x480 on the front camera")) {
    HESK_LOGE(kOperation, "[%s] wechat meet set sensor mode to CUSTOM2", kOperation.name);
  }
  chooseIf(isNightVideo(configuration), NORMAL_VIDEO, "video in night mode");
  if (chooseIf(isMessageVideo(configuration), CUSTOM1, "video of the maker's app at 640x480")) {
    HESK_LOGD(kOperation, "[%s] change message-camera video sensor mode to custom1",
              kOperation.name);
  }
  return scenario;
}
