// How a decision is followed step by step by someone who wants to know why. The sensor mode control
// tells its observer what it does as it does it; nothing on a phone observes.

#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include "common/sensormode/SensorModeTables.h"

namespace hesk {

class DecisionObserver {
 public:
  /// What a condition compares.
  using Value = std::variant<std::int32_t, std::string>;

  struct Comparison {
    const SensorModeCfg& rule;
    const char* field;    // of the rule
    const Value& wanted;  // by the rule
    const Value& found;   // in the configuration
    bool isEqual;
  };

  DecisionObserver() = default;
  DecisionObserver(const DecisionObserver&) = delete;
  DecisionObserver& operator=(const DecisionObserver&) = delete;
  virtual ~DecisionObserver() = default;

  /// The product's table, null for none, and the list of it that counts, null for none.
  virtual void onRules(const SensorModeTable* table, const std::vector<SensorModeCfg>* list) = 0;

  /// A filter has its turn.
  virtual void onFilter(const char* filter) = 0;

  /// It looks at no rule, and why.
  virtual void onPass(const char* why) = 0;

  /// It has compared a condition of a rule.
  virtual void onComparison(const Comparison& comparison) = 0;

  /// It takes the rule.
  virtual void onSelection(const SensorModeCfg& rule) = 0;

  /// What the rules come to, before the overrides.
  virtual void onBase(std::int32_t scenario) = 0;

  /// An override fires; the last one holds.
  virtual void onOverride(const char* when, std::int32_t scenario) = 0;
};

}  // namespace hesk
