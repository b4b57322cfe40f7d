// The sensor drivers.

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace NSCam {

/// The layout of a sensor's phase-detection pixels in the driver's format. Only the members that
/// the library uses are named.
struct SensorPdBlock {
  using Pair = std::array<std::int32_t, 2>;  // x, y
  static constexpr std::size_t kMaxPairs = 16;

  std::array<std::int32_t, 5> words;  // the last is the number of pairs
  std::array<std::byte, 400> unused;
  std::array<Pair, kMaxPairs> left;
  std::array<Pair, kMaxPairs> right;
  std::array<std::int32_t, 2> tail;
};
static_assert(offsetof(SensorPdBlock, left) == 420 && offsetof(SensorPdBlock, right) == 548 &&
              offsetof(SensorPdBlock, tail) == 676 && sizeof(SensorPdBlock) == 684);

/// A sensor. Its user must call `release`. Must be used by one thread at a time.
class IHalSensor {
 public:
  /// Queries whether a sensor mode supports phase detection. Arguments: pointers to the scenario
  /// number and to an int32, which is set to 0 if it does not.
  static constexpr std::int32_t kSupportsPd = 0x400d;
  /// Reads the phase-detection layout. Arguments: pointers to the scenario number and
  /// a `SensorPdBlock`.
  static constexpr std::int32_t kGetPdBlock = 0x200a;

  /// Sends a command to the driver of a device. Returns the driver's status.
  virtual std::int32_t sendCommand(std::int32_t deviceIndex, std::int32_t command,
                                   std::intptr_t first, std::intptr_t second,
                                   std::intptr_t third) = 0;

  /// `user` need not be the name that created the sensor.
  virtual void release(const char* user) = 0;

 protected:
  ~IHalSensor() = default;
};

/// Threads: any.
class IHalSensorList {
 public:
  /// Creates the sensor of a camera for the caller named `user`; returns null if there is none.
  virtual IHalSensor* createSensor(const char* user, std::int32_t cameraId) = 0;

  /// Returns the device index of a camera.
  [[nodiscard]] virtual std::int32_t queryDeviceIndex(std::int32_t cameraId) const = 0;

 protected:
  ~IHalSensorList() = default;
};

/// The type of module `kModuleSensorList`. Returns the process's sensor list; null if there is
/// none.
using HalSensorListGetter = IHalSensorList* (*)();

}  // namespace NSCam
