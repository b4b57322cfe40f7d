// The latest detected faces of each sensor.

#pragma once

#include <array>
#include <cstdint>
#include <memory>

#include "platform/Geometry.h"

namespace NSCam {

struct FaceRecord {
  struct Face {
    MRect rect;
    std::int32_t score = 0;
  };
  static constexpr std::size_t kCapacity = 15;

  std::int32_t count = 0;  // of detected faces, which may exceed the capacity
  std::array<Face, kCapacity> faces;
};

/// Threads: any.
class IFDContainer {
 public:
  /// Opens the container for reading.
  static constexpr int kRead = 1;

  /// Opens the container for the caller named `user`. Returns null if it is not available.
  static std::unique_ptr<IFDContainer> createInstance(const char* user, int option);

  virtual ~IFDContainer() = default;

  /// Fills `record` with the latest faces of a sensor. If there are none, `count` is 0 or `record`
  /// is unchanged.
  virtual void queryLatest(std::int32_t sensor, FaceRecord& record) = 0;
};

}  // namespace NSCam
