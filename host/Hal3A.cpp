// The 3A instances of the simulated phone.

#include "platform/Hal3A.h"

#include <string>

#include "host/Modules.h"
#include "host/Phone.h"
#include "platform/Geometry.h"

namespace {

class SimulatedHal3A final : public NS3Av3::IHal3A {
 public:
  explicit SimulatedHal3A(std::int32_t sensor) : mSensor(sensor) {}

  std::int32_t control(std::int32_t command, std::intptr_t first, std::intptr_t second) override {
    host::observe([&] {
      host::Effect effect{"hal3a.control", {{"sensor", mSensor}, {"command", command}}};
      if (command == kSetNonZslFrameCount) {
        effect.fields.push_back({"args", std::vector<std::int64_t>{first, second}});
      } else if (command == kGetShadingTable) {
        const NSCam::MSize grid = gridAt(first);
        effect.fields.push_back({"grid", std::vector<std::int64_t>{grid.w, grid.h}});
      }
      return effect;
    });
    if (command == kGetShadingTable) fillShadingTable(gridAt(first), second);
    return 0;
  }

  void release(const char* user) override {
    host::observe([&] {
      return host::Effect{"hal3a.release", {{"sensor", mSensor}, {"user", std::string(user)}}};
    });
    delete this;
  }

 private:
  static const NSCam::MSize& gridAt(std::intptr_t address) {
    // NOLINTNEXTLINE(performance-no-int-to-ptr): command arguments are numbers
    return *reinterpret_cast<const NSCam::MSize*>(address);
  }

  /// Sets value i to the base plus i.
  void fillShadingTable(NSCam::MSize grid, std::intptr_t address) const {
    constexpr int kChannels = 4;
    host::observe([&] { return host::ServiceRead{host::placeOf(mSensor, "hal3a.shadingBase")}; });
    const float base = host::Phone::current().config.deviceOrDefault(mSensor).hal3A.shadingBase;
    // NOLINTNEXTLINE(performance-no-int-to-ptr)
    auto* const table = reinterpret_cast<float*>(address);
    for (int i = 0; i < grid.w * grid.h * kChannels; ++i) table[i] = base + static_cast<float>(i);
  }

  std::int32_t mSensor;
};

}  // namespace

NS3Av3::IHal3A* host::createHal3A(std::int32_t sensorIndex, const char* user) {
  const bool available = host::Phone::current().config.deviceOrDefault(sensorIndex).hal3A.available;
  host::observe([&] { return host::ServiceRead{host::placeOf(sensorIndex, "hal3a.available")}; });
  host::observe([&] {
    return host::Effect{"hal3a.create",
                        {{"sensor", sensorIndex}, {"user", std::string(user)}, {"ok", available}}};
  });
  return available ? new SimulatedHal3A(sensorIndex) : nullptr;
}
