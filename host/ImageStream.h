// A configured image stream of the simulated phone.

#pragma once

#include <cstdint>

#include "platform/ImageStreamInfo.h"

namespace host {

/// Reports transforms as effects.
class ImageStream final : public NSCam::v3::IImageStreamInfo {
 public:
  ImageStream(std::int64_t id, std::uint64_t usage, NSCam::MSize size)
      : mId(id), mUsage(usage), mSize(size) {}

  [[nodiscard]] std::uint64_t getUsageForConsumer() const override { return mUsage; }
  [[nodiscard]] NSCam::MSize getImgSize() const override { return mSize; }
  int setTransform(std::uint32_t transform) override;

 private:
  std::int64_t mId;
  std::uint64_t mUsage;
  NSCam::MSize mSize;
};

}  // namespace host
