// The static characteristics of the phone that the library runs on.

#include "platform/MetadataProvider.h"

#include <map>
#include <mutex>

#include "host/Modules.h"
#include "host/Phone.h"

namespace {

/// Looks the device up anew on every use, so that it follows the phone of the moment.
class DeviceProvider final : public NSCam::IMetadataProvider {
 public:
  explicit DeviceProvider(std::int32_t deviceId) : mDeviceId(deviceId) {}

  [[nodiscard]] const NSCam::IMetadata& getStaticCharacteristics() const override {
    return host::Phone::current().config.deviceOrDefault(mDeviceId).statics;
  }

 private:
  std::int32_t mDeviceId;
};

}  // namespace

NSCam::IMetadataProvider* NSCam::NSMetadataProviderManager::valueFor(std::int32_t cameraId) {
  return valueForByDeviceId(cameraId);
}

NSCam::IMetadataProvider* NSCam::NSMetadataProviderManager::valueForByDeviceId(
    std::int32_t deviceId) {
  host::observe([&] { return host::ServiceRead{host::placeOf(deviceId, "static")}; });
  if (!host::Phone::current().config.deviceOrDefault(deviceId).hasProvider) return nullptr;
  static std::mutex mutex;
  static std::map<std::int32_t, DeviceProvider> providers;
  const std::lock_guard lock(mutex);
  return &providers.try_emplace(deviceId, deviceId).first->second;
}
