// The record of auto exposure that the raw algorithms take.

#pragma once

#include <array>
#include <cstdint>

namespace hesk {

/// What auto exposure says of a frame.
struct AeInput {
  std::int32_t luxIndex;
  std::int32_t expIndex;
  std::int32_t sensorGain;  // 1024 is 1x
  std::int32_t ispGain;     // 4096 is 1x
  std::int32_t adrcGain;    // 1000 is 1x
  std::int64_t exposureNs;
};

/// The record's floats in their order. It has room for short, safe, long and normal exposures: a
/// frame has one, which stands in all of them.
using AeResult = std::array<float, 22>;

inline AeResult aeResultOf(const AeInput& input) noexcept {
  const float sensorGain = static_cast<float>(input.sensorGain) * (1.0F / 1024);
  const float ispGain = static_cast<float>(input.ispGain) * (1.0F / 4096);
  const float realGain = ispGain * sensorGain;
  const float adrcGain = static_cast<float>(input.adrcGain) / 1000.0F;
  const auto exposureTime = static_cast<float>(input.exposureNs);
  const float sensitivity = realGain * exposureTime;
  return {
      static_cast<float>(input.luxIndex),
      static_cast<float>(input.expIndex),
      realGain,
      realGain,  // safe
      realGain,  // long
      sensorGain,
      adrcGain,
      1.0F,  // dark boost
      ispGain,
      sensitivity,  // short
      sensitivity,  // safe
      sensitivity,  // long
      sensorGain,   // short
      ispGain,
      exposureTime,
      sensorGain,  // normal
      ispGain,
      exposureTime,
      adrcGain,
      1.0F,  // sensitivity ratio
      1.0F,  // exposure-time ratio
      1.0F,  // gain ratio
  };
}

}  // namespace hesk
