// The window through which the tool and the tests see the sensor mode control's fields. Nothing
// that runs on a phone includes it.

#pragma once

#include "common/HeskSensorModeControl.h"

struct HeskSensorModeControlInspector {
  HeskSensorModeControl& control;

  [[nodiscard]] auto& selectedSensorModeCfgs() const { return control.selectedSensorModeCfgs; }
  [[nodiscard]] const char* productName() const { return control.productName.data(); }

  /// Lets an observer follow the decisions that are made as long as this lives.
  class Observation {
   public:
    Observation(HeskSensorModeControl& control, hesk::DecisionObserver& observer)
        : mControl(control) {
      mControl.mObserver = &observer;
    }
    ~Observation() { mControl.mObserver = nullptr; }
    Observation(const Observation&) = delete;
    Observation& operator=(const Observation&) = delete;

   private:
    HeskSensorModeControl& mControl;
  };
};
