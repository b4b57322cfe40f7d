#include "host/Effects.h"

#include <utility>

namespace host {

std::vector<Effect> EffectRecorder::take() {
  const std::lock_guard lock(mMutex);
  return std::exchange(mEffects, {});
}

}  // namespace host
