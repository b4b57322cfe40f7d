#include "tools/camhook/show/JsonTrace.h"

#include <array>
#include <ostream>
#include <utility>
#include <vector>

#include "tools/camhook/input/MetadataJson.h"

namespace camhook {
namespace {

void addField(JsonLine& line, const auto& value) { line.add(value); }

void addField(JsonLine& line, const std::vector<host::Effect::Region>& regions) {
  line.open('[');
  for (const auto& [kind, rect] : regions) {
    line.open('{');
    line.member("kind", kind);
    line.member("rect", std::array{rect.x, rect.y, rect.w, rect.h});
    line.close('}');
  }
  line.close(']');
}

void addEffect(JsonLine& line, const host::Effect& effect) {
  line.open('{');
  line.member("op", effect.op);
  for (const auto& [name, value] : effect.fields) {
    line.key(name);
    addEffectValue(line, value);
  }
  line.close('}');
}

void addRecord(JsonLine& line, const host::LogRecord& record) {
  line.open('{');
  line.member("level", std::string_view(&record.level, 1));
  line.member("tag", record.tag);
  line.member("file", record.file);
  line.member("function", record.function);
  line.member("message", record.message);
  line.close('}');
}

/// An entry in its long form, null if it holds no item.
void addEntryOrNull(JsonLine& line, const NSCam::IMetadata::IEntry& entry) {
  if (entry.isEmpty()) return line.add(nullptr);
  addEntry(line, entry);
}

/// A write to one of the call's containers; other accesses add nothing.
void addWrite(JsonLine& line, const StepAccess& made) {
  const auto* write = std::get_if<host::MetadataWrite>(&made.access);
  if (write == nullptr || made.container.empty()) return;
  line.open('{');
  line.member("container", made.container);
  line.member("tag", tagText(write->tag));
  line.key("value");
  addEntryOrNull(line, write->entry);
  line.member("step", made.step.name);
  line.member("file", made.step.file);
  line.member("line", made.step.line);
  line.close('}');
}

void addContainer(JsonLine& line, const ContainerTrace& container) {
  line.key(container.name);
  if (container.after) {
    addMetadata(line, *container.after);
  } else {
    line.add(nullptr);
  }
}

/// Adds the member "before" if the call changed anything: what it changed, as it was.
void addBefore(JsonLine& line, const CallTrace& trace) {
  std::vector<std::pair<const ContainerTrace*, std::vector<std::uint32_t>>> changes;
  for (const ContainerTrace& container : trace.containers) {
    std::vector<std::uint32_t> tags = changedTags(container);
    if (!tags.empty()) changes.emplace_back(&container, std::move(tags));
  }
  const bool isStateChanged = trace.state && trace.state->before != trace.state->after;
  if (changes.empty() && !isStateChanged) return;
  line.key("before");
  line.open('{');
  for (const auto& [container, tags] : changes) {
    line.key(container->name);
    line.open('{');
    for (const std::uint32_t tag : tags) {
      line.key(tagText(tag));
      addEntryOrNull(line, container->before->entryFor(tag));
    }
    line.close('}');
  }
  if (isStateChanged) {
    const UpdaterFields& before = trace.state->before;
    const UpdaterFields& after = trace.state->after;
    line.key("state");
    line.open('{');
    forEachUpdaterField([&](std::string_view name, auto field) {
      if (before.*field != after.*field) line.member(name, before.*field);
    });
    line.close('}');
  }
  line.close('}');
}

void addState(JsonLine& line, const std::optional<StateTrace>& state) {
  line.key("state");
  if (!state) return line.add(nullptr);
  line.open('{');
  forEachUpdaterField(
      [&](std::string_view name, auto field) { line.member(name, state->after.*field); });
  line.close('}');
}

void addList(JsonLine& line, std::string_view name, const auto& list, auto addItem) {
  line.key(name);
  line.open('[');
  for (const auto& item : list) addItem(line, item);
  line.close(']');
}

}  // namespace

void addEffectValue(JsonLine& line, const host::Effect::Value& value) {
  std::visit([&line](const auto& concrete) { addField(line, concrete); }, value);
}

std::string lineOfEffect(const host::Effect& effect) {
  JsonLine line;
  addEffect(line, effect);
  return line.line();
}

void addCall(JsonLine& line, const CallTrace& trace) {
  line.open('{');
  line.member("call", trace.call);
  if (trace.sensor) line.member("sensor", *trace.sensor);
  line.member("args", trace.arguments);
  line.member("return", trace.result);
  for (const auto& [name, value] : trace.extras) line.member(name, value);
  for (const ContainerTrace& container : trace.containers) addContainer(line, container);
  addBefore(line, trace);
  if (trace.takesUpdater) addState(line, trace.state);
  addList(line, "effects", trace.effects, addEffect);
  addList(line, "logs", trace.logs, addRecord);
  if (trace.accesses) addList(line, "writes", *trace.accesses, addWrite);
  line.close('}');
}

void addTexts(JsonLine& line, const host::TextMap& texts) {
  line.open('{');
  for (const auto& [key, value] : texts) line.member(key, value);
  line.close('}');
}

JsonTrace::JsonTrace(std::ostream& out) : mOut(out) { mOut << "{\n  \"calls\": ["; }

void JsonTrace::write(const CallTrace& trace) {
  mOut << (mHasCall ? ",\n    " : "\n    ");
  mHasCall = true;
  mLine.clear();
  addCall(mLine, trace);
  mOut << mLine.broken(4);
}

void JsonTrace::finish(const host::TextMap& eventStore) {
  mOut << (mHasCall ? "\n  ],\n" : "],\n") << "  \"eventStore\": ";
  mLine.clear();
  addTexts(mLine, eventStore);
  mOut << mLine.broken(2) << "\n}\n";
}

}  // namespace camhook
