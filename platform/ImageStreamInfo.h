// The configured image streams of a session.

#pragma once

#include <cstdint>

#include "platform/Geometry.h"
#include "platform/StrongPointer.h"

/// The usage bit of buffers that a video encoder reads.
inline constexpr std::uint64_t GRALLOC_USAGE_HW_VIDEO_ENCODER = 0x00010000;

namespace NSCam {

/// How an image is turned before its consumer sees it.
enum : std::uint32_t { eTransform_FLIP_V = 2 };

namespace v3 {

/// What one stream was configured as. Used by one thread at a time.
class IImageStreamInfo : public virtual android::RefBase {
 public:
  /// The usage bits that the stream's consumer asked for.
  [[nodiscard]] virtual std::uint64_t getUsageForConsumer() const = 0;

  /// The size of the images in pixels.
  [[nodiscard]] virtual MSize getImgSize() const = 0;

  /// Sets the transform of the images, an `eTransform_` value. Returns 0.
  virtual int setTransform(std::uint32_t transform) = 0;
};

}  // namespace v3
}  // namespace NSCam
