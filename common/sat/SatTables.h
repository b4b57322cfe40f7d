// The configuration of the zoom transition (SAT) per product. The tables are built when the library
// is loaded and never changed. No hook reads them.

#pragma once

#include <array>
#include <cstdint>
#include <vector>

namespace hesk {

struct ThresholdOfSat {
  using Group = std::vector<std::vector<float>>;  // rows of 2 or 6 floats
  static constexpr std::size_t kGroups = 7;

  const char* product;  // model code; "DEFAULT" for products without a record
  std::vector<float> thresholds;
  std::array<Group, kGroups> groups;
};

struct FallbackRange {
  const char* product;
  std::int32_t number;
  float values[33];  // the tail is 0
};
static_assert(sizeof(void*) != 8 || sizeof(FallbackRange) == 144);

struct SatFusionParams {
  std::int32_t key;
  float value;
  float values[3];
  std::int32_t zeros[4];
};
static_assert(sizeof(SatFusionParams) == 36);

const std::vector<FallbackRange>& fallbackRanges();
const std::vector<ThresholdOfSat>& satThresholds();
const std::vector<SatFusionParams>& satFusionParams();

}  // namespace hesk
