// What a call may have read, and the places of a scenario in which it stands.

#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "tools/camhook/input/Json.h"
#include "tools/camhook/input/Scenario.h"

namespace camhook {

/// One thing that a call may have read.
struct Input {
  enum class Kind {
    metadata,  // `key` is the container, `tag` the entry
    statics,   // the static metadata of `number`, a device
    event,
    property,
    provider,
    argument,  // `key` is a place in the call
    platform,  // `key` is a place below the scenario's platform
    call,      // `number` counts the scenario's calls from 0: an earlier call on the same sensor
  };

  Kind kind = Kind::metadata;
  std::string key;
  std::uint32_t tag = 0;
  std::int64_t number = 0;

  /// Whether it is read by this call alone, so that what happened before stays as it is.
  [[nodiscard]] bool isOfThisCall() const {
    return kind == Kind::metadata || kind == Kind::event || kind == Kind::property ||
           kind == Kind::argument;
  }

  // NOLINTNEXTLINE(modernize-use-nullptr): takes the 0 of a comparison for a pointer
  friend auto operator<=>(const Input&, const Input&) = default;
};

/// A scenario, and the call that is asked about.
struct Question {
  Json document;  // the scenario as it was written
  Scenario scenario;
  std::size_t call = 0;  // from 0

  [[nodiscard]] const ScenarioCall& scenarioCall() const { return scenario.calls[call]; }
  [[nodiscard]] const Json& callDocument() const { return document["calls"][call]; }
  [[nodiscard]] const Json& platformDocument() const;  // an empty object where there is none
};

/// What stands in an input's place at the start of the call, of these event-store values and
/// properties; null for absent.
Json valueOf(const Input& input, const Question& question, const host::TextMap& events,
             const host::TextMap& properties);

/// One input with another value. `to` has the form that the scenario has in its place: an entry, a
/// text, a number, any value; null for absent.
struct Change {
  Input input;
  Json to;
};

/// The kind and the keys that tell an input from others: `{"kind": "event", "key": "APP_NAME"}`.
Json jsonFromInput(const Input& input, const Question& question);

/// A call's container of that name; null where it has none of that name.
MetadataArgument* containerOf(Call& call, std::string_view name);

/// The sensor of a call; none where it is on no sensor.
std::optional<std::int32_t> sensorOf(const Call& call);

/// The value at a place such as "sat.cameras[0].role"; null where there is none.
Json valueAt(const Json& document, const std::string& place);

/// The document with another value at a place; null takes the place out of it. Objects on the way
/// that are missing are made.
Json withValueAt(Json document, const std::string& place, const Json& value);

}  // namespace camhook
