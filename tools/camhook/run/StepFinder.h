// Which step of the library an access comes from, found from outside: by return addresses and the
// debug information.

#pragma once

#include <optional>
#include <span>
#include <string>
#include <unordered_map>

#include "tools/camhook/run/DebugInfo.h"

namespace camhook {

/// A step of the library and a place in it. What is not known is "?" and line 0.
struct Step {
  std::string name = "?";  // of the function, by itself
  std::string file = "?";  // from the root of the sources: "common/updater/RequestMeta.cpp"
  int line = 0;

  friend bool operator==(const Step&, const Step&) = default;
};

/// Keeps what it has found by address. Used by one thread at a time.
class StepFinder {
 public:
  /// The innermost step on a way that return addresses tell, innermost first: a function of the
  /// library's own sources. Not counted are the headers in which all steps speak to the platform
  /// (tags, events, records), and functions without a name, which stand in the step that calls
  /// them. Where the way leads through code without debug information the step is unknown; the
  /// first time, a line on standard error tells.
  Step find(std::span<void* const> returnAddresses);

 private:
  /// None where the call that returns there is not made by a step.
  const std::optional<Step>& stepAt(const void* returnAddress);

  DebugInfo mDebugInfo;
  std::unordered_map<const void*, std::optional<Step>> mKnown;
  bool mHasWarned = false;
};

}  // namespace camhook
