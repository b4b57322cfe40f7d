// Look-up of static metadata (characteristics).

#pragma once

#include <cstdint>

#include "platform/MetadataProvider.h"

namespace hesk {

/// Returns the static metadata of a device, null if it has none.
inline const NSCam::IMetadata* staticCharacteristics(std::int32_t deviceId) {
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
