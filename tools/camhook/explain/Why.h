// Why a tag has its value after a call: what wrote it, and which of the things that the call read
// would have given it another one. What counts is not guessed: the scenario is run again with each
// of them changed.

#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "tools/camhook/explain/Answer.h"
#include "tools/camhook/explain/Input.h"
#include "tools/camhook/input/Json.h"

namespace camhook {

struct Explanation {
  /// What `--json` writes: the tag and its call, its value "before" and "after", the "writes" to
  /// it, the "inputs" with the "changes" that count, and the pairs of changes that do it
  /// "together".
  Json document;
  std::size_t tried = 0;       // changed scenarios
  std::size_t triedPairs = 0;  // of two changes
};

/// Explains what is asked, each by itself; every change is run once for all of it. With `want`, an
/// entry as the scenario has it or null for absent, the changes are those that give it, pairs where
/// no single one does; then one thing is asked. Tells on a terminal's standard error how far it is.
/// Throws InputError.
std::vector<Explanation> explain(const Question& question, const std::vector<Asked>& asked,
                                 const std::optional<Json>& want);

}  // namespace camhook
