// The functions of the HAL's modules.

#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "platform/DefaultShading.h"
#include "platform/Hal3A.h"
#include "platform/HalSensor.h"

namespace host {

/// Returns the path of a device's `part` in a scenario's `platform`.
inline std::string placeOf(std::int32_t device, std::string_view part) {
  return "devices." + std::to_string(device) + '.' + std::string(part);
}

NSCam::IHalSensorList* sensorList();
NS3Av3::IHal3A* createHal3A(std::int32_t sensorIndex, const char* user);
std::unique_ptr<NSCam::IDefaultShading> createDefaultShading(const char* user,
                                                             std::int32_t sensorIndex);

}  // namespace host
