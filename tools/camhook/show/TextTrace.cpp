#include "tools/camhook/show/TextTrace.h"

#include <algorithm>
#include <limits>
#include <ostream>
#include <set>
#include <sstream>
#include <utility>
#include <variant>

#include "common/tags/TagCatalogue.h"
#include "host/MetadataAccess.h"
#include "tools/camhook/input/MetadataJson.h"
#include "tools/camhook/show/JsonTrace.h"
#include "tools/camhook/show/SensorScenarioName.h"

namespace camhook {
namespace {

using Entry = NSCam::IMetadata::IEntry;

constexpr std::size_t kMostItems = 12;  // shown of an entry
constexpr std::size_t kAllItems = std::numeric_limits<std::size_t>::max();
constexpr std::size_t kMargin = 4;
constexpr std::size_t kLineWidth = 120;  // that changes with their steps keep to
constexpr const char* kAbsent = "absent";
constexpr const char* kArrow = "\u2192";

std::string itemText(const Json& item) {
  if (!item.is_string()) return lineOfJson(item);
  const auto& text = item.get_ref<const std::string&>();
  return text.empty() ? "\"\"" : printable(text);
}

/// "1", "[15, 60]", "[50, 48, ... 15 in all]" where there are more than `most`.
std::string itemsText(const Json& items, std::size_t most) {
  if (items.size() == 1) return itemText(items.front());
  std::string text = "[";
  for (std::size_t i = 0; i < items.size(); ++i) {
    if (i == most) return text + ", ... " + std::to_string(items.size()) + " in all]";
    if (i > 0) text += ", ";
    text += itemText(items[i]);
  }
  return text + "]";
}

/// The items, and their type where the catalogue would have another.
std::string entryText(const Entry& entry, std::size_t most) {
  if (entry.isEmpty()) return kAbsent;
  std::string text = itemsText(jsonFromItems(entry), most);
  const std::string_view type = host::typeName(host::MetadataAccess::itemsOf(entry));
  const hesk::TagDescription* info = hesk::findTag(entry.tag());
  if (info == nullptr || info->type != type) text += " (" + std::string(type) + ")";
  return text;
}

/// The tags that a call may have changed: those that hold items before or after it.
std::set<std::uint32_t> tagsOf(const ContainerTrace& container) {
  std::set<std::uint32_t> tags;
  for (const MetadataArgument* metadata : {&container.before, &container.after}) {
    if (!*metadata) continue;
    for (const Entry* entry : host::MetadataAccess::entriesByTag(**metadata)) {
      tags.insert(entry->tag());
    }
  }
  return tags;
}

/// "1 1920x1080 usage 0x100, 2 3840x2160 usage 0x10000".
std::string streamsText(const Json& streams) {
  std::string text;
  for (const Json& stream : streams) {
    if (!text.empty()) text += ", ";
    text += itemText(stream["id"]) + ' ' + itemText(stream["width"]) + 'x' +
            itemText(stream["height"]) + " usage " + itemText(stream["usage"]);
  }
  return text.empty() ? "none" : text;
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

TextTrace::TextTrace(std::ostream& out, Style style, Records records, std::size_t callCount)
    : mOut(out), mStyle(style), mRecords(records), mCallCount(callCount) {}

void TextTrace::write(const CallTrace& trace) {
  ++mCallNumber;
  writeTitle(trace);
  for (const ContainerTrace& container : trace.containers) writeContainer(trace, container);
  if (trace.state) writeState(*trace.state);
  writeEffects(trace.effects);
  writeRecords(trace);
  mOut << '\n';
}

void TextTrace::writeTitle(const CallTrace& trace) {
  std::string title = std::to_string(mCallNumber) + "/" + std::to_string(mCallCount) + "  " +
                      std::string(trace.call);
  if (trace.sensor) title += "  sensor " + std::to_string(*trace.sensor);
  for (const auto& [name, value] : trace.arguments.items()) {
    title.append("  ").append(name).append(" ");
    title += name == "streams" ? streamsText(value) : itemText(value);
  }
  mOut << mStyle.title(title);
  if (!trace.result.is_null()) mOut << "  " << kArrow << "  " << lineOfJson(trace.result);
  if (trace.call == DecideSensorScenario::kName) {
    mOut << ' ' << scenarioName(trace.result.get<std::int32_t>());
  }
  mOut << '\n';
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

void TextTrace::writeContainer(const CallTrace& trace, const ContainerTrace& container) {
  mOut << "  " << mStyle.heading(container.name);
  if (!container.after) {
    mOut << "  null\n";
    return;
  }
  Columns changes;
  Columns steps;
  std::size_t unchanged = 0;
  for (const std::uint32_t tag : tagsOf(container)) {
    const Entry& before = container.before->entryFor(tag);
    const Entry& after = container.after->entryFor(tag);
    if (entryText(before, kAllItems) == entryText(after, kAllItems)) {
      ++unchanged;
      continue;
    }
    const std::string old = entryText(before, kMostItems);
    std::string fresh = entryText(after, kMostItems);
    if (old == fresh) fresh += " (differs behind)";
    changes.add({tagText(tag), mStyle.faint(old), kArrow, mStyle.fresh(fresh)});
    if (!trace.accesses) continue;
    const std::vector<Write> writes = writesTo(trace, container.name, tag);
    const Step last = writes.empty() ? Step() : *writes.front().step;
    steps.add({last.name, mStyle.faint(placeText(last))});
    for (std::size_t i = 1; i < writes.size(); ++i) {
      const auto& [entry, step] = writes[i];
      changes.add({mStyle.faint("  overwritten"), "", mStyle.faint(kArrow),
                   mStyle.faint(entryText(*entry, kMostItems))});
      steps.add({mStyle.faint(step->name), mStyle.faint(placeText(*step))});
    }
  }
  mOut << mStyle.faint("  " + std::to_string(unchanged) + " unchanged") << '\n';
  writeChanges(changes, steps);
}

/// Each change on a line, and its step behind it; on the next line where a change is too long.
void TextTrace::writeChanges(const Columns& changes, const Columns& steps) {
  const std::vector<std::string> texts = changes.lines();
  const std::vector<std::string> places = steps.lines();
  const std::size_t column =
      kMargin + columnBehind(texts, kLineWidth - std::min(kLineWidth, kMargin + widest(places)));
  for (std::size_t i = 0; i < texts.size(); ++i) {
    mOut << std::string(kMargin, ' ') << texts[i];
    if (i < places.size()) {
      std::size_t at = kMargin + displayWidth(texts[i]);
      if (at + 2 > column) {
        mOut << '\n';
        at = 0;
      }
      mOut << std::string(column - at, ' ') << places[i];
    }
    mOut << '\n';
  }
}

void TextTrace::writeState(const StateTrace& state) {
  if (state.after.is_null()) {
    mOut << "  " << mStyle.alarming("no updater for this sensor") << '\n';
    return;
  }
  Columns columns;
  for (const auto& [field, after] : state.after.items()) {
    const bool isFirst = state.before.is_null();
    if (!isFirst && state.before[field] == after) continue;
    columns.add({field, mStyle.faint(isFirst ? "new" : lineOfJson(state.before[field])), kArrow,
                 mStyle.fresh(lineOfJson(after))});
  }
  if (columns.isEmpty()) return;
  mOut << "  " << mStyle.heading("state") << '\n';
  columns.write(mOut, kMargin);
}

void TextTrace::writeEffects(const std::vector<host::Effect>& effects) {
  if (effects.empty()) return;
  mOut << "  " << mStyle.heading("effects") << '\n';
  Columns columns;
  for (const host::Effect& effect : effects) {
    std::string fields;
    const Json json = jsonFromEffect(effect);
    for (const auto& [key, value] : json.items()) {
      if (key == "op") continue;
      if (!fields.empty()) fields += ' ';
      fields += key + "=" + itemText(value);
    }
    columns.add({effect.op, fields});
  }
  columns.write(mOut, kMargin);
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
  columns.write(mOut, kMargin);
}

void TextTrace::finish(const host::TextMap& eventStore) {
  mOut << mStyle.title("event store at the end") << '\n';
  Columns columns;
  for (const auto& [key, value] : eventStore) columns.add({key, jsonText(value)});
  if (columns.isEmpty()) {
    mOut << "  empty\n";
  } else {
    columns.write(mOut, 2);
  }
}

}  // namespace camhook
