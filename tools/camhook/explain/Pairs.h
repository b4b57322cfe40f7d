// Pairs of changes that give what no single one does.

#pragma once

#include "tools/camhook/explain/Answer.h"
#include "tools/camhook/explain/Investigation.h"

namespace camhook {

/// Looks for ten seconds at most. Returns what an explanation has as "together", and how many pairs
/// were "tried".
Json findPairs(const Question& question, Investigation& investigation, const Asked& asked,
               const Json& wanted);

}  // namespace camhook
