// The other values that are tried for an input: absent; values of the same input elsewhere in the
// scenario; what sensor-mode rules and overrides ask of it; the wanted value and its items; known
// app types and names; zero, small numbers, single bits and a few edges; neighbours of its value. A
// list changes item by item.

#pragma once

#include <cstddef>
#include <map>
#include <string>

#include "tools/camhook/explain/Input.h"

namespace camhook {

class Candidates {
 public:
  struct List {
    Json::List values = {};  // may hold values that a scenario cannot have
    std::size_t likely = 0;  // the first ones: absent, elsewhere, rules, wanted
  };

  /// `question` must outlive this object. `wanted` may be null.
  Candidates(const Question& question, const Json& wanted);

  [[nodiscard]] List forInput(const Input& input, const Json& present) const;

 private:
  void addContainer(const NSCam::IMetadata& metadata);
  void addRules();

  [[nodiscard]] Json::List likely(const Input& input, const Json& present) const;
  [[nodiscard]] Json::List others(const Input& input, const Json& present) const;

  const Question& mQuestion;
  Json::List mWantedItems;
  /// By the name of a tag, event or property: values of the scenario, and texts and numbers that
  /// rules and overrides name.
  std::map<std::string, Json::List> mKnown;
};

}  // namespace camhook
