// How the library decides on a sensor mode: which filter compares which conditions of which rows,
// the row that it finds, and the overrides.
//
// The library's own filters answer: the reads and the log records that they make while they run
// show which conditions they compare and which of these are met.

#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "common/HeskSensorModeControl.h"
#include "host/Phone.h"
#include "tools/camhook/explain/DecisionInputs.h"
#include "tools/camhook/explain/SensorModeRules.h"

namespace camhook {

/// The titles of the filters in the order in which the library runs them.
std::vector<std::string> filterTitles();

/// A simulated phone on which the library decides.
class DecidingPhone {
 public:
  /// The sensor mode.
  std::int32_t modeFor(const Inputs& inputs);

  /// The row of these that the filters find, from 0.
  std::optional<std::size_t> rowFor(const Rules& rules, const Inputs& inputs);

  /// The document that docs/decisions.md describes.
  Json explain(const Inputs& inputs);

 private:
  HeskSensorModeControl& configure(const Inputs& inputs);

  /// Has the control choose from these rows, whose sensor modes are replaced by their numbers: the
  /// filters copy the row that they find.
  HeskSensorModeControl& load(const Rules& rules, const Inputs& inputs);

  host::Phone mPhone;
};

/// True if one of a decision's `filters` compared the field of a row, from 1 (`list` is "asked"),
/// or found it equal ("met").
bool isListed(const Json& filters, const Json& row, const char* list, std::string_view field);

}  // namespace camhook
