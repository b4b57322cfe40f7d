// The keys that a scenario may hold, object by object, each with what it is read into and what it
// means. The reader, the schema and whoever looks for a mistyped key go through the same list:
//
//   keysOf(visitor, object)
//
// calls `visitor.must(key, target, meaning)` for each key that has to be there and `visitor.may`
// for the others. What a value looks like follows from the type of its target.

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "host/PhoneConfig.h"
#include "tools/camhook/input/KnownNames.h"
#include "tools/camhook/input/Scenario.h"

namespace camhook {

/// Keys of calls that `keysOf` does not list: the kind of the call, and the call whose container it
/// gets, of calls with the single container `meta`.
inline constexpr std::string_view kCallKey = "call";
inline constexpr std::string_view kMetaOfKey = "metaOf";

// Targets for values of which a plain type does not say enough.

/// A tag's name or a hexadecimal text, which may be wider than a tag.
struct WideTag {
  std::uint64_t& tag;
};

/// A number of bytes that a machine has room for.
struct BlockSize {
  static constexpr std::uint32_t kMost = 1U << 26U;
  std::uint32_t& bytes;
};

/// A list that may be shorter than its place.
template <typename T, std::size_t Size>
struct Row {
  explicit Row(std::array<T, Size>& place) : items(place) {}

  std::array<T, Size>& items;
};

/// Metadata, or null where there is none.
struct DefaultShading {
  bool& isThere;
  NSCam::IMetadata& values;
};

/// Texts under their names, some of which are known.
struct NamedTexts {
  host::TextMap& texts;
  std::span<const KnownName> known;
};

/// A scenario but for its calls, which are read one by one.
struct ScenarioFrame {
  struct Calls {};

