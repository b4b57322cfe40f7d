#include <algorithm>
#include <array>
#include <cstdio>

#include "common/math/AspectFit.h"
#include "common/sensormode/Overrides.h"
#include "tools/camhook/explain/Decision.h"
#include "tools/camhook/input/Joined.h"

namespace camhook {
namespace {

using hesk::Override;

OverrideCondition sizeCondition(const Override& override, const Inputs& inputs, bool isMet) {
  const std::string found = "size " + inputs[kSize];
  if (override.size == Override::Size::is640x480) return {found, "be 640x480", isMet};
  if (override.size == Override::Size::notWiderThan4To3) {
    return {found, "not be wider than 4:3", isMet};
  }
  static_assert(hesk::kMiddleNear4To3 == 1.33 && hesk::kToleranceNear4To3 == 0.004);
  std::array<char, 32> ratio{};
  std::snprintf(ratio.data(), ratio.size(), "%.6g",
                static_cast<double>(hesk::aspectRatio(inputs.streams().mainOutputSize)));
  return {found + ", aspect ratio " + ratio.data(), "be above 1.326 and below 1.334", isMet};
}

std::string namesOf(const Override& override) {
  std::vector<std::string> names;
  for (const std::string_view name : override.appNames) {
    if (!name.empty()) names.emplace_back(name);
  }
  return joined(names, "/");
}

std::string foundText(InputIndex input, const Inputs& inputs) {
  return std::string(inputFields()[input].name) + " " + inputs.shown(input);
}

OverrideCondition appCondition(const Override& override, const Inputs& inputs, bool isMet) {
  const std::string names = namesOf(override);
  const std::string type(override.appType);
  if (names.empty()) return {foundText(kAppType, inputs), "be " + type, isMet};
  if (type.empty()) return {foundText(kAppName, inputs), "be " + names, isMet};
  return {foundText(kAppType, inputs) + ", " + foundText(kAppName, inputs),
          "be " + type + " or " + names, isMet};
}

std::vector<OverrideCondition> conditionsOf(const Override& override, const Inputs& inputs) {
  const hesk::OverrideConfiguration configuration = inputs.forOverrides();
  std::vector<OverrideCondition> conditions;
  if (!override.appType.empty() || !override.appNames.front().empty()) {
    conditions.push_back(appCondition(override, inputs, meetsApp(override, configuration)));
  }
  if (override.hdrMode != Override::kNoCondition) {
    conditions.push_back({foundText(kHdr, inputs), "be " + std::to_string(override.hdrMode),
                          meetsHdrMode(override, configuration)});
  }
  if (override.nightMode != Override::kNoCondition) {
    conditions.push_back({foundText(kNight, inputs), "be " + std::to_string(override.nightMode),
                          meetsNightMode(override, configuration)});
  }
  if (override.sensor != Override::Sensor::any) {
    const bool isFront = override.sensor == Override::Sensor::front;
    conditions.push_back({foundText(kSensor, inputs), isFront ? "be 1" : "not be 1",
                          meetsSensor(override, configuration)});
  }
  if (override.needsVideo) {
    conditions.push_back(
        {foundText(kVideo, inputs), "be yes", meetsVideo(override, configuration)});
  }
  if (override.size != Override::Size::any) {
    conditions.push_back(sizeCondition(override, inputs, meetsSize(override, configuration)));
  }
  return conditions;
}

}  // namespace

const char* OverrideVerdict::word() const {
  switch (kind) {
    case Kind::decides: return "decides";
    case Kind::overwritten: return "overwritten";
    case Kind::nearMiss: return "near miss";
    case Kind::no: break;
  }
  return "no";
}

std::vector<OverrideVerdict> overrideVerdicts(const Inputs& inputs) {
  using Verdict = OverrideVerdict::Kind;
  std::vector<OverrideVerdict> verdicts;
  OverrideVerdict* last = nullptr;
  verdicts.reserve(hesk::overrides().size());
  for (const Override& override : hesk::overrides()) {
    OverrideVerdict& verdict = verdicts.emplace_back(
        OverrideVerdict{&override, conditionsOf(override, inputs), Verdict::no});
    const auto missed = std::ranges::count(verdict.conditions, false, &OverrideCondition::isMet);
    if (fires(override, inputs.forOverrides())) {
      if (last != nullptr) last->kind = Verdict::overwritten;
      last = &verdict;
      verdict.kind = Verdict::decides;
    } else if (missed == 1 && verdict.conditions.size() > 1) {
      verdict.kind = Verdict::nearMiss;
    }
  }
  return verdicts;
}

}  // namespace camhook
