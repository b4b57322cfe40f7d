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

/// The fields of an updater, as a trace shows them.
struct UpdaterFields {
  std::int32_t instanceId = 0;
  bool hasVideoStream = false;
  std::vector<std::array<std::uint32_t, 2>> nonZslFrames;  // request and index, by request
  std::int32_t multicamFeatureMode = 0;
  std::array<std::int32_t, 2> previewSize{};
  std::int32_t captureCount = 0;
  std::vector<std::uint32_t> streamIds;
  std::int32_t primaryCameraDiagonalFov = 0;

  friend bool operator==(const UpdaterFields&, const UpdaterFields&) = default;
};

/// Calls `visit` with the name and the member of each field, in the order of the trace.
void forEachUpdaterField(auto visit) {
  visit("mInstanceId", &UpdaterFields::instanceId);
  visit("mHasVideoStream", &UpdaterFields::hasVideoStream);
  visit("mNonZslFrames", &UpdaterFields::nonZslFrames);
  visit("mMulticamFeatureMode", &UpdaterFields::multicamFeatureMode);
  visit("mPreviewSize", &UpdaterFields::previewSize);
  visit("mCaptureCount", &UpdaterFields::captureCount);
  visit("mStreamIds", &UpdaterFields::streamIds);
  visit("mPrimaryCameraDiagonalFov", &UpdaterFields::primaryCameraDiagonalFov);
}

/// An updater's fields before and after a call.
struct StateTrace {
  UpdaterFields before;
  UpdaterFields after;
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

}  // namespace camhook
