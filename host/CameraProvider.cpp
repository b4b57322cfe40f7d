// The camera provider service of the simulated phone.

#include "platform/CameraProvider.h"

#include "host/Phone.h"

namespace {

using vendor::hesk::hardware::camera::provider::V1_0::IHeskCameraProvider;

/// Uses the current phone's configuration. Calls fail if the phone has no service.
class SimulatedProvider final : public IHeskCameraProvider {
 public:
  android::hardware::Return<std::int32_t> query(std::int32_t what) override {
    host::Phone& phone = host::Phone::current();
    host::observe([] { return host::ServiceRead{"provider"}; });
    if (!phone.config.provider) return {};
    host::observe([&] { return host::Effect{"provider.query", {{"argument", what}}}; });
    return phone.config.provider->fpsCap;
  }
};

}  // namespace

android::sp<IHeskCameraProvider> IHeskCameraProvider::tryGetService(const std::string& /*name*/,
                                                                    bool /*getStub*/) {
  host::observe([] { return host::ServiceRead{"provider"}; });
  if (!host::Phone::current().config.provider) return {};
  return new SimulatedProvider;
}
