#include <algorithm>
#include <array>
#include <cstdio>
#include <utility>

#include "common/math/AspectFit.h"
#include "common/sensormode/Overrides.h"
#include "tools/camhook/explain/Decision.h"
#include "tools/camhook/input/Joined.h"
#include "tools/camhook/show/SensorModeName.h"

namespace camhook {
namespace {

using hesk::Override;

/// What a condition found and what it requires: "APP_TYPE QQ", "be mtk_ims".
using Words = std::pair<std::string, std::string>;

Words sizeWords(const Override& override, const Inputs& inputs) {
  std::string found = "size " + inputText(kSize, inputs[kSize]);
  if (override.size == Override::Size::is640x480) return {found, "be 640x480"};
  if (override.size == Override::Size::notWiderThan4To3) return {found, "not be wider than 4:3"};
  static_assert(hesk::kMiddleNear4To3 == 1.33 && hesk::kToleranceNear4To3 == 0.004);
  std::array<char, 32> ratio{};
  std::snprintf(ratio.data(), ratio.size(), ", aspect ratio %.6g",
                static_cast<double>(hesk::aspectRatio(streamsOf(inputs).mainOutputSize)));
  if (!inputs[kSize].isNull()) found += ratio.data();
  return {found, "be above 1.326 and below 1.334"};
}

std::string foundText(std::string_view input, const Inputs& inputs) {
  return std::string(input) + " " + inputText(input, inputs[input]);
}

Words appWords(const Override& override, const Inputs& inputs) {
  std::vector<std::string> found;
  std::vector<std::string> must;
  if (!override.appType.empty()) {
    found.push_back(foundText(kAppType, inputs));
    must.emplace_back(override.appType);
  }
  if (!override.appNames.front().empty()) {
    found.push_back(foundText(kAppName, inputs));
    std::vector<std::string> names(override.appNames.begin(), override.appNames.end());
    std::erase(names, "");
    must.push_back(joined(names, "/"));
  }
  return {joined(found, ", "), "be " + joined(must, " or ")};
}

Json::List conditionsOf(const Override& override, const Inputs& inputs) {
  const hesk::OverrideConfiguration configuration = overrideConfigurationOf(inputs);
  Json::List conditions;
  const auto add = [&](bool isCondition, const Words& words, auto isMet) {
    if (!isCondition) return;
    conditions.push_back(
        {{"found", words.first}, {"must", words.second}, {"met", isMet(override, configuration)}});
  };
  const auto addNumber = [&](std::string_view input, std::int32_t number, auto isMet) {
    add(number != Override::kNoCondition,
        {foundText(input, inputs), "be " + std::to_string(number)}, isMet);
  };
  add(!override.appType.empty() || !override.appNames.front().empty(), appWords(override, inputs),
      hesk::meetsApp);
  addNumber(kHdr, override.hdrMode, hesk::meetsHdrMode);
  addNumber(kNight, override.nightMode, hesk::meetsNightMode);
  add(override.sensor != Override::Sensor::any,
      {foundText(kSensor, inputs),
       override.sensor == Override::Sensor::front ? "be 1" : "not be 1"},
      hesk::meetsSensor);
  add(override.needsVideo, {foundText(kVideo, inputs), "be yes"}, hesk::meetsVideo);
  add(override.size != Override::Size::any, sizeWords(override, inputs), hesk::meetsSize);
  return conditions;
}

}  // namespace

Json::List overrideVerdicts(const Inputs& inputs) {
  Json::List overrides;
  std::optional<std::size_t> last;
  for (const Override& override : hesk::overrides()) {
    const Json::List conditions = conditionsOf(override, inputs);
    const auto missed = std::ranges::count_if(
        conditions, [](const Json& condition) { return !condition["met"].isTrue(); });
    const char* verdict = missed == 1 && conditions.size() > 1 ? "near miss" : "no";
    if (fires(override, overrideConfigurationOf(inputs))) {
      verdict = "decides";
      if (last) overrides[*last]["verdict"] = "overwritten";
      last = overrides.size();
    }
    overrides.push_back({{"number", overrides.size() + 1},
                         {"when", override.when},
                         {"scenario", static_cast<std::int32_t>(override.scenario)},
                         {"name", sensorModeName(override.scenario)},
                         {"verdict", verdict},
                         {"conditions", conditions}});
  }
  return overrides;
}

}  // namespace camhook
