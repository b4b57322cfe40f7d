// What each step of each hook reads and writes, as recorded by `camhook reference`.

#pragma once

#include <string_view>

namespace camhook {

struct HookAccess {
  std::string_view hook;
  std::string_view step;
  bool isWrite;
  std::string_view group;   // a container, "static", "event", "property", "service" or "effect"
  std::string_view member;  // a tag or a key
};

/// In the order of docs/hooks.md.
inline constexpr HookAccess kHookAccesses[] = {
#define READS(hook, step, group, member) {hook, step, false, group, member},
#define WRITES(hook, step, group, member) {hook, step, true, group, member},
#include "docs/hooks.def"
#undef READS
#undef WRITES
};

}  // namespace camhook
