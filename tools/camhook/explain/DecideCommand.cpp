#include "tools/camhook/explain/DecideCommand.h"

#include <memory>
#include <ostream>

#include "common/HeskSensorModeControl.h"
#include "common/sensormode/SensorModeInspector.h"
#include "common/sensormode/SensorScenario.h"
#include "common/tags/Metadata.h"
#include "host/Phone.h"
#include "tools/camhook/show/SensorScenarioName.h"

namespace camhook {
namespace {

using NSCam::IMetadata;

template <typename T>
void writeIfGiven(IMetadata& meta, hesk::Tag<T> tag, const std::optional<T>& value) {
  if (value) hesk::write(&meta, tag, *value);
}

IMetadata metadataFrom(const DecideOptions& options) {
  using namespace hesk;
  IMetadata meta;
  writeIfGiven(meta, tags::HESK_CONTROL_EISENABLE, options.eis);
  writeIfGiven(meta, tags::MTK_STREAMING_FEATURE_HFPS_MODE, options.hfps);
  writeIfGiven(meta, tags::HESK_CONTROL_VIDEOALGOTYPE, options.videoAlgo);
  writeIfGiven(meta, tags::COM_HESK_CURRENTUIMODULE, options.uiModule);
  writeIfGiven(meta, tags::MTK_HDR_FEATURE_HDR_MODE, options.hdr);
  writeIfGiven(meta, tags::HESK_CONTROL_NIGHTMODE, options.night);
  if (options.fps) {
    write(&meta, tags::MTK_CONTROL_AE_TARGET_FPS_RANGE, options.fps->lower, options.fps->upper);
  }
  return meta;
}

std::string scenarioText(std::int32_t scenario) {
  return std::to_string(scenario).append(" ").append(scenarioName(scenario));
}

std::string valueText(const Json& value) {
  return value == SensorModeCfg::kMissing ? "absent" : lineOfJson(value);
}

std::string rulesText(const Decision& decision) {
  if (decision.product.empty()) return "none: no table is for this product";
  if (decision.list.empty()) return "none: " + decision.product + " has none for this sensor";
  const std::size_t rows = decision.rules.size();
  return decision.product + " " + decision.list + ", " + std::to_string(rows) +
         (rows == 1 ? " row" : " rows");
}

/// Whether a rule asks for something by a field of this value.
bool isCondition(const Json& wanted) {
  if (wanted.is_string()) return !wanted.get_ref<const std::string&>().empty();
  return wanted != SensorModeCfg::kNoCondition;
}

/// "row 9 meets 1 of 2: uiMode 53, but eisMode is absent, not 1": what counts of a rule of several
/// conditions.
std::string trialText(const Decision::RuleTrial& trial, const SensorModeCfg& rule) {
  std::string met;
  std::string missed;
  for (const Decision::Comparison& comparison : trial.comparisons) {
    if (comparison.isEqual) {
      met += (met.empty() ? ": " : ", ") + comparison.field + " " + valueText(comparison.found);
    } else if (isCondition(comparison.wanted)) {
      missed += (missed.empty() ? "; " : ", ") + comparison.field + " is " +
                valueText(comparison.found) + ", not " + valueText(comparison.wanted);
    }
  }
  return "row " + std::to_string(trial.row) + " meets " + std::to_string(trial.metCount()) +
         " of " + std::to_string(rule.conditionCount) + met + missed;
}

/// What a filter did, in lines.
std::vector<std::string> filterLines(const Decision::Filter& filter,
                                     const std::vector<SensorModeCfg>& rules) {
  if (!filter.passedBecause.empty()) return {"not asked: " + filter.passedBecause};
  if (filter.trials.empty()) return {"no rule of its kind is loaded"};

  std::vector<std::string> lines;
  if (filter.trials.front().comparisons.size() > 1) {
    for (const Decision::RuleTrial& trial : filter.trials) {
      lines.push_back(trialText(trial, rules[trial.row - 1]));
    }
  } else {
    const Decision::Comparison& comparison = filter.trials.back().comparisons.front();
    lines.push_back(comparison.field + " " + valueText(comparison.found));
    if (!filter.takenRow) lines.back() += ": no row has it";
  }
  if (filter.takenRow) {
    const SensorModeCfg& rule = rules[*filter.takenRow - 1];
    lines.back() +=
        ": row " + std::to_string(*filter.takenRow) + " is taken, " + scenarioText(rule.sensorMode);
  }
  return lines;
}

std::string baseText(const Decision& decision) {
  std::string text = scenarioText(decision.base);
  if (const auto row = decision.takenRow()) return text + ", of row " + std::to_string(*row);
  text += ", as no rule is selected";
  if (decision.base != hesk::NO_DECISION) text += " and there is a video stream";
  return text;
}

Json jsonFrom(const Decision::Filter& filter) {
  Json trials = Json::array();
  for (const Decision::RuleTrial& trial : filter.trials) {
    Json comparisons = Json::array();
    for (const auto& [field, wanted, found, isEqual] : trial.comparisons) {
      comparisons.push_back(
          {{"field", field}, {"wanted", wanted}, {"found", found}, {"equal", isEqual}});
    }
    trials.push_back({{"row", trial.row}, {"comparisons", std::move(comparisons)}});
  }
  return {{"filter", filter.name},
          {"passedBecause", filter.passedBecause.empty() ? Json() : Json(filter.passedBecause)},
          {"trials", std::move(trials)},
          {"takenRow", filter.takenRow ? Json(*filter.takenRow) : Json()}};
}

Json jsonFrom(const SensorModeCfg& rule) {
  return {{"isHfpsMode", rule.isHfpsMode},
          {"appType", rule.appType},
          {"fps", rule.fps},
          {"eisMode", rule.eisMode},
          {"videoAlgoType", rule.videoAlgoType},
          {"uiMode", rule.uiMode},
          {"sensorMode", rule.sensorMode},
          {"conditionCount", rule.conditionCount}};
}

Json nameOrNull(const std::string& name) { return name.empty() ? Json() : Json(name); }

}  // namespace

Decision decide(const DecideOptions& options) {
  host::Phone phone;
  phone.properties.set("ro.product.model.zdm", options.product);
  phone.eventStore.set("APP_TYPE", options.appType);
  phone.eventStore.set("APP_NAME", options.appName);
  IMetadata meta = metadataFrom(options);
  const auto info = std::make_shared<HeskSensorModeControl::StreamInfo>();
  *info = {.hasVideoConsumer = options.video, .mainOutputSize = options.size};

  DecisionRecorder recorder;
  HeskSensorModeControl* control = HeskSensorModeControl::createInstance(options.sensor);
  const HeskSensorModeControlInspector inspector{*control};
  inspector.observe(&recorder);
  recorder.decision.scenario = control->decideSensorScenario(&meta, info);
  inspector.observe(nullptr);
  return std::move(recorder.decision);
}

void writeDecisionText(std::ostream& out, const Decision& decision, Style style) {
  out << style.title(scenarioText(decision.scenario)) << "\n\n";
  out << style.heading("rules") << "  " << rulesText(decision) << '\n';
  out << style.heading("filters") << '\n';
  Columns filters;
  for (const Decision::Filter& filter : decision.filters) {
    std::string name = filter.name;
    for (const std::string& line : filterLines(filter, decision.rules)) {
      filters.add({name, filter.takenRow ? style.fresh(line) : line});
      name.clear();
    }
  }
  filters.write(out, 2);
  out << style.heading("base") << "  " << baseText(decision) << '\n';
  out << style.heading("overrides");
  if (decision.overrides.empty()) out << "  none fires";
  out << '\n';
  Columns overrides;
  for (const Decision::Override& override : decision.overrides) {
    const bool holds = &override == &decision.overrides.back();
    const std::string text = scenarioText(override.scenario);
    overrides.add({holds ? style.fresh(text) : style.faint(text),
                   override.when + (holds ? ": holds" : ": overwritten")});
  }
  overrides.write(out, 2);
}

void writeDecisionJson(std::ostream& out, const Decision& decision) {
  Json rules = Json::array();
  for (const SensorModeCfg& rule : decision.rules) rules.push_back(jsonFrom(rule));
  Json filters = Json::array();
  for (const Decision::Filter& filter : decision.filters) filters.push_back(jsonFrom(filter));
  Json overrides = Json::array();
  for (const Decision::Override& override : decision.overrides) {
    overrides.push_back({{"when", override.when},
                         {"scenario", override.scenario},
                         {"holds", &override == &decision.overrides.back()}});
  }
  const auto row = decision.takenRow();
  writeJson(out, {{"scenario", decision.scenario},
                  {"name", scenarioName(decision.scenario)},
                  {"product", nameOrNull(decision.product)},
                  {"list", nameOrNull(decision.list)},
                  {"rules", std::move(rules)},
                  {"filters", std::move(filters)},
                  {"base", {{"scenario", decision.base}, {"row", row ? Json(*row) : Json()}}},
                  {"overrides", std::move(overrides)}});
  out << '\n';
}

}  // namespace camhook
