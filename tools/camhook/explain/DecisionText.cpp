#include "tools/camhook/explain/Decision.h"

#include <algorithm>
#include <ostream>

#include "tools/camhook/input/Joined.h"
#include "tools/camhook/input/JsonLine.h"
#include "tools/camhook/input/PlainText.h"

namespace camhook {
namespace {

constexpr const char* kMet = "=";
constexpr const char* kUnmet = "\u2260";

std::string rowText(const Json& number) { return "row " + lineOfJson(number); }

/// "5 CUSTOM1", for an object with "scenario" and "name".
std::string modeText(const Json& mode) {
  return lineOfJson(mode["scenario"]) + " " + mode["name"].text();
}

void writeResult(std::ostream& out, const Json& decision, Style style) {
  const Json& by = decision["decidedBy"];
  const char* const link = by["kind"] == "default" ? ": " : ", decided by ";
  out << style.heading("result") << "  "
      << style.title(modeText(decision) + link + by["text"].text()) << '\n';
  if (by["kind"] != "override") return;
  const Json& base = decision["base"];
  out << style.heading("base") << "  " << modeText(base) << " ("
      << (base["row"].isNull() ? "no row matches" : rowText(base["row"])) << ")\n";
}

/// A line of names in the faint style; nothing for an empty list.
void writeRest(std::ostream& out, const char* what, const std::vector<std::string>& names,
               Style style) {
  if (!names.empty()) out << "  " << style.faint(what + (": " + joined(names, ", "))) << '\n';
}

void writeInputs(std::ostream& out, const Json& decision, Style style) {
  out << style.heading("inputs") << '\n';
  Columns columns;
  std::vector<std::string> absent;
  for (const auto& [name, value] : decision["inputs"].members()) {
    std::string text = printable(decisionInputText(name, value));
    bool isShown = !value.isNull();
    for (const Json& warning : decision["warnings"].items()) {
      if (warning["input"] != name) continue;
      text += "  " + style.alarming("! " + printable(warning["problem"].text()));
      isShown = true;
    }
    if (isShown) {
      columns.add({name, text});
    } else {
      absent.push_back(name);
    }
  }
  columns.write(out, 2);
  writeRest(out, "absent", absent, style);
}

void writeFilters(std::ostream& out, const Json& decision, Style style) {
  out << style.heading("filters") << "  ";
  if (decision["list"].isNull()) {
    const bool hasTable = !decision["product"].isNull();
    out << "no rules for this " << (hasTable ? "sensor" : "product") << '\n';
    return;
  }
  out << decision["product"].text() << ' ' << decision["list"].text() << '\n';
  Columns columns;
  std::vector<std::string> notAsked;
  for (const Json& filter : decision["filters"].items()) {
    const std::string& title = filter["title"].text();
    const Json& found = filter["found"];
    if (filter["asked"].isTrue()) {
      columns.add({title, found.isNull() ? style.faint("none") : style.fresh(rowText(found))});
    } else {
      notAsked.push_back(title);
    }
  }
  columns.write(out, 2);
  writeRest(out, "not run", notAsked, style);
}

/// The condition, with a mark if a filter compared it. "=none" is an empty APP_TYPE that matches a
/// row without an app type.
std::string cellText(const Json& decision, const Json& row, const Json& column, Style style) {
  const std::string& field = column["field"].text();
  const Json* const condition = row["conditions"].find(field);
  const std::string text =
      condition != nullptr ? decisionInputText(column["input"].text(), *condition) : "";
  const Json& filters = decision["filters"];
  if (isListed(filters, row["row"], "met", field)) {
    return style.fresh(kMet + (text.empty() ? "none" : text));
  }
  if (text.empty()) return "";
  return isListed(filters, row["row"], "asked", field) ? style.alarming(kUnmet + text)
                                                       : style.faint(text);
}

void writeRows(std::ostream& out, const Json& decision, Style style) {
  const Json::List& rows = decision["rows"].items();
  if (rows.empty()) return;
  std::vector<std::vector<std::string>> lines{{""}, {style.faint("given")}};
  for (const Json& row : rows) lines.push_back({rowText(row["row"])});
  for (const Json& column : decision["columns"].items()) {
    std::vector<std::string> cells;
    for (const Json& row : rows) cells.push_back(cellText(decision, row, column, style));
    if (std::ranges::all_of(cells, &std::string::empty)) continue;
    const std::string& input = column["input"].text();
    cells.insert(cells.begin(), {style.faint(column["title"].text()),
                                 printable(decisionInputText(input, decision["inputs"][input]))});
    for (std::size_t i = 0; i < cells.size(); ++i) lines[i].push_back(cells[i]);
  }
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const std::string verdict = printable(rows[i]["verdict"].text());
    lines[i + 2].push_back(modeText(rows[i]));
    lines[i + 2].push_back(rows[i]["taken"].isTrue()   ? style.fresh(verdict)
                           : rows[i]["asked"].isTrue() ? verdict
                                                       : style.faint(verdict));
  }
  Columns columns;
  for (auto& line : lines) columns.add(std::move(line));
  out << style.heading("rows") << '\n';
  columns.write(out, 2);
}

void writeOverrides(std::ostream& out, const Json& decision, Style style) {
  out << style.heading("overrides") << '\n';
  std::vector<std::string> others;
  for (const Json& override : decision["overrides"].items()) {
    const std::string number = lineOfJson(override["number"]);
    const std::string& verdict = override["verdict"].text();
    if (verdict == "no") {
      others.push_back(number);
      continue;
    }
    const std::string line = verdict + ": " + override["when"].text() + ", " + modeText(override);
    out << "  " << number << "  " << (verdict == "decides" ? style.fresh(line) : line) << '\n';
    std::vector<std::string> conditions;
    for (const Json& condition : override["conditions"].items()) {
      const std::string found = printable(condition["found"].text());
      conditions.push_back(condition["met"].isTrue() ? style.fresh(kMet) + found
                                                     : style.alarming(kUnmet) + found + ", must " +
                                                           condition["must"].text());
    }
    out << "     " << joined(conditions, "; ") << '\n';
  }
  writeRest(out, "other overrides", others, style);
}

}  // namespace

void writeDecision(std::ostream& out, const Json& decision, Style style) {
  writeResult(out, decision, style);
  writeInputs(out, decision, style);
  writeFilters(out, decision, style);
  writeRows(out, decision, style);
  writeOverrides(out, decision, style);
}

}  // namespace camhook
