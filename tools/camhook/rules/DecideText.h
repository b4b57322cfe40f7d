// A decision for people and for programs.

#pragma once

#include <iosfwd>

#include "tools/camhook/rules/Verdicts.h"
#include "tools/camhook/show/Terminal.h"

namespace camhook {

/// In the order in which things happen: the inputs, the list that counts, the base, the overrides,
/// the result.
void writeDecision(std::ostream& out, const RuleSet& rules, const Inputs& inputs, Style style);

/// The same of two configurations, side by side.
void writeTwoDecisions(std::ostream& out, const RuleSet& rules, const Inputs& before,
                       const Inputs& after, Style style);

Json jsonFromDecision(const RuleSet& rules, const Inputs& inputs);

}  // namespace camhook
