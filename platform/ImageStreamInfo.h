// The configured image streams of a session.

#pragma once

#include <cstdint>

#include "platform/Geometry.h"
#include "platform/StrongPointer.h"

/// The usage bit of buffers that a video encoder reads.
inline constexpr std::uint64_t GRALLOC_USAGE_HW_VIDEO_ENCODER = 0x00010000;

namespace NSCam {

/// How an image is transformed for its consumer.
enum : std::uint32_t { eTransform_FLIP_V = 2 };

namespace v3 {

/// The configuration of one stream. Must be used by one thread at a time.
class IImageStreamInfo : public virtual android::RefBase {
 public:
  /// Returns the usage bits that the stream's consumer requested.
  [[nodiscard]] virtual std::uint64_t getUsageForConsumer() const = 0;

  /// Returns the size of the images in pixels.
  [[nodiscard]] virtual MSize getImgSize() const = 0;

  /// Sets the transform of the images, an `eTransform_` value. Returns 0.
  virtual int setTransform(std::uint32_t transform) = 0;
};

}  // namespace v3
}  // namespace NSCam
