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
constexpr std::size_t kTagWidth = 34;
constexpr std::size_t kChangeWidth = 60;  // after a longer change, its step is not aligned
constexpr std::size_t kNameWidth = 20;    // of fields, effects and events
constexpr const char* kArrow = "\u2192";

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

/// Adds a changed tag with the step that wrote it last, the meaning of its items, and the writes
/// that were overwritten.
void TextTrace::addChange(Columns& columns, const ContainerTrace& container, std::uint32_t tag,
                          const std::vector<TagWrite>& writes) const {
  const auto& after = container.after->entryFor(tag);
  const std::string before = entryText(tag, container.before->entryFor(tag));
  std::vector<std::string> row{tagText(tag), changeText(before, entryText(tag, after))};
  const auto lastWrite = writes.rbegin();
  if (lastWrite != writes.rend()) {
    row.insert(row.end(), {lastWrite->step.name, mStyle.faint(placeText(lastWrite->step))});
  }
  columns.add(std::move(row));
  for (const std::string& meaning : decodedLines(tag, after)) {
    columns.add({"  " + mStyle.faint(meaning)});
  }
  if (writes.empty()) return;
  for (auto write = lastWrite + 1; write != writes.rend(); ++write) {
    columns.add({mStyle.faint("  overwritten"),
                 mStyle.faint(std::string(kArrow) + ' ' + entryText(tag, write->entry)),
                 mStyle.faint(write->step.name), mStyle.faint(placeText(write->step))});
  }
}

void TextTrace::writeContainer(const CallTrace& trace, const ContainerTrace& container) {
  mOut << "  " << mStyle.heading(container.name);
  if (!container.after) {
    mOut << "  null\n";
    return;
  }
  std::size_t unchanged = host::MetadataAccess::entriesByTag(*container.after).size();
  Columns changes(kTagWidth, kChangeWidth);
  for (const std::uint32_t tag : changedTags(container)) {
    if (!container.after->entryFor(tag).isEmpty()) --unchanged;
    addChange(changes, container, tag, writesOf(trace, container.name, tag));
  }
  if (unchanged > 0) mOut << mStyle.faint("  " + std::to_string(unchanged) + " unchanged");
  if (unchanged == 0 && changes.isEmpty()) mOut << mStyle.faint("  empty");
  mOut << '\n';
  changes.write(mOut, kMargin);
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
