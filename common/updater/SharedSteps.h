// Steps that more than one hook takes, each written once. Records are written in the name of the
// calling hook.

#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "common/log/Log.h"
#include "platform/IMetadata.h"

namespace hesk {

/// Writes MTK_CONTROL_SELECTED_STREAM_ID: the last stream that HESK_CONTROL_STREAM_FLAGS marks by a
/// 1, -1 for none. Item 0 of the flags marks no stream; item k + 1 belongs to `streamIds[k]`.
void writeSelectedStream(NSCam::IMetadata* metadata, const std::vector<std::uint32_t>& streamIds);

/// Writes MTK_HDR_FEATURE_HDR_MODE as HESK_CONTROL_VIDEO_HDR asks; leaves it alone where nothing is
/// asked.
void writeVideoHdrMode(NSCam::IMetadata* metadata, const log::Operation& operation);

/// Switches ANDROID_CONTROL_VIDEO_STABILIZATION_MODE off for other makers' apps on the front camera
/// of the products whose front camera cannot stabilise.
void switchOffFrontStabilization(NSCam::IMetadata* metadata, std::int32_t sensor,
                                 std::string_view appType);

/// Writes ANDROID_CONTROL_SCENE_MODE for the ultra-wide camera on the production line.
void setProductionScene(NSCam::IMetadata* metadata, std::int32_t sensor, std::string_view appName,
                        const log::Operation& operation);

/// Limits MTK_CONTROL_AE_TARGET_FPS_RANGE of other makers' apps to the frame rate that the camera
/// provider service holds them to, and says so in HESK_CONTROL_FPSLIMITTYPE.
void limitToProviderFrameRate(NSCam::IMetadata* metadata, std::string_view appType);

}  // namespace hesk
