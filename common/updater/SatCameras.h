// The cameras of the zoom transition.

#pragma once

#include <algorithm>
#include <cstdint>

#include "platform/TqcSat.h"

namespace hesk {

/// The position of the first configured camera with that id; -1 for none.
inline int satCameraIndex(const TqcSat& sat, std::int32_t cameraId) {
  const auto cameras = sat.cameras();
  const auto found = std::ranges::find(cameras, cameraId, &TqcSat::Camera::id);
  return found != cameras.end() ? static_cast<int>(found - cameras.begin()) : -1;
}

}  // namespace hesk