  std::string schema;
  std::string about;
  host::PhoneConfig platform;
  Calls calls;
};

/// What the schema calls an object; empty for what is none.
template <typename T>
inline constexpr std::string_view kObjectName;
template <>
inline constexpr std::string_view kObjectName<ScenarioFrame> = "scenario";
template <>
inline constexpr std::string_view kObjectName<host::PhoneConfig> = "platform";
template <>
inline constexpr std::string_view kObjectName<host::DeviceConfig> = "device";
template <>
inline constexpr std::string_view kObjectName<host::Hal3AConfig> = "hal3a";
template <>
inline constexpr std::string_view kObjectName<NSCam::FaceRecord::Face> = "face";
template <>
inline constexpr std::string_view kObjectName<host::SensorConfig> = "sensor";
template <>
inline constexpr std::string_view kObjectName<host::SatConfig> = "sat";
template <>
inline constexpr std::string_view kObjectName<host::SatConfig::Camera> = "satCamera";
template <>
inline constexpr std::string_view kObjectName<host::SatConfig::Translation> = "satTranslate";
template <>
inline constexpr std::string_view kObjectName<host::ProviderConfig> = "provider";
template <>
inline constexpr std::string_view kObjectName<host::TuningBufferConfig> = "tuningBuffer";
template <>
inline constexpr std::string_view kObjectName<UpdateSessionParams::Stream> = "stream";

template <typename T>
concept ScenarioObject = !kObjectName<T>.empty();

template <typename V>
void keysOf(V& visit, ScenarioFrame& scenario) {
  visit.may("$schema", scenario.schema, "Where an editor finds this schema");
  visit.may("about", scenario.about, "What the scenario shows");
  visit.may("platform", scenario.platform);
  visit.must("calls", scenario.calls);
}

template <typename V>
void keysOf(V& visit, host::PhoneConfig& phone) {
  visit.may("properties", NamedTexts{phone.properties, kKnownProperties}, "System properties");
  visit.may("eventStore", NamedTexts{phone.eventStore, kKnownEvents}, "The event store's values");
  visit.may("devices", phone.devices, "Cameras by number");
  visit.may("sensorList", phone.sensorList, "Whether there is a sensor list; by default there is");
  visit.may("hal3aModule", phone.hal3AModule,
            "Whether the HAL has the 3A module; by default it has");
  visit.may("defaultShadingModule", phone.defaultShadingModule,
            "Whether the HAL has the module of default shading; by default it has");
  visit.may("faceDetection", phone.faceDetection,
            "Whether the container of detected faces can be had; by default it can");
  visit.may("sat", phone.sat, "The zoom-transition library");
  visit.may("provider", phone.provider, "The camera provider service; absent: it cannot be had");
  visit.may("tuningBuffer", phone.tuningBuffer,
            "What the 3A information manager hands out; what is absent stays as it is");
  visit.may("clock", phone.clock, "Local time, standing still: 2021-03-04T05:06:07");
}

template <typename V>
void keysOf(V& visit, host::DeviceConfig& device) {
  visit.may("static", device.statics, "Static metadata");
  visit.may("hal3a", device.hal3A);
  visit.may("defaultShading", DefaultShading{device.hasDefaultShading, device.defaultShading},
            "null: the module has nothing for the device");
  visit.may("faces", device.faces, "What is detected");
  visit.may("sensor", device.sensor,
            "The sensor driver's object; absent: the sensor list creates none");
}

template <typename V>
void keysOf(V& visit, host::Hal3AConfig& hal3A) {
  visit.may("available", hal3A.available, "Whether one can be created; by default it can");
  visit.may("shadingBase", hal3A.shadingBase, "The first value of the shading map; by default 1");
}

template <typename V>
void keysOf(V& visit, NSCam::FaceRecord::Face& face) {
  visit.may("rect", face.rect);
  visit.may("score", face.score);
}

template <typename V>
void keysOf(V& visit, host::SensorConfig& sensor) {
  visit.may("index", sensor.index);
  visit.may("pdSupported", sensor.pdSupported, "Whether it has phase-detection pixels");
  visit.may("pdWords", Row{sensor.pdWords});
  visit.may("pdLeft", Row{sensor.pdLeft}, "Phase-detection pixels: [a, b] each");
  visit.may("pdRight", Row{sensor.pdRight}, "Phase-detection pixels: [a, b] each");
  visit.may("pdTail", Row{sensor.pdTail});
}

template <typename V>
void keysOf(V& visit, host::SatConfig& sat) {
  visit.may("cameras", sat.cameras);
  visit.may("configured", sat.configured, "By default the number of cameras");
  visit.may("defaultRole", sat.defaultRole);
  visit.may("translate", sat.translate, "What becomes of regions; by default they stay");
}

template <typename V>
void keysOf(V& visit, host::SatConfig::Camera& camera) {
  visit.may("id", camera.id);
  visit.may("role", camera.role);
  visit.may("fov", camera.fov, "In degrees");
}

template <typename V>
void keysOf(V& visit, host::SatConfig::Translation& translate) {
  visit.may("scale", translate.scale, "By default 1");
  visit.may("dx", translate.dx);
  visit.may("dy", translate.dy);
}

template <typename V>
void keysOf(V& visit, host::ProviderConfig& provider) {
  visit.may("fpsCap", provider.fpsCap);
}

template <typename V>
void keysOf(V& visit, host::TuningBufferConfig& buffer) {
  visit.may("fd", buffer.fd);
  visit.may("bufferSize", buffer.bufferSize);
  visit.may("bufferIndex", buffer.bufferIndex);
}

template <typename V>
void keysOf(V& visit, CreateInstance& call) {
  visit.must("sensor", call.sensor);
}

template <typename V>
void keysOf(V& visit, UpdateSessionParams& call) {
  visit.must("sensor", call.sensor);
  visit.must("meta", call.meta);
  visit.must("streams", call.streams, "The configured streams, no two of one id");
}

template <typename V>
void keysOf(V& visit, UpdateSessionParams::Stream& stream) {
  visit.must("id", stream.id);
  visit.must("usage", stream.usage, "Bits; 0x10000 is the video encoder's");
  visit.must("width", stream.width);
  visit.must("height", stream.height);
}

template <typename V>
void keysOf(V& visit, UpdateRequestMeta& call) {
  visit.must("sensor", call.sensor);
  visit.must("requestNo", call.requestNo);
  visit.must("meta", call.meta);
}

template <typename V>
void keysOf(V& visit, UpdateResultMeta& call) {
  visit.must("sensor", call.sensor);
  visit.must("requestNo", call.requestNo);
  visit.must("meta", call.meta);
}

template <typename V>
void keysOf(V& visit, UpdateCaptureRawParameter& call) {
  visit.must("sensor", call.sensor);
  visit.must("app", call.app, "The frame's app metadata, with its 3A results");
  visit.must("hal", call.hal, "The frame's HAL metadata");
  visit.must("out", call.out, "What the raw algorithms are handed");
}

template <typename V>
void keysOf(V& visit, UpdateTuningData& call) {
  visit.must("sensor", call.sensor);
  visit.must("meta", call.meta);
  visit.must("size", BlockSize{call.size}, "Of the block, in bytes; byte i is i modulo 251");
}

template <typename V>
void keysOf(V& visit, TranslateResultRegion& call) {
  visit.must("sensor", call.sensor);
  visit.must("meta", call.meta);
  visit.must("value", call.value, "Its ratio to the camera's field of view is that of the zoom");
  visit.must("cameraId", call.cameraId);
  visit.must("tag", WideTag{call.tag});
}

template <typename V>
void keysOf(V& visit, SetPreviewSize& call) {
  visit.must("sensor", call.sensor);
  visit.must("width", call.width);
  visit.must("height", call.height);
}

template <typename V>
void keysOf(V& visit, MatchAspectRatio& call) {
  visit.must("sensor", call.sensor);
  visit.must("reference", call.reference);
  visit.must("size", call.size);
}

template <typename V>
void keysOf(V& visit, DumpMetadata& call) {
  visit.must("sensor", call.sensor);
  visit.must("meta", call.meta);
  visit.must("name", call.name, "Begins the file's name");
  visit.must("frame", call.frame);
}

template <typename V>
void keysOf(V& visit, DecideSensorScenario& call) {
  visit.must("sensor", call.sensor);
  visit.must("meta", call.meta);
  visit.must("video", call.video, "The configuration has a video stream");
  visit.must("width", call.width);
  visit.must("height", call.height);
}

template <typename V>
void keysOf(V& visit, SetEvent& call) {
  visit.must("key", call.key);
  visit.must("value", call.value);
}

template <typename V>
void keysOf(V& visit, SetProperty& call) {
  visit.must("name", call.name);
  visit.must("value", call.value);
}

/// Collects the keys alone.
class KeyNames {
 public:
  KeyNames(std::initializer_list<std::string_view> names) : mNames(names) {}

  template <typename T>
  void must(std::string_view key, T&& /*target*/, std::string_view /*meaning*/ = {}) {
    mNames.push_back(key);
  }
  template <typename T>
  void may(std::string_view key, T&& /*target*/, std::string_view /*meaning*/ = {}) {
    mNames.push_back(key);
  }

  [[nodiscard]] const std::vector<std::string_view>& names() const { return mNames; }

 private:
  std::vector<std::string_view> mNames;
};

/// Hands one call of each kind to `use`.
template <typename Use>
void forEachCall(Use use) {
  const auto useEach = [&]<typename... Calls>(const std::variant<Calls...>*) {
    (use(Calls()), ...);
  };
  useEach(static_cast<const Call*>(nullptr));
}

}  // namespace camhook
