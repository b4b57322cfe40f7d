#include "tools/camhook/show/Page.h"

#include <map>
#include <ostream>

#include "tools/camhook/input/PlainText.h"
#include "tools/camhook/show/JsonTrace.h"
#include "tools/camhook/show/PageCall.h"
#include "tools/camhook/show/PageParts.h"
#include "tools/camhook/show/TraceDiff.h"

namespace camhook {
namespace {

void writeParts(std::ostream& out, std::string_view element, const PageParts& parts) {
  out << '<' << element << '>';
  for (const std::string_view text : parts.texts) out << text;
  out << "</" << element << ">\n";
}

/// What the page may do: run these scripts, look like these styles, and nothing else; no text of a
/// script becomes markup.
std::string contentPolicy() {
  return "default-src 'none'; script-src '" + std::string(pageScripts().hash) + "'; style-src '" +
         std::string(pageStyles().hash) +
         "'; base-uri 'none'; form-action 'none'; require-trusted-types-for 'script'";
}

/// The texts of a store under their names.
void addTexts(PageTable& table, const host::TextMap& texts) {
  for (const auto& [name, value] : texts) {
    table.rows.push_back({.cells = {{printable(name), ""}, {jsonText(value), ""}}});
  }
}

/// Up to the first call. `scenario` is null where only traces are known.
void begin(std::ostream& out, std::string_view title, const ScenarioText* scenario) {
  Html html(out);
  out << "<!DOCTYPE html>\n";
  html.open("html", {{"lang", "en"}});
  html.open("head");
  html.open("meta", {{"charset", "utf-8"}});
  html.open("meta", {{"http-equiv", "Content-Security-Policy"}, {"content", contentPolicy()}});
  html.open("meta", {{"name", "viewport"}, {"content", "width=device-width, initial-scale=1"}});
  html.open("meta", {{"name", "color-scheme"}, {"content", "light dark"}});
  html.element("title", title);
  writeParts(out, "style", pageStyles());
  html.close("head");
  html.open("body");
  html.open("header");
  html.element("h1", title);
  if (scenario != nullptr && !scenario->about().empty()) {
    html.element("p", printable(scenario->about()));
  }
  html.close("header");
  html.open("main");
  html.open("section", {{"id", "calls"}});
  html.element("h2", "Calls");
  if (scenario == nullptr) return;
  PageTable start{.kind = "events",
                  .caption = "properties and event store at the start",
                  .head = {"name", "value"},
                  .isFolded = true};
  addTexts(start, scenario->platform().properties);
  addTexts(start, scenario->platform().eventStore);
  if (!start.rows.empty()) writePageTable(html, start);
}

PageTable eventTable() {
  return {.kind = "events", .caption = "event store at the end", .head = {"key", "value"}};
}

void writeEnd(Html& html, const PageTable& differences, PageTable events) {
  if (events.rows.empty()) events.note = "empty";
  html.open("section", {{"id", "end"}});
  if (!differences.rows.empty()) writePageTable(html, differences);
  writePageTable(html, events);
  html.close("section");
  html.close("section");
  html.close("main");
}

/// JSON in which no text can end the element that it stands in.
void writeData(std::ostream& out, std::string_view json) {
  for (std::size_t markup = json.find('<'); markup != std::string_view::npos;
       markup = json.find('<')) {
    out << json.substr(0, markup) << "\\u003c";
    json.remove_prefix(markup + 1);
  }
  out << json;
}

/// Members of the data, from their names to JSON.
using Data = std::initializer_list<std::pair<std::string_view, std::string_view>>;

void finishPage(std::ostream& out, Data data) {
  out << R"(<script type="application/json" id="data">)";
  char before = '{';
  for (const auto& [name, json] : data) {
    if (json.empty()) continue;
    out << before << '"' << name << R"(": )";
    writeData(out, json);
    before = ',';
  }
  out << "}</script>\n";
  writeParts(out, "script", pageScripts());
  out << "</body>\n</html>\n";
}

std::string traceOf(std::string_view calls, std::string_view eventStore) {
  std::string trace = "{\"calls\": [";
  trace.append(calls).append("], \"eventStore\": ").append(eventStore).append("}");
  return trace;
}

}  // namespace

Page::Page(std::ostream& out, std::string_view title, const ScenarioText& scenario)
    : mOut(out), mHtml(out), mScenario(scenario) {
  begin(out, title, &scenario);
}

void Page::write(const CallTrace& trace) {
  writePageCall(mHtml, pageCallFrom(trace));
  if (!mCalls.empty()) mCalls += ",\n";
  mCalls += lineOfCall(trace);
}

void Page::addDecision(std::size_t number, const Json& decision) {
  mDecisions.append(mDecisions.empty() ? "" : ", ") += jsonText(std::to_string(number));
  mDecisions.append(": ").append(lineOfJson(decision));
}

void Page::finish(const host::TextMap& eventStore) {
  PageTable events = eventTable();
  addTexts(events, eventStore);
  writeEnd(mHtml, {}, std::move(events));
  finishPage(mOut, {{"trace", traceOf(mCalls, lineOfEventStore(eventStore))},
                    {"scenario", mScenario.text()},
                    {"decisions", "{" + mDecisions + "}"}});
}

void writeDifferencePage(std::ostream& out, std::string_view title, const Json& old,
                         const Json& fresh, bool withRecords) {
  const std::vector<CallDifference> differences = compareTraces(old, fresh, withRecords);
  std::map<std::size_t, const CallDifference*> byCall;  // the event store at the end is call 0
  std::multimap<std::size_t, const CallDifference*> gone;
  for (const CallDifference& each : differences) {
    if (each.goneBefore) {
      gone.emplace(*each.goneBefore, &each);
    } else {
      byCall.emplace(each.number, &each);
    }
  }
  const auto differenceOf = [&](std::size_t number) {
    const auto found = byCall.find(number);
    return found != byCall.end() ? found->second : nullptr;
  };

  begin(out, title, nullptr);
  Html html(out);
  const Json& calls = fresh["calls"];
  for (std::size_t number = 1; number <= calls.size() + 1; ++number) {
    for (auto [next, end] = gone.equal_range(number); next != end; ++next) {
      writePageCall(html, pageCallFrom(old["calls"][next->second->number - 1], 0, next->second));
    }
    if (number > calls.size()) break;
    writePageCall(html, pageCallFrom(calls[number - 1], number, differenceOf(number)));
  }
  PageTable events = eventTable();
  for (const auto& [key, value] : fresh["eventStore"].items()) {
    events.rows.push_back({.cells = {{printable(key), ""}, {lineOfJson(value), ""}}});
  }
  const CallDifference* const atEnd = differenceOf(0);
  writeEnd(html, atEnd != nullptr ? differencesTable(*atEnd) : PageTable(), std::move(events));
  finishPage(out, {{"trace", lineOfJson(fresh)}});
}

}  // namespace camhook
