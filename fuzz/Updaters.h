// Updaters that go with their run: those of the slots live as long as the process and would carry
// what one run taught them into the next.

#pragma once

#include <map>
#include <memory>

#include "common/HeskParameterUpdater.h"
#include "common/updater/UpdaterInspector.h"

namespace fuzz {

class Updaters {
 public:
  /// The updater of a sensor, made when it is first asked for; null where the slots have none.
  HeskParameterUpdater* of(int sensor) {
    if (sensor < 0 || sensor > HeskParameterUpdater::kMaxInstanceId) {
      return HeskParameterUpdater::createInstance(sensor);
    }
    Owner& updater = mBySensor[sensor];
    if (updater == nullptr) updater.reset(HeskParameterUpdaterInspector::construct(sensor));
    return updater.get();
  }

 private:
  struct Destroy {
    void operator()(HeskParameterUpdater* updater) const {
      HeskParameterUpdaterInspector::destroy(updater);
    }
  };
  using Owner = std::unique_ptr<HeskParameterUpdater, Destroy>;

  std::map<int, Owner> mBySensor;
};

}  // namespace fuzz
