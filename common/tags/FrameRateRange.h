// The pair of MTK_CONTROL_AE_TARGET_FPS_RANGE.

#pragma once

#include <cstdint>

#include "common/tags/Metadata.h"

namespace hesk {

/// In frames a second.
struct FrameRateRange {
  std::int32_t lower;
  std::int32_t upper;
};

/// Its first two items, 0 where absent.
inline FrameRateRange readFrameRateRange(const NSCam::IMetadata* metadata) {
  return {.lower = read(metadata, tags::MTK_CONTROL_AE_TARGET_FPS_RANGE, 0, 0),
          .upper = read(metadata, tags::MTK_CONTROL_AE_TARGET_FPS_RANGE, 0, 1)};
}

/// Returns the container's status.
inline int writeFrameRateRange(NSCam::IMetadata* metadata, FrameRateRange range) {
  return write(metadata, tags::MTK_CONTROL_AE_TARGET_FPS_RANGE, range.lower, range.upper);
}

}  // namespace hesk
