#include <algorithm>
#include <ostream>
#include <utility>

#include "common/sensormode/Overrides.h"
#include "tools/camhook/explain/RulesCommand.h"

namespace camhook {
namespace {

/// The first line is the head.
using Table = std::vector<std::vector<std::string>>;

Table tableOf(const Rules& rules) {
  Table table(rules.size() + 1);
  const auto addColumn = [&](std::string_view title, auto cellOf) {
    table.front().emplace_back(title);
    for (std::size_t i = 0; i < rules.size(); ++i) table[i + 1].push_back(cellOf(rules[i]));
  };
  std::size_t row = 0;
  addColumn("row", [&](const auto&) { return std::to_string(++row); });
  for (const RuleColumn& column : kRuleColumns) {
    const auto cellOf = [&](const SensorModeCfg& rule) {
      const Json condition = column.conditionOf(rule);
      return condition.isNull() ? "" : inputText(column.input, condition);
    };
    const auto isEmpty = [&](const auto& rule) { return column.conditionOf(rule).isNull(); };
    if (!std::ranges::all_of(rules, isEmpty)) addColumn(column.title, cellOf);
  }
  if (std::ranges::any_of(rules, isOfSeveral)) {
    addColumn("must meet", [](const SensorModeCfg& rule) {
      return isOfSeveral(rule) ? std::to_string(rule.conditionCount) : "";
    });
  }
  addColumn("scenario", [](const auto& rule) { return sensorModeText(rule.sensorMode); });
  return table;
}

Table tableOfOverrides() {
  Table table{{"override", "when", "scenario"}};
  for (const hesk::Override& override : hesk::overrides()) {
    table.push_back(
        {std::to_string(table.size()), override.when, sensorModeText(override.scenario)});
  }
  return table;
}

void writeTable(std::ostream& out, Table table, Style style) {
  for (std::string& title : table.front()) title = style.faint(title);
  Columns columns;
  for (auto& line : table) columns.add(std::move(line));
  columns.write(out, 4);
}

void writeMarkdownTable(std::ostream& out, const Table& table) {
  for (const auto& line : table) {
    out << '|';
    for (const std::string& cell : line) out << (cell.empty() ? " " : " " + cell + " ") << '|';
    out << '\n';
    if (&line != &table.front()) continue;
    for (std::size_t i = 0; i < line.size(); ++i) out << "|---";
    out << "|\n";
  }
}

}  // namespace

void writeRulesText(std::ostream& out, const SensorModeTable* only, Style style) {
  for (const SensorModeTable& table : tablesOf(only)) {
    out << style.title(table.productName) << '\n';
    for (const RuleList& list : kRuleLists) {
      out << "  " << style.heading(list.name) << '\n';
      writeTable(out, tableOf(table.*list.rules), style);
    }
    out << '\n';
  }
  out << style.title("overrides") << '\n';
  writeTable(out, tableOfOverrides(), style);
}

void writeRulesMarkdown(std::ostream& out) {
  out << "# Rules of sensor scenarios\n\n"
         "The rules that select the sensor mode of each product. Written by `./camhook "
         "reference`.\n\n"
         "A row matches if these inputs have the values in its columns:\n\n";
  Table columns{{"column", "input"}};
  for (const RuleColumn& column : kRuleColumns) {
    columns.push_back(
        {std::string(column.title), std::string("`").append(column.input).append("`")});
  }
  writeMarkdownTable(out, columns);
  out << "\nRows with several conditions are compared first, from the last to the first. A row "
         "matches if\nthe number of its conditions that are met reaches \"must meet\". Then rows "
         "with one condition are\ncompared, from the first to the last, in the order eis, hfps, "
         "app type, fps, algo, ui. An empty\n`APP_TYPE` matches rows without an app type.\n";
  for (const SensorModeTable& table : hesk::sensorModeTables()) {
    out << "\n## " << table.productName << '\n';
    for (const RuleList& list : kRuleLists) {
      out << "\n`" << list.name << "`\n\n";
      writeMarkdownTable(out, tableOf(table.*list.rules));
    }
  }
  out << "\n## Overrides\n\nOverrides take precedence over the rules on every product. If several "
         "apply, the last one\ndecides.\n\n";
  writeMarkdownTable(out, tableOfOverrides());
}

}  // namespace camhook
