// Updaters owned by one run, and library state that persists between calls.
//
// The updaters that `createInstance` returns live as long as the process. Runs that must not affect
// one another use updaters of their own.

#pragma once

#include <map>
#include <memory>

#include "common/HeskParameterUpdater.h"
#include "common/updater/FrameRate.h"
#include "common/updater/UpdaterInspector.h"

namespace camhook {

/// Library state that persists between calls.
struct LibraryState {
  std::map<int, HeskParameterUpdaterInspector::Values> updaters;  // by sensor
  android::sp<hesk::CameraProvider> provider;

  friend bool operator==(const LibraryState& left, const LibraryState& right) {
    return left.updaters == right.updaters &&
           (left.provider == nullptr) == (right.provider == nullptr);
  }
};

/// Only one object may exist at a time. The library begins without a provider handle.
class OwnUpdaters {
 public:
  OwnUpdaters() { hesk::cameraProviderHandle() = {}; }
  ~OwnUpdaters() { hesk::cameraProviderHandle() = {}; }
  OwnUpdaters(const OwnUpdaters&) = delete;
  OwnUpdaters& operator=(const OwnUpdaters&) = delete;

  [[nodiscard]] bool has(int sensor) const { return mBySensor.contains(sensor); }

  /// Returns the updater of a sensor, constructed on first use; null for an index that
  /// `createInstance` refuses.
  HeskParameterUpdater* of(int sensor) {
    if (sensor < 0 || sensor > HeskParameterUpdater::kMaxInstanceId) {
      return HeskParameterUpdater::createInstance(sensor);
    }
    Owner& updater = mBySensor[sensor];
    if (updater == nullptr) updater.reset(HeskParameterUpdaterInspector::construct(sensor));
    return updater.get();
  }

  [[nodiscard]] LibraryState state() const {
    LibraryState state{.updaters = {}, .provider = hesk::cameraProviderHandle()};
    for (const auto& [sensor, updater] : mBySensor) {
      state.updaters.emplace(sensor, HeskParameterUpdaterInspector{*updater}.values());
    }
    return state;
  }

  void restore(const LibraryState& state) {
    std::erase_if(mBySensor,
                  [&](const auto& each) { return !state.updaters.contains(each.first); });
    for (const auto& [sensor, values] : state.updaters) {
      HeskParameterUpdaterInspector{*of(sensor)}.values() = values;
    }
    hesk::cameraProviderHandle() = state.provider;
  }

 private:
  struct Destroy {
    void operator()(HeskParameterUpdater* updater) const {
      HeskParameterUpdaterInspector::destroy(updater);
    }
  };
  using Owner = std::unique_ptr<HeskParameterUpdater, Destroy>;

  std::map<int, Owner> mBySensor;
};

}  // namespace camhook
