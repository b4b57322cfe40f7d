// updateResultMeta: the result hook and its steps.

#include <optional>
#include <string>

#include "common/Events.h"
#include "common/HeskParameterUpdater.h"
#include "common/math/Conversion.h"
#include "common/tags/Metadata.h"
#include "common/tags/Values.h"
#include "common/updater/SharedSteps.h"
#include "common/updater/UpdaterLog.h"

namespace {

using namespace hesk;
using NSCam::IMetadata;

constexpr log::Operation kOperation{kUpdaterSource, "updateResultMeta"};

void writeExposure(IMetadata* result) {
  constexpr std::int64_t kExposureUnit = 1000;
  const auto iso = eventNumber<std::int32_t>("HESK_ISO", 100);
  const auto exposure = eventNumber<std::int64_t>("HESK_EXP", 0);
  const auto ev = eventNumber<float>("HESK_EV", 0);
  write(result, tags::HESK_CONTROL_EXPTIME, wrappingMultiply(exposure, kExposureUnit));
  write(result, tags::HESK_CONTROL_ISO, iso);
  write(result, tags::HESK_CONTROL_EV, ev);
}

void echoVideoNoiseReduction(IMetadata* result) {
  if (eventValue("APP_NAME") != "VideoNight") return;
  const auto recommendation = eventNumber<std::int32_t>("HESK_VIDEONRRECOMMAND", 0);
  write(result, tags::HESK_FEEDBACK_VIDEONRRECOMMEND, recommendation);
  HESK_LOGD(kOperation, "HESK_FEEDBACK_VIDEONRRECOMMEND:%d", recommendation);
}

void publishPreviewScene(std::optional<std::int32_t> scene) {
  constexpr std::int32_t kPublishedScene = 128;
  if (scene) setEvent("PREVIEW_SCENEMODE", *scene == kPublishedScene ? "128" : "0");
}

void writePair(IMetadata* result, float first, float second) {
  write(result, tags::HESK_RESULT_PAIR_FIRST, first);
  write(result, tags::HESK_RESULT_PAIR_SECOND, second);
}

/// Copies an int32 lux value, if present, to the result's float.
void copyLux(IMetadata* result, Tag<std::int32_t> source) {
  if (const auto lux = readIfPresent(result, source)) {
    write(result, tags::MTK_HESK_RESULT_LUX_INDEX, static_cast<float>(*lux));
  }
}

void writePairAndLux(IMetadata* result, std::int32_t sensor) {
  switch (read(result, tags::HESK_CONTROL_PAIR_SOURCE)) {
    case 1:
      writePair(result, readItem(result, tags::HESK_CONTROL_PAIR_INPUT, 0),
                readItem(result, tags::HESK_CONTROL_PAIR_INPUT, 1));
      copyLux(result, tags::MTK_3A_AE_LUX_INDEX);
      break;
    case 0:
      if (sensor == 7 || sensor == kFrontSensor) {
        writePair(result, 46.0F, 24.0F);
      } else {
        writePair(result, 30.0F, 23.0F);
      }
      copyLux(result, tags::PLATFORM_LUX);
      break;
    default: break;
  }
}

void echoRequestNo(IMetadata* result, unsigned int requestNo) {
  write(result, tags::HESK_CONTROL_REQUESTNO, static_cast<std::int32_t>(requestNo));
  HESK_LOGD(kOperation, "update frameNo %d in HESK_CONTROL_REQUESTNO", requestNo);
}

}  // namespace

void HeskParameterUpdater::updateResultMeta(IMetadata* result, unsigned int requestNo) {
  const auto scene = readIfPresent(result, tags::COM_HESK_SCENETYPE);
  writeExposure(result);
  echoVideoNoiseReduction(result);
  publishPreviewScene(scene);
  writePairAndLux(result, mInstanceId);
  write(result, tags::MTK_RAW_ALGO_SENSITIVITY, read(result, tags::ANDROID_SENSOR_SENSITIVITY));
  echoRequestNo(result, requestNo);
  copyColourTemperatureUse(result, result, kOperation);
}
