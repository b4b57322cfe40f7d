// Steps that more than one hook takes, each written once. Records are written in the name of the
// calling hook.

#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "common/log/Log.h"
#include "platform/IMetadata.h"

namespace hesk {

/// Whether an "APP_TYPE" is the maker's camera app or the engineering camera app.
bool isOwnCameraApp(std::string_view appType);

/// Writes MTK_CONTROL_SELECTED_STREAM_ID: -1, then each stream that HESK_CONTROL_STREAM_FLAGS marks
/// by a 1, so that the last one stays. Item 0 of the flags marks no stream; item k + 1 belongs to
/// `streamIds[k]`.
void writeSelectedStream(NSCam::IMetadata* metadata, const std::vector<std::uint32_t>& streamIds);

/// Writes MTK_HDR_FEATURE_HDR_MODE as HESK_CONTROL_VIDEO_HDR asks; leaves it alone where nothing is
/// asked.
void writeVideoHdrMode(NSCam::IMetadata* metadata, const log::Operation& operation);

/// Switches ANDROID_CONTROL_VIDEO_STABILIZATION_MODE off for other makers' apps on the front camera
/// of the products KX0106 and KX0107.
void switchOffFrontStabilization(NSCam::IMetadata* metadata, std::int32_t sensor,
                                 std::string_view appType);

/// Writes ANDROID_CONTROL_SCENE_MODE for the ultra-wide camera on the production line.
void setProductionScene(NSCam::IMetadata* metadata, std::int32_t sensor, std::string_view appName,
                        const log::Operation& operation);

/// Copies MTK_3A_AE_CCT_USE_DATA of `source`, 0 if absent, to MTK_RAW_ALGO_AE_CCT_USE_DATA of
/// `target`.
void copyColourTemperatureUse(const NSCam::IMetadata* source, NSCam::IMetadata* target,
                              const log::Operation& operation);

}  // namespace hesk
