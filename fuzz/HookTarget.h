// What the fuzz targets of hooks share.

#pragma once

#include <cstdint>
#include <span>

#include "fuzz/CallFamily.h"

namespace fuzz {

/// Makes the calls of a tape on a phone and on updaters of their own: nothing is left for the next
/// run but what the library keeps for good, the handle of the camera provider service.
void runHooks(const CallFamily& family, std::span<const std::uint8_t> tape);

}  // namespace fuzz
