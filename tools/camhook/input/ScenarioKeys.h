// The keys that a scenario may hold, object by object. docs/scenario.schema.json describes the same
// objects for editors.

#pragma once

#include <span>
#include <string_view>

namespace camhook {

struct ObjectKeys {
  std::string_view object;  // its name among the schema's definitions; calls stand under their own
  std::span<const std::string_view> keys;
};

/// The objects of a scenario but its calls.
std::span<const ObjectKeys> scenarioObjects();

/// The calls and their arguments, all of which must be given.
std::span<const ObjectKeys> scenarioCalls();

/// The keys of an object of `scenarioObjects`.
std::span<const std::string_view> keysOf(std::string_view object);

/// The arguments of a call of `scenarioCalls`; null where there is no such call.
const ObjectKeys* findCall(std::string_view name);

/// Whether an argument is a metadata container that the call is handed.
bool isContainer(std::string_view argument);

}  // namespace camhook
