// The observer that keeps effects, and nothing else.

#pragma once

#include <mutex>
#include <utility>
#include <variant>
#include <vector>

#include "host/Observer.h"

namespace host {

/// Keeps effects, in order, until they are taken. Any thread.
class EffectCollector final : public Observer {
 public:
  void onAccess(const Access& access) override {
    const auto* effect = std::get_if<Effect>(&access);
    if (effect == nullptr) return;
    const std::lock_guard lock(mMutex);
    mEffects.push_back(*effect);
  }

  /// The effects since the last call.
  std::vector<Effect> take() {
    const std::lock_guard lock(mMutex);
    return std::exchange(mEffects, {});
  }

 private:
  std::mutex mMutex;
  std::vector<Effect> mEffects;
};

}  // namespace host
