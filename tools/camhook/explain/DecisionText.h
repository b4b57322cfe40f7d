// A decision on a sensor mode for people and for programs.

#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "tools/camhook/explain/Decision.h"
#include "tools/camhook/show/Terminal.h"

namespace camhook {

/// The result first, then inputs, filters, rows and overrides.
void writeDecision(std::ostream& out, const Decision& decision, Style style);

/// The document that docs/decisions.md describes.
Json jsonFromDecision(const Decision& decision);

/// What both forms share.

/// "row 9 of KX0105 sensor0Preview"
std::string decidedByText(const Decision& decision);

/// "taken: 2 of 2 conditions", "1 of 2 conditions: eis is absent", "never asked".
std::string rowVerdict(const Decision& decision, std::size_t row);

/// An input whose value no rule and no override names.
struct InputWarning {
  InputIndex input;
  std::string problem;
};

std::vector<InputWarning> inputWarnings(const Inputs& inputs);

}  // namespace camhook
