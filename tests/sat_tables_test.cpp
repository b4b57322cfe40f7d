// The tables of the zoom transition (SAT), compiled with the tuning rows of
// tests/support/SatTuning.def. sat_tuning_test.sh checks that invalid rows do not compile.

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string_view>

#include "common/sat/SatTables.h"

namespace {

using namespace hesk;

TEST(SatTables, HaveOneRecordPerKey) {
  std::set<std::string_view> products;
  for (const ThresholdOfSat& record : satThresholds()) {
    EXPECT_TRUE(products.insert(record.product).second) << record.product;
    EXPECT_FALSE(record.thresholds.empty()) << record.product;
    EXPECT_TRUE(std::ranges::is_sorted(record.thresholds)) << record.product;
  }
  EXPECT_TRUE(products.contains("DEFAULT"));
  products.clear();
  for (const FallbackRange& range : fallbackRanges()) {
    EXPECT_TRUE(products.insert(range.product).second) << range.product;
    const auto* const tail = std::ranges::find(range.values, 0.0F);
    EXPECT_GT(tail - std::begin(range.values), 0) << range.product;
    EXPECT_EQ((tail - std::begin(range.values)) % 2, 0) << range.product;
    EXPECT_EQ(std::count(tail, std::end(range.values), 0.0F), std::end(range.values) - tail);
  }
  std::set<std::int32_t> keys;
  for (const SatFusionParams& params : satFusionParams()) {
    EXPECT_TRUE(keys.insert(params.key).second) << params.key;
  }
  EXPECT_FALSE(products.empty() || keys.empty());
}

TEST(SatTables, AppendTuningRowsToProduct) {
  const auto& fixed = satThresholds().back().groups;
  EXPECT_FALSE(fixed[0].empty());
  auto tuned = fixed;
  tuned[0].push_back({1.1F, 1.2F, 1.3F, 1.4F, 1.5F, 1.6F});
  tuned[1] = {{2.1F, 2.2F}, {2.3F, 2.4F}};
  tuned[6] = {{7.1F, 7.2F}};
  for (const auto& [product, thresholds, groups] : satThresholds()) {
    EXPECT_EQ(groups, std::string_view(product) == "KX0105" ? tuned : fixed) << product;
  }
}

}  // namespace
