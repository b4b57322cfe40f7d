// The auto-exposure record of the raw algorithms.

#pragma once

#include <cstdint>

namespace hesk {

/// The auto-exposure state of a frame.
struct AeInput {
  std::int32_t luxIndex;
  std::int32_t expIndex;
  std::int32_t sensorGain;  // 1024 is 1x
  std::int32_t ispGain;     // 4096 is 1x
  std::int32_t adrcGain;    // 1000 is 1x
  std::int64_t exposureNs;
};

/// The record, in the order in which its floats are written. The fields of the short, safe, long
/// and normal exposures are all filled from the frame's one exposure. A gain of 1 is 1x, times are
/// in ns, a sensitivity is gain times exposure time.
struct AeResult {
  float luxIndex;
  float expIndex;
  float realGain;
  float safeGain;
  float longGain;
  float sensorGain;
  float adrcGain;
  float darkBoostGain;
  float ispGain;
  float sensitivityShort;
  float sensitivitySafe;
  float sensitivityLong;
  float sensorGainShort;
  float ispGainShort;
  float expTimeShort;
  float sensorGainNormal;
  float ispGainNormal;
  float expTimeNormal;
  float adrcGainNormal;
  float sensitivityRatio;
  float expTimeRatio;
  float gainRatio;
};
static_assert(sizeof(AeResult) == 22 * sizeof(float));

inline AeResult aeResultOf(const AeInput& input) noexcept {
  const float sensorGain = static_cast<float>(input.sensorGain) * (1.0F / 1024);
  const float ispGain = static_cast<float>(input.ispGain) * (1.0F / 4096);
  const float realGain = ispGain * sensorGain;
  const float adrcGain = static_cast<float>(input.adrcGain) / 1000.0F;
  const auto expTime = static_cast<float>(input.exposureNs);
  const float sensitivity = realGain * expTime;
  return {.luxIndex = static_cast<float>(input.luxIndex),
          .expIndex = static_cast<float>(input.expIndex),
          .realGain = realGain,
          .safeGain = realGain,
          .longGain = realGain,
          .sensorGain = sensorGain,
          .adrcGain = adrcGain,
          .darkBoostGain = 1.0F,
          .ispGain = ispGain,
          .sensitivityShort = sensitivity,
          .sensitivitySafe = sensitivity,
          .sensitivityLong = sensitivity,
          .sensorGainShort = sensorGain,
          .ispGainShort = ispGain,
          .expTimeShort = expTime,
          .sensorGainNormal = sensorGain,
          .ispGainNormal = ispGain,
          .expTimeNormal = expTime,
          .adrcGainNormal = adrcGain,
          .sensitivityRatio = 1.0F,
          .expTimeRatio = 1.0F,
          .gainRatio = 1.0F};
}

}  // namespace hesk
