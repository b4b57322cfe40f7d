// Inputs of a decision on a sensor mode: the stream configuration, and what the library reads from
// the phone for it.

#pragma once

#include <array>
#include <cstddef>
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
  kInputCount,
};

struct InputField {
  enum class Form { text, flag, number, range, size };

  std::string_view name;  // "HESK_CONTROL_EISENABLE"
  /// Options of `camhook decide`, as CLI11 takes them.
  std::string_view options;
  Form form;
  std::uint32_t tag = NSCam::IMetadata::kNoTag;  // of session metadata

  /// The first of the options.
  [[nodiscard]] std::string_view option() const { return options.substr(0, options.find(',')); }
};

/// By InputIndex.
std::span<const InputField> inputFields();

class Inputs {
 public:
  /// The rest is absent; the size is 0 x 0.
  explicit Inputs(std::string_view product = "", std::int32_t sensor = 0, bool video = false);

  /// "KX0105", "yes", "15,30", "640x480"; empty if absent.
  const std::string& operator[](InputIndex input) const { return mTexts[input]; }

  /// The text for people: "absent" if it is.
  [[nodiscard]] std::string shown(InputIndex input) const;

  /// An empty text removes the value. Returns false and changes nothing if the text is not a value
  /// of the input.
  bool set(InputIndex input, std::string_view text);

  /// The numbers in a value, 0 if absent.
  [[nodiscard]] std::array<std::int32_t, 2> numbers(InputIndex input) const;

  /// Null if absent.
  [[nodiscard]] Json json(InputIndex input) const;

  [[nodiscard]] bool hasVideo() const { return mTexts[kVideo] == "yes"; }
  [[nodiscard]] NSCam::IMetadata metadata() const;
  [[nodiscard]] HeskSensorModeControl::StreamInfo streams() const;

  /// As the overrides see it. Valid as long as this is not changed.
  [[nodiscard]] hesk::OverrideConfiguration forOverrides() const;

 private:
  std::array<std::string, kInputCount> mTexts;
};

/// The inputs of a call that is about to be made on the current phone.
Inputs inputsOf(const DecideSensorScenario& call);

}  // namespace camhook
