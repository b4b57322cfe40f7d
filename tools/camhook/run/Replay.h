// Runs the calls of a scenario on the simulated phone.

#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <memory>

#include "common/HeskParameterUpdater.h"
#include "host/Phone.h"
#include "tools/camhook/input/Scenario.h"
#include "tools/camhook/run/CallTrace.h"
#include "tools/camhook/run/StepFinder.h"

namespace camhook {

/// Runs calls one by one. The library keeps one updater for each sensor until the process ends, so
/// a process can run several scenarios only with updaters of its own.
class Replay {
 public:
  /// Returns the updater of a sensor; null if it has none.
  using Updaters = std::function<HeskParameterUpdater*(int sensor)>;

  explicit Replay(host::PhoneConfig platform,
                  Updaters updaters = &HeskParameterUpdater::createInstance);

  /// The accesses for which a step is found. Finding a step takes longer than the access.
  enum class StepsOf { all, writes };

  /// Records the accesses of all further calls, with the steps that `steps` finds; null stops that.
  void followSteps(StepFinder* steps, StepsOf which = StepsOf::all) {
    mSteps = steps;
    mStepsOf = which;
  }

  /// The content of a trace in addition to the containers. Collecting everything takes longer than
  /// most calls.
  enum class Detail {
    containers,  // nothing
    accesses,    // the accesses, with steps only after `followSteps`
    all,
  };

  CallTrace run(const ScenarioCall& call, Detail detail = Detail::all);

  /// The call as the hook receives it: with metaOf, `meta` is the whole container. Call it before
  /// `run`, which drops a container after its last use.
  [[nodiscard]] Call withMetaOf(const ScenarioCall& call) const;

  /// Containers for later calls with metaOf, by the number of the call that left them.
  using KeptMeta = std::map<std::size_t, std::shared_ptr<const NSCam::IMetadata>>;

  /// Part of the state between two calls; Reruns saves and restores it.
  [[nodiscard]] KeptMeta& keptMeta() { return mKeptMeta; }
  [[nodiscard]] const KeptMeta& keptMeta() const { return mKeptMeta; }

  [[nodiscard]] host::Phone& phone() { return mPhone; }
  [[nodiscard]] const host::Phone& phone() const { return mPhone; }

 private:
  host::Phone mPhone;
  Updaters mUpdaters;
  KeptMeta mKeptMeta;
  StepFinder* mSteps = nullptr;
  StepsOf mStepsOf = StepsOf::all;
};

}  // namespace camhook
