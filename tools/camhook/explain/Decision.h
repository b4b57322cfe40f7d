// The way to a sensor scenario, as the sensor mode control took it.

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "common/sensormode/DecisionObserver.h"
#include "tools/camhook/input/Json.h"

namespace camhook {

/// One decision, step by step.
struct Decision {
  /// A condition of a rule beside what the configuration has.
  struct Comparison {
    std::string field;
    Json wanted;
    Json found;
    bool isEqual = false;
  };
  struct RuleTrial {
    std::size_t row = 0;  // of the list, from 1
    std::vector<Comparison> comparisons;

    [[nodiscard]] std::size_t metCount() const;
  };
  struct Filter {
    std::string name;
    std::string passedBecause;  // empty where it looked at the rules
    std::vector<RuleTrial> trials;
    std::optional<std::size_t> takenRow;
  };
  struct Override {
    std::string when;
    std::int32_t scenario = 0;
  };

  std::string product;  // the table's; empty for none
  std::string list;     // empty for none
  std::vector<SensorModeCfg> rules;
  std::vector<Filter> filters;
  std::int32_t base = 0;
  std::vector<Override> overrides;
  std::int32_t scenario = 0;

  [[nodiscard]] std::optional<std::size_t> takenRow() const;
};

/// Writes down a decision that it observes.
class DecisionRecorder final : public hesk::DecisionObserver {
 public:
  void onRules(const SensorModeTable* table, const std::vector<SensorModeCfg>* list) override;
  void onFilter(const char* filter) override;
  void onPass(const char* why) override;
  void onComparison(const Comparison& comparison) override;
  void onSelection(const SensorModeCfg& rule) override;
  void onBase(std::int32_t scenario) override;
  void onOverride(const char* when, std::int32_t scenario) override;

  Decision decision;

 private:
  [[nodiscard]] std::size_t rowOf(const SensorModeCfg& rule) const;
};

}  // namespace camhook
