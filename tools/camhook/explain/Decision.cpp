#include "tools/camhook/explain/Decision.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <variant>

#include "common/sensormode/SensorModeInspector.h"
#include "tools/camhook/input/JsonLine.h"
#include "tools/camhook/input/TagCatalogue.h"
#include "tools/camhook/show/SensorModeName.h"

namespace camhook {
namespace {

using Control = HeskSensorModeControl;
using NSCam::IMetadata;
using Row = std::optional<std::size_t>;

/// Null if no rule compares the input.
const RuleColumn* findColumn(std::string_view input) {
  const auto* const found = std::ranges::find(kRuleColumns, input, &RuleColumn::input);
  return found != std::end(kRuleColumns) ? found : nullptr;
}

struct Filter {
  const char* name;        // of the operation
  std::string_view input;  // the only one that it compares; empty: several
  std::function<void(Control&, IMetadata*)> run;
};

/// In the order in which the library runs them.
std::span<const Filter> filters() {
  const auto runByAppType = [](Control& control, IMetadata* /*meta*/) {
    control.getSensorModeCfgByApptype();
  };
  static const Filter kFilters[] = {
      {"getSensorModeCfgByMultiCondition", "", &Control::getSensorModeCfgByMultiCondition},
      {"getSensorModeCfgByEisMode", kEis, &Control::getSensorModeCfgByEisMode},
      {"getSensorModeCfgByIsHfpsMode", kHfps, &Control::getSensorModeCfgByIsHfpsMode},
      {"getSensorModeCfgByApptype", kAppType, runByAppType},
      {"getSensorModeCfgByFps", kFps, &Control::getSensorModeCfgByFps},
      {"getSensorModeCfgByVideoAlgoType", kVideoAlgo, &Control::getSensorModeCfgByVideoAlgoType},
      {"getSensorModeCfgByUiMode", kUiModule, &Control::getSensorModeCfgByUiMode},
  };
  return kFilters;
}

/// The column whose input an access reads; null for none.
const RuleColumn* columnReadBy(const host::Access& access) {
  if (const auto* event = std::get_if<host::EventRead>(&access)) return findColumn(event->key);
  const auto* const read = std::get_if<host::MetadataRead>(&access);
  const TagDescription* const tag = read != nullptr ? findTag(read->tag) : nullptr;
  return tag != nullptr ? findColumn(tag->name) : nullptr;
}

/// Records which fields a filter compares, and which of them are met: it logs a match before the
/// next read.
class FilterWatch final : public host::Observer {
 public:
  explicit FilterWatch(host::LogSink& log) : mLog(log) {}

  void onAccess(const host::Access& access) override {
    takeRecords();
    const RuleColumn* const column = columnReadBy(access);
    // A condition may read its input twice.
    if (column == nullptr || column == mColumn) return;
    mColumn = column;
    mAsked.push_back(column->field);
  }

  /// A row of "filters" in the document.
  Json comparedRow(std::size_t row, const SensorModeCfg& rule) {
    takeRecords();
    return {{"row", row + 1}, {"asked", mAsked}, {"met", mMet}, {"needed", rule.conditionCount}};
  }

 private:
  void takeRecords() {
    for (const host::LogRecord& record : mLog.take()) {
      if (mColumn != nullptr && record.message.find("selected by ") != std::string::npos)
        mMet.push_back(mColumn->field);
    }
  }

