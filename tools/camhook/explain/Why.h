// `camhook why`: explains a tag after a call, or what the call returns. It lists the writes of the
// tag, and the inputs of the call that affect it. An input affects the tag if a replay of the
// scenario with another value of the input gives another value of the tag.

#pragma once

#include <cstddef>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "tools/camhook/explain/Input.h"
#include "tools/camhook/explain/Reruns.h"
#include "tools/camhook/show/Terminal.h"

namespace camhook {

struct Explanation {
  struct Write {
    AnyValue value;
    Step step;
  };
  struct Outcome {
    AnyValue to;
    AnyValue gives;
  };
  struct Finding {
    Input input;
    AnyValue value;
    bool affects = false;
    std::vector<Outcome> outcomes =
        {};  // one for each distinct value of the tag; if wanted, that one
  };

  AnyValue before;
  AnyValue after;
  std::optional<AnyValue> wanted;
  std::vector<Write> writes;
  std::vector<Finding> findings = {};  // in the order of the first read
  std::size_t tried = 0;               // single changes

  /// Pairs of changes that give the wanted value; none if one change does, or nothing is wanted.
  std::optional<std::vector<std::vector<Change>>> together = {};
  std::size_t triedPairs = 0;
};

/// With `wanted`, null for absent, outcomes are changes that give this value. Throws InputError if
/// the tag cannot have it.
Explanation explain(const Question& question, const std::optional<Json>& wanted);

void writeJson(std::ostream& out, const Question& question, const Explanation& explanation);

/// `want` is the wanted value as it was typed; empty if none is. With `all`, lists every outcome
/// and the inputs without effect.
void writeText(std::ostream& out, const Question& question, const Explanation& explanation,
               const std::string& want, bool all, Style style);

}  // namespace camhook
