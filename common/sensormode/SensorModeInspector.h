// Gives the tool and the tests access to the sensor mode control's fields. Not used on a phone.

#pragma once

#include "common/HeskSensorModeControl.h"

struct HeskSensorModeControlInspector {
  HeskSensorModeControl& control;

  [[nodiscard]] auto& sensorModeTable() const { return control.sensorModeTable; }
  [[nodiscard]] auto& multiConditionTable() const { return control.multiConditionTable; }
  [[nodiscard]] auto& selectedSensorModeCfgs() const { return control.selectedSensorModeCfgs; }
  [[nodiscard]] const char* productName() const { return control.productName.data(); }
  [[nodiscard]] std::int32_t baseScenario(bool isVideoMode) const {
    return control.baseScenario(isVideoMode);
  }
};
