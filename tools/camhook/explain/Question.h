// A question about a call: the call's inputs, and their places in a scenario.

#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "tools/camhook/input/Json.h"
#include "tools/camhook/input/Scenario.h"

namespace camhook {

/// One thing that a call may read.
struct Input {
  enum class Kind {
    metadata,  // `key` is the container, `tag` the entry
    statics,   // the static metadata of `number`, a device
    event,
    property,
    provider,
    argument,  // `key` is a place in the call
    platform,  // `key` is a place below the scenario's platform
    call,      // `number` is the index of an earlier call on the same sensor
  };

  Kind kind = Kind::metadata;
  std::string key = {};
  std::uint32_t tag = 0;
  std::int64_t number = 0;

  /// True if changing this input does not affect earlier calls.
  [[nodiscard]] bool isOfThisCall() const {
    return kind == Kind::metadata || kind == Kind::event || kind == Kind::property ||
           kind == Kind::argument;
  }

  // NOLINTNEXTLINE(modernize-use-nullptr): the 0 of a comparison is no pointer
  friend auto operator<=>(const Input&, const Input&) = default;
};

/// One input with another value. Values are JSON: null is absent, an entry has the form of a trace.
struct Change {
  Input input;
  Json to;
};

/// A tag, or the return value, after one call of a scenario.
struct Question {
  Scenario scenario;           // with a clock that does not advance
  Json platform;               // in the format of the scenario
  std::size_t call = 0;        // index
  Json arguments = {};         // of the call, with the sensor, without containers
  std::string container = {};  // empty: the return value
  std::uint32_t tag = 0;
  std::set<Input> fixed = {};  // inputs that are not changed

  [[nodiscard]] const Call& askedCall() const { return scenario.calls[call].call; }

  [[nodiscard]] Input tagAsInput() const {
    return {.kind = Input::Kind::metadata, .key = container, .tag = tag};
  }
};

/// Reads a scenario. `call` is a number from 1, "last" or "requestNo:N"; `tag` is a tag, also with
/// its container ("hal:MTK_..."), or "return". Throws InputError.
Question readQuestion(std::string_view scenario, const std::string& call, const std::string& tag);

/// The keys that identify an input: `{"kind": "event", "key": "APP_NAME"}`.
Json jsonFromInput(const Input& input, const Question& question);

/// The names of all containers that a call may have.
inline constexpr const char* kContainers[] = {"meta", "app", "hal", "out"};

/// A container of the call; null if the call has none of that name.
MetadataArgument* containerOf(Call& call, std::string_view name);
const MetadataArgument* containerOf(const Call& call, std::string_view name);

/// The name of the hook.
std::string_view nameOf(const Call& call);

/// The sensor of a call; nullopt if the call has none.
std::optional<std::int32_t> sensorOf(const Call& call);

/// The value at a place such as "sat.cameras[0].role"; null if there is none.
Json valueAt(const Json& document, std::string_view place);

/// Sets the value at a place; null removes a member. Adds missing objects on the path. Throws
/// InputError if a list on the path does not contain the item.
void setValueAt(Json& document, std::string_view place, const Json& value);

}  // namespace camhook
