#include "host/AndroidTags.h"

#include <algorithm>

namespace host {
namespace {

using Value = AndroidTag::Value;

constexpr Value kAwbModes[] = {{0, "OFF"},
                               {1, "AUTO"},
                               {2, "INCANDESCENT"},
                               {3, "FLUORESCENT"},
                               {4, "WARM_FLUORESCENT"},
                               {5, "DAYLIGHT"},
                               {6, "CLOUDY_DAYLIGHT"},
                               {7, "TWILIGHT"},
                               {8, "SHADE"}};

constexpr Value kCaptureIntents[] = {
    {0, "CUSTOM"},         {1, "PREVIEW"},          {2, "STILL_CAPTURE"}, {3, "VIDEO_RECORD"},
    {4, "VIDEO_SNAPSHOT"}, {5, "ZERO_SHUTTER_LAG"}, {6, "MANUAL"},        {7, "MOTION_TRACKING"}};

constexpr Value kSceneModes[] = {{0, "DISABLED"},
                                 {1, "FACE_PRIORITY"},
                                 {2, "ACTION"},
                                 {3, "PORTRAIT"},
                                 {4, "LANDSCAPE"},
                                 {5, "NIGHT"},
                                 {6, "NIGHT_PORTRAIT"},
                                 {7, "THEATRE"},
                                 {8, "BEACH"},
                                 {9, "SNOW"},
                                 {10, "SUNSET"},
                                 {11, "STEADYPHOTO"},
                                 {12, "FIREWORKS"},
                                 {13, "SPORTS"},
                                 {14, "PARTY"},
                                 {15, "CANDLELIGHT"},
                                 {16, "BARCODE"},
                                 {17, "HIGH_SPEED_VIDEO"},
                                 {18, "HDR"},
                                 {19, "FACE_PRIORITY_LOW_LIGHT"},
                                 {100, "DEVICE_CUSTOM_START"},
                                 {127, "DEVICE_CUSTOM_END"}};

constexpr Value kStabilizationModes[] = {{0, "OFF"}, {1, "ON"}, {2, "PREVIEW_STABILIZATION"}};
constexpr Value kTruth[] = {{0, "FALSE"}, {1, "TRUE"}};
constexpr Value kFlashModes[] = {{0, "OFF"}, {1, "SINGLE"}, {2, "TORCH"}};
constexpr Value kFaceDetectModes[] = {{0, "OFF"}, {1, "SIMPLE"}, {2, "FULL"}};

/// Ordered by tag.
constexpr AndroidTag kTags[] = {
    {0x00010005, "android.control.aeTargetFpsRange", {}},
    {0x0001000b, "android.control.awbMode", kAwbModes},
    {0x0001000d, "android.control.captureIntent", kCaptureIntents},
    {0x00010010, "android.control.sceneMode", kSceneModes},
    {0x00010011, "android.control.videoStabilizationMode", kStabilizationModes},
    {0x00010029, "android.control.enableZsl", kTruth},
    {0x00040002, "android.flash.mode", kFlashModes},
    {0x00090002, "android.lens.info.availableFocalLengths", {}},
    {0x000e0000, "android.sensor.exposureTime", {}},
    {0x000e0002, "android.sensor.sensitivity", {}},
    {0x000e0012, "android.sensor.neutralColorPoint", {}},
    {0x000f0000, "android.sensor.info.activeArraySize", {}},
    {0x000f0005, "android.sensor.info.physicalSize", {}},
    {0x00110000, "android.statistics.faceDetectMode", kFaceDetectModes},
    {0x0011000b, "android.statistics.lensShadingMap", {}},
    {0x001a0000, "android.logicalMultiCamera.physicalIds", {}},
};

static_assert(std::ranges::is_sorted(kTags, {}, &AndroidTag::tag));

}  // namespace

std::string_view AndroidTag::nameOf(std::int64_t number) const {
  const auto found = std::ranges::find(values, number, &Value::number);
  return found != values.end() ? found->name : std::string_view();
}

std::optional<std::int32_t> AndroidTag::numberOf(std::string_view valueName) const {
  const auto found = std::ranges::find(values, valueName, &Value::name);
  if (found == values.end()) return {};
  return found->number;
}

const AndroidTag* findAndroidTag(std::uint32_t tag) {
  const auto* found = std::ranges::lower_bound(kTags, tag, {}, &AndroidTag::tag);
  return found != std::end(kTags) && found->tag == tag ? found : nullptr;
}

}  // namespace host
