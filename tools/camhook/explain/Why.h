// `camhook why`: explains a tag after a call, or what the call returns. It lists the writes of the
// tag, and the inputs of the call that affect it. An input affects the tag if a replay of the
// scenario with another value of the input gives another value of the tag.

#pragma once

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/camhook/explain/Question.h"
#include "tools/camhook/explain/Reruns.h"
#include "tools/camhook/explain/Wanted.h"
#include "tools/camhook/show/Terminal.h"

namespace camhook {

struct Explanation {
  /// Changes and the answer that they give.
  struct Outcome {
    std::vector<Change> changes;
    Json gives;
    std::string step = {};  // that writes the tag last; only for an input that is absent
  };
  struct Finding {
    Input input;
    Json value;
    bool affects = false;
    bool affectsIfAbsent = false;
    // One for each distinct result; with a wanted value, only changes that give it.
    std::vector<Outcome> outcomes = {};
  };
  /// A step of any hook that writes the tag.
  struct Writer {
    std::string_view hook;
    std::string_view step;
    std::vector<Finding> reads = {};  // with this call's values alone
  };

  Json before;
  Json after;
  std::vector<Reruns::Write> writes;
  std::map<std::uint32_t, std::uint32_t> burst = {};  // frame index by request, after the call
  std::vector<Writer> writers = {};                   // only if the call does not write the tag
  std::vector<Finding> findings = {};                 // in the order of the first read
  std::size_t tried = 0;                              // single changes

  /// Pairs of changes; nullopt if a single change gives the wanted value, or nothing is wanted.
  std::optional<std::vector<Outcome>> pairs = {};
  std::size_t triedPairs = 0;
  std::size_t allPairs = 0;

  /// True if no change gives the wanted value.
  [[nodiscard]] bool isUnmet() const { return pairs && pairs->empty(); }
};

/// With `wanted`, outcomes are changes that give this value.
Explanation explain(const Question& question, const std::optional<Wanted>& wanted);

/// The document of `why --json`.
Json jsonFrom(const Question& question, const Explanation& explanation);

/// `want` is the text of the wanted value; empty if there is none. With `all`, lists every outcome
/// and the inputs without effect.
void writeText(std::ostream& out, const Question& question, const Explanation& explanation,
               const std::string& want, bool all, Style style);

/// Writes only the changes that give the wanted value.
void writeWanted(std::ostream& out, const Question& question, const Explanation& explanation,
                 const std::string& want, Style style);

}  // namespace camhook
