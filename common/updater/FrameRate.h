// The steps that change the fps range, MTK_CONTROL_AE_TARGET_FPS_RANGE. A later step can change the
// range that an earlier step wrote.

#pragma once

#include <string_view>

#include "platform/CameraProvider.h"
#include "platform/IMetadata.h"

namespace hesk {

using CameraProvider = vendor::hesk::hardware::camera::provider::V1_0::IHeskCameraProvider;

/// The handle of the camera provider service that `applyProviderCap` keeps for the life of the
/// process; null until the service is found. A tool that runs several scenarios in one process
/// resets it while no hook runs.
android::sp<CameraProvider>& cameraProviderHandle();

/// Sets the upper bound to HESK_CONTROL_FPS_RANGE_MAX, if present.
void replaceUpperFrameRate(NSCam::IMetadata* request);

/// Applies the camera provider service's cap to app types other than "heskCamera" and "CTS": if the
/// cap is 15 to 25, the range becomes 5 to cap, and HESK_CONTROL_FPSLIMITTYPE is written.
void applyProviderCap(NSCam::IMetadata* metadata, std::string_view appType);

/// Limits the range to 5 to 24 for the "APP_NAME"s "3rd_party", "mtk_ims" and "Whatsapp", and in
/// some modes and UI modules. The property vendor.debug.camera.fps.low also enables the limit if it
/// is not 0. If it is at least 1 and vendor.debug.camera.fps.max is between it and 30, the two
/// replace 5 and 24. Then, in night mode, pins the range to a HESK_CONTROL_FPS_RANGE_MAX of 12, 15
/// or 24. After a limit the pinned range is appended to the limited one; readers use the first two
/// items.
void limitAndPinFrameRate(NSCam::IMetadata* request, std::string_view appName);

/// Sets the upper bound to 29 on product KX0102.
void setLogicalMulticamFrameRate(NSCam::IMetadata* request);

/// Sets both bounds to HESK_CONTROL_FPS_RANGE_MAX if that is 31 or more.
void fixHighFrameRate(NSCam::IMetadata* request);

}  // namespace hesk
