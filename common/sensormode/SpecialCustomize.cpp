// The list of overrides, and specialCustomize, which applies it.

#include <string>

#include "common/Events.h"
#include "common/HeskSensorModeControl.h"
#include "common/sensormode/Overrides.h"
#include "common/sensormode/SensorModeLog.h"
#include "common/tags/Metadata.h"

using namespace hesk;

namespace {

constexpr log::Operation kOperation{kSensorModeSource, "specialCustomize"};

constexpr std::int32_t any = Override::kNoCondition;
using Sensor = Override::Sensor;
using Size = Override::Size;

// Some messages name other apps than the condition tests.
// clang-format off
constexpr Override kOverrides[] = {
  {"mtk_ims not wider than 4:3",
   "mtk_ims",    {},
   Sensor::any,      any, any, false, Size::notWiderThan4To3, NORMAL_PREVIEW,
   &log::kDebug, "[%s] NORMAL_PREVIEW for wechat or ims"},
  {"Dingding near 4:3",
   "",           {"Dingding"},
   Sensor::any,      any, any, false, Size::near4To3,         NORMAL_PREVIEW,
   &log::kDebug, "[%s] NORMAL_PREVIEW for Dingding"},
  {"Whatsapp, Facebook or Kuaishou",
   "",           {"Whatsapp", "Facebook", "Kuaishou"},
   Sensor::any,      any, any, false, Size::any,              NORMAL_VIDEO,
   &log::kDebug, "[%s] some 3rd_party app need VIDEO sensor mode"},
  {"Instagram on any camera except the front camera",
   "",           {"Instagram"},
   Sensor::notFront, any, any, false, Size::any,              NORMAL_VIDEO,
   &log::kDebug, "[%s] Instagram need VIDEO sensor mode except camera 1"},
  {"Whatsapp, Messenger or a third party at 640x480",
   "3rd_party",  {"Whatsapp", "Messenger"},
   Sensor::any,      any, any, false, Size::is640x480,        NORMAL_PREVIEW,
   &log::kDebug, "[%s] NORMAL_PREVIEW for third party app"},
  {"video HDR on the front camera",
   "",           {},
   Sensor::front,    hdr::kVideoOn, any, false, Size::any,    CUSTOM1,
   &log::kDebug, "[%s] VIDEO_HDR for front camera"},
  {"Wechat at 640x480 on the front camera",
   "Wechat",     {},
   Sensor::front,    any, any, false, Size::is640x480,        CUSTOM2,
   &log::kError, "[%s] wechat meet set sensor mode to CUSTOM2"},
  {"video in night mode",
   "",           {},
   Sensor::any,      any, 1,   true,  Size::any,              NORMAL_VIDEO,
   nullptr,      nullptr},
  {"video of the OEM camera app at 640x480",
   "heskCamera", {},
   Sensor::any,      any, any, true,  Size::is640x480,        CUSTOM1,
   &log::kDebug, "[%s] change message-camera video sensor mode to custom1"},
};
// clang-format on

}  // namespace

std::span<const Override> hesk::overrides() { return kOverrides; }

int HeskSensorModeControl::specialCustomize(
    NSCam::IMetadata* meta,
    // NOLINTNEXTLINE(performance-unnecessary-value-param): the signature is the platform's
    std::shared_ptr<StreamInfo> info) {
  const StreamInfo stream = info != nullptr ? *info : StreamInfo{};
  const std::string appType = eventValue("APP_TYPE");
  const std::string appName = eventValue("APP_NAME");
  const OverrideConfiguration configuration{.appType = appType,
                                            .appName = appName,
                                            .sensorId = mSensorId,
                                            .hdrMode = read(meta, tags::MTK_HDR_FEATURE_HDR_MODE),
                                            .nightMode = read(meta, tags::HESK_CONTROL_NIGHTMODE),
                                            .hasVideo = stream.hasVideoConsumer,
                                            .size = stream.mainOutputSize};
  std::int32_t scenario = NO_DECISION;
  for (const Override& override : kOverrides) {
    if (!fires(override, configuration)) continue;
    scenario = override.scenario;
    if (override.level == nullptr) continue;
    HESK_LOG_RECORD(kOperation, *override.level, override.format, kOperation.name);
  }
  return scenario;
}
