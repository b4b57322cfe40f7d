#include "common/sat/SatTables.h"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <utility>

namespace {

using namespace hesk;

constexpr float kFar = 9999.9F;  // outer bounds
constexpr float kNear = 0.1F;

/// A tuning row of a product, as its integrator lists it.
struct TuningRow {
  static constexpr std::size_t kMostFloats = 6;

  template <typename... Floats>
  constexpr TuningRow(std::string_view model, int number, Floats... floats)
      : product(model), group(number), count(sizeof...(floats)), values{floats...} {
    static_assert(sizeof...(floats) == 2 || sizeof...(floats) == kMostFloats,
                  "a row of the zoom transition's tuning has 2 or 6 floats");
  }

  std::string_view product;
  int group;
  std::size_t count;
  std::array<float, kMostFloats> values;
};

// An array needs an element: the first belongs to nobody.
constexpr TuningRow kTuningRows[] = {
    TuningRow("", 0, 0.0F, 0.0F),
#define SAT_ROW(...) TuningRow(__VA_ARGS__),
#include CAM_SAT_TUNING
#undef SAT_ROW
};

constexpr std::string_view kProducts[] = {"KX0108", "KX0105", "KX0104", "KX0107",
                                          "KX0106", "KX0103", "KX0101", "DEFAULT"};
constexpr int kGroups = static_cast<int>(ThresholdOfSat::kGroups);

constexpr std::ptrdiff_t rowsOf(std::string_view product, int group) {
  return std::ranges::count_if(kTuningRows, [&](const TuningRow& row) {
    return row.product == product && row.group == group;
  });
}

constexpr bool isTuned(std::string_view product) {
  return std::ranges::find(kTuningRows, product, &TuningRow::product) != std::end(kTuningRows);
}

constexpr bool isEveryRowOfAKnownGroup() {
  return std::ranges::all_of(kTuningRows, [](const TuningRow& row) {
    const bool isKnown = std::ranges::find(kProducts, row.product) != std::end(kProducts) &&
                         row.group >= 1 && row.group <= kGroups;
    return row.product.empty() || isKnown;
  });
}

constexpr bool hasEveryGroupItsRows() {
  for (const std::string_view product : kProducts) {
    for (int group = 1; isTuned(product) && group <= kGroups; ++group) {
      const std::ptrdiff_t rows = rowsOf(product, group) + (group == 1 ? 2 : 0);
      if (rows != 3 && rows != 4) return false;
    }
  }
  return true;
}

static_assert(isEveryRowOfAKnownGroup(),
              "a row of the zoom transition's tuning names a product of this file and a group from "
              "1 to 7");
static_assert(hasEveryGroupItsRows(),
              "every group of a product in the zoom transition's tuning has 3 or 4 rows in all");

ThresholdOfSat thresholdOf(std::string_view product, std::vector<float> thresholds) {
  ThresholdOfSat record{
      .product = product.data(), .thresholds = std::move(thresholds), .groups = {}};
  record.groups.front() = {{0.6F, 1.3F}, {0.8F, 2.6F}};
  for (const TuningRow& row : kTuningRows) {
    if (row.product != product) continue;
    const auto* const first = row.values.begin();
    record.groups[static_cast<std::size_t>(row.group - 1)].emplace_back(
        first, first + static_cast<std::ptrdiff_t>(row.count));
  }
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
