#include "tools/camhook/explain/HookSteps.h"

namespace camhook {
namespace {

constexpr HookAccess kAccesses[] = {
#define READS(hook, step, group, member) {hook, step, false, group, member},
#define WRITES(hook, step, group, member) {hook, step, true, group, member},
#include "docs/hooks.def"
#undef READS
#undef WRITES
};

}  // namespace

std::span<const HookAccess> hookAccesses() { return kAccesses; }

}  // namespace camhook
