// `camhook rules`: the rules by which sensor scenarios are chosen, as people draw them, proved and
// compared.

#pragma once

#include <iosfwd>
#include <string>

#include "tools/camhook/rules/Cases.h"
#include "tools/camhook/show/Terminal.h"

namespace camhook {

/// Writes the table of each product whose name begins `product`'s or is begun by it, all where that
/// is empty, and the overrides. Throws InputError where there is none.
void writeRulesText(std::ostream& out, const RuleSet& rules, const std::string& product,
                    Style style);
void writeRulesMarkdown(std::ostream& out, const RuleSet& rules);

/// Proves every row, says what it found, and returns the exit status: 1 where one never decides.
int checkRules(std::ostream& out, const RuleSet& rules, const Assumptions& assumed, Style style);

/// What each app and each UI module gets on a product. Throws InputError where it has no table.
void writeMatrix(std::ostream& out, const RuleSet& rules, const std::string& product, Style style);

/// Writes for which inputs the two decide differently, and returns the exit status: 1 for any.
int compareRules(std::ostream& out, const RuleSet& old, const RuleSet& fresh, Style style);

}  // namespace camhook
