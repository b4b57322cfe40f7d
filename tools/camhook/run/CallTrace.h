// The trace of a call: its inputs, effects and return value.

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "host/Effect.h"
#include "host/LogSink.h"
#include "host/Observer.h"
#include "tools/camhook/input/Json.h"
#include "tools/camhook/input/Scenario.h"
#include "tools/camhook/run/StepFinder.h"

namespace camhook {

/// A container that was passed to a call, before and after it; nullopt if it was null.
struct ContainerTrace {
  std::string_view name;
  MetadataArgument before;
  MetadataArgument after;
};

/// An updater's fields before and after a call.
struct StateTrace {
  Json before;
  Json after;
};

/// An access of the library to the phone, and the step that made it.
struct StepAccess {
  host::Access access;
  std::string_view container;  // of metadata; empty if it was not passed to the call
  Step step;
};

/// What one call did. The JSON trace is this structure written out; text and page are views of it.
struct CallTrace {
  std::size_t number = 0;  // in the scenario, from 1
  std::string_view call;
  std::optional<std::int32_t> sensor;
  Json arguments;  // without the sensor and the containers
  Json result;
  std::vector<std::pair<std::string_view, Json>> extras;  // further outputs, such as "copied"
  std::vector<ContainerTrace> containers;
  bool takesUpdater = false;        // the call is one on an updater
  std::optional<StateTrace> state;  // of that updater; nullopt if there was none
  std::vector<host::Effect> effects;
  std::optional<std::vector<StepAccess>> accesses;  // in order; only if requested
  std::vector<host::LogRecord> logs;
};

/// The tags whose entries a call changed, in ascending order.
std::vector<std::uint32_t> changedTags(const ContainerTrace& container);

/// A write of an entry; without items if it was cleared.
struct TagWrite {
  const NSCam::IMetadata::IEntry& entry;  // valid as long as the trace
  const Step& step;
};

/// The writes of a tag in a container, in order; none if the trace has no accesses.
std::vector<TagWrite> writesOf(const CallTrace& trace, std::string_view container,
                               std::uint32_t tag);

}  // namespace camhook
