// The overrides: scenarios that certain apps need whatever the rules say.

#include <string>
#include <string_view>

#include "common/Events.h"
#include "common/HeskSensorModeControl.h"
#include "common/sensormode/DecisionObserver.h"
#include "common/sensormode/SensorModeLog.h"
#include "common/sensormode/SensorScenario.h"
#include "common/tags/Metadata.h"

using namespace hesk;

namespace {

constexpr log::Operation kOperation = sensorModeOperation("specialCustomize");

constexpr std::int32_t kFrontSensor = 1;
constexpr NSCam::MSize k640x480{640, 480};

/// What the overrides look at.
struct Configuration {
  std::string_view appType;
  std::string_view appName;
  std::int32_t sensorId;
  const NSCam::IMetadata* meta;
  bool hasVideo;
  NSCam::MSize size;
};

bool isImsNotWiderThan4To3(const Configuration& configuration) {
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

bool isInstagramButInFront(const Configuration& configuration) {
  return configuration.appName == "Instagram" && configuration.sensorId != kFrontSensor;
}

bool isThirdPartyAt640x480(const Configuration& configuration) {
  const bool isItsApp = configuration.appName == "Whatsapp" ||
                        configuration.appName == "Messenger" ||
                        configuration.appType == "3rd_party";
  return isItsApp && configuration.size == k640x480;
}

bool isFrontVideoHdr(const Configuration& configuration) {
  constexpr std::int32_t kHdrModeVideoOn = 3;
  return read(configuration.meta, tags::MTK_HDR_FEATURE_HDR_MODE) == kHdrModeVideoOn &&
         configuration.sensorId == kFrontSensor;
}

bool isFrontWechatAt640x480(const Configuration& configuration) {
  return configuration.appType == "Wechat" && configuration.sensorId == kFrontSensor &&
         configuration.size == k640x480;
}

bool isNightVideo(const Configuration& configuration) {
  return read(configuration.meta, tags::HESK_CONTROL_NIGHTMODE) == 1 && configuration.hasVideo;
}

bool isOwnVideoAt640x480(const Configuration& configuration) {
  return configuration.appType == "heskCamera" && configuration.hasVideo &&
         configuration.size == k640x480;
}

struct Override {
  const char* when;  // for the tool
  bool (*fires)(const Configuration& configuration);
  SensorScenario scenario;
  void (*log)();  // null: no record
};

// In order: the last that fires holds. The messages are kept as they are, though some name other
// apps than are tested.
constexpr Override kOverrides[] = {
    {"mtk_ims not wider than 4:3", isImsNotWiderThan4To3, NORMAL_PREVIEW,
     [] { HESK_LOGD(kOperation, "[%s] NORMAL_PREVIEW for wechat or ims", kOperation.name); }},
    {"Dingding near 4:3", isDingdingNear4To3, NORMAL_PREVIEW,
     [] { HESK_LOGD(kOperation, "[%s] NORMAL_PREVIEW for Dingding", kOperation.name); }},
    {"Whatsapp, Facebook or Kuaishou", isAppThatNeedsVideo, NORMAL_VIDEO,
     [] {
       HESK_LOGD(kOperation, "[%s] some 3rd_party app need VIDEO sensor mode", kOperation.name);
     }},
    {"Instagram on another than the front camera", isInstagramButInFront, NORMAL_VIDEO,
     [] {
       HESK_LOGD(kOperation, "[%s] Instagram need VIDEO sensor mode except camera 1",
                 kOperation.name);
     }},
    {"Whatsapp, Messenger or a third party at 640x480", isThirdPartyAt640x480, NORMAL_PREVIEW,
     [] { HESK_LOGD(kOperation, "[%s] NORMAL_PREVIEW for third party app", kOperation.name); }},
    {"video HDR on the front camera", isFrontVideoHdr, CUSTOM1,
     [] { HESK_LOGD(kOperation, "[%s] VIDEO_HDR for front camera", kOperation.name); }},
    {"Wechat at 640x480 on the front camera", isFrontWechatAt640x480, CUSTOM2,
     [] { HESK_LOGE(kOperation, "[%s] wechat meet set sensor mode to CUSTOM2", kOperation.name); }},
    {"video in night mode", isNightVideo, NORMAL_VIDEO, nullptr},
    {"video of the maker's app at 640x480", isOwnVideoAt640x480, CUSTOM1,
     [] {
       HESK_LOGD(kOperation, "[%s] change message-camera video sensor mode to custom1",
                 kOperation.name);
     }},
};

}  // namespace

int HeskSensorModeControl::specialCustomize(
    NSCam::IMetadata* meta,
    // NOLINTNEXTLINE(performance-unnecessary-value-param): the signature is a given one
    std::shared_ptr<StreamInfo> info) {
  const StreamInfo stream = info != nullptr ? *info : StreamInfo{};
  const std::string appType = eventValue("APP_TYPE");
  const std::string appName = eventValue("APP_NAME");
  const Configuration configuration{.appType = appType,
                                    .appName = appName,
                                    .sensorId = mSensorId,
                                    .meta = meta,
                                    .hasVideo = stream.hasVideoConsumer,
                                    .size = stream.mainOutputSize};
  std::int32_t scenario = NO_DECISION;
  for (const Override& override : kOverrides) {
    if (!override.fires(configuration)) continue;
    scenario = override.scenario;
    if (override.log != nullptr) override.log();
    if (mObserver != nullptr) mObserver->onOverride(override.when, scenario);
  }
  return scenario;
}
