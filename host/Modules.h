// The functions of the HAL's modules.

#pragma once

#include <cstdint>
#include <memory>

#include "platform/DefaultShading.h"
#include "platform/Hal3A.h"
#include "platform/HalSensor.h"

namespace host {

NSCam::IHalSensorList* sensorList();
NS3Av3::IHal3A* createHal3A(std::int32_t sensorIndex, const char* user);
std::unique_ptr<NSCam::IDefaultShading> createDefaultShading(const char* user,
                                                             std::int32_t sensorIndex);

}  // namespace host
