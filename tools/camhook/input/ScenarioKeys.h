// The keys of each object of a scenario, with the member that each is read into and a meaning for
// editors. The reader, the schema and the search for misspelled keys use the same list:
//
//   keysOf(visitor, object)
//
// calls `visitor.must(key, target, meaning)` for each required key and `visitor.may` for the
// others. The type of the target determines the form of the value.

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>
#include <vector>

#include "host/PhoneConfig.h"
#include "tools/camhook/input/KnownNames.h"
#include "tools/camhook/input/Scenario.h"

namespace camhook {

// Keys of calls that are not in `keysOf`: the name of the call, and metaOf of calls with the single
// container `meta`.
inline constexpr std::string_view kCallKey = "call";
inline constexpr std::string_view kMetaOfKey = "metaOf";

// Targets for values whose form a plain type does not determine.

/// The name of a tag, or a hexadecimal text of up to 64 bits.
struct WideTag {
  std::uint64_t& tag;
};

/// The size of a block of memory.
struct BlockSize {
  static constexpr std::uint32_t kMax = 1U << 26U;
  std::uint32_t& bytes;
};

/// A list of at most `Size` items.
template <typename T, std::size_t Size>
struct Row {
  explicit Row(std::array<T, Size>& place) : items(place) {}

  std::array<T, Size>& items;
};

/// Metadata or null.
struct DefaultShading {
  bool& isThere;
  NSCam::IMetadata& values;
};

/// An object from name to text. Editors complete the known names.
struct NamedTexts {
  host::TextMap& texts;
  std::span<const KnownName> known;
};

/// A scenario without its calls, which are read one by one.
struct ScenarioFrame {
  struct Calls {};

