// Parts of the document of a decision that need no phone.

#pragma once

#include <cstddef>
#include <optional>

#include "tools/camhook/explain/DecisionInputs.h"
#include "tools/camhook/explain/SensorModeRules.h"

namespace camhook {

/// The rows of the active list and what `filters` did with each.
Json::List rowVerdicts(const Rules& rules, const Json& filters, std::optional<std::size_t> taken,
                       const Inputs& inputs);

/// All overrides, with their conditions in words.
Json::List overrideVerdicts(const Inputs& inputs);

/// The inputs whose values no rule and no override contains.
Json::List inputWarnings(const Inputs& inputs);

}  // namespace camhook
