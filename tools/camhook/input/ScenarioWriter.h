// A scenario as a person would write it.

#pragma once

#include <iosfwd>

#include "host/TextStore.h"
#include "tools/camhook/input/DumpScenario.h"
#include "tools/camhook/input/Json.h"

namespace camhook {

/// Writes the scenario as JSON: every entry on a line of its own, tags under their catalogue names
/// and in the short form where their type is the catalogue's, values of enumerations by name.
void writeScenario(std::ostream& out, const DumpScenario& scenario);

/// An object from key to text.
Json jsonFromTextMap(const host::TextMap& texts);

}  // namespace camhook
