#include "tools/camhook/explain/Decision.h"

#include <algorithm>
#include <memory>
#include <type_traits>
#include <utility>
#include <variant>

#include "common/sensormode/SensorModeInspector.h"

namespace camhook {
namespace {

using Control = HeskSensorModeControl;
using NSCam::IMetadata;

const RuleColumn* columnOf(InputIndex input) {
  return &*std::ranges::find(ruleColumns(), input, &RuleColumn::input);
}

template <auto kFilter>
void runFilter(Control& control, IMetadata* meta) {
  if constexpr (std::is_invocable_v<decltype(kFilter), Control&>) {
    (control.*kFilter)();
  } else {
    (control.*kFilter)(meta);
  }
}

/// The column whose input an access reads; null for none.
const RuleColumn* columnReadBy(const host::Access& access) {
  const auto* read = std::get_if<host::MetadataRead>(&access);
  const auto* event = std::get_if<host::EventRead>(&access);
  for (const RuleColumn& column : ruleColumns()) {
    const InputField& field = inputFields()[column.input];
    if (read != nullptr && field.tag == read->tag) return &column;
    if (event != nullptr && field.name == event->key) return &column;
  }
  return nullptr;
}

/// Follows a filter: the columns that it reads, each met if a record of a match comes before the
/// next read.
class FilterWatch final : public host::Observer {
 public:
  explicit FilterWatch(host::Phone& phone) : mPhone(phone), mBefore(phone.setObserver(this)) {}
  ~FilterWatch() { mPhone.setObserver(mBefore); }
  FilterWatch(const FilterWatch&) = delete;
  FilterWatch& operator=(const FilterWatch&) = delete;

  void onAccess(const host::Access& access) override {
    takeRecords();
    const RuleColumn* const column = columnReadBy(access);
    // A condition may read its input twice.
    if (column == nullptr || (!mCells.empty() && mCells.back().column == column)) return;
    mCells.push_back({0, column, false});
  }

  /// The columns since the last call.
  std::vector<Comparison> takeCells() {
    takeRecords();
    return std::exchange(mCells, {});
  }

 private:
  void takeRecords() {
    for (const host::LogRecord& record : mPhone.log.take()) {
      if (record.message.find("selected by ") != std::string::npos && !mCells.empty())
        mCells.back().isMet = true;
    }
  }

