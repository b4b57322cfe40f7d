// The configuration of a simulated phone. docs/scenarios.md describes the fields and their
// defaults.

#pragma once

#include <array>
#include <cstdint>
#include <ctime>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/TextStore.h"
#include "platform/FaceDetection.h"
#include "platform/HalSensor.h"
#include "platform/IMetadata.h"

namespace host {

struct Hal3AConfig {
  bool available = true;
  float shadingBase = 1.0F;
};

/// The sensor of a device, with its phase-detection block.
struct SensorConfig {
  using Pair = NSCam::SensorPdBlock::Pair;
  using Pairs = std::array<Pair, NSCam::SensorPdBlock::kMaxPairs>;

  std::int32_t index = 0;
  std::int32_t pdSupported = 0;
  std::array<std::int32_t, 5> pdWords{};
  Pairs pdLeft{};
  Pairs pdRight{};
  std::array<std::int32_t, 2> pdTail{};
};

struct DeviceConfig {
  bool hasProvider = true;
  NSCam::IMetadata statics;
  Hal3AConfig hal3A;
  bool hasDefaultShading = true;
  NSCam::IMetadata defaultShading;
  std::vector<NSCam::FaceRecord::Face> faces;
  std::optional<SensorConfig> sensor;
};

/// The multi-camera zoom-transition library.
struct SatConfig {
  struct Camera {
    std::int32_t id = 0;
    std::int32_t role = 0;
    float fov = 0.0F;
  };
  struct Translation {
    std::int32_t scale = 1;
    std::int32_t dx = 0;
    std::int32_t dy = 0;
  };

  std::vector<Camera> cameras;
  std::optional<std::int32_t> configured;  // absent: the number of cameras
  std::int32_t defaultRole = 0;
  Translation translate;
};

struct ProviderConfig {
  std::int32_t fpsCap = 0;
};

struct TuningBufferConfig {
  std::optional<std::int32_t> fd;
  std::optional<std::int32_t> bufferSize;
  std::optional<std::int32_t> bufferIndex;
};

struct PhoneConfig {
  TextMap properties;
  TextMap eventStore;
  std::map<std::int32_t, DeviceConfig> devices;
  bool sensorList = true;
  bool hal3AModule = true;
  bool defaultShadingModule = true;
  bool faceDetection = true;
  SatConfig sat;
  std::optional<ProviderConfig> provider;
  std::optional<TuningBufferConfig> tuningBuffer;
  std::optional<std::tm> clock;                            // absent: the wall clock
  std::function<std::string_view(std::uint32_t)> tagName;  // for dumps, if Android has no name

  /// Returns the configuration of a device; for an id that is not listed, the defaults without a
  /// metadata provider.
  [[nodiscard]] const DeviceConfig& deviceOrDefault(std::int32_t id) const;
};

}  // namespace host
