// The static metadata of the simulated phone.

#include "platform/MetadataProvider.h"

#include <map>
#include <mutex>

#include "host/Observer.h"
#include "host/Phone.h"

namespace {

/// Looks the device up on every call: the provider outlives the phone.
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
