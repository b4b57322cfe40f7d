// Where there is no libdw.

#include "tools/camhook/run/DebugInfo.h"

namespace camhook {

struct DebugInfo::Files {};

DebugInfo::DebugInfo() = default;
DebugInfo::~DebugInfo() = default;

std::optional<std::vector<Frame>> DebugInfo::framesOf(const void* /*returnAddress*/) const {
  return {};
}

}  // namespace camhook
