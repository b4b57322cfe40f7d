#include "common/sat/SatTables.h"

#include <algorithm>
#include <initializer_list>
#include <string_view>

namespace {

using namespace hesk;

constexpr float kFar = 9999.9F;  // outer bounds
constexpr float kNear = 0.1F;

constexpr std::string_view kProducts[] = {"KX0108", "KX0105", "KX0104", "KX0107",
                                          "KX0106", "KX0103", "KX0101", "DEFAULT"};

[[maybe_unused]] constexpr bool isProduct(std::string_view product) {
  return std::find(std::begin(kProducts), std::end(kProducts), product) != std::end(kProducts);
}

[[maybe_unused]] constexpr bool isRow(std::initializer_list<float> row) {
  return row.size() == 2 || row.size() == 6;
}

ThresholdOfSat thresholdOf(std::string_view product, std::initializer_list<float> thresholds) {
  ThresholdOfSat record{.product = product.data(), .thresholds = thresholds, .groups = {}};
  record.groups[0] = {{0.6F, 1.3F}, {0.8F, 2.6F}};
#define SAT_ROW(model, group, ...)                                              \
  static_assert(isProduct(model), model " is not a product of the thresholds"); \
  static_assert(isRow({__VA_ARGS__}), "a row has 2 or 6 floats");               \
  if (product == (model)) std::get<(group)-1>(record.groups).push_back({__VA_ARGS__});
#include CAM_SAT_TUNING
#undef SAT_ROW
  return record;
}

// clang-format off
const std::vector<FallbackRange> kFallbackRanges = {
  {"KX0107", 1, {kFar, kNear, kFar, kNear, kFar, kNear, kFar, kNear, 1.5F, 2.0F, 50.0F,  390.0F, 3.0F, 5.0F, 100.0F, 390.0F}},
  {"KX0106", 1, {kFar, kNear, kFar, kNear, kFar, kNear, kFar, kNear, 1.5F, 2.0F, 50.0F,  390.0F}},
  {"KY0201", 1, {kFar, kNear, kFar, kNear, kFar, kNear, kFar, kNear, 1.6F, 2.0F, kNear,  310.0F, 3.0F, 5.0F, kNear,  310.0F}},
  {"KX0101", 1, {kFar, kNear, kFar, kNear, kFar, kNear, kFar, kNear, 1.5F, 2.0F, 50.0F,  390.0F, 3.0F, 5.0F, 100.0F, 390.0F}},
};

const std::vector<ThresholdOfSat> kThresholds = {
  thresholdOf("KX0108",  {4.2F, 7.0F,  7.0F}),
  thresholdOf("KX0105",  {4.2F, 7.0F,  7.0F}),
  thresholdOf("KX0104",  {4.2F, 7.0F,  7.0F}),
  thresholdOf("KX0107",  {4.2F, 10.0F, 10.0F, 10.0F}),
  thresholdOf("KX0106",  {4.2F, 7.0F,  7.0F}),
  thresholdOf("KX0103",  {4.2F, 7.0F,  7.0F}),
  thresholdOf("KX0101",  {4.2F, 10.0F, 10.0F, 10.0F}),
  thresholdOf("DEFAULT", {7.0F, 7.0F,  7.0F}),
};

const std::vector<SatFusionParams> kFusionParams = {
  {-1, 0.0F, {10.0F, 10.0F, 10.0F}, {}},
  { 3, 0.0F, {20.0F, 20.0F, 20.0F}, {}},
  { 1, 1.1F, {10.0F, 10.0F, 10.0F}, {}},
};
// clang-format on

}  // namespace

const std::vector<FallbackRange>& hesk::fallbackRanges() { return kFallbackRanges; }
const std::vector<ThresholdOfSat>& hesk::satThresholds() { return kThresholds; }
const std::vector<SatFusionParams>& hesk::satFusionParams() { return kFusionParams; }
