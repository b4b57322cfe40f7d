#include "host/PhoneConfig.h"

const host::DeviceConfig& host::PhoneConfig::deviceOrDefault(std::int32_t id) const {
  static const DeviceConfig kUnlisted = [] {
    DeviceConfig device;
    device.hasProvider = false;
    return device;
  }();
  const auto found = devices.find(id);
  return found != devices.end() ? found->second : kUnlisted;
}
