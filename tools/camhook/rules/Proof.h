// What can be proved of each row of the rules, and of each override.

#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "tools/camhook/rules/Cases.h"

namespace camhook {

/// Of a row of a list, or of an override.
struct RowProof {
  std::optional<Inputs> witness;    // has it decide, with as little set as may be; none: never does
  std::vector<std::size_t> before;  // the rows that decide where it would, but for them
  bool isRedundant = false;         // without it every decision is the same
};

struct ListProof {
  const SensorModeTable* table = nullptr;  // null for the overrides
  const RuleList* list = nullptr;
  std::size_t cases = 0;
  std::vector<RowProof> rows;
};

/// Of every list of every table, then of the overrides. Of these it is what they give that is the
/// same without one: nothing, where none fires.
std::vector<ListProof> proveRules(const RuleSet& rules, const Assumptions& assumed);

}  // namespace camhook
