// `camhook decide`: one decision on a sensor scenario, as an open book.

#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "tools/camhook/input/Scenario.h"
#include "tools/camhook/rules/Inputs.h"
#include "tools/camhook/show/Terminal.h"

namespace camhook {

struct DecideOptions {
  Inputs inputs;
  std::vector<std::string> changes;  // "NAME=VALUE": decide with these, too
  std::string want;                  // a scenario, by number or name
  bool json = false;
};

/// The inputs of a call of a scenario as it stands when the calls before it have run. Throws
/// InputError where the call decides on no sensor scenario.
Inputs inputsOfCall(Scenario scenario, std::size_t index);

/// Shows the decision, and returns the exit status: 1 where what is wanted cannot be reached.
/// Throws InputError.
int decide(std::ostream& out, const DecideOptions& options, Style style);

}  // namespace camhook
