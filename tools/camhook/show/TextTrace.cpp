#include "tools/camhook/show/TextTrace.h"

#include <algorithm>
#include <ostream>
#include <sstream>
#include <utility>

#include "tools/camhook/input/PlainText.h"
#include "tools/camhook/show/SensorModeName.h"
#include "tools/camhook/show/TraceText.h"

namespace camhook {
namespace {

constexpr std::size_t kMargin = 4;
constexpr std::size_t kDeeper = 6;
constexpr std::size_t kLineWidth = 120;  // that changes with their steps keep to at most
constexpr std::size_t kTagWidth = 34;
constexpr std::size_t kNameWidth = 20;  // of fields, effects and events
constexpr const char* kArrow = "\u2192";

std::size_t widest(const std::vector<std::string>& texts) {
  std::size_t width = 0;
  for (const std::string& text : texts) width = std::max(width, displayWidth(text));
  return width;
}

/// Where a column behind the texts begins, if it is to begin at `latest`: longer ones do not count.
std::size_t columnBehind(const std::vector<std::string>& texts, std::size_t latest) {
  constexpr std::size_t kGap = 2;
  std::size_t column = kGap;
  for (const std::string& text : texts) {
    const std::size_t end = displayWidth(text) + kGap;
    if (end <= latest) column = std::max(column, end);
  }
  return column;
}

TextTrace::Records leastToShow(char level) {
  switch (level) {
    case 'E': return TextTrace::Records::error;
    case 'I': return TextTrace::Records::info;
    default: return TextTrace::Records::debug;
  }
}

}  // namespace

TextTrace::TextTrace(std::ostream& out, Style style, Records records, std::string_view about)
    : mOut(out), mStyle(style), mRecords(records) {
  if (about.empty()) return;
  writeLine(printable(about), 0);
  mOut << '\n';
}

void TextTrace::writeLine(const std::string& line, std::size_t hang) {
  mOut << wrapped(line, mStyle.width(), hang) << '\n';
}

/// "15 → 24".
std::string TextTrace::turned(const ValueChange& change) const {
  return mStyle.faint(change.before) + ' ' + kArrow + ' ' + mStyle.fresh(change.after);
}

/// Each row behind the margin; what a row has too much for a line stands `hang` further.
void TextTrace::writeLines(const Columns& columns, std::size_t hang) {
  const std::string margin(kMargin, ' ');
  for (const std::string& line : columns.lines()) writeLine(margin + line, kMargin + hang);
}

void TextTrace::write(const CallTrace& trace) {
  writeTitle(trace);
  for (const ContainerTrace& container : trace.containers) writeContainer(trace, container);
  if (trace.state) writeState(*trace.state);
  writeEffects(trace.effects);
  writeRecords(trace);
  mOut << '\n';
}

void TextTrace::writeTitle(const CallTrace& trace) {
  const Json sensor = trace.sensor ? Json(*trace.sensor) : Json();
  std::string line = mStyle.title(std::to_string(trace.number) + "  " +
                                  callTitle(trace.call, sensor, trace.arguments));
  if (!trace.result.is_null()) {
    line.append("  ").append(kArrow).append("  ") += lineOfJson(trace.result);
  }
  if (trace.call == DecideSensorScenario::kName) {
    line.append(" ").append(sensorModeName(trace.result.get<std::int32_t>()));
  }
  writeLine(line, kMargin);
  for (const auto& [name, value] : trace.extras) writeExtra(name, value);
}

void TextTrace::writeExtra(std::string_view name, const Json& value) {
  mOut << "  " << mStyle.heading(name);
  const std::string text = value.is_string() ? value.get<std::string>() : lineOfJson(value);
  if (text.find('\n') == std::string::npos) {
    mOut << "  " << printable(text) << '\n';
    return;
  }
  mOut << '\n';
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    mOut << std::string(kMargin, ' ') << printable(line) << '\n';
  }
}

/// Behind the latest change of a tag the step that made it, below it what it overwrote.
void TextTrace::addWrites(std::vector<Line>& lines, const ValueChange& change) const {
  const Step last = change.writes.empty() ? Step() : change.writes.front().step;
  lines.back().step = {last.name, mStyle.faint(placeText(last))};
  for (std::size_t i = 1; i < change.writes.size(); ++i) {
    const auto& [value, step] = change.writes[i];
    lines.push_back(
        {.cells = {mStyle.faint("  overwritten"), mStyle.faint(std::string(kArrow) + ' ' + value)},
         .step = {mStyle.faint(step.name), mStyle.faint(placeText(step))},
         .decoded = {}});
  }
}

