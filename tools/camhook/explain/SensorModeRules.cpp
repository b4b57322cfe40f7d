#include "tools/camhook/explain/SensorModeRules.h"

#include <algorithm>

#include "common/sensormode/Overrides.h"
#include "tools/camhook/input/WholeNumber.h"
#include "tools/camhook/show/SensorModeName.h"

namespace camhook {
namespace {

constexpr RuleColumn kColumns[] = {
    {"hfps", "isHfpsMode", kHfps, &SensorModeCfg::isHfpsMode},
    {"app type", "appType", kAppType, &SensorModeCfg::appType},
    {"fps", "fps", kFps, &SensorModeCfg::fps},
    {"eis", "eisMode", kEis, &SensorModeCfg::eisMode},
    {"algo", "videoAlgoType", kVideoAlgo, &SensorModeCfg::videoAlgoType},
    {"ui", "uiMode", kUiModule, &SensorModeCfg::uiMode},
};

/// 640x480 meets every condition of a size, 4:3 is near it and not wider, 2804x2102 is near and
/// wider, 1080x1080 is not near and not wider, 1920x1080 meets none.
constexpr const char* kSizes[] = {"640x480", "1440x1080", "2804x2102", "1080x1080", "1920x1080"};

void addOverrideValues(std::vector<std::string>& values, InputIndex input) {
  const auto addNumber = [&](std::int32_t number) {
    if (number != hesk::Override::kNoCondition) values.push_back(std::to_string(number));
  };
  for (const hesk::Override& override : hesk::overrides()) {
    if (input == kAppType) values.emplace_back(override.appType);
    if (input == kAppName)
      values.insert(values.end(), override.appNames.begin(), override.appNames.end());
    if (input == kHdr) addNumber(override.hdrMode);
    if (input == kNight) addNumber(override.nightMode);
  }
  if (input == kSize) values.assign(std::begin(kSizes), std::end(kSizes));
}

}  // namespace

std::span<const RuleColumn> ruleColumns() { return kColumns; }

std::string RuleColumn::conditionOf(const SensorModeCfg& rule) const {
  if (const auto* text = std::get_if<std::string SensorModeCfg::*>(&member)) return rule.**text;
  const std::int32_t number = rule.*std::get<std::int32_t SensorModeCfg::*>(member);
  return number != SensorModeCfg::kNoCondition ? std::to_string(number) : "";
}

std::string valueMeeting(InputIndex input, const std::string& condition) {
  return input == kFps ? condition + "," + condition : condition;
}

std::vector<std::string_view> tableNames() {
  std::vector<std::string_view> names;
  for (const SensorModeTable& table : hesk::sensorModeTables())
    names.emplace_back(table.productName);
  return names;
}

std::vector<const Rules*> listsOf(const SensorModeTable* table) {
  std::vector<const Rules*> lists;
  for (const SensorModeTable& each : hesk::sensorModeTables()) {
    if (table != nullptr && &each != table) continue;
    for (const RuleList& list : kRuleLists) lists.push_back(&(each.*list.rules));
  }
  return lists;
}

std::vector<std::string> namedValues(InputIndex input, std::span<const Rules* const> lists) {
  std::vector<std::string> values;
  for (const RuleColumn& column : kColumns) {
    if (column.input != input) continue;
    for (const Rules* rules : lists) {
      for (const SensorModeCfg& rule : *rules) values.push_back(column.conditionOf(rule));
    }
  }
  addOverrideValues(values, input);
  std::vector<std::string> named;
  for (const std::string& value : values) {
    if (value.empty() || std::ranges::find(named, value) != named.end()) continue;
    named.push_back(value);
  }
  if (inputFields()[input].form == InputField::Form::number ||
      inputFields()[input].form == InputField::Form::range) {
    std::ranges::sort(named, {}, [](const auto& text) { return wholeNumber<std::int32_t>(text); });
  }
  for (std::string& value : named) value = valueMeeting(input, value);
  return named;
}

std::string anotherValue(InputIndex input, std::span<const std::string> named) {
  if (inputFields()[input].form == InputField::Form::text) return "another";
  // The hfps filter looks for 1, whatever the rules name.
  std::int32_t number = 2;
  while (std::ranges::find(named, valueMeeting(input, std::to_string(number))) != named.end()) {
    ++number;
  }
  return valueMeeting(input, std::to_string(number));
}

std::string sensorModeText(std::int32_t mode) {
  return std::to_string(mode).append(" ").append(sensorModeName(mode));
}

}  // namespace camhook
