// The part of a trace that the filters of the command line select.

#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <string_view>

#include "tools/camhook/run/Replay.h"

namespace camhook {

/// The index of a call from its number, from 1, "last" or "requestNo:N". `callAt` returns the call
/// of an index below `count`. Throws InputError unless exactly one call matches.
std::size_t callFromText(const std::string& text, std::size_t count,
                         const std::function<Call(std::size_t)>& callAt);

/// The name of a call from itself or from the word of a hook: "request". Throws InputError.
std::string_view hookFromText(const std::string& text);

/// An empty set selects everything.
struct TraceFilter {
  std::set<std::size_t> calls;  // indexes
  std::set<std::string_view> hooks;
  std::set<std::uint32_t> tags;  // selects the changes of these tags and nothing else of a call

  [[nodiscard]] bool isWhole() const { return calls.empty() && hooks.empty() && tags.empty(); }

  /// Removes the parts of a call that are not selected. Returns false if nothing is left.
  bool apply(CallTrace& trace) const;
};

}  // namespace camhook
