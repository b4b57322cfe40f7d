// An observer that records effects.

#pragma once

#include <mutex>
#include <utility>
#include <variant>
#include <vector>

#include "host/Observer.h"

namespace host {

/// Records effects in order. Any thread.
class EffectCollector final : public Observer {
 public:
  void onAccess(const Access& access) override {
    const auto* effect = std::get_if<Effect>(&access);
    if (effect == nullptr) return;
    const std::lock_guard lock(mMutex);
    mEffects.push_back(*effect);
  }

  /// Returns and removes the recorded effects.
  std::vector<Effect> take() {
    const std::lock_guard lock(mMutex);
    return std::exchange(mEffects, {});
  }

 private:
  std::mutex mMutex;
  std::vector<Effect> mEffects;
};

}  // namespace host
