// What the updater borrows from the platform, and how it gives it back.

#pragma once

#include <cstdint>
#include <memory>

#include "common/updater/UpdaterLog.h"
#include "platform/Hal3A.h"
#include "platform/ModuleFactory.h"

namespace hesk {

struct GiveBack {
  template <typename T>
  void operator()(T* lent) const {
    lent->release(kUpdaterUser);
  }
};

/// A platform object that goes back, under the updater's name, when its holder goes. Null where the
/// platform had none to lend.
template <typename T>
using Borrowed = std::unique_ptr<T, GiveBack>;

/// Borrows the 3A instance of a sensor.
inline Borrowed<NS3Av3::IHal3A> borrowHal3A(std::int32_t sensorIndex) {
  const auto create =
      reinterpret_cast<NS3Av3::Hal3ACreator>(NSCam::getMtkcamModuleFactory(NSCam::kModule3A));
  return Borrowed<NS3Av3::IHal3A>(create != nullptr ? create(sensorIndex, kUpdaterUser) : nullptr);
}

}  // namespace hesk
