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
#include "tools/camhook/input/InputError.h"
#include "tools/camhook/input/Json.h"

namespace camhook {

/// A container that a hook receives; nullopt: null.
using MetadataArgument = std::optional<NSCam::IMetadata>;

struct CreateInstance {
  static constexpr std::string_view kName = "createInstance";
  static constexpr std::string_view kMeaning = "Obtains the updater of a sensor";
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
  static constexpr std::string_view kMeaning = "The session hook";
  std::int32_t sensor = 0;
  MetadataArgument meta;
  std::vector<Stream> streams;  // ids are unique
};

struct UpdateRequestMeta {
  static constexpr std::string_view kName = "updateRequestMeta";
  static constexpr std::string_view kMeaning = "The request hook";
  std::int32_t sensor = 0;
  std::uint32_t requestNo = 0;
  MetadataArgument meta;
};

struct UpdateResultMeta {
  static constexpr std::string_view kName = "updateResultMeta";
  static constexpr std::string_view kMeaning = "The result hook";
  std::int32_t sensor = 0;
  std::uint32_t requestNo = 0;
  MetadataArgument meta;
};

struct DecideSensorScenario {
  static constexpr std::string_view kName = "decideSensorScenario";
  static constexpr std::string_view kMeaning =
      "Returns the sensor mode for a stream configuration with this main output size";
  std::int32_t sensor = 0;
  MetadataArgument meta;
  bool video = false;
  std::int32_t width = 0;
  std::int32_t height = 0;
};

struct UpdateCaptureRawParameter {
  static constexpr std::string_view kName = "updateCaptureRawParameter";
  static constexpr std::string_view kMeaning = "The capture hook";
  std::int32_t sensor = 0;
  MetadataArgument app;
  MetadataArgument hal;
  MetadataArgument out;
};

struct UpdateTuningData {
  static constexpr std::string_view kName = "updateTuningData";
  static constexpr std::string_view kMeaning = "Exports tuning data: a block of `size` bytes";
  std::int32_t sensor = 0;
  MetadataArgument meta;
  std::uint32_t size = 0;  // bytes
};

struct TranslateResultRegion {
  static constexpr std::string_view kName = "translateResultRegionForHesk";
  static constexpr std::string_view kMeaning = "Translates detected regions between cameras";
  std::int32_t sensor = 0;
  MetadataArgument meta;
  float value = 0;
  std::int32_t cameraId = 0;
  std::uint64_t tag = 0;  // the hook's argument is wider than a tag
};

struct SetPreviewSize {
  static constexpr std::string_view kName = "setPreviewSize";
  static constexpr std::string_view kMeaning = "Sets the preview size";
  std::int32_t sensor = 0;
  std::int32_t width = 0;
  std::int32_t height = 0;
};

struct MatchAspectRatio {
  static constexpr std::string_view kName = "matchAspectRatio";
  static constexpr std::string_view kMeaning = "Fits a size to the aspect ratio of another";
  std::int32_t sensor = 0;
  NSCam::MSize reference;
  NSCam::MSize size;
};

struct DumpMetadata {
  static constexpr std::string_view kName = "dumpMetadata";
  static constexpr std::string_view kMeaning = "Dumps the metadata of a still capture to a file";
  std::int32_t sensor = 0;
  MetadataArgument meta;
  std::string name;
  std::int32_t frame = 0;
};

struct SetEvent {
  static constexpr std::string_view kName = "setEvent";
  static constexpr std::string_view kMeaning =
      "Sets a value of the event store, as the camera app does";
  std::string key;
  std::string value;
};

struct SetProperty {
  static constexpr std::string_view kName = "setProperty";
  static constexpr std::string_view kMeaning = "Sets a system property";
  std::string name;
  std::string value;
};

/// True for a call with the single container `meta`.
template <typename CallType>
inline constexpr bool kHasMeta = requires(CallType call) {
  call.meta;
};

using Call =
    std::variant<UpdateCaptureRawParameter, UpdateTuningData, TranslateResultRegion, SetPreviewSize,
                 MatchAspectRatio, CreateInstance, UpdateSessionParams, UpdateRequestMeta,
                 UpdateResultMeta, DumpMetadata, DecideSensorScenario, SetEvent, SetProperty>;

/// The container of a call with the single container `meta`; null for any other call.
inline MetadataArgument* findMeta(Call& call) {
  return std::visit(
      []<typename CallType>(CallType& concrete) -> MetadataArgument* {
        if constexpr (kHasMeta<CallType>) return &concrete.meta;
        return nullptr;
      },
      call);
}

/// One call of a scenario.
struct ScenarioCall {
  Call call;
  Json arguments = {};     // except the sensor and the containers, in the format of the scenario
  std::size_t number = 0;  // in the scenario, from 1

  // With metaOf, the call gets the `meta` that an earlier call left. The entries of its own `meta`
  // replace those of that container.
  std::size_t metaOf = 0;                       // number of the earlier call; 0: none
  std::vector<std::uint32_t> removedTags = {};  // tags that its own `meta` gives an empty list
  bool isLastUse = false;                       // no later call has the same metaOf
  bool isMetaUsed = false;                      // a later call gets the `meta` of this one
};

struct Scenario {
  std::string about;
  host::PhoneConfig platform;
  std::vector<ScenarioCall> calls = {};
  Faults warnings;
};

}  // namespace camhook
