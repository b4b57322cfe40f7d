// What must change for a configuration to get another scenario.

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/camhook/rules/Decision.h"

namespace camhook {

/// From a number or a name, "7" or "CUSTOM3"; none where it is no scenario.
std::optional<std::int32_t> scenarioFromText(std::string_view text);

/// Whether any configuration of this product, sensor and kind gets the scenario.
bool isReachable(const RuleSet& rules, const Inputs& inputs, std::int32_t scenario);

/// The inputs that get the scenario and differ from these in as few as possible, the product, the
/// sensor and the kind of configuration not among them. These themselves where they get it; none
/// where it is not reachable.
std::vector<Inputs> smallestChanges(const RuleSet& rules, const Inputs& inputs,
                                    std::int32_t scenario);

/// "HESK_CONTROL_EISENABLE absent → 2", for each input in which they differ.
std::vector<std::string> changesText(const Inputs& from, const Inputs& to);

}  // namespace camhook