void TextTrace::writeContainer(const CallTrace& trace, const ContainerTrace& container) {
  mOut << "  " << mStyle.heading(container.name);
  if (!container.after) {
    mOut << "  null\n";
    return;
  }
  const auto [changes, unchanged] = changesOf(trace, container);
  std::vector<Line> lines;
  for (const ValueChange& change : changes) {
    lines.push_back(
        {.cells = {change.name, turned(change)}, .step = {}, .decoded = change.decoded});
    if (trace.accesses) addWrites(lines, change);
  }
  if (unchanged > 0) mOut << mStyle.faint("  " + std::to_string(unchanged) + " unchanged");
  if (unchanged == 0 && changes.empty()) mOut << mStyle.faint("  empty");
  mOut << '\n';
  writeChanges(lines);
}

/// Each change on a line, and its step behind it; on the next line where a change is too long.
void TextTrace::writeChanges(const std::vector<Line>& lines) {
  Columns cells(kTagWidth);
  Columns steps;
  for (const Line& line : lines) {
    cells.add(line.cells);
    steps.add(line.step);
  }
  const std::vector<std::string> texts = cells.lines();
  const std::vector<std::string> places = steps.lines();
  const std::size_t width = std::min(kLineWidth, mStyle.width());
  const std::size_t column =
      kMargin + columnBehind(texts, width - std::min(width, kMargin + widest(places)));
  const std::string margin(kMargin, ' ');
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (lines[i].step.empty()) {
      writeLine(margin + texts[i], kDeeper);
    } else if (kMargin + displayWidth(texts[i]) + 2 > column) {
      writeLine(margin + texts[i], kDeeper);
      mOut << std::string(column, ' ') << places[i] << '\n';
    } else {
      mOut << margin << texts[i] << std::string(column - kMargin - displayWidth(texts[i]), ' ')
           << places[i] << '\n';
    }
    for (const std::string& meaning : lines[i].decoded) {
      writeLine(std::string(kDeeper, ' ') + mStyle.faint(meaning), kDeeper + 2);
    }
  }
}

void TextTrace::writeState(const StateTrace& state) {
  if (state.after.empty()) {
    mOut << "  " << mStyle.alarming("no updater for this sensor") << '\n';
    return;
  }
  Columns columns(kNameWidth);
  for (const ValueChange& change : changesOf(state)) columns.add({change.name, turned(change)});
  if (columns.isEmpty()) return;
  mOut << "  " << mStyle.heading("state") << '\n';
  writeLines(columns, 2);
}

void TextTrace::writeEffects(const std::vector<host::Effect>& effects) {
  if (effects.empty()) return;
  mOut << "  " << mStyle.heading("effects") << '\n';
  Columns columns(kNameWidth);
  for (const host::Effect& effect : effects) {
    columns.add({effect.op, effectFields(effect)});
  }
  writeLines(columns, 2);
}

void TextTrace::writeRecords(const CallTrace& trace) {
  Columns columns;
  for (const host::LogRecord& record : trace.logs) {
    if (mRecords < leastToShow(record.level)) continue;
    const std::string level(1, record.level);
    std::vector<std::string> row{record.level == 'E' ? mStyle.alarming(level) : level};
    if (trace.accesses)
      row.push_back(mStyle.faint(record.file + ":" + std::to_string(record.line)));
    row.push_back(printable(record.message));
    columns.add(std::move(row));
  }
  if (columns.isEmpty()) return;
  mOut << "  " << mStyle.heading("log") << '\n';
  writeLines(columns, 3);
}

void TextTrace::finish(const host::TextMap& eventStore) {
  mOut << mStyle.title("event store at the end") << '\n';
  Columns columns(kNameWidth);
  for (const auto& [key, value] : eventStore) columns.add({key, jsonText(value)});
  if (columns.isEmpty()) {
    mOut << "  empty\n";
  } else {
    columns.write(mOut, 2);
  }
}

}  // namespace camhook
