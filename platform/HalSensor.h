// The sensor drivers.

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace NSCam {

/// A sensor's layout of phase-detection pixels, as the driver gives it. Of its words those alone
/// are named that are used.
struct SensorPdBlock {
  using Pair = std::array<std::int32_t, 2>;  // x, y
  static constexpr std::size_t kMostPairs = 16;

  std::array<std::int32_t, 5> words;  // the last is the count of pairs
  std::array<std::byte, 400> unused;
  std::array<Pair, kMostPairs> left;
  std::array<Pair, kMostPairs> right;
  std::array<std::int32_t, 2> tail;
};
static_assert(offsetof(SensorPdBlock, left) == 420 && offsetof(SensorPdBlock, right) == 548 &&
              offsetof(SensorPdBlock, tail) == 676 && sizeof(SensorPdBlock) == 684);

/// A sensor lent to a caller, who gives it back with `release`. Used by one thread at a time.
class IHalSensor {
 public:
  /// Whether a sensor scenario supports phase detection: takes pointers to the scenario and to an
  /// int32 that becomes 0 or another value.
  static constexpr std::int32_t kSupportsPd = 0x400d;
  /// The phase-detection layout: takes pointers to the scenario and to a `SensorPdBlock`.
  static constexpr std::int32_t kGetPdBlock = 0x200a;

  /// Sends a command to the driver of the device at an index. Returns the driver's status.
  virtual std::int32_t sendCommand(std::int32_t deviceIndex, std::int32_t command,
                                   std::intptr_t first, std::intptr_t second,
                                   std::intptr_t third) = 0;

  virtual void release(const char* user) = 0;

 protected:
  ~IHalSensor() = default;
};

/// Threads: any.
class IHalSensorList {
 public:
  /// The sensor of a camera for the caller named `user`; null where there is none.
  virtual IHalSensor* createSensor(const char* user, std::int32_t cameraId) = 0;

  /// The device index of a camera.
  [[nodiscard]] virtual std::int32_t queryDeviceIndex(std::int32_t cameraId) const = 0;

 protected:
  ~IHalSensorList() = default;
};

/// What module `kModuleSensorList` is: the process's sensor list, null where there is none.
using HalSensorListGetter = IHalSensorList* (*)();

}  // namespace NSCam
