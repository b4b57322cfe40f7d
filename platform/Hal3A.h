// The 3A interface: auto exposure, auto focus and auto white balance of one sensor.

#pragma once

#include <cstdint>

namespace NS3Av3 {

/// A 3A instance lent to a caller, who gives it back with `release` under the name it was created
/// with.
class IHal3A {
 public:
  /// Announces a burst: the first argument is its count of non-zero-shutter-lag frames, the second
  /// 0.
  static constexpr std::int32_t kSetNonZslFrameCount = 541;
  /// Reads the lens-shading table: the arguments point at the grid, an `NSCam::MSize`, and at room
  /// for four floats, one a channel, for every point of it.
  static constexpr std::int32_t kGetShadingTable = 8;

  /// Sends a control command with its two arguments. Returns the platform's status.
  virtual std::int32_t control(std::int32_t command, std::intptr_t first, std::intptr_t second) = 0;

  virtual void release(const char* user) = 0;

 protected:
  ~IHal3A() = default;
};

/// What module `NSCam::kModule3A` is: makes the 3A instance of a sensor for the caller named
/// `user`, null where it cannot.
using Hal3ACreator = IHal3A* (*)(std::int32_t sensorIndex, const char* user);

}  // namespace NS3Av3
