// The latest detected faces of every sensor.

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

  std::int32_t count = 0;  // of detected faces; more than the record holds are left out
  std::array<Face, kCapacity> faces;
};

/// Threads: every operation may be called from any thread.
class IFDContainer {
 public:
  /// How a container is opened.
  static constexpr int kRead = 1;

  /// Opens the container for the caller named `user`; null where it cannot be had.
  static std::unique_ptr<IFDContainer> createInstance(const char* user, int option);

  virtual ~IFDContainer() = default;

  /// Fills `record` with the latest faces of a sensor; leaves it alone where there are none.
  virtual void queryLatest(std::int32_t sensor, FaceRecord& record) = 0;
};

}  // namespace NSCam
