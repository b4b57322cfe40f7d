#include "tools/camhook/show/TextTrace.h"

#include <algorithm>
#include <ostream>
#include <sstream>
#include <utility>
#include <variant>

#include "host/MetadataAccess.h"
#include "tools/camhook/input/MetadataJson.h"
#include "tools/camhook/show/SensorScenarioName.h"
#include "tools/camhook/show/TraceText.h"

namespace camhook {
namespace {

using Entry = NSCam::IMetadata::IEntry;

constexpr std::size_t kMargin = 4;
constexpr std::size_t kDeeper = 6;
constexpr std::size_t kLineWidth = 120;  // that changes with their steps keep to at most
constexpr std::size_t kTagWidth = 34;
constexpr std::size_t kNameWidth = 20;  // of fields, effects and events
constexpr const char* kArrow = "\u2192";

EntryItems itemsOf(const Entry& entry) {
  return {.type = host::typeName(host::MetadataAccess::itemsOf(entry)),
          .items = jsonFromItems(entry)};
}

std::string textOf(std::uint32_t tag, const EntryItems& entry) {
  return entry.items.empty() ? "absent" : entryText(hesk::findTag(tag), entry);
}

/// The tags that a call may have changed, ordered: those that hold items before or after it.
std::vector<std::uint32_t> tagsOf(const ContainerTrace& container) {
  std::vector<std::uint32_t> tags;
  for (const MetadataArgument* metadata : {&container.before, &container.after}) {
    if (!*metadata) continue;
    for (const Entry* entry : host::MetadataAccess::entriesByTag(**metadata)) {
      tags.push_back(entry->tag());
    }
  }
  std::ranges::sort(tags);
  tags.erase(std::unique(tags.begin(), tags.end()), tags.end());
  return tags;
}

struct Write {
  const Entry* entry;
  const Step* step;
};

/// What a call wrote to a tag of a container, the latest first.
std::vector<Write> writesTo(const CallTrace& trace, std::string_view container, std::uint32_t tag) {
  std::vector<Write> writes;
  for (const auto& [access, name, step] : *trace.accesses) {
    const auto* write = std::get_if<host::MetadataWrite>(&access);
    if (write == nullptr || write->tag != tag || name != container) continue;
    writes.push_back({&write->entry, &step});
  }
  std::ranges::reverse(writes);
  return writes;
}

/// "FrameRate.cpp:56": no two sources of the library have one name.
std::string placeText(const Step& step) {
  return step.file.substr(step.file.rfind('/') + 1) + ":" + std::to_string(step.line);
}

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
    line.append(" ").append(scenarioName(trace.result.get<std::int32_t>()));
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
void TextTrace::addWrites(std::vector<Change>& changes, const CallTrace& trace,
                          std::string_view container, std::uint32_t tag) const {
  const std::vector<Write> writes = writesTo(trace, container, tag);
  const Step last = writes.empty() ? Step() : *writes.front().step;
  changes.back().step = {last.name, mStyle.faint(placeText(last))};
  for (std::size_t i = 1; i < writes.size(); ++i) {
    const auto& [entry, step] = writes[i];
    changes.push_back(
        {.cells = {mStyle.faint("  overwritten"),
                   mStyle.faint(std::string(kArrow) + ' ' + textOf(tag, itemsOf(*entry)))},
         .step = {mStyle.faint(step->name), mStyle.faint(placeText(*step))},
         .decoded = {}});
  }
}

void TextTrace::writeContainer(const CallTrace& trace, const ContainerTrace& container) {
  mOut << "  " << mStyle.heading(container.name);
  if (!container.after) {
    mOut << "  null\n";
    return;
  }
  std::vector<Change> changes;
  std::size_t unchanged = 0;
  for (const std::uint32_t tag : tagsOf(container)) {
    const Entry& old = container.before->entryFor(tag);
    const Entry& fresh = container.after->entryFor(tag);
    if (areSame(old, fresh)) {
      ++unchanged;
      continue;
    }
    const std::string name = tagText(tag);
    const EntryItems items = itemsOf(fresh);
    changes.push_back({.cells = {name, mStyle.faint(textOf(tag, itemsOf(old))) + ' ' + kArrow +
                                           ' ' + mStyle.fresh(textOf(tag, items))},
                       .step = {},
                       .decoded = decodedLines(name, items)});
    if (trace.accesses) addWrites(changes, trace, container.name, tag);
  }
  if (unchanged > 0) mOut << mStyle.faint("  " + std::to_string(unchanged) + " unchanged");
  if (unchanged == 0 && changes.empty()) mOut << mStyle.faint("  empty");
  mOut << '\n';
  writeChanges(changes);
}

/// Each change on a line, and its step behind it; on the next line where a change is too long.
void TextTrace::writeChanges(const std::vector<Change>& changes) {
  Columns cells(kTagWidth);
  Columns steps;
  for (const Change& change : changes) {
    cells.add(change.cells);
    steps.add(change.step);
  }
  const std::vector<std::string> texts = cells.lines();
  const std::vector<std::string> places = steps.lines();
  const std::size_t width = std::min(kLineWidth, mStyle.width());
  const std::size_t column =
      kMargin + columnBehind(texts, width - std::min(width, kMargin + widest(places)));
  const std::string margin(kMargin, ' ');
  for (std::size_t i = 0; i < changes.size(); ++i) {
    if (changes[i].step.empty()) {
      writeLine(margin + texts[i], kDeeper);
    } else if (kMargin + displayWidth(texts[i]) + 2 > column) {
      writeLine(margin + texts[i], kDeeper);
      mOut << std::string(column, ' ') << places[i] << '\n';
    } else {
      mOut << margin << texts[i] << std::string(column - kMargin - displayWidth(texts[i]), ' ')
           << places[i] << '\n';
    }
    for (const std::string& line : changes[i].decoded) {
      writeLine(std::string(kDeeper, ' ') + mStyle.faint(line), kDeeper + 2);
    }
  }
}

void TextTrace::writeState(const StateTrace& state) {
  if (state.after.empty()) {
    mOut << "  " << mStyle.alarming("no updater for this sensor") << '\n';
    return;
  }
  Columns columns(kNameWidth);
  for (std::size_t i = 0; i < state.after.size(); ++i) {
    const auto& [field, fresh] = state.after[i];
    const std::string& old = state.before[i].value;
    if (old == fresh) continue;
    columns.add({std::string(field), mStyle.faint(old) + ' ' + kArrow + ' ' + mStyle.fresh(fresh)});
  }
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
