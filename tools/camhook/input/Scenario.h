// A scenario: a phone, and the calls made on it.

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "host/PhoneConfig.h"
#include "platform/Geometry.h"
#include "platform/IMetadata.h"
#include "tools/camhook/input/Json.h"

namespace camhook {

/// A container handed to a hook; none: null.
using MetadataArgument = std::optional<NSCam::IMetadata>;

struct CreateInstance {
  static constexpr std::string_view kName = "createInstance";
  std::int32_t sensor = 0;
};

struct UpdateSessionParams {
  struct Stream {
    std::int64_t id = 0;
    std::uint64_t usage = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;
  };

  static constexpr std::string_view kName = "updateSessionParams";
  std::int32_t sensor = 0;
  MetadataArgument meta;
  std::vector<Stream> streams;  // no two of one id
};

struct UpdateRequestMeta {
  static constexpr std::string_view kName = "updateRequestMeta";
  std::int32_t sensor = 0;
  std::uint32_t requestNo = 0;
  MetadataArgument meta;
};

struct UpdateResultMeta {
  static constexpr std::string_view kName = "updateResultMeta";
  std::int32_t sensor = 0;
  std::uint32_t requestNo = 0;
  MetadataArgument meta;
};

struct DecideSensorScenario {
  static constexpr std::string_view kName = "decideSensorScenario";
  std::int32_t sensor = 0;
  MetadataArgument meta;
  bool video = false;
  std::int32_t width = 0;
  std::int32_t height = 0;
};

struct UpdateCaptureRawParameter {
  static constexpr std::string_view kName = "updateCaptureRawParameter";
  std::int32_t sensor = 0;
  MetadataArgument app;
  MetadataArgument hal;
  MetadataArgument out;
};

struct UpdateTuningData {
  static constexpr std::string_view kName = "updateTuningData";
  std::int32_t sensor = 0;
  MetadataArgument meta;
  std::uint32_t size = 0;  // of the block that is handed, in bytes
};

struct TranslateResultRegion {
  static constexpr std::string_view kName = "translateResultRegionForHesk";
  std::int32_t sensor = 0;
  MetadataArgument meta;
  float value = 0;
  std::int32_t cameraId = 0;
  std::uint64_t tag = 0;  // the hook takes more bits than a tag has
};

struct SetPreviewSize {
  static constexpr std::string_view kName = "setPreviewSize";
  std::int32_t sensor = 0;
  std::int32_t width = 0;
  std::int32_t height = 0;
};

struct MatchAspectRatio {
  static constexpr std::string_view kName = "matchAspectRatio";
  std::int32_t sensor = 0;
  NSCam::MSize reference;
  NSCam::MSize size;
};

struct DumpMetadata {
  static constexpr std::string_view kName = "dumpMetadata";
  std::int32_t sensor = 0;
  MetadataArgument meta;
  std::string name;
  std::int32_t frame = 0;
};

struct SetEvent {
  static constexpr std::string_view kName = "setEvent";
  std::string key;
  std::string value;
};

struct SetProperty {
  static constexpr std::string_view kName = "setProperty";
  std::string name;
  std::string value;
};

using Call =
    std::variant<UpdateCaptureRawParameter, UpdateTuningData, TranslateResultRegion, SetPreviewSize,
                 MatchAspectRatio, CreateInstance, UpdateSessionParams, UpdateRequestMeta,
                 UpdateResultMeta, DumpMetadata, DecideSensorScenario, SetEvent, SetProperty>;

/// A call, and its arguments but the sensor and the containers, as the scenario has them.
struct ScenarioCall {
  Call call;
  Json arguments = Json::object();
};

struct Scenario {
  std::string about;  // what it shows, for people
  host::PhoneConfig platform;
  std::vector<ScenarioCall> calls;
};

}  // namespace camhook
