// Look-up of static metadata (characteristics). A device is what a pipeline opens, possibly a
// logical camera; a camera is one of its physical cameras.

#pragma once

#include <cstdint>

#include "platform/MetadataProvider.h"

namespace hesk {

/// Returns the static metadata of a device, null if it has none.
inline const NSCam::IMetadata* deviceCharacteristics(std::int32_t deviceId) {
  const NSCam::IMetadataProvider* provider =
      NSCam::NSMetadataProviderManager::valueForByDeviceId(deviceId);
  return provider != nullptr ? &provider->getStaticCharacteristics() : nullptr;
}

/// Returns the static metadata of a camera, null if it has none.
inline const NSCam::IMetadata* cameraCharacteristics(std::int32_t cameraId) {
  const NSCam::IMetadataProvider* provider = NSCam::NSMetadataProviderManager::valueFor(cameraId);
  return provider != nullptr ? &provider->getStaticCharacteristics() : nullptr;
}

}  // namespace hesk
