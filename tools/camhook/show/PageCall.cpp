#include "tools/camhook/show/PageCall.h"

#include <algorithm>
#include <array>
#include <utility>

#include "tools/camhook/input/Joined.h"
#include "tools/camhook/input/PlainText.h"
#include "tools/camhook/show/Changes.h"
#include "tools/camhook/show/SensorModeName.h"
#include "tools/camhook/show/TraceText.h"

namespace camhook {
namespace {

constexpr std::string_view kReturns = "  \u2192  ";

/// The members of a call that every JSON trace has beside its containers and what stands beside the
/// result.
constexpr std::array<std::string_view, 8> kKnownMembers = {"call",  "sensor",  "args", "return",
                                                           "state", "effects", "logs", "writes"};

std::string titleOf(std::size_t number, std::string_view call, const Json& sensor,
                    const Json& arguments, const Json& result) {
  std::string title;
  if (number > 0) title = std::to_string(number) + "  ";
  title += callTitle(call, sensor, arguments);
  if (!result.is_null()) title.append(kReturns) += lineOfJson(result);
  if (call == DecideSensorScenario::kName && result.is_number_integer()) {
    title.append(" ").append(sensorModeName(result.get<std::int32_t>()));
  }
  return title;
}

/// Lines of which each is safe to show; a text keeps those that it has.
std::string shownLines(const Json& value) {
  if (!value.is_string()) return lineOfJson(value);
  std::string shown;
  std::string_view text = value.get_ref<const std::string&>();
  for (std::size_t end = 0; end != std::string_view::npos;) {
    end = text.find('\n');
    if (!shown.empty()) shown += '\n';
    shown += printable(text.substr(0, end));
    if (end != std::string_view::npos) text.remove_prefix(end + 1);
  }
  return shown;
}

void addDecoded(std::vector<PageRow>& rows, const std::vector<std::string>& lines) {
  if (lines.empty()) return;
  rows.push_back({.cells = {{joined(lines, "\n"), ""}}, .attribute = {"class", "decoded"}});
}

PageCell stepCell(const Step& step) { return {step.name, placeText(step)}; }

PageRow changeRow(const ValueChange& change) {
  return {.cells = {{change.name, ""}, {change.before, ""}, {change.after, ""}}};
}

/// With what is told of a tag.
void addTagChange(std::vector<PageRow>& rows, const ValueChange& change) {
  PageRow row = changeRow(change);
  row.attribute = {"data-tag", change.name};
  if (!change.writes.empty()) row.cells.push_back(stepCell(change.writes.front().step));
  rows.push_back(std::move(row));
  addDecoded(rows, change.decoded);
  for (std::size_t i = 1; i < change.writes.size(); ++i) {
    const auto& [value, step] = change.writes[i];
    rows.push_back({.cells = {{"overwritten", ""}, {"", ""}, {value, ""}, stepCell(step)},
                    .attribute = {"class", "overwritten"}});
  }
}

PageTable tableOf(const CallTrace& trace, const ContainerTrace& container) {
  PageTable table{.kind = "container", .caption = std::string(container.name)};
  if (!container.after) {
    table.note = "null";
    return table;
  }
  const auto [changes, unchanged] = changesOf(trace, container);
  if (changes.empty()) table.note = unchanged > 0 ? "no change" : "empty";
  table.head = {"tag", "before", "after"};
  if (trace.accesses) table.head.emplace_back("step");
  for (const ValueChange& change : changes) addTagChange(table.rows, change);
  return table;
}

PageTable unchangedTable(const ContainerTrace& container) {
  PageTable table{.kind = "unchanged", .caption = "", .head = {"tag", "value"}, .isFolded = true};
  if (!container.after) return table;
  for (const Unchanged& entry : unchangedOf(container)) {
    table.rows.push_back({.cells = {{entry.name, ""}, {entry.value, ""}}});
  }
  table.caption = std::to_string(table.rows.size()) + " unchanged";
  return table;
}

PageTable stateTable(const StateTrace& state) {
  PageTable table{.kind = "state", .caption = "state", .head = {"field", "before", "after"}};
  if (state.after.empty()) table.note = "no updater for this sensor";
  for (const ValueChange& change : changesOf(state)) table.rows.push_back(changeRow(change));
  return table;
}

/// A container, or the state, as a JSON trace has it.
PageTable tableOf(std::string_view kind, const std::string& name, const Json& members) {
  PageTable table{.kind = kind, .caption = name, .head = {"name", "value"}};
  if (members.is_null()) table.note = "null";
  if (members.is_object() && members.empty()) table.note = "empty";
  for (const auto& [key, value] : members.items()) {
    const std::string shown = printable(key);
    PageRow& row = table.rows.emplace_back();
    row.cells = {{shown, ""}, {memberValueText(key, value), ""}};
    const std::optional<EntryItems> entry = entryFromTrace(value);
    if (!entry) continue;
    row.attribute = {"data-tag", shown};
    addDecoded(table.rows, decodedLines(key, *entry));
  }
  return table;
}

PageRow recordRow(const std::string& level, std::string_view message) {
  return {.cells = {{printable(level), ""}, {printable(message), ""}},
          .attribute = {"data-level", printable(level)}};
}

void addUnlessEmpty(PageCall& page, PageTable table) {
  if (!table.rows.empty() || !table.note.empty()) page.tables.push_back(std::move(table));
}

void writeCell(Html& html, std::string_view element, const PageCell& cell,
               std::initializer_list<HtmlAttribute> attributes) {
  html.open(element, attributes);
  html.text(cell.text);
  if (!cell.aside.empty()) {
    html.text(" ");
    html.element("small", cell.aside);
  }
  html.close(element);
}

void writeRow(Html& html, const PageRow& row, std::size_t width) {
  html.open("tr", {row.attribute});
  if (row.cells.size() == 1) {
    writeCell(html, "td", row.cells.front(), {{"colspan", std::to_string(width)}});
  } else {
    writeCell(html, "th", row.cells.front(), {{"scope", "row"}});
    for (std::size_t i = 1; i < row.cells.size(); ++i) writeCell(html, "td", row.cells[i], {});
  }
  html.close("tr");
}

std::string countOf(std::size_t count) { return count > 0 ? std::to_string(count) : ""; }

}  // namespace

PageTable differencesTable(const CallDifference& difference) {
  PageTable table{.kind = "differences", .caption = "differences"};
  for (const auto& [place, change] : difference.differences) {
    table.rows.push_back({.cells = {{place, ""}, {change, ""}}});
  }
  return table;
}

PageCall pageCallFrom(const CallTrace& trace) {
  PageCall page;
  page.number = trace.number;
  const Json sensor = trace.sensor ? Json(*trace.sensor) : Json();
  page.title = titleOf(trace.number, trace.call, sensor, trace.arguments, trace.result);
  page.hook = trace.call;
  if (trace.sensor) page.sensor = std::to_string(*trace.sensor);
  page.effects = trace.effects.size();
  page.errors =
      static_cast<std::size_t>(std::ranges::count(trace.logs, 'E', &host::LogRecord::level));
  PageTable extras{.kind = "extras", .caption = "beside the result"};
  for (const auto& [name, value] : trace.extras) {
    extras.rows.push_back({.cells = {{std::string(name), ""}, {shownLines(value), ""}}});
  }
  addUnlessEmpty(page, std::move(extras));
  for (const ContainerTrace& container : trace.containers) {
    addUnlessEmpty(page, tableOf(trace, container));
    addUnlessEmpty(page, unchangedTable(container));
  }
  if (trace.state) addUnlessEmpty(page, stateTable(*trace.state));
  PageTable effects{.kind = "effects", .caption = "effects"};
  for (const host::Effect& effect : trace.effects) {
    effects.rows.push_back({.cells = {{std::string(effect.op), ""}, {effectFields(effect), ""}}});
  }
  addUnlessEmpty(page, std::move(effects));
  PageTable records{.kind = "records", .caption = "log"};
  for (const host::LogRecord& record : trace.logs) {
    records.rows.push_back(recordRow(std::string(1, record.level), record.message));
  }
  addUnlessEmpty(page, std::move(records));
  return page;
}

PageCall pageCallFrom(const Json& call, std::size_t number, const CallDifference* difference) {
  const auto member = [&call](std::string_view key) { return call.value(key, Json()); };
  PageCall page;
  page.number = number;
  page.hook = memberText(call, "call");
  page.title = titleOf(number, page.hook, member("sensor"), call.value("args", Json::object()),
                       member("return"));
  page.sensor = memberText(call, "sensor");
  if (difference != nullptr) {
    page.differences = difference->differences.size();
    addUnlessEmpty(page, differencesTable(*difference));
  }
  for (const auto& [key, value] : call.items()) {
    if (std::ranges::find(kKnownMembers, key) != kKnownMembers.end()) continue;
    if (value.is_object() || value.is_null()) {
      addUnlessEmpty(page, tableOf("container", printable(key), value));
    } else {
      addUnlessEmpty(page, {.kind = "extras",
                            .caption = printable(key),
                            .rows = {{.cells = {{shownLines(value), ""}}}}});
    }
  }
  if (call.contains("state")) addUnlessEmpty(page, tableOf("state", "state", call["state"]));
  PageTable effects{.kind = "effects", .caption = "effects"};
  for (const Json& effect : call["effects"]) {
    effects.rows.push_back({.cells = {{memberText(effect, "op"), ""}, {effectFields(effect), ""}}});
  }
  page.effects = effects.rows.size();
  addUnlessEmpty(page, std::move(effects));
  PageTable records{.kind = "records", .caption = "log"};
  for (const Json& record : call["logs"]) {
    records.rows.push_back(recordRow(memberText(record, "level"), memberText(record, "message")));
    page.errors += records.rows.back().attribute.value == "E" ? 1 : 0;
  }
  addUnlessEmpty(page, std::move(records));
  return page;
}

void writePageTable(Html& html, const PageTable& table) {
  if (table.isFolded) {
    html.open("details");
    html.element("summary", table.caption);
  }
  const bool isContainer = table.kind == "container";
  html.open("table", {{"class", std::string(table.kind)},
                      {"data-container", isContainer ? table.caption : ""}});
  if (!table.isFolded) writeCell(html, "caption", {table.caption, table.note}, {});
  if (!table.head.empty() && !table.rows.empty()) {
    html.open("thead");
    html.open("tr");
    for (const std::string_view column : table.head) {
      html.element("th", column, {{"scope", "col"}});
    }
    html.close("tr");
    html.close("thead");
  }
  html.open("tbody");
  const std::size_t width = std::max<std::size_t>(table.head.size(), 1);
  for (const PageRow& row : table.rows) writeRow(html, row, width);
  html.close("tbody");
  html.close("table");
  if (table.isFolded) html.close("details");
}

void writePageCall(Html& html, const PageCall& call) {
  html.open("section", {{"class", call.number > 0 ? "call" : "call gone"},
                        {"id", call.number > 0 ? "call-" + std::to_string(call.number) : ""},
                        {"data-hook", call.hook},
                        {"data-sensor", call.sensor},
                        {"data-errors", countOf(call.errors)},
                        {"data-effects", countOf(call.effects)},
                        {"data-differences", countOf(call.differences)}});
  html.element("h3", call.title);
  for (const PageTable& table : call.tables) writePageTable(html, table);
  html.close("section");
}

}  // namespace camhook
