// The zoom transition's configuration (SAT), product by product. Carried for the multi-camera
// library; nothing in this library looks it up. Built when the library is loaded and never changed.

#pragma once

#include <array>
#include <cstdint>
#include <vector>

namespace hesk {

/// The zoom ratios at which a product changes cameras.
struct ThresholdOfSat {
  using Group = std::vector<std::vector<float>>;  // rows of 2 or 6 floats
  static constexpr std::size_t kGroups = 7;

  const char* product;  // its model code; "DEFAULT" for products without a record
  std::vector<float> thresholds;
  std::array<Group, kGroups> groups;
};

/// Where a product falls back to another camera.
struct FallbackRange {
  const char* product;
  std::int32_t mode;
  float values[33];  // the tail is 0
};
static_assert(sizeof(void*) != 8 || sizeof(FallbackRange) == 144,
              "as the multi-camera library has it");

/// How two cameras' images are fused.
struct SatFusionParams {
  std::int32_t key;
  float zoom;
  float weights[3];
  std::int32_t reserved[4];
};
static_assert(sizeof(SatFusionParams) == 36, "as the multi-camera library has it");

const std::vector<FallbackRange>& fallbackRanges();
const std::vector<ThresholdOfSat>& satThresholds();
const std::vector<SatFusionParams>& satFusionParams();

}  // namespace hesk
