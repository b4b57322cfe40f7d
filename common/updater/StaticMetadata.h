// The static characteristics of the devices.

#pragma once

#include <cstdint>

#include "platform/MetadataProvider.h"

namespace hesk {

/// Those of a device, null where it has none.
inline const NSCam::IMetadata* staticCharacteristics(std::int32_t deviceId) {
  const NSCam::IMetadataProvider* provider =
      NSCam::NSMetadataProviderManager::valueForByDeviceId(deviceId);
  return provider != nullptr ? &provider->getStaticCharacteristics() : nullptr;
}

/// Those of a camera, null where it has none.
inline const NSCam::IMetadata* cameraCharacteristics(std::int32_t cameraId) {
  const NSCam::IMetadataProvider* provider = NSCam::NSMetadataProviderManager::valueFor(cameraId);
  return provider != nullptr ? &provider->getStaticCharacteristics() : nullptr;
}

}  // namespace hesk
