// The rules and overrides by which sensor scenarios are chosen: the library's, or those that were
// once written down.

#pragma once

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "common/sensormode/Overrides.h"
#include "common/sensormode/SensorModeTables.h"
#include "tools/camhook/input/Json.h"

namespace camhook {

using Rules = std::vector<SensorModeCfg>;

/// One of the lists that a table has.
struct RuleList {
  const char* name;  // "sensor0Preview"
  std::int32_t sensor;
  bool video;
  Rules SensorModeTable::*rules;
};

inline constexpr RuleList kRuleLists[] = {
    {"sensor0Preview", 0, false, &SensorModeTable::sensor0Preview},
    {"sensor0Video", 0, true, &SensorModeTable::sensor0Video},
    {"sensor1Preview", 1, false, &SensorModeTable::sensor1Preview},
    {"sensor1Video", 1, true, &SensorModeTable::sensor1Video},
};

/// The list for such a configuration; null for none.
const RuleList* findRuleList(std::int32_t sensor, bool video);

struct RuleSet {
  std::vector<SensorModeTable> tables;
  std::vector<hesk::Override> overrides;
  std::shared_ptr<const Json> texts;  // those that the above point into; null: the library's

  /// The table that counts for a product model; null for none.
  [[nodiscard]] const SensorModeTable* tableFor(std::string_view product) const;
};

/// Those of the library that is loaded into this process.
RuleSet rulesOfLibrary();

Json jsonFromRule(const SensorModeCfg& rule);
Json jsonFromRules(const RuleSet& rules);

/// Reads what `jsonFromRules` makes. Throws InputError.
RuleSet rulesFromJson(Json json);

}  // namespace camhook
