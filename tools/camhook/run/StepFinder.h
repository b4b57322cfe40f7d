// Finds the step of the library that made an access, from return addresses and debug information.

#pragma once

#include <optional>
#include <span>
#include <string>
#include <unordered_map>

#include "tools/camhook/run/DebugInfo.h"

namespace camhook {

/// Caches steps by address. Not thread-safe.
class StepFinder {
 public:
  /// Returns the innermost step on a call stack, given as return addresses, innermost first. A step
  /// is a function of the library's own sources, except lambdas and the helpers that all steps use
  /// to access the platform (tags, events, records). If the stack passes through code without debug
  /// information first, the step is unknown; the first time, a line on standard error reports it.
  Step find(std::span<void* const> returnAddresses);

 private:
  /// Returns nullopt if the code at this address is not in a step.
  const std::optional<Step>& stepAt(const void* returnAddress);

  std::unordered_map<const void*, std::optional<Step>> mKnown;
  bool mHasWarned = false;
};

}  // namespace camhook
