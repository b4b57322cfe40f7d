// What the library did to the platform, in order.

#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>
#include <string>
#include <variant>
#include <vector>

namespace host {

/// One effect: its name and what belongs to it, as a trace shows them.
struct Effect {
  using Value = std::variant<bool, std::int64_t, std::string, std::vector<std::int64_t>>;
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
    if (!mRecording.load(std::memory_order_relaxed)) return;
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
