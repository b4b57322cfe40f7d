// The steps that rewrite the frame-rate range, MTK_CONTROL_AE_TARGET_FPS_RANGE, in frames a
// second. The order in which the hooks take them decides, as each overwrites the ones before.

#pragma once

#include <string_view>

#include "platform/CameraProvider.h"
#include "platform/IMetadata.h"

namespace hesk {

using CameraProvider = vendor::hesk::hardware::camera::provider::V1_0::IHeskCameraProvider;

/// The handle of the camera provider service that takeProviderFrameRate keeps for the life of the
/// process; null until the service is found. Tools that run several scenarios in one process reset
/// it while no hook runs.
android::sp<CameraProvider>& cameraProviderHandle();

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
