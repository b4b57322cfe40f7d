// The fps range of a request or session, MTK_CONTROL_AE_TARGET_FPS_RANGE.

#pragma once

#include <cstdint>

#include "common/tags/Metadata.h"

namespace hesk {

/// In frames per second.
struct FrameRateRange {
  std::int32_t lower;
  std::int32_t upper;
};

/// Returns the first two items, 0 if absent.
inline FrameRateRange readFrameRateRange(const NSCam::IMetadata* metadata) {
  return {.lower = readItem(metadata, tags::MTK_CONTROL_AE_TARGET_FPS_RANGE, 0),
          .upper = readItem(metadata, tags::MTK_CONTROL_AE_TARGET_FPS_RANGE, 1)};
}

inline void writeFrameRateRange(NSCam::IMetadata* metadata, FrameRateRange range) {
  write(metadata, tags::MTK_CONTROL_AE_TARGET_FPS_RANGE, range.lower, range.upper);
}

}  // namespace hesk
