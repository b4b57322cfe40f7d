// Runs the calls of a scenario on the simulated phone.

#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "common/HeskParameterUpdater.h"
#include "host/Phone.h"
#include "tools/camhook/input/Json.h"
#include "tools/camhook/input/Scenario.h"
#include "tools/camhook/run/StepFinder.h"

namespace camhook {

/// A container that a call was handed, before and after it; none: null.
struct ContainerTrace {
  std::string_view name;
  MetadataArgument before;
  MetadataArgument after;
};

/// A field of an updater, its value as JSON on one line.
struct StateField {
  std::string_view name;
  std::string value;
};

/// An updater's fields around a call; none: there was no updater.
struct StateTrace {
  std::vector<StateField> before;
  std::vector<StateField> after;
};

/// An access of the library to the phone, and the step that made it.
struct StepAccess {
  host::Access access;
  std::string_view container;  // for metadata; empty where it is none that the call was handed
  Step step;
};

/// What one call did.
struct CallTrace {
  std::size_t number = 0;  // in the scenario, from 1
  std::string_view call;
  std::optional<std::int32_t> sensor;
  Json arguments = Json::object();  // but the sensor and the containers
  Json result;
  std::vector<std::pair<std::string_view, Json>> extras;  // what stands beside the result
  std::vector<ContainerTrace> containers;
  std::optional<StateTrace> state;  // none: the call has nothing to do with an updater
  std::vector<host::Effect> effects;
  std::optional<std::vector<StepAccess>> accesses;  // in order; none: not asked for
  std::vector<host::LogRecord> logs;
};

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

  [[nodiscard]] host::Phone& phone() { return mPhone; }
  [[nodiscard]] const host::Phone& phone() const { return mPhone; }

 private:
  host::Phone mPhone;
  Updaters mUpdaters;
  StepFinder* mSteps = nullptr;
  StepsOf mStepsOf = StepsOf::all;
};

}  // namespace camhook
