// How the library decides on a sensor mode: which filter compares which conditions of which rows,
// the row that it finds, and the overrides.
//
// The library's own filters answer: the reads and the log records that they make while they run
// show which conditions they compare and which of these are met.

#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "common/HeskSensorModeControl.h"
#include "host/Phone.h"
#include "tools/camhook/explain/DecisionInputs.h"
#include "tools/camhook/explain/SensorModeRules.h"

namespace camhook {

struct Filter {
  const char* name;          // of the operation
  const RuleColumn* column;  // the only one that it compares; null: several
  void (*run)(HeskSensorModeControl& control, NSCam::IMetadata* meta);

  [[nodiscard]] const char* title() const;
};

/// In the order in which the library runs them.
std::span<const Filter> filters();

/// A cell that a filter compared with its input.
struct Comparison {
  std::size_t row;  // from 0
  const RuleColumn* column;
  bool isMet;
};

struct FilterRun {
  const Filter* filter;
  bool isAsked;  // false: another filter had found a row
  std::vector<Comparison> comparisons;
  std::optional<std::size_t> found;
};

/// A condition of an override: "APP_TYPE QQ", must "be mtk_ims".
struct OverrideCondition {
  std::string found;
  std::string must;
  bool isMet;
};

struct OverrideVerdict {
  enum class Kind { decides, overwritten, nearMiss, no };

  const hesk::Override* override;
  std::vector<OverrideCondition> conditions;
  Kind kind;

  [[nodiscard]] const char* word() const;
};

struct Decision {
  Inputs inputs;
  const SensorModeTable* table = nullptr;  // null: there is none for the product
  const RuleList* list = nullptr;          // null: the table has none for the sensor
  std::vector<FilterRun> filters;
  std::optional<std::size_t> row;  // that a filter found
  std::int32_t base = 0;           // the sensor mode without overrides
  std::vector<OverrideVerdict> overrides;
  std::optional<std::size_t> override;  // that decides
  std::int32_t mode = 0;

  /// The active list; empty if there is none.
  [[nodiscard]] std::span<const SensorModeCfg> rules() const;

  /// How a filter compared a cell; null if none did.
  [[nodiscard]] const Comparison* findCell(std::size_t ofRow, const RuleColumn& column) const;

  /// Whether a filter compared a condition of the row.
  [[nodiscard]] bool isAsked(std::size_t ofRow) const;
};

/// A simulated phone on which the library decides.
class DecidingPhone {
 public:
  /// The sensor mode.
  std::int32_t modeFor(const Inputs& inputs);

  /// The row of these that the filters find.
  std::optional<std::size_t> rowFor(std::span<const SensorModeCfg> rules, const Inputs& inputs);

  Decision explain(const Inputs& inputs);

 private:
  void configure(const Inputs& inputs);

  template <typename AfterEach>
  std::optional<std::size_t> runFilters(std::span<const SensorModeCfg> rules, const Inputs& inputs,
                                        AfterEach afterEach);

  host::Phone mPhone;
};

/// The overrides, with their conditions in words.
std::vector<OverrideVerdict> overrideVerdicts(const Inputs& inputs);

}  // namespace camhook
