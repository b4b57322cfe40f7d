// The decision on a sensor scenario, made from the rules step by step. The library makes it, too;
// the two agree.

#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>

#include "host/Phone.h"
#include "tools/camhook/rules/Inputs.h"
#include "tools/camhook/rules/RuleSet.h"

namespace camhook {

/// What a condition of a rule is about.
struct RuleColumn {
  using Value = std::variant<std::int32_t, std::string_view>;

  const char* title;   // of the column in which people read it: "eis"
  const char* field;   // of the rule: "eisMode"
  const char* filter;  // the operation that asks for it alone
  InputIndex input;
  Value (*wanted)(const SensorModeCfg& rule);
  Value (*found)(const Inputs& inputs);

  [[nodiscard]] bool isMet(const SensorModeCfg& rule, const Inputs& inputs) const {
    return wanted(rule) == found(inputs);
  }

  /// Whether the rule asks for something: the empty app type and -1 are no condition, though values
  /// like any other.
  [[nodiscard]] bool isCondition(const SensorModeCfg& rule) const;
};

/// In the order in which the conditions of a rule of several are counted.
std::span<const RuleColumn> ruleColumns();

/// In the order in which rules of one condition are asked for.
std::span<const RuleColumn* const> filterOrder();

/// The operation that asks for rules of several conditions.
inline constexpr const char* kFilterOfSeveral = "getSensorModeCfgByMultiCondition";

inline bool isOfSeveral(const SensorModeCfg& rule) { return rule.conditionCount >= 2; }

/// The conditions of a rule of several that are counted: one after the other until, behind the
/// first, there are as many as it counts.
struct Count {
  std::size_t compared = 0;
  std::int32_t met = 0;
  bool isReached = false;
};
Count countConditions(const SensorModeCfg& rule, const Inputs& inputs);

/// Whether rules of one condition are asked for this one at all.
bool isAsked(const RuleColumn& column, const Inputs& inputs);

struct Selection {
  std::size_t row = 0;                 // from 0
  const RuleColumn* column = nullptr;  // by which it was found; null: by several
};

/// The row of a list that decides; none where no row does.
std::optional<Selection> selectRow(std::span<const SensorModeCfg> rules, const Inputs& inputs);

/// What a list comes to, or the lack of a row that decides.
std::int32_t baseScenario(std::span<const SensorModeCfg> rules,
                          const std::optional<Selection>& selection, bool video);

/// The override that holds: the last that fires.
std::optional<std::size_t> holdingOverride(std::span<const hesk::Override> overrides,
                                           const Inputs& inputs);

struct Decision {
  const SensorModeTable* table = nullptr;  // null: none is for the product
  const RuleList* list = nullptr;          // null: the table has none for the sensor
  std::optional<Selection> selection;
  std::int32_t base = 0;
  std::optional<std::size_t> override;
  std::int32_t scenario = 0;

  /// Of the list that counts; none where there is no list.
  [[nodiscard]] std::span<const SensorModeCfg> rules() const;
};

Decision decide(const RuleSet& rules, const Inputs& inputs);

/// Has the library decide, on a phone made for it.
class Library {
 public:
  Library() { host::LogSink::openLevels({}); }

  std::int32_t decide(const Inputs& inputs);

 private:
  host::Phone mPhone;
};

/// "5 CUSTOM1"
std::string scenarioText(std::int32_t scenario);

}  // namespace camhook
