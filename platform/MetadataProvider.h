// Static metadata (characteristics) of the devices.

#pragma once

#include <cstdint>

#include "platform/IMetadata.h"

namespace NSCam {

/// Holds the static metadata of one device.
class IMetadataProvider {
 public:
  virtual ~IMetadataProvider() = default;

  /// Returns the vendor-side static metadata, valid as long as the provider.
  [[nodiscard]] virtual const IMetadata& getStaticCharacteristics() const = 0;
};

namespace NSMetadataProviderManager {

/// Returns the provider of a device, null if it has none. The caller does not own it. Any thread.
IMetadataProvider* valueForByDeviceId(std::int32_t deviceId);

/// Returns the provider of a camera, null if it has none. The caller does not own it. Any thread.
IMetadataProvider* valueFor(std::int32_t cameraId);

}  // namespace NSMetadataProviderManager
}  // namespace NSCam
