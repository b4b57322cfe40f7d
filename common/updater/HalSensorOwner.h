// A borrowed sensor that goes back when its holder goes.

#pragma once

#include <cstdint>

#include "platform/HalSensor.h"

namespace hesk {

class HalSensorOwner {
 public:
  /// Borrows the sensor of a camera under the name `user`; it goes back under `releaser`. Empty
  /// where the list has none.
  HalSensorOwner(NSCam::IHalSensorList& list, std::int32_t cameraId, const char* user,
                 const char* releaser)
      : mReleaser(releaser), mSensor(list.createSensor(user, cameraId)) {}
  ~HalSensorOwner() {
    if (mSensor != nullptr) mSensor->release(mReleaser);
  }
  HalSensorOwner(const HalSensorOwner&) = delete;
  HalSensorOwner& operator=(const HalSensorOwner&) = delete;

  [[nodiscard]] explicit operator bool() const noexcept { return mSensor != nullptr; }
  NSCam::IHalSensor* operator->() const noexcept { return mSensor; }

 private:
  const char* mReleaser;
  NSCam::IHalSensor* mSensor;
};

}  // namespace hesk
