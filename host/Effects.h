// What the library did to the platform, in order.

#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>
#include <string>
#include <variant>
#include <vector>

#include "platform/Geometry.h"

namespace host {

/// One effect: its name and what belongs to it, as a trace shows them.
struct Effect {
  /// A region as it was handed to the multi-camera library.
  struct Region {
    std::int32_t kind = 0;
    NSCam::MRect rect;

    friend bool operator==(const Region&, const Region&) = default;
  };
  using Value = std::variant<bool, std::int64_t, float, std::string, std::vector<std::int64_t>,
                             std::vector<Region>>;
  struct Field {
    std::string name;
    Value value;

    friend bool operator==(const Field&, const Field&) = default;
  };

  std::string op;
  std::vector<Field> fields;

  friend bool operator==(const Effect&, const Effect&) = default;
};

/// Keeps effects until they are taken. Any thread.
class EffectRecorder {
 public:
  /// Recording is on from the start. Off, `make` is not called.
  void setRecording(bool on) { mRecording = on; }

  /// Records the effect that `make` returns.
  template <typename Make>
  void add(Make make) {
    if (!mRecording) return;
    const std::lock_guard lock(mMutex);
    mEffects.push_back(make());
  }

  /// The effects since the last call.
  std::vector<Effect> take();

 private:
  std::mutex mMutex;
  std::atomic<bool> mRecording = true;
  std::vector<Effect> mEffects;
};

}  // namespace host
