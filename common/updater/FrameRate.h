// The steps that rewrite the frame-rate range, MTK_CONTROL_AE_TARGET_FPS_RANGE, in frames a
// second. The order in which the hooks take them decides, as each overwrites the ones before.

#pragma once

#include <string_view>

#include "platform/IMetadata.h"

namespace hesk {

/// Makes HESK_CONTROL_FPS_RANGE_MAX, where it is there, the range's upper bound.
void replaceUpperFrameRate(NSCam::IMetadata* request);

/// For app types other than "heskCamera" and "CTS": makes the range 5 to what the camera provider
/// service says, where that is 15 to 25, and notes it in HESK_CONTROL_FPSLIMITTYPE.
void takeProviderFrameRate(NSCam::IMetadata* metadata, std::string_view appType);

/// Limits the range for communication apps, some modes of the maker's app and the properties
/// vendor.debug.camera.fps.low and .max; then pins it to a HESK_CONTROL_FPS_RANGE_MAX of 12, 15 or
/// 24 in night mode. A pinned pair stands behind the limit's, so that a limit holds.
void limitAndPinFrameRate(NSCam::IMetadata* request, std::string_view appName);

/// Makes the range's upper bound 29 on product KX0102.
void setLogicalMulticamFrameRate(NSCam::IMetadata* request);

/// Makes both bounds HESK_CONTROL_FPS_RANGE_MAX where that is 31 or more.
void fixHighFrameRate(NSCam::IMetadata* request);

}  // namespace hesk
