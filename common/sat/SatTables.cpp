#include "common/sat/SatTables.h"

#include <algorithm>
#include <initializer_list>
#include <string_view>

namespace {

using namespace hesk;

constexpr float kFar = 9999.9F;  // outer bounds
constexpr float kNear = 0.1F;

struct Thresholds {
  const char* product;
  std::initializer_list<float> values;
};

constexpr Thresholds kThresholdValues[] = {
    {"KX0108", {4.2F, 7.0F, 7.0F}},          {"KX0105", {4.2F, 7.0F, 7.0F}},
    {"KX0104", {4.2F, 7.0F, 7.0F}},          {"KX0107", {4.2F, 10.0F, 10.0F, 10.0F}},
    {"KX0106", {4.2F, 7.0F, 7.0F}},          {"KX0103", {4.2F, 7.0F, 7.0F}},
    {"KX0101", {4.2F, 10.0F, 10.0F, 10.0F}}, {"DEFAULT", {7.0F, 7.0F, 7.0F}},
};

[[maybe_unused]] constexpr bool isProduct(std::string_view product) {
  return std::any_of(std::begin(kThresholdValues), std::end(kThresholdValues),
                     [product](const Thresholds& each) { return product == each.product; });
}

[[maybe_unused]] constexpr bool isRow(std::initializer_list<float> row) {
  return row.size() == 2 || row.size() == 6;
}

ThresholdOfSat thresholdOf(const Thresholds& thresholds) {
  [[maybe_unused]] const std::string_view product = thresholds.product;
  ThresholdOfSat record{
      .product = thresholds.product, .thresholds = thresholds.values, .groups = {}};
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

const std::vector<ThresholdOfSat> kThresholds = [] {
  std::vector<ThresholdOfSat> records;
  for (const Thresholds& each : kThresholdValues) records.push_back(thresholdOf(each));
  return records;
}();

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
