// The default shading of the simulated phone.

#include "platform/DefaultShading.h"

#include <string>

#include "host/Modules.h"
#include "host/Phone.h"

namespace {

class SimulatedShading final : public NSCam::IDefaultShading {
 public:
  explicit SimulatedShading(std::int32_t sensor) : mSensor(sensor) {}

  [[nodiscard]] NSCam::IMetadata query(const NSCam::IMetadata* /*halMeta*/,
                                       const NSCam::IMetadata* /*appMeta*/) override {
    return host::Phone::current().config.deviceOrDefault(mSensor).defaultShading;
  }

 private:
  std::int32_t mSensor;
};

}  // namespace

std::unique_ptr<NSCam::IDefaultShading> host::createDefaultShading(const char* user,
                                                                   std::int32_t sensorIndex) {
  Phone& phone = Phone::current();
  const bool available = phone.config.deviceOrDefault(sensorIndex).hasDefaultShading;
  observe([&] { return ServiceRead{placeOf(sensorIndex, "defaultShading")}; });
  observe([&] {
    return Effect{"defaultShading.query",
                  {{"sensor", sensorIndex}, {"user", std::string(user)}, {"ok", available}}};
  });
  if (!available) return nullptr;
  return std::make_unique<SimulatedShading>(sensorIndex);
}
