// By what the sensor mode control decides, for someone who wants to know why. Nothing on a phone
// observes.

#pragma once

#include <span>
#include <vector>

#include "common/sensormode/Overrides.h"
#include "common/sensormode/SensorModeTables.h"

namespace hesk {

class DecisionObserver {
 public:
  /// A decision begins, by these rules and overrides, which stay as long as the library.
  virtual void onDecision(const std::vector<SensorModeTable>& tables,
                          std::span<const Override> overrides) = 0;

 protected:
  ~DecisionObserver() = default;
};

}  // namespace hesk
