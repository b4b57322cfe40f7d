// Phones on tapes: what is set on them, what they lack.

#pragma once

#include <cstdint>
#include <ctime>
#include <optional>

#include "fuzz/MetadataTape.h"
#include "fuzz/Tape.h"
#include "host/PhoneConfig.h"

namespace fuzz {

template <typename Tape>
void transfer(Tape& tape, host::Hal3AConfig& hal3A) {
  transferAll(tape, hal3A.available, hal3A.shadingBase);
}

template <typename Tape>
void transfer(Tape& tape, host::FaceConfig& face) {
  transferAll(tape, face.rect, face.score);
}

template <typename Tape>
void transfer(Tape& tape, host::SensorConfig& sensor) {
  transferAll(tape, sensor.index, sensor.pdSupported, sensor.pdWords, sensor.pdLeft, sensor.pdRight,
              sensor.pdTail);
}

template <typename Tape>
void transfer(Tape& tape, host::DeviceConfig& device) {
  transferAll(tape, device.hasProvider, device.statics, device.hal3A, device.hasDefaultShading,
              device.defaultShading, device.faces, device.sensor);
}

template <typename Tape>
void transfer(Tape& tape, host::SatConfig::Camera& camera) {
  transferAll(tape, camera.id, camera.role, camera.fov);
}

template <typename Tape>
void transfer(Tape& tape, host::SatConfig& sat) {
  transferAll(tape, sat.cameras, sat.configured, sat.defaultRole, sat.translate.scale,
              sat.translate.dx, sat.translate.dy);
}

template <typename Tape>
void transfer(Tape& tape, host::ProviderConfig& provider) {
  transferAll(tape, provider.fpsCap);
}

template <typename Tape>
void transfer(Tape& tape, host::TuningBufferConfig& buffer) {
  transferAll(tape, buffer.fd, buffer.bufferSize, buffer.bufferIndex);
  if (buffer.bufferSize) {
    // A machine that runs many phones has no room for larger ones.
    constexpr std::uint32_t kMostBytes = std::uint32_t{1} << 22;
    const auto bytes = static_cast<std::uint32_t>(*buffer.bufferSize) % kMostBytes;
    buffer.bufferSize = static_cast<std::int32_t>(bytes);
  }
}

/// As seconds of UTC; a time in no year that a calendar has is none.
template <typename Tape>
void transferClock(Tape& tape, std::optional<std::tm>& clock) {
  std::optional<std::int64_t> seconds;
  if (clock) {
    std::tm time = *clock;
    seconds = timegm(&time);
  }
  transfer(tape, seconds);
  clock.reset();
  if (!seconds) return;
  const std::time_t time = *seconds;
  std::tm parts{};
  if (gmtime_r(&time, &parts) != nullptr) clock = parts;
}

template <typename Tape>
void transfer(Tape& tape, host::PhoneConfig& phone) {
  transferAll(tape, phone.sensorList, phone.hal3AModule, phone.defaultShadingModule,
              phone.faceDetection, phone.properties, phone.eventStore, phone.devices, phone.sat,
              phone.provider, phone.tuningBuffer);
  transferClock(tape, phone.clock);
}

}  // namespace fuzz
