// Properties, events, app types and app names that the library compares with. A scenario may also
// set others.

#pragma once

#include <string_view>

namespace camhook {

struct KnownName {
  std::string_view name;
  std::string_view meaning;
};

inline constexpr KnownName kKnownProperties[] = {
    {"ro.product.model.zdm", "The product's model, such as KX0107"},
    {"vendor.camera.dumprawhifmetadata", "1: a still capture's metadata is dumped to a file"},
    {"vendor.debug.camera.VideoFlip", "Not 0: the front camera's video is flipped; by default 1"},
    {"vendor.debug.camera.fps.low", "Lower bound of a forced fps range"},
    {"vendor.debug.camera.fps.max", "Upper bound of a forced fps range"},
};

inline constexpr KnownName kKnownEvents[] = {
    {"APP_MODE", "The camera app's mode: Professional, or none"},
    {"APP_NAME", "App name or mode; selects the tuning profile"},
    {"APP_TYPE", "App that uses the camera"},
    {"HESK_COLOURTEMPERATURE", "Colour temperature; written by the request hook"},
    {"HESK_CURRENTUIMODE", "The camera app's user-interface module; written by the request hook"},
    {"HESK_EV", "Exposure value, for results"},
    {"HESK_EXP", "Exposure time in microseconds, for results"},
    {"HESK_ISO", "Sensitivity, for results"},
    {"HESK_ISSECONDSNAPSHOT", "Whether it is a second snapshot; written by the request hook"},
    {"HESK_MOTIONLEVEL", "Level of motion; written by the request hook"},
    {"HESK_VIDEONRRECOMMAND", "Noise reduction that video at night recommends, for results"},
    {"MTK_AWBMODE", "White balance; written by the request hook"},
    {"MTK_EXPTIME", "Exposure time in ns; written by the request hook"},
    {"MTK_ISO", "Sensitivity; written by the request hook"},
    {"PREVIEW_SCENEMODE", "Scene of the preview; written by the result hook"},
};

/// Values of "APP_TYPE". Two of them differ only in the case of a letter.
inline constexpr std::string_view kKnownAppTypes[] = {
    "3rd_party",      "CTS",    "FaceUnlock", "HeskCamera", "Messenger", "QQ", "TikTok",
    "TikTokExternal", "Wechat", "engcamera",  "heskCamera", "mtk_ims",
};

/// Names of products, which are prefixes of product models: those with sensor mode rules, and those
/// with only parameters of the zoom transition.
inline constexpr std::string_view kProductsWithRules[] = {"KX0102", "KX0104", "KX0105", "KX0106",
                                                          "KX0107"};
inline constexpr std::string_view kProductsOfZoomOnly[] = {"KX0101", "KX0103", "KX0108"};

/// Values of "APP_NAME" and "APP_MODE".
inline constexpr std::string_view kKnownAppNames[] = {
    "3rd_party",  "Dingding",   "Facebook",     "Instagram", "Kuaishou", "Messenger",
    "OISTest",    "Production", "Professional", "SuperMoon", "TikTok",   "TikTokExternal",
    "VideoNight", "Whatsapp",   "heskCamera",   "mtk_ims",
};

}  // namespace camhook
