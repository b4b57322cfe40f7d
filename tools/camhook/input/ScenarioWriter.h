// A scenario as a person would write it.

#pragma once

#include <iosfwd>

#include "tools/camhook/input/DumpScenario.h"

namespace camhook {

/// Writes the scenario as JSON: every entry on a line of its own, tags under their catalogue names
/// and in the short form where their type is the catalogue's, values of enumerations by name.
void writeScenario(std::ostream& out, const DumpScenario& scenario);

}  // namespace camhook
