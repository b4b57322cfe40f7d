// The other values that are tried for an input: absent; values of the same input elsewhere in the
// scenario; values in rules and overrides; the wanted value and its items; known app types and
// names; zero, small numbers, single bits and a few edges; neighbours of its value. Lists are
// changed one item at a time.

#pragma once

#include <cstddef>
#include <map>
#include <string>

#include "tools/camhook/explain/Question.h"

namespace camhook {

class Candidates {
 public:
  struct List {
    Json::List values = {};  // may hold values that a scenario cannot have
    // Number of leading values that are tried first: absent, elsewhere, rules, wanted.
    std::size_t likely = 0;
  };

  /// `question` must outlive this object. `wanted` may be null.
  Candidates(const Question& question, const Json& wanted);

  [[nodiscard]] List forInput(const Input& input, const Json& present) const;

 private:
  void addContainer(const NSCam::IMetadata& metadata);

  [[nodiscard]] Json::List likely(const Input& input, const Json& present) const;
  [[nodiscard]] Json::List others(const Input& input, const Json& present) const;

  const Question& mQuestion;
  Json::List mWantedItems;
  /// Values by the name of a tag, event or property: those in the scenario, and texts and numbers
  /// in rules and overrides.
  std::map<std::string, Json::List> mKnown;
};

}  // namespace camhook
