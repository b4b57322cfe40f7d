// Gives the tool and the tests access to private members of HeskSensorModeControl. The shipped
// library does not include this file.

#pragma once

#include "common/HeskSensorModeControl.h"

struct HeskSensorModeControlInspector {
  HeskSensorModeControl& control;

  [[nodiscard]] auto& selectedSensorModeCfgs() const { return control.selectedSensorModeCfgs; }
  [[nodiscard]] const char* productName() const { return control.productName.data(); }

  /// Reports decisions to an observer during the lifetime of this object.
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
