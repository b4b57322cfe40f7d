// Runs the calls of a scenario on the simulated phone.

#pragma once

#include <functional>

#include "common/HeskParameterUpdater.h"
#include "host/Phone.h"
#include "tools/camhook/input/Scenario.h"
#include "tools/camhook/run/CallTrace.h"
#include "tools/camhook/run/StepFinder.h"

namespace camhook {

/// Runs calls one by one. The updaters of `createInstance` live as long as the process; to replay
/// several scenarios in one process, pass other updaters.
class Replay {
 public:
  /// Returns the updater of a sensor; null if it has none.
  using Updaters = std::function<HeskParameterUpdater*(int sensor)>;

  explicit Replay(host::PhoneConfig platform,
                  Updaters updaters = &HeskParameterUpdater::createInstance);

  /// The accesses whose step is searched. A search takes longer than reading a tag.
  enum class StepsOf { all, writes };

  /// Records the accesses of all further calls, with the steps that `steps` finds. Null ends this.
  void followSteps(StepFinder* steps, StepsOf which = StepsOf::all) {
    mSteps = steps;
    mStepsOf = which;
  }

  /// What a trace holds in addition to the containers. All of it takes longer than most calls.
  enum class Detail {
    containers,  // nothing
    accesses,    // the accesses, without steps unless `followSteps` was called
    all,
  };

  CallTrace run(const ScenarioCall& call, Detail detail = Detail::all);

  [[nodiscard]] host::Phone& phone() { return mPhone; }
  [[nodiscard]] const host::Phone& phone() const { return mPhone; }

 private:
  host::Phone mPhone;
  Updaters mUpdaters;
  StepFinder* mSteps = nullptr;
  StepsOf mStepsOf = StepsOf::all;
};

}  // namespace camhook
