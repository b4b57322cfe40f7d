// A borrowed 3A instance that goes back when its holder goes.

#pragma once

#include <cstdint>

#include "platform/Hal3A.h"
#include "platform/ModuleFactory.h"

namespace hesk {

class Hal3AOwner {
 public:
  /// Borrows the 3A instance of a sensor under the name `user`. Empty where the platform has none.
  Hal3AOwner(std::int32_t sensorIndex, const char* user)
      : mUser(user), mHal3A(create(sensorIndex, user)) {}
  ~Hal3AOwner() {
    if (mHal3A != nullptr) mHal3A->release(mUser);
  }
  Hal3AOwner(const Hal3AOwner&) = delete;
  Hal3AOwner& operator=(const Hal3AOwner&) = delete;

  [[nodiscard]] explicit operator bool() const noexcept { return mHal3A != nullptr; }
  NS3Av3::IHal3A* operator->() const noexcept { return mHal3A; }

 private:
  static NS3Av3::IHal3A* create(std::int32_t sensorIndex, const char* user) {
    const auto creator =
        reinterpret_cast<NS3Av3::Hal3ACreator>(NSCam::getMtkcamModuleFactory(NSCam::kModule3A));
    return creator != nullptr ? creator(sensorIndex, user) : nullptr;
  }

  const char* mUser;
  NS3Av3::IHal3A* mHal3A;
};

}  // namespace hesk