  host::Phone& mPhone;
  host::Observer* mBefore;
  std::vector<Comparison> mCells;
};

/// Has the control choose from rows, whose sensor modes are replaced by their numbers: the filters
/// copy the row that they find.
void load(const HeskSensorModeControlInspector& fields, std::span<const SensorModeCfg> rules) {
  fields.sensorModeTable().clear();
  fields.multiConditionTable().clear();
  fields.selectedSensorModeCfgs().clear();
  std::int32_t row = 0;
  for (SensorModeCfg rule : rules) {
    rule.sensorMode = row++;
    (isOfSeveral(rule) ? fields.multiConditionTable() : fields.sensorModeTable()).push_back(rule);
  }
}

std::optional<std::size_t> foundRow(const HeskSensorModeControlInspector& fields) {
  const auto& selected = fields.selectedSensorModeCfgs();
  if (selected.empty()) return {};
  return static_cast<std::size_t>(selected.back().sensorMode);
}

/// Adds their rows to the comparisons of the filter of several conditions: it begins with the last
/// row, and each row begins with the first column.
void addRows(std::vector<Comparison>& comparisons, std::span<const SensorModeCfg> rules) {
  std::size_t row = rules.size();
  for (Comparison& comparison : comparisons) {
    if (comparison.column == &ruleColumns().front()) {
      do --row;
      while (!isOfSeveral(rules[row]));
    }
    comparison.row = row;
  }
}

/// A filter of one condition reads its input once and compares it with the rows until one matches.
std::vector<Comparison> comparisonsOfOne(const RuleColumn* column,
                                         std::span<const SensorModeCfg> rules,
                                         std::optional<std::size_t> found, const Inputs& inputs) {
  std::vector<Comparison> comparisons;
  // The hfps filter compares rows only if hfps is 1.
  if (column->input == kHfps && inputs[kHfps] != "1") return comparisons;
  for (std::size_t row = 0; row < rules.size(); ++row) {
    if (isOfSeveral(rules[row])) continue;
    comparisons.push_back({row, column, row == found});
    if (row == found) break;
  }
  return comparisons;
}

}  // namespace

std::span<const Filter> filters() {
  static const Filter kFilters[] = {
      {"getSensorModeCfgByMultiCondition", nullptr,
       runFilter<&Control::getSensorModeCfgByMultiCondition>},
      {"getSensorModeCfgByEisMode", columnOf(kEis), runFilter<&Control::getSensorModeCfgByEisMode>},
      {"getSensorModeCfgByIsHfpsMode", columnOf(kHfps),
       runFilter<&Control::getSensorModeCfgByIsHfpsMode>},
      {"getSensorModeCfgByApptype", columnOf(kAppType),
       runFilter<&Control::getSensorModeCfgByApptype>},
      {"getSensorModeCfgByFps", columnOf(kFps), runFilter<&Control::getSensorModeCfgByFps>},
      {"getSensorModeCfgByVideoAlgoType", columnOf(kVideoAlgo),
       runFilter<&Control::getSensorModeCfgByVideoAlgoType>},
      {"getSensorModeCfgByUiMode", columnOf(kUiModule),
       runFilter<&Control::getSensorModeCfgByUiMode>},
  };
  return kFilters;
}

const char* Filter::title() const {
  return column != nullptr ? column->title : "several conditions";
}

std::span<const SensorModeCfg> Decision::rules() const {
  if (list == nullptr) return {};
  return table->*list->rules;
}

const Comparison* Decision::findCell(std::size_t ofRow, const RuleColumn& column) const {
  for (const FilterRun& run : filters) {
    for (const Comparison& each : run.comparisons) {
      if (each.row == ofRow && each.column == &column) return &each;
    }
  }
  return nullptr;
}

bool Decision::isAsked(std::size_t ofRow) const {
  return std::ranges::any_of(ruleColumns(), [&](const RuleColumn& column) {
    return !column.conditionOf(rules()[ofRow]).empty() && findCell(ofRow, column) != nullptr;
  });
}

void DecidingPhone::configure(const Inputs& inputs) {
  mPhone.properties.set("ro.product.model.zdm", inputs[kProduct]);
  mPhone.eventStore.set("APP_TYPE", inputs[kAppType]);
  mPhone.eventStore.set("APP_NAME", inputs[kAppName]);
}

std::int32_t DecidingPhone::modeFor(const Inputs& inputs) {
  configure(inputs);
  IMetadata meta = inputs.metadata();
  Control& control = *Control::createInstance(inputs.numbers(kSensor)[0]);
  return control.decideSensorScenario(&meta,
                                      std::make_shared<Control::StreamInfo>(inputs.streams()));
}

/// Runs the filters on these rows; calls `afterEach` with each filter and the row found by then.
template <typename AfterEach>
std::optional<std::size_t> DecidingPhone::runFilters(std::span<const SensorModeCfg> rules,
                                                     const Inputs& inputs, AfterEach afterEach) {
  configure(inputs);
  IMetadata meta = inputs.metadata();
  Control& control = *Control::createInstance(inputs.numbers(kSensor)[0]);
  const HeskSensorModeControlInspector fields{control};
  load(fields, rules);
  for (const Filter& filter : filters()) {
    filter.run(control, &meta);
    afterEach(filter, foundRow(fields));
  }
  return foundRow(fields);
}

std::optional<std::size_t> DecidingPhone::rowFor(std::span<const SensorModeCfg> rules,
                                                 const Inputs& inputs) {
  return runFilters(rules, inputs, [](const auto&... /*unused*/) {});
}

Decision DecidingPhone::explain(const Inputs& inputs) {
  Decision decision;
  decision.inputs = inputs;
  decision.table = hesk::findSensorModeTable(inputs[kProduct]);
  const auto* const list = std::ranges::find_if(kRuleLists, [&](const RuleList& each) {
    return each.sensor == inputs.numbers(kSensor)[0] && each.video == inputs.hasVideo();
  });
  if (decision.table != nullptr && list != std::end(kRuleLists)) decision.list = list;

  {
    FilterWatch watch(mPhone);
    const auto keep = [&](const Filter& filter, std::optional<std::size_t> found) {
      FilterRun run{&filter, !decision.row, watch.takeCells(), {}};
      if (run.isAsked) {
        run.found = decision.row = found;
        if (filter.column == nullptr) {
          addRows(run.comparisons, decision.rules());
        } else {
          run.comparisons = comparisonsOfOne(filter.column, decision.rules(), found, inputs);
        }
      }
      decision.filters.push_back(std::move(run));
    };
    runFilters(decision.rules(), inputs, keep);
  }
  const HeskSensorModeControlInspector fields{*Control::createInstance(0)};
  decision.base = decision.row ? decision.rules()[*decision.row].sensorMode
                               : fields.baseScenario(inputs.hasVideo());
  decision.overrides = overrideVerdicts(inputs);
  for (std::size_t i = 0; i < decision.overrides.size(); ++i) {
    if (decision.overrides[i].kind == OverrideVerdict::Kind::decides) decision.override = i;
  }
  decision.mode = modeFor(inputs);
  return decision;
}

}  // namespace camhook
