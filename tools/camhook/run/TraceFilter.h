// The part of a trace that somebody asks for.

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
/// of an index below `count`. Throws InputError if not just one call matches.
std::size_t callFromText(const std::string& text, std::size_t count,
                         const std::function<Call(std::size_t)>& callAt);

/// Shows what is not narrowed. Several calls, hooks or tags widen one another.
class TraceFilter {
 public:
  /// A call in the forms of `callFromText`. Throws InputError.
  void addCall(const std::string& text, std::size_t count,
               const std::function<Call(std::size_t)>& callAt);
  /// The calls of a hook. Throws InputError where no call has the name.
  void addHook(const std::string& name);
  /// The calls that change a tag, by its name or number; nothing else of them. Throws InputError.
  void addTag(const std::string& text);

  [[nodiscard]] bool isWhole() const { return mCalls.empty() && mHooks.empty() && mTags.empty(); }

  /// Whether the call, with this index in the scenario, is shown.
  [[nodiscard]] bool shows(std::size_t index, const CallTrace& trace) const;

  /// Takes out what is not shown of a call.
  void trim(CallTrace& trace) const;

 private:
  [[nodiscard]] bool changesTag(const CallTrace& trace) const;
  void keepTags(MetadataArgument& container) const;

  std::set<std::size_t> mCalls;
  std::set<std::string_view> mHooks;
  std::set<std::uint32_t> mTags;
};

}  // namespace camhook
