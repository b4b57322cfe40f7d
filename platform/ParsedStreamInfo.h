// The streams that an app configures, as the platform's configuration policy describes them.

#pragma once

#include "platform/Geometry.h"

namespace NSCam::v3::pipeline::policy {

struct ParsedAppImageStreamInfo {
  /// True if one of the streams is for video recording.
  bool hasVideoConsumer = false;

  /// The size in pixels of the app's main output, preview or video.
  MSize mainOutputSize;
};

}  // namespace NSCam::v3::pipeline::policy
