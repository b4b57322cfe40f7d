// Reads and checks scenarios.

#pragma once

#include <string_view>

#include "tools/camhook/input/InputError.h"
#include "tools/camhook/input/Json.h"
#include "tools/camhook/input/Scenario.h"

namespace camhook {

/// Reads a whole scenario from its JSON text. Throws InputError, which names the place of the first
/// thing that is wrong.
Scenario readScenario(std::string_view text);

/// Reads one call of a scenario. Throws InputError.
ScenarioCall callFromJson(const Json& json, const Place& place);

}  // namespace camhook
