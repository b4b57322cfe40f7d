// What each step of each hook reads and writes, recorded in replays of scenarios.

#pragma once

#include <iosfwd>

#include "tools/camhook/input/Json.h"
#include "tools/camhook/input/Scenario.h"
#include "tools/camhook/run/StepFinder.h"

namespace camhook {

class HookReference {
 public:
  /// Runs a scenario and adds the accesses of its hooks.
  void add(const Scenario& scenario);

  /// Writes docs/hooks.md to `page`, and the same content to `data` as docs/hooks.def.
  void write(std::ostream& page, std::ostream& data) const;

 private:
  StepFinder mFinder;
  /// Objects by hook, step, READS or WRITES, group and member, in the order of the first access.
  Json mHooks = Json::Object();
};

}  // namespace camhook
