// The crop region of the zoom transition (SAT): the part of a frame that the preview shows.

#pragma once

#include "common/math/AspectFit.h"
#include "common/math/Conversion.h"
#include "platform/Geometry.h"

namespace hesk {

struct SatCrop {
  NSCam::MSize fittedArray;  // the active array, fitted to the preview's aspect ratio
  NSCam::MRect crop;         // relative to that array
};

/// Fits a frame's crop region and the active array to the preview's aspect ratio. The crop's origin
/// moves by half the reduction of the crop minus half the reduction of the array; halves are
/// truncated toward zero.
inline SatCrop satCropOf(NSCam::MRect crop, NSCam::MSize activeArray,
                         NSCam::MSize preview) noexcept {
  const float ratio = aspectRatio(preview);
  const NSCam::MSize fitted = fitToRatio({crop.w, crop.h}, ratio);
  const NSCam::MSize array = fitToRatio(activeArray, ratio);
  const auto moved = [](std::int32_t origin, std::int32_t side, std::int32_t fittedSide,
                        std::int32_t arraySide, std::int32_t fittedArraySide) {
    const std::int32_t cropMargin = wrappingSubtract(side, fittedSide) / 2;
    const std::int32_t arrayMargin = wrappingSubtract(arraySide, fittedArraySide) / 2;
    return wrappingSubtract(wrappingAdd(origin, cropMargin), arrayMargin);
  };
  return {.fittedArray = array,
          .crop = {moved(crop.x, crop.w, fitted.w, activeArray.w, array.w),
                   moved(crop.y, crop.h, fitted.h, activeArray.h, array.h), fitted.w, fitted.h}};
}

}  // namespace hesk
