#include "tools/camhook/explain/DecisionText.h"

#include <algorithm>
#include <ostream>

#include "tools/camhook/input/Joined.h"
#include "tools/camhook/input/PlainText.h"

namespace camhook {
namespace {

using Verdict = OverrideVerdict::Kind;

constexpr const char* kMet = "=";
constexpr const char* kUnmet = "\u2260";

std::string rowName(std::size_t row) { return "row " + std::to_string(row + 1); }

void writeResult(std::ostream& out, const Decision& decision, Style style) {
  const char* const link = decision.override || decision.row ? ", decided by " : ": ";
  out << style.heading("result") << "  "
      << style.title(sensorModeText(decision.mode) + link + decidedByText(decision)) << '\n';
  if (!decision.override) return;
  out << style.heading("base") << "  " << sensorModeText(decision.base)
      << (decision.row ? ", of " + rowName(*decision.row) : ", as no row matches") << '\n';
}

void writeInputs(std::ostream& out, const Inputs& inputs, Style style) {
  const std::vector<InputWarning> warnings = inputWarnings(inputs);
  out << style.heading("inputs") << '\n';
  Columns columns;
  std::vector<std::string> absent;
  for (std::size_t i = 0; i < kInputCount; ++i) {
    const auto input = static_cast<InputIndex>(i);
    const auto warning = std::ranges::find(warnings, input, &InputWarning::input);
    const std::string name(inputFields()[i].name);
    if (inputs[input].empty() && warning == warnings.end()) {
      absent.push_back(name);
      continue;
    }
    std::string text = printable(inputs.shown(input));
    if (warning != warnings.end()) {
      text += "  " + style.alarming("! " + printable(warning->problem));
    }
    columns.add({name, std::move(text)});
  }
  columns.write(out, 2);
  if (!absent.empty()) out << "  " << style.faint("absent: " + joined(absent, ", ")) << '\n';
}

void writeFilters(std::ostream& out, const Decision& decision, Style style) {
  out << style.heading("filters") << "  ";
  if (decision.list == nullptr) {
    out << (decision.table == nullptr ? "no rules for this product" : "no rules for this sensor")
        << '\n';
    return;
  }
  out << decision.table->productName << ' ' << decision.list->name << '\n';
  Columns columns;
  std::vector<std::string> notAsked;
  for (const FilterRun& run : decision.filters) {
    if (!run.isAsked) {
      notAsked.emplace_back(run.filter->title());
    } else {
      columns.add({run.filter->title(),
                   run.found ? style.fresh(rowName(*run.found)) : style.faint("none")});
    }
  }
  columns.write(out, 2);
  if (!notAsked.empty()) out << "  " << style.faint("not asked: " + joined(notAsked, ", ")) << '\n';
}

/// Marked if a filter compared the cell. "=none" is an empty APP_TYPE that matches a row without
/// one.
std::string cellText(const Decision& decision, std::size_t row, const RuleColumn& column,
                     Style style) {
  const std::string condition = column.conditionOf(decision.rules()[row]);
  const Comparison* const cell = decision.findCell(row, column);
  if (cell != nullptr && cell->isMet) {
    return style.fresh(kMet + (condition.empty() ? "none" : condition));
  }
  if (condition.empty()) return "";
  return cell != nullptr ? style.alarming(kUnmet + condition) : style.faint(condition);
}

void writeRows(std::ostream& out, const Decision& decision, Style style) {
  if (decision.rules().empty()) return;
  std::vector<std::vector<std::string>> rows(decision.rules().size() + 2);
  rows[0].emplace_back();
  rows[1].push_back(style.faint("given"));
  for (std::size_t i = 0; i < decision.rules().size(); ++i) rows[i + 2].push_back(rowName(i));
  for (const RuleColumn& column : ruleColumns()) {
    std::vector<std::string> cells;
    for (std::size_t i = 0; i < decision.rules().size(); ++i) {
      cells.push_back(cellText(decision, i, column, style));
    }
    if (std::ranges::all_of(cells, [](const auto& cell) { return cell.empty(); })) continue;
    rows[0].push_back(style.faint(column.title));
    rows[1].push_back(printable(decision.inputs.shown(column.input)));
    for (std::size_t i = 0; i < cells.size(); ++i) rows[i + 2].push_back(cells[i]);
  }
  Columns columns;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (i >= 2) {
      const std::string verdict = printable(rowVerdict(decision, i - 2));
      rows[i].push_back(sensorModeText(decision.rules()[i - 2].sensorMode));
      rows[i].push_back(decision.row == i - 2     ? style.fresh(verdict)
                        : decision.isAsked(i - 2) ? verdict
                                                  : style.faint(verdict));
    }
    columns.add(std::move(rows[i]));
  }
  out << style.heading("rows") << '\n';
  columns.write(out, 2);
}

void writeOverrides(std::ostream& out, const Decision& decision, Style style) {
  out << style.heading("overrides") << '\n';
  std::vector<std::string> others;
  for (std::size_t i = 0; i < decision.overrides.size(); ++i) {
    const OverrideVerdict& verdict = decision.overrides[i];
    const std::string number = std::to_string(i + 1);
    if (verdict.kind == Verdict::no) {
      others.push_back(number);
      continue;
    }
    const std::string line = std::string(verdict.word()) + ": " + verdict.override->when + ", " +
                             sensorModeText(verdict.override->scenario);
    out << "  " << number << "  " << (verdict.kind == Verdict::decides ? style.fresh(line) : line)
        << '\n';
    std::vector<std::string> conditions;
    for (const OverrideCondition& condition : verdict.conditions) {
      const std::string found = printable(condition.found);
      conditions.push_back(condition.isMet
                               ? style.fresh(kMet) + found
                               : style.alarming(kUnmet) + found + ", must " + condition.must);
    }
    out << "     " << joined(conditions, "; ") << '\n';
  }
  if (!others.empty()) {
    out << "  " << style.faint("not near: " + joined(others, ", ")) << '\n';
  }
}

}  // namespace

void writeDecision(std::ostream& out, const Decision& decision, Style style) {
  writeResult(out, decision, style);
  writeInputs(out, decision.inputs, style);
  writeFilters(out, decision, style);
  writeRows(out, decision, style);
  writeOverrides(out, decision, style);
}

}  // namespace camhook
