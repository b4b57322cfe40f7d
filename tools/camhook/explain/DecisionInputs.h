// Inputs of a decision on a sensor mode: the stream configuration, and what the library reads from
// the phone for it.

#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "common/HeskSensorModeControl.h"
#include "common/sensormode/Overrides.h"
#include "platform/IMetadata.h"
#include "tools/camhook/input/Json.h"
#include "tools/camhook/input/Scenario.h"

namespace camhook {

/// An object with a value for each name below, null if the input is absent: texts, numbers,
/// `[lower, upper]`, `[width, height]`, and true or false for the video stream.
using DecisionInputs = Json;

inline constexpr std::string_view kProduct = "ro.product.model.zdm";
inline constexpr std::string_view kSensor = "sensor";
inline constexpr std::string_view kVideo = "video stream";
inline constexpr std::string_view kAppType = "APP_TYPE";
inline constexpr std::string_view kAppName = "APP_NAME";
inline constexpr std::string_view kHfps = "MTK_STREAMING_FEATURE_HFPS_MODE";
inline constexpr std::string_view kFps = "MTK_CONTROL_AE_TARGET_FPS_RANGE";
inline constexpr std::string_view kEis = "HESK_CONTROL_EISENABLE";
inline constexpr std::string_view kVideoAlgo = "HESK_CONTROL_VIDEOALGOTYPE";
inline constexpr std::string_view kUiModule = "COM_HESK_CURRENTUIMODULE";
inline constexpr std::string_view kHdr = "MTK_HDR_FEATURE_HDR_MODE";
inline constexpr std::string_view kNight = "HESK_CONTROL_NIGHTMODE";
inline constexpr std::string_view kSize = "main output size";

struct DecisionInputField {
  std::string_view name;
  std::string_view options;  // of `camhook decide`, as CLI11 takes them
  std::string_view meaning;
  std::string_view type = "NUMBER";  // of the option's value; empty for a flag
  char separator = '\0';             // between the two numbers in a text

  /// The first of the options.
  [[nodiscard]] std::string_view option() const { return options.substr(0, options.find(',')); }
};

/// In the order of the JSON form.
std::span<const DecisionInputField> decisionInputFields();

/// Inputs with these values; all others are absent.
DecisionInputs decisionInputsOf(std::string_view product, std::int32_t sensor, bool hasVideo);

/// The inputs of a call that is about to be made on the current phone.
DecisionInputs decisionInputsOf(const DecideSensorScenario& call);

/// Reads the value of an option; null for an empty text. Throws InputError.
Json decisionInputFromText(const DecisionInputField& field, std::string_view text);

/// Returns the text; empty if the value is not a text.
std::string_view textOf(const Json& value);

/// Returns the number; 0 if the value is not a number.
std::int32_t numberOf(const Json& value);

/// "KX0105", "yes", "15,30", "640x480"; "absent" for null.
std::string decisionInputText(std::string_view name, const Json& value);

/// The session metadata.
NSCam::IMetadata sessionMetadataOf(const DecisionInputs& inputs);

/// Returns the stream configuration; its size is 0 x 0 if the input is absent.
HeskSensorModeControl::StreamInfo streamsOf(const DecisionInputs& inputs);

/// The inputs of the overrides. Valid until `inputs` changes.
hesk::OverrideConfiguration overrideConfigurationOf(const DecisionInputs& inputs);

}  // namespace camhook
