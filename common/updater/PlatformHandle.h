// Platform objects that must be released with the updater's name.

#pragma once

#include <cstdint>
#include <memory>

#include "common/updater/UpdaterLog.h"
#include "platform/Hal3A.h"
#include "platform/ModuleFactory.h"

namespace hesk {

/// The user name with which the updater creates and releases platform objects. Only sensors are
/// created with another name (SensorPdaf.cpp).
inline constexpr const char* kUpdaterUser = kUpdaterSource.tag;

struct Release {
  template <typename T>
  void operator()(T* object) const {
    object->release(kUpdaterUser);
  }
};

/// Owns a platform object, or null if the platform could not create it.
template <typename T>
using PlatformHandle = std::unique_ptr<T, Release>;

/// Creates the 3A instance of a sensor.
inline PlatformHandle<NS3Av3::IHal3A> createHal3A(std::int32_t sensorIndex) {
  const auto create =
      reinterpret_cast<NS3Av3::Hal3ACreator>(NSCam::getMtkcamModuleFactory(NSCam::kModule3A));
  return PlatformHandle<NS3Av3::IHal3A>(create != nullptr ? create(sensorIndex, kUpdaterUser)
                                                          : nullptr);
}

}  // namespace hesk
