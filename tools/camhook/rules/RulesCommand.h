// `camhook rules`: the rules by which sensor scenarios are chosen, as people draw them, proved and
// compared.

#pragma once

#include <iosfwd>

#include "tools/camhook/rules/Cases.h"
#include "tools/camhook/show/Terminal.h"

namespace camhook {

/// Writes the tables and the overrides.
void writeRulesText(std::ostream& out, const RuleSet& rules, Style style);
void writeRulesMarkdown(std::ostream& out, const RuleSet& rules);

/// Proves every row, says what it found, and returns the exit status: 1 where one never decides.
int checkRules(std::ostream& out, const RuleSet& rules, const Assumptions& assumed, Style style);

/// What each app and each UI module gets on the product of a table of the rules.
void writeMatrix(std::ostream& out, const RuleSet& rules, const SensorModeTable& table,
                 Style style);

/// Writes for which inputs the two decide differently, and returns the exit status: 1 for any.
int compareRules(std::ostream& out, const RuleSet& old, const RuleSet& fresh, Style style);

}  // namespace camhook
