#include "tools/camhook/rules/DecideText.h"

#include <algorithm>
#include <ostream>
#include <sstream>

#include "tools/camhook/input/PlainText.h"
#include "tools/camhook/rules/Want.h"

namespace camhook {
namespace {

constexpr const char* kMet = "=";
constexpr const char* kUnmet = "\u2260";

void writeInputs(std::ostream& out, const RuleSet& rules, const Inputs& inputs, Style style) {
  const std::vector<InputWarning> warnings = inputWarnings(rules, inputs);
  out << style.heading("inputs") << '\n';
  Columns columns;
  for (const InputField& field : inputFields()) {
    const std::string text = printable(field.text(inputs));
    columns.add({std::string(field.name), text == kAbsent ? style.faint(text) : text});
  }
  const std::vector<std::string> lines = columns.lines();
  for (std::size_t i = 0; i < lines.size(); ++i) {
    std::string line = "  " + lines[i];
    for (const auto& [input, problem] : warnings) {
      if (input == i) line += "  " + style.alarming("! " + printable(problem));
    }
    out << wrapped(line, style.width(), 6) << '\n';
  }
}

/// The columns in which some row asks for something or, as -1 or the empty app type are values like
/// any other, has what is there.
std::vector<std::size_t> shownColumns(const std::vector<RowVerdict>& rows) {
  std::vector<std::size_t> columns;
  for (std::size_t i = 0; i < ruleColumns().size(); ++i) {
    if (std::ranges::any_of(rows, [i](const RowVerdict& row) {
          return row.cells[i].isCondition || row.cells[i].isMet;
        })) {
      columns.push_back(i);
    }
  }
  return columns;
}

std::string cellText(const CellVerdict& cell, Style style) {
  if (cell.isMet) return style.fresh(kMet + cell.wanted);
  return cell.isCondition ? style.alarming(kUnmet + cell.wanted) : "";
}

void writeRules(std::ostream& out, const Decision& decision, const Inputs& inputs, Style style) {
  out << style.heading("rules") << "  ";
  if (decision.table == nullptr) {
    out << "none: no table is for this product\n";
    return;
  }
  if (decision.list == nullptr) {
    out << "none: " << decision.table->productName << " has none for this sensor\n";
    return;
  }
  out << decision.table->productName << ' ' << decision.list->name << '\n';
  const std::vector<RowVerdict> rows = rowVerdicts(decision, inputs);
  const std::vector<std::size_t> shown = shownColumns(rows);
  Columns columns;
  std::vector<std::string> titles{""};
  std::vector<std::string> given{style.faint("given")};
  for (const std::size_t i : shown) {
    titles.push_back(style.faint(ruleColumns()[i].title));
    given.push_back(printable(foundText(ruleColumns()[i], inputs)));
  }
  columns.add(std::move(titles));
  columns.add(std::move(given));
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const RowVerdict& row = rows[i];
    std::vector<std::string> cells{"row " + std::to_string(i + 1)};
    for (const std::size_t column : shown) cells.push_back(cellText(row.cells[column], style));
    cells.push_back(scenarioText(decision.rules()[i].sensorMode));
    cells.push_back(row.isTaken ? style.fresh(row.why) : printable(row.why));
    columns.add(std::move(cells));
  }
  for (const std::string& line : columns.lines()) {
    out << wrapped("  " + line, style.width(), 10) << '\n';
  }
}

std::string conditionText(const ConditionVerdict& condition, Style style) {
  if (condition.isMet) return style.fresh(kMet) + printable(condition.found);
  return style.alarming(kUnmet) + printable(condition.found) + ", must " + condition.must;
}

void writeOverrides(std::ostream& out, const std::vector<OverrideVerdict>& verdicts, Style style) {
  out << style.heading("overrides") << '\n';
  std::size_t number = 0;
  for (const OverrideVerdict& verdict : verdicts) {
    std::string line = std::string(verdict.word()) + ": " + verdict.override->when;
    if (verdict.fires) line += ", " + scenarioText(verdict.override->scenario);
    if (verdict.holds) line = style.fresh(line);
    if (verdict.isNearMiss) line = style.alarming(line);
    if (!verdict.fires && !verdict.isNearMiss) line = style.faint(line);
    line.insert(0, "  " + std::to_string(++number) + "  ");
    out << wrapped(line, style.width(), 5) << '\n';
    std::string conditions = "     ";
    for (const ConditionVerdict& condition : verdict.conditions) {
      if (&condition != &verdict.conditions.front()) conditions += "; ";
      conditions += conditionText(condition, style);
    }
    out << wrapped(conditions, style.width(), 7) << '\n';
  }
}

std::string rulesName(const Decision& decision) {
  if (decision.list == nullptr) return "none";
  return std::string(decision.table->productName) + " " + decision.list->name;
}

struct Fact {
  std::string name;
  std::string text;
};

/// What a decision comes to, a line each. Lists of different lengths have as many.
std::vector<Fact> factsOf(const RuleSet& rules, const Inputs& inputs, std::size_t rowCount) {
  const Decision decision = decide(rules, inputs);
  std::vector<Fact> facts{{"rules", rulesName(decision)}};
  const std::vector<RowVerdict> rows = rowVerdicts(decision, inputs);
  for (std::size_t i = 0; i < rowCount; ++i) {
    facts.push_back({"row " + std::to_string(i + 1), i < rows.size() ? rows[i].why : ""});
  }
  facts.push_back({"base", scenarioText(decision.base)});
  for (const OverrideVerdict& verdict : overrideVerdicts(rules, decision, inputs)) {
    facts.push_back({"override " + std::to_string(facts.size() - rowCount - 1), verdict.word()});
  }
  facts.push_back({"result", scenarioText(decision.scenario)});
  return facts;
}

std::vector<std::string> linesOf(const std::string& text, std::size_t width) {
  std::vector<std::string> lines;
  std::istringstream stream(wrapped(text, width, 2));
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

}  // namespace

void writeDecision(std::ostream& out, const RuleSet& rules, const Inputs& inputs, Style style) {
  const Decision decision = decide(rules, inputs);
  writeInputs(out, rules, inputs, style);
  writeRules(out, decision, inputs, style);
  out << style.heading("base") << "  " << baseText(decision) << '\n';
  writeOverrides(out, overrideVerdicts(rules, decision, inputs), style);
  out << wrapped(style.heading("result") + "  " + style.title(resultText(rules, decision)),
                 style.width(), 2)
      << '\n';
}

void writeTwoDecisions(std::ostream& out, const RuleSet& rules, const Inputs& before,
                       const Inputs& after, Style style) {
  for (const std::string& change : changesText(before, after)) out << printable(change) << '\n';
  constexpr std::size_t kNameColumns = 13;
  const std::size_t half = std::max<std::size_t>((style.width() - kNameColumns) / 2, 20) - 2;
  const std::size_t rowCount =
      std::max(decide(rules, before).rules().size(), decide(rules, after).rules().size());
  const std::vector<Fact> old = factsOf(rules, before, rowCount);
  const std::vector<Fact> fresh = factsOf(rules, after, rowCount);
  Columns columns;
  columns.add({"", style.heading("before"), style.heading("after")});
  for (std::size_t i = 0; i < old.size(); ++i) {
    const bool isSame = old[i].text == fresh[i].text;
    const std::vector<std::string> left = linesOf(printable(old[i].text), half);
    const std::vector<std::string> right = linesOf(printable(fresh[i].text), half);
    for (std::size_t line = 0; line < std::max(left.size(), right.size()); ++line) {
      const std::string was = line < left.size() ? left[line] : "";
      const std::string is = line < right.size() ? right[line] : "";
      columns.add({line == 0 ? old[i].name : "", isSame ? style.faint(was) : was,
                   isSame ? style.faint(is) : style.fresh(is)});
    }
  }
  columns.write(out, 0);
}

}  // namespace camhook
