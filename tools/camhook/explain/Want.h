// What must change for a configuration to get another sensor mode.

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/camhook/explain/Decision.h"

namespace camhook {

/// The decisions for inputs that get the mode and differ from these in as few as possible; the
/// product, the sensor and the video stream stay. None if changes of three inputs do not give the
/// mode.
std::vector<Json> smallestChanges(DecidingPhone& phone, const Inputs& inputs, std::int32_t mode);

/// "HESK_CONTROL_EISENABLE absent → 2", for each input in which they differ.
std::vector<std::string> changesText(const Inputs& from, const Inputs& to);

}  // namespace camhook
