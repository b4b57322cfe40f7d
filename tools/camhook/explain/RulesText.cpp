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
         "By which each product's sensors are read out. Written by `./camhook reference`.\n\n"
         "A row is met by what its columns ask for:\n\n";
  Table columns{{"column", "what a configuration has"}};
  for (const RuleColumn& column : kRuleColumns) {
    columns.push_back({std::string(column.title), "`" + std::string(column.input) + "`"});
  }
  writeMarkdownTable(out, columns);
  out << "\nRows of several conditions are asked first, from the last to the first: one is taken "
         "as\nsoon as it meets as many as it must. Then those of one condition are asked, from the "
         "first\nto the last, by eis, hfps, app type, fps, algo and ui. An empty `APP_TYPE` meets "
         "every row\nwithout an app type.\n";
  for (const SensorModeTable& table : hesk::sensorModeTables()) {
    out << "\n## " << table.productName << '\n';
    for (const RuleList& list : kRuleLists) {
      out << "\n`" << list.name << "`\n\n";
      writeMarkdownTable(out, tableOf(table.*list.rules));
    }
  }
  out << "\n## Overrides\n\nThey go before the rules, on every product; the last that fires "
         "holds.\n\n";
  writeMarkdownTable(out, tableOfOverrides());
}

}  // namespace camhook
