// The HAL's modules and the 3A instances of the phone that the library runs on.

#include "platform/Hal3A.h"

#include <string>

#include "host/Phone.h"
#include "platform/ModuleFactory.h"

namespace {

class SimulatedHal3A final : public NS3Av3::IHal3A {
 public:
  explicit SimulatedHal3A(std::int32_t sensor) : mSensor(sensor) {}

  std::int32_t control(std::int32_t command, std::intptr_t first, std::intptr_t second) override {
    host::Phone::current().effects.add([&] {
      host::Effect effect{"hal3a.control", {{"sensor", mSensor}, {"command", command}}};
      if (command == kSetNonZslFrameCount) {
        effect.fields.push_back({"args", std::vector<std::int64_t>{first, second}});
      }
      return effect;
    });
    return 0;
  }

  void release(const char* user) override {
    host::Phone::current().effects.add([&] {
      return host::Effect{"hal3a.release", {{"sensor", mSensor}, {"user", std::string(user)}}};
    });
    delete this;
  }

 private:
  std::int32_t mSensor;
};

NS3Av3::IHal3A* createHal3A(std::int32_t sensorIndex, const char* user) {
  host::Phone& phone = host::Phone::current();
  const bool available = phone.config.deviceOrDefault(sensorIndex).hal3A.available;
  phone.effects.add([&] {
    return host::Effect{"hal3a.create",
                        {{"sensor", sensorIndex}, {"user", std::string(user)}, {"ok", available}}};
  });
  return available ? new SimulatedHal3A(sensorIndex) : nullptr;
}

}  // namespace

void* NSCam::getMtkcamModuleFactory(std::uint32_t module) {
  return module == kModule3A ? reinterpret_cast<void*>(&createHal3A) : nullptr;
}