  host::LogSink& mLog;
  const RuleColumn* mColumn = nullptr;  // of the last read
  Json::List mAsked;
  Json::List mMet;
};

Row foundRow(Control& control) {
  const auto& selected = HeskSensorModeControlInspector{control}.selectedSensorModeCfgs();
  if (selected.empty()) return {};
  return static_cast<std::size_t>(selected.back().sensorMode);
}

/// The rows that a filter compares until one matches, in order.
std::vector<std::size_t> rowsOf(const Filter& filter, const Rules& rules,
                                const DecisionInputs& inputs) {
  const bool isOfOne = !filter.input.empty();
  std::vector<std::size_t> rows;
  // The hfps filter compares rows only if hfps is 1.
  if (filter.input == kHfps && inputs[kHfps] != 1) return rows;
  for (std::size_t row = 0; row < rules.size(); ++row) {
    if (isOfSeveral(rules[row]) != isOfOne) rows.push_back(row);
  }
  if (!isOfOne) std::ranges::reverse(rows);
  return rows;
}

Json rowNumber(const Row& row) { return row ? Json(*row + 1) : Json(); }

Json decidedBy(const Json::List& overrides, const Row& row, const std::string& list,
               std::int32_t mode) {
  for (const Json& override : overrides) {
    if (override["verdict"] != "decides") continue;
    const Json& number = override["number"];
    return {{"kind", "override"},
            {"number", number},
            {"text", "override " + lineOfJson(number) + ": " + override["when"].text()}};
  }
  std::string text = row ? "row " + std::to_string(*row + 1) + " of " + list
                         : "no row matches; the platform chooses";
  if (!row && mode != hesk::NO_DECISION) text = "no row matches; the default with a video stream";
  return {{"kind", row ? "row" : "default"}, {"number", rowNumber(row)}, {"text", text}};
}

Json columnsJson() {
  Json::List columns;
  for (const RuleColumn& column : kRuleColumns) {
    columns.push_back({{"field", column.field}, {"title", column.title}, {"input", column.input}});
  }
  return columns;
}

}  // namespace

bool isListed(const Json& filters, const Json& row, const char* list, std::string_view field) {
  return std::ranges::any_of(filters.items(), [&](const Json& filter) {
    const Json::List& rows = filter["rows"].items();
    const auto found = std::ranges::find(rows, row, [](const Json& each) { return each["row"]; });
    return found != rows.end() &&
           std::ranges::find((*found)[list].items(), field) != (*found)[list].items().end();
  });
}

Control& DecidingPhone::configure(const DecisionInputs& inputs) {
  mPhone.properties.set("ro.product.model.zdm", textOf(inputs[kProduct]));
  mPhone.eventStore.set("APP_TYPE", textOf(inputs[kAppType]));
  mPhone.eventStore.set("APP_NAME", textOf(inputs[kAppName]));
  return *Control::createInstance(numberOf(inputs[kSensor]));
}

std::int32_t DecidingPhone::modeFor(const DecisionInputs& inputs) {
  IMetadata meta = sessionMetadataOf(inputs);
  const auto streams = std::make_shared<Control::StreamInfo>(streamsOf(inputs));
  return configure(inputs).decideSensorScenario(&meta, streams);
}

Control& DecidingPhone::load(const Rules& rules, const DecisionInputs& inputs) {
  Control& control = configure(inputs);
  const HeskSensorModeControlInspector fields{control};
  fields.sensorModeTable().clear();
  fields.multiConditionTable().clear();
  fields.selectedSensorModeCfgs().clear();
  std::int32_t row = 0;
  for (SensorModeCfg rule : rules) {
    rule.sensorMode = row++;
    (isOfSeveral(rule) ? fields.multiConditionTable() : fields.sensorModeTable()).push_back(rule);
  }
  return control;
}

Row DecidingPhone::rowFor(const Rules& rules, const DecisionInputs& inputs) {
  IMetadata meta = sessionMetadataOf(inputs);
  Control& control = load(rules, inputs);
  for (const Filter& filter : filters()) filter.run(control, &meta);
  return foundRow(control);
}

Json::List DecidingPhone::runFilters(const Rules& rules, const DecisionInputs& inputs) {
  IMetadata meta = sessionMetadataOf(inputs);
  Row found;
  Json::List runs;
  for (const Filter& filter : filters()) {
    const bool isAsked = !found;
    Json::List compared;
    for (const std::size_t row : rowsOf(filter, rules, inputs)) {
      if (found) break;
      Control& control = load({rules[row]}, inputs);
      FilterWatch watch(mPhone.log);
      mPhone.setObserver(&watch);
      filter.run(control, &meta);
      mPhone.setObserver(nullptr);
      compared.push_back(watch.comparedRow(row, rules[row]));
      if (foundRow(control)) found = row;
    }
    const RuleColumn* const column = findColumn(filter.input);
    runs.push_back({{"filter", filter.name},
                    {"title", column != nullptr ? column->title : "several conditions"},
                    {"asked", isAsked},
                    {"found", isAsked ? rowNumber(found) : Json()},
                    {"rows", compared}});
  }
  return runs;
}

Json DecidingPhone::explain(const DecisionInputs& inputs) {
  const SensorModeTable* const table = hesk::findSensorModeTable(textOf(inputs[kProduct]));
  const auto* const list = std::ranges::find_if(kRuleLists, [&](const RuleList& each) {
    return inputs[kSensor] == each.sensor && inputs[kVideo] == each.video;
  });
  const bool hasRules = table != nullptr && list != std::end(kRuleLists);
  const Rules rules = hasRules ? table->*list->rules : Rules();
  const Row row = rowFor(rules, inputs);
  const std::int32_t base =
      row ? rules[*row].sensorMode
          : HeskSensorModeControlInspector{configure(inputs)}.baseScenario(inputs[kVideo].isTrue());
  const std::int32_t mode = modeFor(inputs);
  const Json::List filters = runFilters(rules, inputs);
  const Json::List overrides = overrideVerdicts(inputs);
  const Json product = table != nullptr ? Json(table->productName) : Json();
  return {{"scenario", mode},
          {"name", sensorModeName(mode)},
          {"decidedBy",
           decidedBy(overrides, row, hasRules ? product.text() + " " + list->name : "", mode)},
          {"inputs", inputs},
          {"warnings", inputWarnings(inputs)},
          {"product", product},
          {"list", hasRules ? Json(list->name) : Json()},
          {"columns", columnsJson()},
          {"rows", rowVerdicts(rules, filters, row, inputs)},
          {"filters", filters},
          {"base", {{"scenario", base}, {"name", sensorModeName(base)}, {"row", rowNumber(row)}}},
          {"overrides", overrides}};
}

}  // namespace camhook
