// The zoom transition's tables, with the tuning rows of tests/support/SatTuning.def. What is no
// such list stops the build: sat_tuning_test.sh.

#include <gtest/gtest.h>

#include <string_view>
#include <utility>
#include <vector>

#include "common/sat/SatTables.h"

namespace {

using namespace hesk;
using Group = ThresholdOfSat::Group;

TEST(SatTables, HoldTheThresholdsOfTheirProducts) {
  const std::pair<const char*, std::vector<float>> rows[] = {
      {"KX0108", {4.2F, 7, 7}},       {"KX0105", {4.2F, 7, 7}}, {"KX0104", {4.2F, 7, 7}},
      {"KX0107", {4.2F, 10, 10, 10}}, {"KX0106", {4.2F, 7, 7}}, {"KX0103", {4.2F, 7, 7}},
      {"KX0101", {4.2F, 10, 10, 10}}, {"DEFAULT", {7, 7, 7}}};
  ASSERT_EQ(satThresholds().size(), std::size(rows));
  for (std::size_t i = 0; i < std::size(rows); ++i) {
    EXPECT_STREQ(satThresholds()[i].product, rows[i].first);
    EXPECT_EQ(satThresholds()[i].thresholds, rows[i].second) << rows[i].first;
  }
}

TEST(SatTables, TuningRowsFollowWhatIsFixedInTheirProductAndGroup) {
  for (const auto& [product, thresholds, groups] : satThresholds()) {
    const bool isTuned = std::string_view(product) == "KX0105";
    Group first = {{0.6F, 1.3F}, {0.8F, 2.6F}};
    if (isTuned) first.push_back({1.1F, 1.2F, 1.3F, 1.4F, 1.5F, 1.6F});
    EXPECT_EQ(groups[0], first) << product;
    const Group second = {{2.1F, 2.2F}, {2.3F, 2.4F}, {2.5F, 2.6F}};
    EXPECT_EQ(groups[1], isTuned ? second : Group()) << product;
    const Group last = {{7.1F, 7.2F}, {7.3F, 7.4F}, {7.5F, 7.6F}, {7.7F, 7.8F}};
    EXPECT_EQ(groups[6], isTuned ? last : Group()) << product;
  }
}

TEST(SatTables, HoldTheRangesOfTheFallback) {
  const std::pair<const char*, std::vector<float>> rows[] = {
      {"KX0107", {1.5F, 2, 50, 390, 3, 5, 100, 390}},
      {"KX0106", {1.5F, 2, 50, 390}},
      {"KY0201", {1.6F, 2, 0.1F, 310, 3, 5, 0.1F, 310}},
      {"KX0101", {1.5F, 2, 50, 390, 3, 5, 100, 390}}};
  ASSERT_EQ(fallbackRanges().size(), std::size(rows));
  for (std::size_t i = 0; i < std::size(rows); ++i) {
    const auto& [product, number, values] = fallbackRanges()[i];
    EXPECT_STREQ(product, rows[i].first);
    EXPECT_EQ(number, 1);
    std::vector<float> expected;
    for (int pair = 0; pair < 4; ++pair) expected.insert(expected.end(), {9999.9F, 0.1F});
    expected.insert(expected.end(), rows[i].second.begin(), rows[i].second.end());
    expected.resize(std::size(values));
    EXPECT_EQ(std::vector(std::begin(values), std::end(values)), expected) << product;
  }
}

TEST(SatTables, HoldTheParametersOfTheFusion) {
  const std::vector<float> rows[] = {
      {-1, 0, 10, 10, 10}, {3, 0, 20, 20, 20}, {1, 1.1F, 10, 10, 10}};  // key, value, values
  ASSERT_EQ(satFusionParams().size(), std::size(rows));
  for (std::size_t i = 0; i < std::size(rows); ++i) {
    const auto& [key, value, values, zeros] = satFusionParams()[i];
    EXPECT_EQ((std::vector{static_cast<float>(key), value, values[0], values[1], values[2]}),
              rows[i]);
  }
}

}  // namespace
