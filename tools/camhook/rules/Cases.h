// Every case that rules or overrides can tell apart: of each input the values that they name,
// absent and another one. What holds for all of these holds for all configurations.
//
// -1 is no value of a configuration: it marks what is no condition, and no app sets it.

#pragma once

#include <cstddef>
#include <functional>
#include <initializer_list>
#include <span>
#include <string>
#include <vector>

#include "tools/camhook/rules/Decision.h"

namespace camhook {

/// The values of one input, as its field has them.
struct Axis {
  InputIndex input;
  std::vector<std::string> values;
  std::size_t another;  // the value that stands for all that are not named

  /// For people: "another" for that one, "4:3" for the size that stands for such.
  [[nodiscard]] std::string nameOf(std::size_t value) const;
};

using Axes = std::vector<Axis>;
using Case = std::vector<std::size_t>;  // a value of each axis

/// What is taken for certain of the phones in question.
struct Assumptions {
  bool isAppTypeSet = false;  // "APP_TYPE" is never empty
};

/// What some lists, taken together, can tell apart.
Axes axesOfRules(std::initializer_list<std::span<const SensorModeCfg>> lists,
                 const Assumptions& assumed = {});

/// What some overrides can tell apart. Sensors and kinds of configuration are among it.
Axes axesOfOverrides(std::initializer_list<std::span<const hesk::Override>> lists,
                     const Assumptions& assumed = {});

/// What some lists and the overrides of a set can tell apart, taken together, but for sensors and
/// kinds of configuration.
Axes axesOf(const RuleSet& rules, std::initializer_list<std::span<const SensorModeCfg>> lists);

/// A configuration of that product in which no other override fires than those that ask for nothing
/// but an app type.
Inputs plainInputs(std::string_view product, std::int32_t sensor, bool video);

/// Tables that people write have thousands.
inline constexpr std::size_t kMostCases = 10'000'000;

/// Of more than `kMostCases` it tells only that.
std::size_t caseCount(const Axes& axes);

/// Calls `use` for every case, with `inputs` changed to it. The first value of each axis comes
/// first.
void forEachCase(const Axes& axes, Inputs inputs,
                 const std::function<void(const Inputs&, const Case&)>& use);

}  // namespace camhook
