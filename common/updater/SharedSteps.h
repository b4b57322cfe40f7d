// Steps that are shared by several hooks. Their log records carry the operation of the calling
// hook.

#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "common/log/Log.h"
#include "platform/IMetadata.h"

namespace hesk {

/// Returns true if an "APP_TYPE" is the OEM camera app or the engineering camera app.
bool isOemCameraApp(std::string_view appType);

/// Writes MTK_CONTROL_SELECTED_STREAM_ID: the last stream whose flag in HESK_CONTROL_STREAM_FLAGS
/// is 1, -1 if there is none. Item k + 1 of the flags belongs to `streamIds[k]`; item 0 is unused.
void writeSelectedStream(NSCam::IMetadata* metadata, const std::vector<std::uint32_t>& streamIds);

/// Writes MTK_HDR_FEATURE_HDR_MODE according to HESK_CONTROL_VIDEO_HDR, if present.
void writeVideoHdrMode(NSCam::IMetadata* metadata, const log::Operation& operation);

/// Disables ANDROID_CONTROL_VIDEO_STABILIZATION_MODE for third-party apps on the front camera of
/// products KX0106 and KX0107.
void disableFrontStabilization(NSCam::IMetadata* metadata, std::int32_t sensor,
                               std::string_view appType);

/// Writes ANDROID_CONTROL_SCENE_MODE if the production-line app ("APP_NAME" "Production") uses the
/// ultra-wide camera.
void setProductionScene(NSCam::IMetadata* metadata, std::int32_t sensor, std::string_view appName,
                        const log::Operation& operation);

/// Copies MTK_3A_AE_CCT_USE_DATA of `source`, 0 if absent, to MTK_RAW_ALGO_AE_CCT_USE_DATA of
/// `target`.
void copyColourTemperatureUse(const NSCam::IMetadata* source, NSCam::IMetadata* target,
                              const log::Operation& operation);

}  // namespace hesk
