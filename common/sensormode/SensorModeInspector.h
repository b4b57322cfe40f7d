// The window through which the tool and the tests see the sensor mode control's fields. Nothing
// that runs on a phone includes it.

#pragma once

#include "common/HeskSensorModeControl.h"

struct HeskSensorModeControlInspector {
  HeskSensorModeControl& control;

  [[nodiscard]] auto& sensorModeTable() const { return control.sensorModeTable; }
  [[nodiscard]] auto& multiConditionTable() const { return control.multiConditionTable; }
  [[nodiscard]] auto& selectedSensorModeCfgs() const { return control.selectedSensorModeCfgs; }
  [[nodiscard]] const char* productName() const { return control.productName.data(); }

  /// Lets `observer` follow the decisions from now on; null: nobody.
  void observe(hesk::DecisionObserver* observer) const { control.mObserver = observer; }
};
