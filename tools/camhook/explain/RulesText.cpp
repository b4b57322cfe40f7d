#include <algorithm>
#include <ostream>
#include <utility>

#include "common/sensormode/Overrides.h"
#include "common/sensormode/SensorModeTables.h"
#include "tools/camhook/explain/RulesCommand.h"

namespace camhook {
namespace {

using Cells = std::vector<std::string>;

std::vector<const RuleColumn*> usedColumns(const Rules& rules) {
  std::vector<const RuleColumn*> columns;
  for (const RuleColumn& column : ruleColumns()) {
    const auto isUsed = [&](const auto& rule) { return !column.conditionOf(rule).empty(); };
    if (std::ranges::any_of(rules, isUsed)) columns.push_back(&column);
  }
  return columns;
}

/// A list as a table: its head, then a row for each rule.
std::vector<Cells> cellsOf(const Rules& rules) {
  const std::vector<const RuleColumn*> columns = usedColumns(rules);
  const bool hasSeveral = std::ranges::any_of(rules, isOfSeveral);
  std::vector<Cells> table{{"row"}};
  for (const RuleColumn* column : columns) table.front().emplace_back(column->title);
  if (hasSeveral) table.front().emplace_back("must meet");
  table.front().emplace_back("scenario");
  for (std::size_t i = 0; i < rules.size(); ++i) {
    Cells& row = table.emplace_back(Cells{std::to_string(i + 1)});
    for (const RuleColumn* column : columns) row.push_back(column->conditionOf(rules[i]));
    if (hasSeveral) {
      row.push_back(isOfSeveral(rules[i]) ? std::to_string(rules[i].conditionCount) : "");
    }
    row.push_back(sensorModeText(rules[i].sensorMode));
  }
  return table;
}

std::vector<Cells> cellsOfOverrides() {
  std::vector<Cells> table{{"override", "when", "scenario"}};
  for (const hesk::Override& override : hesk::overrides()) {
    table.push_back(
        {std::to_string(table.size()), override.when, sensorModeText(override.scenario)});
  }
  return table;
}

void writeTable(std::ostream& out, const std::vector<Cells>& table, Style style) {
  Columns columns;
  for (const Cells& row : table) {
    Cells cells = row;
    if (&row == &table.front()) {
      for (std::string& cell : cells) cell = style.faint(cell);
    }
    columns.add(std::move(cells));
  }
  columns.write(out, 4);
}

void writeMarkdownTable(std::ostream& out, const std::vector<Cells>& table) {
  for (const Cells& row : table) {
    out << '|';
    for (const std::string& cell : row) out << (cell.empty() ? " " : " " + cell + " ") << '|';
    out << '\n';
    if (&row != &table.front()) continue;
    for (std::size_t i = 0; i < row.size(); ++i) out << "|---";
    out << "|\n";
  }
}

}  // namespace

void writeRulesText(std::ostream& out, const SensorModeTable* only, Style style) {
  for (const SensorModeTable& table : hesk::sensorModeTables()) {
    if (only != nullptr && &table != only) continue;
    out << style.title(table.productName) << '\n';
    for (const RuleList& list : kRuleLists) {
      out << "  " << style.heading(list.name) << '\n';
      writeTable(out, cellsOf(table.*list.rules), style);
    }
    out << '\n';
  }
  out << style.title("overrides") << '\n';
  writeTable(out, cellsOfOverrides(), style);
}

void writeRulesMarkdown(std::ostream& out) {
  out << "# Rules of sensor scenarios\n\n"
         "By which each product's sensors are read out. Written by `./camhook reference`.\n\n"
         "A row is met by what its columns ask for:\n\n"
         "| column | what a configuration has |\n|---|---|\n";
  for (const RuleColumn& column : ruleColumns()) {
    out << "| " << column.title << " | `" << inputFields()[column.input].name << "` |\n";
  }
  out << "\nRows of several conditions are asked first, from the last to the first: one is taken "
         "as\n"
         "soon as it meets as many as it must. Then those of one condition are asked, from the "
         "first\n"
         "to the last, by ";
  const std::span<const Filter> ofOne = filters().subspan(1);
  for (const Filter& filter : ofOne) {
    out << (&filter == &ofOne.front()  ? ""
            : &filter == &ofOne.back() ? " and "
                                       : ", ")
        << filter.title();
  }
  out << ". An empty `APP_TYPE` meets every row\nwithout an app type.\n";
  for (const SensorModeTable& table : hesk::sensorModeTables()) {
    out << "\n## " << table.productName << '\n';
    for (const RuleList& list : kRuleLists) {
      out << "\n`" << list.name << "`\n\n";
      writeMarkdownTable(out, cellsOf(table.*list.rules));
    }
  }
  out << "\n## Overrides\n\nThey go before the rules, on every product; the last that fires "
         "holds.\n\n";
  writeMarkdownTable(out, cellsOfOverrides());
}

}  // namespace camhook
