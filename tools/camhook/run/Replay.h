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

/// Runs calls one by one. A process holds one updater a sensor for good, so it runs one scenario,
/// unless it brings updaters of its own.
class Replay {
 public:
  /// The updater of a sensor, null where it has none.
  using Updaters = std::function<HeskParameterUpdater*(int sensor)>;

  explicit Replay(host::PhoneConfig platform,
                  Updaters updaters = &HeskParameterUpdater::createInstance);

  /// Accesses that are to have a step. To find one takes longer than to read a tag.
  enum class StepsOf { all, writes };

  /// Has the accesses of every call from now on kept, with the steps that `steps` finds; null: no
  /// longer.
  void followSteps(StepFinder* steps, StepsOf which = StepsOf::all) {
    mSteps = steps;
    mStepsOf = which;
  }

  /// What a trace tells besides the containers. All of it takes longer than most calls.
  enum class Detail {
    containers,  // nothing
    accesses,    // the accesses, without their steps unless those are followed
    all,
  };

  CallTrace run(const ScenarioCall& call, Detail detail = Detail::all);

  /// The call as the hook receives it: with metaOf, `meta` is the whole container. Call it before
  /// `run`, which drops a container after its last use.
  [[nodiscard]] Call withMetaOf(const ScenarioCall& call) const;

  /// Containers for later calls with metaOf, by the number of the call that left them.
  using KeptMeta = std::map<std::size_t, std::shared_ptr<const NSCam::IMetadata>>;

  /// To save and restore with the rest of the state between two calls.
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
