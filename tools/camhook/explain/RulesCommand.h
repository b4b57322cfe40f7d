// `camhook rules`: the rules of sensor modes as tables, inputs for which each row decides, and the
// sensor modes of apps and UI modules.

#pragma once

#include <cstddef>
#include <iosfwd>
#include <optional>

#include "tools/camhook/explain/Decision.h"
#include "tools/camhook/show/Terminal.h"

namespace camhook {

/// Writes the tables of all products, or of one, and the overrides.
void writeRulesText(std::ostream& out, const SensorModeTable* only, Style style);
void writeRulesMarkdown(std::ostream& out);

/// Writes the sensor mode of each app and UI module on a product: "A/B" if the mode at 640x480, B,
/// differs from that at 1920x1080.
void writeMatrix(std::ostream& out, const SensorModeTable& table, Style style);

/// Inputs with which the filters find the row, with as few values as possible; nullopt if the row
/// can never match. `given` has the product, the sensor and the video stream.
std::optional<DecisionInputs> witnessOf(DecidingPhone& phone, const Rules& rules, std::size_t row,
                                        const DecisionInputs& given);

/// Reports the rows that can never match. With `only`, prints each row's witness as a command.
/// Returns the exit status: 1 if a row can never match.
int checkRules(std::ostream& out, const SensorModeTable* only);

}  // namespace camhook
