// Static characteristics of the devices.

#pragma once

#include <cstdint>

#include "platform/IMetadata.h"

namespace NSCam {

/// Holds what never changes about one device.
class IMetadataProvider {
 public:
  virtual ~IMetadataProvider() = default;

  /// The vendor-side static metadata of the device. Lives as long as the provider.
  [[nodiscard]] virtual const IMetadata& getStaticCharacteristics() const = 0;
};

namespace NSMetadataProviderManager {

/// The provider of a device, null where the device has none. The caller does not own it. Any
/// thread.
IMetadataProvider* valueForByDeviceId(std::int32_t deviceId);

/// The provider of a camera, null where the camera has none. The caller does not own it. Any
/// thread.
IMetadataProvider* valueFor(std::int32_t cameraId);

}  // namespace NSMetadataProviderManager
}  // namespace NSCam