  std::string schema;
  std::string about;
  host::PhoneConfig platform;
  Calls calls;
};

/// The name of an object in the schema; empty for any other type.
template <typename T>
constexpr std::string_view objectName() {
  if (std::is_same_v<T, ScenarioFrame>) return "scenario";
  if (std::is_same_v<T, host::PhoneConfig>) return "platform";
  if (std::is_same_v<T, host::DeviceConfig>) return "device";
  if (std::is_same_v<T, host::Hal3AConfig>) return "hal3a";
  if (std::is_same_v<T, NSCam::FaceRecord::Face>) return "face";
  if (std::is_same_v<T, host::SensorConfig>) return "sensor";
  if (std::is_same_v<T, host::SatConfig>) return "sat";
  if (std::is_same_v<T, host::SatConfig::Camera>) return "satCamera";
  if (std::is_same_v<T, host::SatConfig::Translation>) return "satTranslate";
  if (std::is_same_v<T, host::ProviderConfig>) return "provider";
  if (std::is_same_v<T, host::TuningBufferConfig>) return "tuningBuffer";
  if (std::is_same_v<T, UpdateSessionParams::Stream>) return "stream";
  return {};
}

template <typename T>
concept ScenarioObject = !objectName<T>().empty();

void keysOf(auto& visit, ScenarioFrame& scenario) {
  visit.may("$schema", scenario.schema, "Address of this schema, for editors");
  visit.may("about", scenario.about, "Purpose of the scenario");
  visit.may("platform", scenario.platform);
  visit.must("calls", scenario.calls);
}

void keysOf(auto& visit, host::PhoneConfig& phone) {
  visit.may("properties", NamedTexts{phone.properties, kKnownProperties}, "System properties");
  visit.may("eventStore", NamedTexts{phone.eventStore, kKnownEvents}, "The event store's values");
  visit.may("devices", phone.devices, "Cameras by number");
  visit.may("sensorList", phone.sensorList, "True by default; false: there is no sensor list");
  visit.may("hal3aModule", phone.hal3AModule, "True by default; false: the HAL has no 3A module");
  visit.may("defaultShadingModule", phone.defaultShadingModule,
            "True by default; false: the HAL has no default-shading module");
  visit.may("faceDetection", phone.faceDetection,
            "True by default; false: the container of detected faces is not available");
  visit.may("sat", phone.sat, "The zoom-transition library");
  visit.may("provider", phone.provider, "The camera provider service; not available if absent");
  visit.may("tuningBuffer", phone.tuningBuffer,
            "The buffer of the 3A information manager; absent fields stay unchanged");
  visit.may("clock", phone.clock, "Local time, which does not advance: 2021-03-04T05:06:07");
}

void keysOf(auto& visit, host::DeviceConfig& device) {
  visit.may("static", device.statics, "Static metadata");
  visit.may("hal3a", device.hal3A);
  visit.may("defaultShading", DefaultShading{device.hasDefaultShading, device.defaultShading},
            "null: there is no such module for the device");
  visit.may("faces", device.faces, "Detected faces");
  visit.may("sensor", device.sensor,
            "The sensor driver's object; absent: the sensor list creates none");
}

void keysOf(auto& visit, host::Hal3AConfig& hal3A) {
  visit.may("available", hal3A.available, "True by default; false: the 3A creator returns null");
  visit.may("shadingBase", hal3A.shadingBase, "The first value of the shading map; by default 1");
}

void keysOf(auto& visit, NSCam::FaceRecord::Face& face) {
  visit.may("rect", face.rect);
  visit.may("score", face.score);
}

void keysOf(auto& visit, host::SensorConfig& sensor) {
  visit.may("index", sensor.index);
  visit.may("pdSupported", sensor.pdSupported, "Whether it has phase-detection pixels");
  visit.may("pdWords", Row{sensor.pdWords});
  visit.may("pdLeft", Row{sensor.pdLeft}, "Phase-detection pixels: [a, b] each");
  visit.may("pdRight", Row{sensor.pdRight}, "Phase-detection pixels: [a, b] each");
  visit.may("pdTail", Row{sensor.pdTail});
}

void keysOf(auto& visit, host::SatConfig& sat) {
  visit.may("cameras", sat.cameras);
  visit.may("configured", sat.configured, "By default the number of cameras");
  visit.may("defaultRole", sat.defaultRole);
  visit.may("translate", sat.translate, "Translation of regions; by default the identity");
}

void keysOf(auto& visit, host::SatConfig::Camera& camera) {
  visit.may("id", camera.id);
  visit.may("role", camera.role);
  visit.may("fov", camera.fov, "In degrees");
}

void keysOf(auto& visit, host::SatConfig::Translation& translate) {
  visit.may("scale", translate.scale, "By default 1");
  visit.may("dx", translate.dx);
  visit.may("dy", translate.dy);
}

void keysOf(auto& visit, host::ProviderConfig& provider) { visit.may("fpsCap", provider.fpsCap); }

void keysOf(auto& visit, host::TuningBufferConfig& buffer) {
  visit.may("fd", buffer.fd);
  visit.may("bufferSize", buffer.bufferSize);
  visit.may("bufferIndex", buffer.bufferIndex);
}

void keysOf(auto& visit, UpdateSessionParams::Stream& stream) {
  visit.must("id", stream.id);
  visit.must("usage", stream.usage, "Bits; 0x10000 is the video encoder's");
  visit.must("width", stream.width);
  visit.must("height", stream.height);
}

/// The keys that a call does not share with others.
template <typename V, typename CallType>
void ownKeysOf(V& /*visit*/, CallType& /*call*/) {}

void ownKeysOf(auto& visit, UpdateSessionParams& call) {
  visit.must("streams", call.streams, "The configured streams; ids are unique");
}

void ownKeysOf(auto& visit, UpdateCaptureRawParameter& call) {
  visit.must("app", call.app, "The frame's app metadata, with its 3A results");
  visit.must("hal", call.hal, "The frame's HAL metadata");
  visit.must("out", call.out, "The input of the raw algorithms");
}

void ownKeysOf(auto& visit, UpdateTuningData& call) {
  visit.must("size", BlockSize{call.size}, "Size of the block in bytes; byte i is i modulo 251");
}

void ownKeysOf(auto& visit, TranslateResultRegion& call) {
  visit.must("value", call.value, "Divided by the camera's field of view it gives the zoom ratio");
  visit.must("cameraId", call.cameraId);
  visit.must("tag", WideTag{call.tag});
}

void ownKeysOf(auto& visit, SetPreviewSize& call) {
  visit.must("width", call.width);
  visit.must("height", call.height);
}

void ownKeysOf(auto& visit, MatchAspectRatio& call) {
  visit.must("reference", call.reference);
  visit.must("size", call.size);
}

void ownKeysOf(auto& visit, DumpMetadata& call) {
  visit.must("name", call.name, "Beginning of the file name");
  visit.must("frame", call.frame);
}

void ownKeysOf(auto& visit, DecideSensorScenario& call) {
  visit.must("video", call.video, "The configuration has a video stream");
  visit.must("width", call.width);
  visit.must("height", call.height);
}

void ownKeysOf(auto& visit, SetEvent& call) {
  visit.must("key", call.key);
  visit.must("value", call.value);
}

void ownKeysOf(auto& visit, SetProperty& call) {
  visit.must("name", call.name);
  visit.must("value", call.value);
}

template <typename V, typename CallType>
requires requires { CallType::kName; }
void keysOf(V& visit, CallType& call) {
  if constexpr (requires { call.sensor; }) visit.must("sensor", call.sensor);
  if constexpr (requires { call.requestNo; }) visit.must("requestNo", call.requestNo);
  if constexpr (kHasMeta<CallType>) visit.must("meta", call.meta);
  ownKeysOf(visit, call);
}

/// Calls `use` with one call of each kind.
void forEachCall(auto use) {
  const auto useEach = [&]<typename... Calls>(const std::variant<Calls...>*) {
    (use(Calls()), ...);
  };
  useEach(static_cast<const Call*>(nullptr));
}

}  // namespace camhook
