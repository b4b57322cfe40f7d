// The 3A interface: auto exposure, auto focus and auto white balance of one sensor.

#pragma once

#include <cstdint>

namespace NS3Av3 {

/// A 3A instance. Its user must call `release` with the name that it was created with. Must be used
/// by one thread at a time.
class IHal3A {
 public:
  /// Announces a burst. Arguments: the number of frames without ZSL, and 0.
  static constexpr std::int32_t kSetNonZslFrameCount = 541;
  /// Reads the lens shading table. Arguments: pointers to the grid size (`NSCam::MSize`) and to a
  /// buffer of four floats, one per channel, for each point of the grid.
  static constexpr std::int32_t kGetShadingTable = 8;

  /// Sends a control command with two arguments. Returns the platform's status.
  virtual std::int32_t control(std::int32_t command, std::intptr_t first, std::intptr_t second) = 0;

  virtual void release(const char* user) = 0;

 protected:
  ~IHal3A() = default;
};

/// The type of module `NSCam::kModule3A`. Creates the 3A instance of a sensor for the caller named
/// `user`; returns null on failure.
using Hal3ACreator = IHal3A* (*)(std::int32_t sensorIndex, const char* user);

}  // namespace NS3Av3
