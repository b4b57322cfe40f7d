// The schema of scenarios, with which an editor completes and explains keys, tags and values.

#pragma once

#include "tools/camhook/input/Json.h"

namespace camhook {

/// A JSON Schema, draft 4, of valid scenarios. It is stricter than the reader in one point: the
/// value of a hexadecimal tag must have a type, also if the catalogue lists the tag.
Json scenarioSchema();

}  // namespace camhook
