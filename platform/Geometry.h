// Sizes, rectangles and fractions as the camera HAL passes them.

#pragma once

#include <cstdint>

namespace NSCam {

/// A size in pixels.
struct MSize {
  std::int32_t w = 0;
  std::int32_t h = 0;

  friend bool operator==(const MSize&, const MSize&) = default;
};

/// A rectangle in pixels: top left corner and size.
struct MRect {
  std::int32_t x = 0;
  std::int32_t y = 0;
  std::int32_t w = 0;
  std::int32_t h = 0;

  friend bool operator==(const MRect&, const MRect&) = default;
};

/// A fraction, neither reduced nor checked for a zero denominator.
struct MRational {
  std::int32_t numerator = 0;
  std::int32_t denominator = 0;

  friend bool operator==(const MRational&, const MRational&) = default;
};

}  // namespace NSCam
