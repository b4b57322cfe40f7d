// Fits a size to an aspect ratio.

#pragma once

#include <cstdint>

#include "common/math/Conversion.h"
#include "platform/Geometry.h"

namespace hesk {

/// Returns width / height in single precision; NaN or an infinity if the height is 0.
inline float aspectRatio(NSCam::MSize size) noexcept {
  return static_cast<float>(size.w) / static_cast<float>(size.h);
}

/// Returns `size` with its height or width reduced to the ratio. Returns `size` unchanged if the
/// ratios are equal or one of them is NaN.
inline NSCam::MSize fitToRatio(NSCam::MSize size, float ratio) noexcept {
  const float current = aspectRatio(size);
  if (current < ratio) return {size.w, toInt32(static_cast<float>(size.w) / ratio)};
  if (current > ratio) return {toInt32(ratio * static_cast<float>(size.h)), size.h};
  return size;
}

}  // namespace hesk
