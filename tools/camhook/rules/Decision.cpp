#include "tools/camhook/rules/Decision.h"

#include <memory>

#include "common/HeskSensorModeControl.h"
#include "common/sensormode/SensorScenario.h"
#include "tools/camhook/show/SensorScenarioName.h"

namespace camhook {
namespace {

using Value = RuleColumn::Value;

constexpr RuleColumn kColumns[] = {
    {"hfps", "isHfpsMode", "getSensorModeCfgByIsHfpsMode", kHfps,
     [](const SensorModeCfg& rule) { return Value(rule.isHfpsMode); },
     [](const Inputs& inputs) { return Value(inputs.hfps.value_or(0)); }},
    {"app type", "appType", "getSensorModeCfgByApptype", kAppType,
     [](const SensorModeCfg& rule) { return Value(std::string_view(rule.appType)); },
     [](const Inputs& inputs) { return Value(std::string_view(inputs.appType)); }},
    {"fps", "fps", "getSensorModeCfgByFps", kFps,
     [](const SensorModeCfg& rule) { return Value(rule.fps); },
     [](const Inputs& inputs) { return Value(inputs.fps ? inputs.fps->upper : 0); }},
    {"eis", "eisMode", "getSensorModeCfgByEisMode", kEis,
     [](const SensorModeCfg& rule) { return Value(rule.eisMode); },
     [](const Inputs& inputs) { return Value(inputs.eis.value_or(SensorModeCfg::kMissing)); }},
    {"algo", "videoAlgoType", "getSensorModeCfgByVideoAlgoType", kVideoAlgo,
     [](const SensorModeCfg& rule) { return Value(rule.videoAlgoType); },
     [](const Inputs& inputs) {
       return Value(inputs.videoAlgo.value_or(SensorModeCfg::kMissing));
     }},
    {"ui", "uiMode", "getSensorModeCfgByUiMode", kUiModule,
     [](const SensorModeCfg& rule) { return Value(rule.uiMode); },
     [](const Inputs& inputs) { return Value(inputs.uiModule.value_or(SensorModeCfg::kMissing)); }},
};

constexpr const RuleColumn* kFilterOrder[] = {&kColumns[3], &kColumns[0], &kColumns[1],
                                              &kColumns[2], &kColumns[4], &kColumns[5]};

}  // namespace

std::span<const RuleColumn> ruleColumns() { return kColumns; }

std::span<const RuleColumn* const> filterOrder() { return kFilterOrder; }

bool RuleColumn::isCondition(const SensorModeCfg& rule) const {
  return wanted(rule) != Value(SensorModeCfg::kNoCondition) &&
         wanted(rule) != Value(std::string_view());
}

bool isAsked(const RuleColumn& column, const Inputs& inputs) {
  return column.input != kHfps || inputs.hfps == 1;
}

Count countConditions(const SensorModeCfg& rule, const Inputs& inputs) {
  Count count;
  for (const RuleColumn& column : kColumns) {
    ++count.compared;
    if (!column.isMet(rule, inputs)) continue;
    ++count.met;
    count.isReached = &column != &kColumns[0] && count.met == rule.conditionCount;
    if (count.isReached) break;
  }
  return count;
}

std::optional<Selection> selectRow(std::span<const SensorModeCfg> rules, const Inputs& inputs) {
  for (std::size_t row = rules.size(); row > 0; --row) {
    const SensorModeCfg& rule = rules[row - 1];
    if (isOfSeveral(rule) && countConditions(rule, inputs).isReached) {
      return Selection{row - 1, nullptr};
    }
  }
  for (const RuleColumn* column : kFilterOrder) {
    if (!isAsked(*column, inputs)) continue;
    for (std::size_t row = 0; row < rules.size(); ++row) {
      if (!isOfSeveral(rules[row]) && column->isMet(rules[row], inputs)) {
        return Selection{row, column};
      }
    }
  }
  return {};
}

std::int32_t baseScenario(std::span<const SensorModeCfg> rules,
                          const std::optional<Selection>& selection, bool video) {
  if (selection) return rules[selection->row].sensorMode;
  return video ? hesk::NORMAL_VIDEO : hesk::NO_DECISION;
}

std::optional<std::size_t> holdingOverride(std::span<const hesk::Override> overrides,
                                           const Inputs& inputs) {
  const hesk::OverrideConfiguration configuration = inputs.forOverrides();
  for (std::size_t i = overrides.size(); i > 0; --i) {
    if (fires(overrides[i - 1], configuration)) return i - 1;
  }
  return {};
}

std::span<const SensorModeCfg> Decision::rules() const {
  if (list == nullptr) return {};
  return table->*list->rules;
}

Decision decide(const RuleSet& rules, const Inputs& inputs) {
  Decision decision;
  decision.table = rules.tableFor(inputs.product);
  if (decision.table != nullptr) decision.list = findRuleList(inputs.sensor, inputs.video);
  decision.selection = selectRow(decision.rules(), inputs);
  decision.base = baseScenario(decision.rules(), decision.selection, inputs.video);
  decision.override = holdingOverride(rules.overrides, inputs);
  decision.scenario = decision.override
                          ? static_cast<std::int32_t>(rules.overrides[*decision.override].scenario)
                          : decision.base;
  return decision;
}

std::int32_t Library::decide(const Inputs& inputs) {
  mPhone.properties.set("ro.product.model.zdm", inputs.product);
  mPhone.eventStore.set("APP_TYPE", inputs.appType);
  mPhone.eventStore.set("APP_NAME", inputs.appName);
  NSCam::IMetadata meta = inputs.metadata();
  const auto info = std::make_shared<HeskSensorModeControl::StreamInfo>();
  *info = {.hasVideoConsumer = inputs.video, .mainOutputSize = inputs.size};
  return HeskSensorModeControl::createInstance(inputs.sensor)->decideSensorScenario(&meta, info);
}

std::string scenarioText(std::int32_t scenario) {
  return std::to_string(scenario).append(" ").append(scenarioName(scenario));
}

}  // namespace camhook
