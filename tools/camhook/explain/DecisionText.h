// A decision on a sensor mode as text.

#pragma once

#include <iosfwd>

#include "tools/camhook/input/Json.h"
#include "tools/camhook/show/Terminal.h"

namespace camhook {

/// Writes a document of `DecidingPhone::explain`: the result, inputs, filters, rows and overrides.
void writeDecision(std::ostream& out, const Json& decision, Style style);

}  // namespace camhook
