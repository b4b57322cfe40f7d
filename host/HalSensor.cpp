// The sensor list of the simulated phone, and its sensors.

#include "platform/HalSensor.h"

#include <algorithm>
#include <string>

#include "host/Modules.h"
#include "host/Phone.h"

namespace {

class SimulatedSensor final : public NSCam::IHalSensor {
 public:
  explicit SimulatedSensor(std::int32_t cameraId) : mCameraId(cameraId) {}

  std::int32_t sendCommand(std::int32_t deviceIndex, std::int32_t command, std::intptr_t /*first*/,
                           std::intptr_t second, std::intptr_t /*third*/) override {
    host::observe([&] { return host::ServiceRead{host::placeOf(mCameraId, "sensor")}; });
    host::observe([&] {
      return host::Effect{"sensor.command",
                          {{"id", mCameraId}, {"index", deviceIndex}, {"command", command}}};
    });
    const auto& sensor = host::Phone::current().config.deviceOrDefault(mCameraId).sensor;
    if (!sensor) return -1;
    if (command == kSupportsPd) {
      // NOLINTNEXTLINE(performance-no-int-to-ptr): command arguments are numbers
      *reinterpret_cast<std::int32_t*>(second) = sensor->pdSupported;
    } else if (command == kGetPdBlock) {
      // NOLINTNEXTLINE(performance-no-int-to-ptr)
      auto& block = *reinterpret_cast<NSCam::SensorPdBlock*>(second);
      block.words = sensor->pdWords;
      block.left = sensor->pdLeft;
      block.right = sensor->pdRight;
      block.tail = sensor->pdTail;
    }
    return 0;
  }

  void release(const char* user) override {
    host::observe([&] {
      return host::Effect{"sensor.release", {{"id", mCameraId}, {"user", std::string(user)}}};
    });
    delete this;
  }

 private:
  std::int32_t mCameraId;
};

class SimulatedSensorList final : public NSCam::IHalSensorList {
 public:
  NSCam::IHalSensor* createSensor(const char* user, std::int32_t cameraId) override {
    const bool exists = host::Phone::current().config.deviceOrDefault(cameraId).sensor.has_value();
    host::observe([&] { return host::ServiceRead{host::placeOf(cameraId, "sensor")}; });
    host::observe([&] {
      return host::Effect{"sensor.create",
                          {{"id", cameraId}, {"user", std::string(user)}, {"ok", exists}}};
    });
    return exists ? new SimulatedSensor(cameraId) : nullptr;
  }

  [[nodiscard]] std::int32_t queryDeviceIndex(std::int32_t cameraId) const override {
    host::observe([&] { return host::ServiceRead{host::placeOf(cameraId, "sensor")}; });
    const auto& sensor = host::Phone::current().config.deviceOrDefault(cameraId).sensor;
    return sensor ? sensor->index : 0;
  }
};

constinit SimulatedSensorList sSensorList;

}  // namespace

NSCam::IHalSensorList* host::sensorList() {
  observe([] { return ServiceRead{"sensorList"}; });
  return Phone::current().config.sensorList ? &sSensorList : nullptr;
}
