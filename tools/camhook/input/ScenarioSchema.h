// The schema of scenarios, by which an editor completes and explains keys, tags and values.

#pragma once

#include "tools/camhook/input/Json.h"

namespace camhook {

/// A JSON Schema, draft 4, of what the reader takes. It is stricter in one thing: a tag in
/// hexadecimal, for tags that the catalogue does not list, has its type beside it.
Json scenarioSchema();

}  // namespace camhook
