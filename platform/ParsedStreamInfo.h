// What the platform's configuration policy knows of the streams that an app configures.

#pragma once

#include "platform/Geometry.h"

namespace NSCam::v3::pipeline::policy {

struct ParsedAppImageStreamInfo {
  /// One of the streams records video.
  bool hasVideoConsumer = false;

  /// The size in pixels of the app's main output, preview or video.
  MSize mainOutputSize;
};

}  // namespace NSCam::v3::pipeline::policy
