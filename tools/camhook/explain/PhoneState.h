// What a call leaves behind for the next one, and how it is put back: the library's updaters
// outlive a run.

#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include "common/HeskParameterUpdater.h"
#include "host/Phone.h"

namespace camhook {

struct UpdaterState {
  bool hasVideoStream = false;
  std::map<std::uint32_t, std::uint32_t> nonZslFrames;
  std::int32_t multicamFeatureMode = 0;
  NSCam::MSize previewSize;
  std::int32_t captureCount = 0;
  std::vector<std::uint32_t> streamIds;
  std::int32_t diagonalFov = 0;

  friend bool operator==(const UpdaterState&, const UpdaterState&) = default;
};

struct PhoneState {
  std::map<std::int32_t, UpdaterState> updaters;  // by sensor, those that are no longer fresh
  host::TextMap events;
  host::TextMap properties;

  friend bool operator==(const PhoneState&, const PhoneState&) = default;
};

/// The updaters that the library has made in this process, and the phone that they run on.
class StateKeeper {
 public:
  /// `phone` must outlive this.
  explicit StateKeeper(host::Phone& phone) : mPhone(phone) {}

  /// Null where there is none yet.
  [[nodiscard]] HeskParameterUpdater* updaterOf(std::int32_t sensor) const;

  /// Takes an updater as construction has left it.
  void add(std::int32_t sensor, HeskParameterUpdater& updater);

  [[nodiscard]] PhoneState current() const;
  void restore(const PhoneState& state);

 private:
  struct Kept {
    HeskParameterUpdater* updater;
    UpdaterState fresh;
  };

  host::Phone& mPhone;
  std::map<std::int32_t, Kept> mUpdaters;
};

}  // namespace camhook
