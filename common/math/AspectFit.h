// One size fitted to the aspect ratio of another.

#pragma once

#include <cstdint>

#include "common/math/Conversion.h"
#include "platform/Geometry.h"

namespace hesk {

/// Width by height, in single precision; no number or an infinity where the height is 0.
inline float aspectRatio(NSCam::MSize size) noexcept {
  return static_cast<float>(size.w) / static_cast<float>(size.h);
}

/// `size` with its height or width cut so that it has the ratio; as it is where the ratios are
/// equal or one of them is no number.
inline NSCam::MSize fitToRatio(NSCam::MSize size, float ratio) noexcept {
  const float own = aspectRatio(size);
  if (own < ratio) return {size.w, toInt32(static_cast<float>(size.w) / ratio)};
  if (own > ratio) return {toInt32(ratio * static_cast<float>(size.h)), size.h};
  return size;
}

}  // namespace hesk
