#include "tools/camhook/input/ScenarioKeys.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string>

namespace camhook {
namespace {

using Keys = std::string_view;

constexpr Keys kScenario[] = {"$schema", "about", "platform", "calls"};
constexpr Keys kPlatform[] = {"properties",  "eventStore",           "devices",       "sensorList",
                              "hal3aModule", "defaultShadingModule", "faceDetection", "sat",
                              "provider",    "tuningBuffer",         "clock"};
constexpr Keys kDevice[] = {"static", "hal3a", "defaultShading", "faces", "sensor"};
constexpr Keys kHal3A[] = {"available", "shadingBase"};
constexpr Keys kFace[] = {"rect", "score"};
constexpr Keys kSensor[] = {"index", "pdSupported", "pdWords", "pdLeft", "pdRight", "pdTail"};
constexpr Keys kSat[] = {"cameras", "configured", "defaultRole", "translate"};
constexpr Keys kSatCamera[] = {"id", "role", "fov"};
constexpr Keys kSatTranslate[] = {"scale", "dx", "dy"};
constexpr Keys kProvider[] = {"fpsCap"};
constexpr Keys kTuningBuffer[] = {"fd", "bufferSize", "bufferIndex"};
constexpr Keys kStream[] = {"id", "usage", "width", "height"};

constexpr ObjectKeys kObjects[] = {
    {"scenario", kScenario},
    {"platform", kPlatform},
    {"device", kDevice},
    {"hal3a", kHal3A},
    {"face", kFace},
    {"sensor", kSensor},
    {"sat", kSat},
    {"satCamera", kSatCamera},
    {"satTranslate", kSatTranslate},
    {"provider", kProvider},
    {"tuningBuffer", kTuningBuffer},
    {"stream", kStream},
};

constexpr Keys kCreateInstance[] = {"sensor"};
constexpr Keys kUpdateSessionParams[] = {"sensor", "meta", "streams"};
constexpr Keys kUpdateRequestMeta[] = {"sensor", "requestNo", "meta"};
constexpr Keys kUpdateResultMeta[] = {"sensor", "requestNo", "meta"};
constexpr Keys kUpdateCaptureRawParameter[] = {"sensor", "app", "hal", "out"};
constexpr Keys kUpdateTuningData[] = {"sensor", "meta", "size"};
constexpr Keys kTranslateResultRegion[] = {"sensor", "meta", "value", "cameraId", "tag"};
constexpr Keys kSetPreviewSize[] = {"sensor", "width", "height"};
constexpr Keys kMatchAspectRatio[] = {"sensor", "reference", "size"};
constexpr Keys kDumpMetadata[] = {"sensor", "meta", "name", "frame"};
constexpr Keys kDecideSensorScenario[] = {"sensor", "meta", "video", "width", "height"};
constexpr Keys kSetEvent[] = {"key", "value"};
constexpr Keys kSetProperty[] = {"name", "value"};

constexpr ObjectKeys kCalls[] = {
    {"createInstance", kCreateInstance},
    {"updateSessionParams", kUpdateSessionParams},
    {"updateRequestMeta", kUpdateRequestMeta},
    {"updateResultMeta", kUpdateResultMeta},
    {"updateCaptureRawParameter", kUpdateCaptureRawParameter},
    {"updateTuningData", kUpdateTuningData},
    {"translateResultRegionForHesk", kTranslateResultRegion},
    {"setPreviewSize", kSetPreviewSize},
    {"matchAspectRatio", kMatchAspectRatio},
    {"dumpMetadata", kDumpMetadata},
    {"decideSensorScenario", kDecideSensorScenario},
    {"setEvent", kSetEvent},
    {"setProperty", kSetProperty},
};

}  // namespace

std::span<const ObjectKeys> scenarioObjects() { return kObjects; }

std::span<const ObjectKeys> scenarioCalls() { return kCalls; }

std::span<const std::string_view> keysOf(std::string_view object) {
  const auto* found = std::ranges::find(kObjects, object, &ObjectKeys::object);
  if (found == std::end(kObjects)) throw std::logic_error("no object " + std::string(object));
  return found->keys;
}

const ObjectKeys* findCall(std::string_view name) {
  const auto* found = std::ranges::find(kCalls, name, &ObjectKeys::object);
  return found != std::end(kCalls) ? found : nullptr;
}

bool isContainer(std::string_view argument) {
  return argument == "meta" || argument == "app" || argument == "hal" || argument == "out";
}

}  // namespace camhook
