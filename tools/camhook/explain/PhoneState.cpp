#include "tools/camhook/explain/PhoneState.h"

#include <utility>

#include "common/updater/UpdaterInspector.h"

namespace camhook {
namespace {

UpdaterState stateOf(HeskParameterUpdater& updater) {
  const HeskParameterUpdaterInspector fields{updater};
  return {.hasVideoStream = fields.hasVideoStream(),
          .nonZslFrames = fields.nonZslFrames(),
          .multicamFeatureMode = fields.multicamFeatureMode(),
          .previewSize = fields.previewSize(),
          .captureCount = fields.captureCount(),
          .streamIds = fields.streamIds(),
          .diagonalFov = fields.diagonalFovDegrees()};
}

void putBack(HeskParameterUpdater& updater, const UpdaterState& state) {
  const HeskParameterUpdaterInspector fields{updater};
  fields.hasVideoStream() = state.hasVideoStream;
  fields.nonZslFrames() = state.nonZslFrames;
  fields.setMulticamFeatureMode(state.multicamFeatureMode);
  fields.previewSize() = state.previewSize;
  fields.captureCount() = state.captureCount;
  fields.streamIds() = state.streamIds;
  fields.diagonalFovDegrees() = state.diagonalFov;
}

}  // namespace

HeskParameterUpdater* StateKeeper::updaterOf(std::int32_t sensor) const {
  const auto found = mUpdaters.find(sensor);
  return found != mUpdaters.end() ? found->second.updater : nullptr;
}

void StateKeeper::add(std::int32_t sensor, HeskParameterUpdater& updater) {
  mUpdaters.emplace(sensor, Kept{&updater, stateOf(updater)});
}

PhoneState StateKeeper::current() const {
  PhoneState state{{}, mPhone.eventStore.all(), mPhone.properties.all()};
  for (const auto& [sensor, kept] : mUpdaters) {
    UpdaterState now = stateOf(*kept.updater);
    if (now != kept.fresh) state.updaters.emplace(sensor, std::move(now));
  }
  return state;
}

void StateKeeper::restore(const PhoneState& state) {
  for (const auto& [sensor, kept] : mUpdaters) {
    const auto found = state.updaters.find(sensor);
    putBack(*kept.updater, found != state.updaters.end() ? found->second : kept.fresh);
  }
  mPhone.eventStore.replaceAll(state.events);
  mPhone.properties.replaceAll(state.properties);
}

}  // namespace camhook
