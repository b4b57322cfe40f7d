// Reads and checks scenarios.

#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "host/PhoneConfig.h"
#include "tools/camhook/input/InputError.h"
#include "tools/camhook/input/Json.h"
#include "tools/camhook/input/Scenario.h"
#include "tools/camhook/input/Value.h"

namespace camhook {

/// The text of a scenario, checked completely. `call` builds calls one by one, because the
/// containers of all calls take many times the memory of the text.
class ScenarioText {
 public:
  /// Throws InputError with the place of each fault.
  explicit ScenarioText(std::string text);
  ScenarioText(const ScenarioText&) = delete;
  ScenarioText& operator=(const ScenarioText&) = delete;

  [[nodiscard]] const std::string& text() const { return mText; }
  [[nodiscard]] const std::string& about() const { return mAbout; }
  [[nodiscard]] const host::PhoneConfig& platform() const { return mPlatform; }

  [[nodiscard]] std::size_t callCount() const { return mCalls.size(); }
  [[nodiscard]] ScenarioCall call(std::size_t index) const;

  /// Likely mistakes in a valid scenario.
  [[nodiscard]] const Faults& warnings() const { return mWarnings; }

 private:
  /// A call in the text.
  struct CallText {
    std::uint32_t offset = 0;
    std::uint32_t lastUse = 0;  // number of the last call whose metaOf is this call; 0: none
    bool hasMeta = false;       // it gets a container `meta`
  };

  void checkMetaOf(const Value& call);

  std::string mText;
  Faults mWarnings;
  std::string mAbout;
  host::PhoneConfig mPlatform;
  std::vector<CallText> mCalls;
};

/// The names of all kinds of calls.
std::vector<std::string_view> callNames();

/// Reads a whole scenario from its JSON text. Throws InputError.
Scenario readScenario(std::string_view text);

/// Reads one call of a scenario. Throws InputError.
ScenarioCall callFromJson(const Json& json, std::string_view place);

/// Reads the object "platform" of a scenario. Throws InputError.
host::PhoneConfig platformFromJson(const Json& json, std::string_view place);

}  // namespace camhook
