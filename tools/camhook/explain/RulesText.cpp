#include <algorithm>
#include <ostream>
#include <utility>

#include "common/sensormode/Overrides.h"
#include "tools/camhook/explain/RulesCommand.h"
#include "tools/camhook/show/SensorModeName.h"

namespace camhook {
namespace {

/// Writes the rows of a list with the columns that they use.
void writeRules(std::ostream& out, const Rules& rules, Style style) {
  std::vector<std::vector<std::string>> lines(rules.size() + 1);
  const auto addColumn = [&](std::string_view title, auto cellOf) {
    lines.front().push_back(style.faint(title));
    for (std::size_t i = 0; i < rules.size(); ++i) lines[i + 1].push_back(cellOf(rules[i]));
  };
  std::size_t row = 0;
  addColumn("row", [&](const auto&) { return std::to_string(++row); });
  for (const RuleColumn& column : kRuleColumns) {
    const auto cellOf = [&](const SensorModeCfg& rule) {
      const Json condition = column.conditionOf(rule);
      return condition.isNull() ? "" : decisionInputText(column.input, condition);
    };
    const auto isEmpty = [&](const auto& rule) { return column.conditionOf(rule).isNull(); };
    if (!std::ranges::all_of(rules, isEmpty)) addColumn(column.title, cellOf);
  }
  if (std::ranges::any_of(rules, isOfSeveral)) {
    addColumn("must meet", [](const SensorModeCfg& rule) {
      return isOfSeveral(rule) ? std::to_string(rule.conditionCount) : "";
    });
  }
  addColumn("mode", [](const auto& rule) { return sensorModeText(rule.sensorMode); });
  Columns columns;
  for (auto& line : lines) columns.add(std::move(line));
  columns.write(out, 4);
}

std::string nameOfMode(std::int32_t mode) {
  return mode == hesk::NO_DECISION ? "-" : std::string(sensorModeName(mode));
}

/// A row of the matrix: the sensor modes for one value of an input.
std::vector<std::string> matrixRow(const SensorModeTable& table, const std::string& name,
                                   std::string_view input, const Json& value) {
  DecidingPhone phone;
  std::vector<std::string> row{name};
  for (const RuleList& list : kRuleLists) {
    DecisionInputs inputs = decisionInputsOf(table.productName, list.sensor, list.video);
    if (input != kAppType) inputs[kAppType] = anotherValue(kAppType);
    inputs[input] = value;
    inputs[kSize] = Json::List{1920, 1080};
    const std::string large = nameOfMode(phone.modeFor(inputs));
    inputs[kSize] = Json::List{640, 480};
    const std::string small = nameOfMode(phone.modeFor(inputs));
    row.push_back(small == large ? large : std::string(large).append("/").append(small));
  }
  return row;
}

}  // namespace

void writeRulesText(std::ostream& out, const SensorModeTable* only, Style style) {
  for (const SensorModeTable& table : tablesOf(only)) {
    out << style.title(table.productName) << '\n';
    for (const RuleList& list : kRuleLists) {
      out << "  " << style.heading(list.name) << '\n';
      writeRules(out, table.*list.rules, style);
    }
    out << '\n';
  }
  Columns overrides;
  overrides.add({style.faint("override"), style.faint("when"), style.faint("mode")});
  std::size_t number = 0;
  for (const hesk::Override& override : hesk::overrides()) {
    overrides.add({std::to_string(++number), override.when, sensorModeText(override.scenario)});
  }
  out << style.title("overrides") << '\n';
  overrides.write(out, 4);
}

void writeRulesMarkdown(std::ostream& out) {
  out << "# Sensor mode rules\n\n"
         "The rules that select the sensor mode of each product. Written by `./camhook "
         "reference`.\n\n"
         "A row matches if these inputs have the values in its columns:\n\n"
         "| column | input |\n|---|---|\n";
  for (const RuleColumn& column : kRuleColumns) {
    out << "| " << column.title << " | `" << column.input << "` |\n";
  }
  out << "\nRows with several conditions are compared first, from the last to the first. A row "
         "matches if\nthe number of its conditions that are met reaches \"must meet\". Then rows "
         "with one condition are\ncompared, from the first to the last, in the order eis, hfps, "
         "app type, fps, algo, ui. An empty\n`APP_TYPE` matches rows without an app type.\n\n"
         "Overrides take precedence over the rules on every product. If several apply, the last "
         "one decides.\n\n```\n";
  writeRulesText(out, nullptr, Style(false));
  out << "```\n";
}

void writeMatrix(std::ostream& out, const SensorModeTable& table, Style style) {
  constexpr std::pair<const char*, std::string_view> kParts[] = {
      {"APP_TYPE", kAppType}, {"APP_NAME", kAppName}, {"UI module", kUiModule}};
  Columns columns;
  for (const auto& [heading, input] : kParts) {
    columns.add(
        {style.heading(heading), "back preview", "back video", "front preview", "front video"});
    columns.add(matrixRow(table, "absent", input, {}));
    for (const Json& value : namedValues(input, &table)) {
      columns.add(matrixRow(table, decisionInputText(input, value), input, value));
    }
    columns.add(matrixRow(table, "another", input, anotherValue(input)));
  }
  out << style.title(table.productName) << '\n';
  columns.write(out, 0);
  out << "- means no decision. The size is 1920x1080; of two modes, the second is that at "
         "640x480.\n"
         "The APP_NAME and UI module rows use an app type without rules.\n";
}

}  // namespace camhook
