// Explains a sensor mode decision: the conditions that each filter compares, the matching row, and
// the overrides.
//
// The library's own filters run on one row at a time. Their reads and log records show which
// conditions they compare and which of these are met.

#pragma once

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string_view>

#include "common/HeskSensorModeControl.h"
#include "host/Phone.h"
#include "tools/camhook/explain/DecisionInputs.h"
#include "tools/camhook/explain/SensorModeRules.h"
#include "tools/camhook/show/Terminal.h"

namespace camhook {

/// A simulated phone on which the library decides.
class DecidingPhone {
 public:
  /// The sensor mode.
  std::int32_t modeFor(const DecisionInputs& inputs);

  /// The index of the row in `rules` that the filters find.
  std::optional<std::size_t> rowFor(const Rules& rules, const DecisionInputs& inputs);

  /// The document that docs/decisions.md describes.
  Json explain(const DecisionInputs& inputs);

 private:
  HeskSensorModeControl& configure(const DecisionInputs& inputs);

  /// Loads these rules into the control. Each sensor mode is replaced by the row's index, because
  /// the filters return a copy of the row.
  HeskSensorModeControl& load(const Rules& rules, const DecisionInputs& inputs);

  /// The member "filters" of the document.
  Json::List runFilters(const Rules& rules, const DecisionInputs& inputs);

  host::Phone mPhone;
};

/// Writes a document of `explain` as text.
void writeDecision(std::ostream& out, const Json& decision, Style style);

// Parts of the document.

/// The rows of the active list, with the results of `filters` for each.
Json::List rowVerdicts(const Rules& rules, const Json& filters, std::optional<std::size_t> taken,
                       const DecisionInputs& inputs);

/// All overrides, with their conditions in words.
Json::List overrideVerdicts(const DecisionInputs& inputs);

/// The inputs whose values no rule and no override contains.
Json::List inputWarnings(const DecisionInputs& inputs);

/// True if one of the `filters` compared the field of a row (`list` is "asked") or found it equal
/// ("met").
bool isListed(const Json& filters, const Json& row, const char* list, std::string_view field);

}  // namespace camhook
