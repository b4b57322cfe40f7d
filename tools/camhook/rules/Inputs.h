// What a decision on a sensor scenario goes by.

#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "common/sensormode/Overrides.h"
#include "platform/Geometry.h"
#include "platform/IMetadata.h"
#include "tools/camhook/input/Json.h"
#include "tools/camhook/input/Scenario.h"

namespace camhook {

/// A stream configuration and the phone that it is made on. What is not given is absent.
struct Inputs {
  struct FrameRates {
    std::int32_t lower = 0;
    std::int32_t upper = 0;
  };

  std::string product;
  std::int32_t sensor = 0;
  bool video = false;
  std::string appType;
  std::string appName;
  std::optional<std::int32_t> hfps;
  std::optional<std::int32_t> eis;
  std::optional<FrameRates> fps;
  std::optional<std::int32_t> videoAlgo;
  std::optional<std::int32_t> uiModule;
  std::optional<std::int32_t> hdr;
  std::optional<std::int32_t> night;
  NSCam::MSize size;

  /// As the overrides see it; lives no longer than this.
  [[nodiscard]] hesk::OverrideConfiguration forOverrides() const;

  /// The session metadata that says so.
  [[nodiscard]] NSCam::IMetadata metadata() const;
};

/// Those of a call that is about to be made on the current phone.
Inputs inputsOf(const DecideSensorScenario& call);

/// One of the inputs by itself. Its values are texts: "KX0105", "yes", "15,30", "640x480".
struct InputField {
  std::string_view name;    // "HESK_CONTROL_EISENABLE"
  std::string_view option;  // of camhook decide: "eis"
  std::string (*text)(const Inputs& inputs);
  Json (*json)(const Inputs& inputs);  // null: absent
  /// False, with nothing changed, where the text is no value of it.
  bool (*set)(Inputs& inputs, std::string_view text);
};

inline constexpr std::string_view kAbsent = "absent";

// Places in `inputFields`.
enum InputIndex : std::size_t {
  kProduct,
  kSensor,
  kVideo,
  kAppType,
  kAppName,
  kHfps,
  kFps,
  kEis,
  kVideoAlgo,
  kUiModule,
  kHdr,
  kNight,
  kSize,
};

std::span<const InputField> inputFields();

inline const InputField& inputField(InputIndex index) { return inputFields()[index]; }

/// The changed inputs, from "NAME=VALUE". Throws InputError.
Inputs changedBy(Inputs inputs, const std::string& word);

/// Every input under its name; null for absent.
Json jsonFromInputs(const Inputs& inputs);

}  // namespace camhook
