#include "tools/camhook/show/TextTrace.h"

#include <algorithm>
#include <filesystem>
#include <ostream>
#include <sstream>

#include "host/MetadataAccess.h"
#include "tools/camhook/input/JsonLine.h"
#include "tools/camhook/input/MetadataJson.h"
#include "tools/camhook/input/PlainText.h"
#include "tools/camhook/show/SensorModeName.h"
#include "tools/camhook/show/TraceText.h"

namespace camhook {
namespace {

constexpr std::size_t kMargin = 4;
constexpr std::size_t kGap = 2;
constexpr std::size_t kLineWidth = 120;  // a change and its step share a line up to this width
constexpr std::size_t kTagWidth = 34;
constexpr std::size_t kNameWidth = 20;  // of fields, effects and events
constexpr const char* kArrow = "\u2192";

/// The greatest width that is not above `most`.
std::size_t widest(const std::vector<std::string>& texts, std::size_t most) {
  std::size_t width = 0;
  for (const std::string& text : texts) {
    const std::size_t each = displayWidth(text);
    if (each <= most) width = std::max(width, each);
  }
  return width;
}

/// "FrameRate.cpp:56": file names are unique in the library's sources.
std::string placeText(const Step& step) {
  return std::filesystem::path(step.file).filename().string() + ':' + std::to_string(step.line);
}

}  // namespace

TextTrace::TextTrace(std::ostream& out, Style style, std::string_view levels,
                     std::string_view about)
    : mOut(out), mStyle(style), mLevels(levels) {
  if (!about.empty()) mOut << printable(about) << "\n\n";
}

/// "15 → 24".
std::string TextTrace::changeText(const std::string& before, const std::string& after) const {
  return mStyle.faint(before) + ' ' + kArrow + ' ' + mStyle.fresh(after);
}

void TextTrace::write(const CallTrace& trace) {
  writeTitle(trace);
  for (const ContainerTrace& container : trace.containers) writeContainer(trace, container);
  writeState(trace);
  writeEffects(trace.effects);
  writeRecords(trace);
  mOut << '\n';
}

void TextTrace::writeTitle(const CallTrace& trace) {
  std::string title = std::to_string(trace.number) + "  ";
  title += trace.call;
  if (trace.sensor) title += "  sensor " + std::to_string(*trace.sensor);
  for (const auto& [name, value] : trace.arguments.members()) {
    title += "  " + name + ' ' + (name == "streams" ? streamsText(value) : valueText(value));
  }
  mOut << mStyle.title(title);
  if (!trace.result.isNull()) mOut << "  " << kArrow << "  " << lineOfJson(trace.result);
  if (trace.call == DecideSensorScenario::kName) {
    mOut << ' ' << sensorModeName(trace.result.integer<std::int32_t>().value());
  }
  mOut << '\n';
  for (const auto& [name, value] : trace.extras) writeExtra(name, value);
}

void TextTrace::writeExtra(std::string_view name, const Json& value) {
  mOut << "  " << mStyle.heading(name);
  const std::string text = value.isText() ? value.text() : lineOfJson(value);
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

/// Adds the step of the latest write to the line of its tag, and a line for each earlier write.
void TextTrace::addWrites(std::vector<Line>& lines, const CallTrace& trace,
                          std::string_view container, std::uint32_t tag) const {
  const auto addWrite = [&](const StepAccess& made) {
    const auto* write = std::get_if<host::MetadataWrite>(&made.access);
    if (write == nullptr || write->tag != tag || made.container != container) return;
    const std::string place = mStyle.faint(placeText(made.step));
    if (lines.back().step.empty()) {
      lines.back().step = {made.step.name, place};
      return;
    }
    const std::string value = std::string(kArrow) + ' ' + entryText(tag, write->entry);
    lines.push_back({.cells = {mStyle.faint("  overwritten"), mStyle.faint(value)},
                     .step = {mStyle.faint(made.step.name), place},
                     .decoded = {}});
  };
  std::for_each(trace.accesses->rbegin(), trace.accesses->rend(), addWrite);
}

void TextTrace::writeContainer(const CallTrace& trace, const ContainerTrace& container) {
  mOut << "  " << mStyle.heading(container.name);
  if (!container.after) {
    mOut << "  null\n";
    return;
  }
  std::size_t unchanged = host::MetadataAccess::entriesByTag(*container.after).size();
  std::vector<Line> lines;
  for (const std::uint32_t tag : changedTags(container)) {
    const auto& after = container.after->entryFor(tag);
    if (!after.isEmpty()) --unchanged;
    const std::string before = entryText(tag, container.before->entryFor(tag));
    lines.push_back({.cells = {tagText(tag), changeText(before, entryText(tag, after))},
                     .step = {},
                     .decoded = decodedLines(tag, after)});
    if (trace.accesses) addWrites(lines, trace, container.name, tag);
  }
  if (unchanged > 0) mOut << mStyle.faint("  " + std::to_string(unchanged) + " unchanged");
  if (unchanged == 0 && lines.empty()) mOut << mStyle.faint("  empty");
  mOut << '\n';
  writeChanges(lines);
}

/// Writes each change with its step after it, or on the next line if the change is too long.
void TextTrace::writeChanges(const std::vector<Line>& lines) {
  Columns cells(kTagWidth);
  Columns steps;
  for (const Line& line : lines) {
    cells.add(line.cells);
    steps.add(line.step);
  }
  const std::vector<std::string> texts = cells.lines();
  const std::vector<std::string> places = steps.lines();
  const std::size_t taken = kMargin + kGap + widest(places, std::string::npos);
  const std::size_t column = kGap + widest(texts, kLineWidth - std::min(kLineWidth, taken));
  const std::string margin(kMargin, ' ');
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const std::size_t width = displayWidth(texts[i]);
    mOut << margin << texts[i];
    if (!lines[i].step.empty()) {
      const bool isTooLong = width + kGap > column;
      mOut << (isTooLong ? '\n' + margin : "")
           << std::string(isTooLong ? column : column - width, ' ') << places[i];
    }
    mOut << '\n';
    for (const std::string& meaning : lines[i].decoded) {
      mOut << margin << "  " << mStyle.faint(meaning) << '\n';
    }
  }
}

void TextTrace::writeState(const CallTrace& trace) {
  if (trace.takesUpdater && !trace.state) {
    mOut << "  " << mStyle.alarming("no updater for this sensor") << '\n';
  }
  if (!trace.state) return;
  Columns columns(kNameWidth);
  for (const auto& [name, after] : trace.state->after.members()) {
    const Json& before = trace.state->before[name];
    if (before != after) columns.add({name, changeText(lineOfJson(before), lineOfJson(after))});
  }
  writeSection("state", columns);
}

void TextTrace::writeEffects(const std::vector<host::Effect>& effects) {
  Columns columns(kNameWidth);
  for (const host::Effect& effect : effects) columns.add({effect.op, effectFields(effect)});
  writeSection("effects", columns);
}

void TextTrace::writeRecords(const CallTrace& trace) {
  Columns columns;
  for (const host::LogRecord& record : trace.logs) {
    if (mLevels.find(record.level) == std::string_view::npos) continue;
    const std::string level(1, record.level);
    std::vector<std::string> row{record.level == 'E' ? mStyle.alarming(level) : level};
    if (trace.accesses) {
      row.push_back(mStyle.faint(record.file + ":" + std::to_string(record.line)));
    }
    row.push_back(printable(record.message));
    columns.add(std::move(row));
  }
  writeSection("log", columns);
}

void TextTrace::writeSection(std::string_view name, const Columns& columns) {
  if (columns.isEmpty()) return;
  mOut << "  " << mStyle.heading(name) << '\n';
  columns.write(mOut, kMargin);
}

void TextTrace::finish(const host::TextMap& eventStore) {
  mOut << mStyle.title("event store at the end") << '\n';
  Columns columns(kNameWidth);
  for (const auto& [key, value] : eventStore) columns.add({printable(key), jsonText(value)});
  if (columns.isEmpty()) mOut << "  empty\n";
  columns.write(mOut, 2);
}

}  // namespace camhook
