// The crop of the zoom transition: what the preview shows of a frame.

#pragma once

#include "common/math/AspectFit.h"
#include "common/math/Conversion.h"
#include "platform/Geometry.h"

namespace hesk {

struct SatCrop {
  NSCam::MSize fittedArray;  // the active array as the preview sees it
  NSCam::MRect crop;         // against that array
};

/// Cuts a frame's crop to the preview's ratio and moves its origin: in by half of what the crop
/// loses, back by half of what the active array loses. Halves are cut toward zero.
inline SatCrop satCropOf(NSCam::MRect crop, NSCam::MSize activeArray,
                         NSCam::MSize preview) noexcept {
  const float ratio = aspectRatio(preview);
  const NSCam::MSize fitted = fitToRatio({crop.w, crop.h}, ratio);
  const NSCam::MSize array = fitToRatio(activeArray, ratio);
  const auto moved = [](std::int32_t origin, std::int32_t side, std::int32_t fittedSide,
                        std::int32_t arraySide, std::int32_t fittedArraySide) {
    const std::int32_t in = wrappingSubtract(side, fittedSide) / 2;
    const std::int32_t back = wrappingSubtract(arraySide, fittedArraySide) / 2;
    return wrappingSubtract(wrappingAdd(origin, in), back);
  };
  return {.fittedArray = array,
          .crop = {moved(crop.x, crop.w, fitted.w, activeArray.w, array.w),
                   moved(crop.y, crop.h, fitted.h, activeArray.h, array.h), fitted.w, fitted.h}};
}

}  // namespace hesk
