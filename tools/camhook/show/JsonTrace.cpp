#include "tools/camhook/show/JsonTrace.h"

#include <ostream>
#include <vector>

#include "tools/camhook/input/MetadataJson.h"
#include "tools/camhook/input/ScenarioWriter.h"

namespace camhook {
namespace {

Json jsonFromField(const auto& value) { return value; }

Json jsonFromField(const std::vector<host::Effect::Region>& regions) {
  Json::List list;
  for (const auto& [kind, rect] : regions) {
    list.push_back({{"kind", kind}, {"rect", jsonFromRect(rect)}});
  }
  return list;
}

void addEffect(JsonLine& line, const host::Effect& effect) {
  line.open('{');
  line.member("op", effect.op);
  for (const auto& [name, value] : effect.fields) line.member(name, jsonFromEffectValue(value));
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

/// An entry in its long form, null if it has no items.
Json entryOrNull(const NSCam::IMetadata::IEntry& entry) {
  return entry.isEmpty() ? Json() : jsonFromEntry(entry);
}

/// Adds a write to one of the call's containers; ignores other accesses.
void addWrite(JsonLine& line, const StepAccess& made) {
  const auto* write = std::get_if<host::MetadataWrite>(&made.access);
  if (write == nullptr || made.container.empty()) return;
  line.open('{');
  line.member("container", made.container);
  line.member("tag", tagText(write->tag));
  line.member("value", entryOrNull(write->entry));
  line.member("step", made.step.name);
  line.member("file", made.step.file);
  line.member("line", made.step.line);
  line.close('}');
}

/// What the call changed, as it was; null if it changed nothing.
Json beforeOf(const CallTrace& trace) {
  Json json;
  for (const ContainerTrace& container : trace.containers) {
    Json::Object entries;
    for (const std::uint32_t tag : changedTags(container)) {
      entries.push_back({tagText(tag), entryOrNull(container.before->entryFor(tag))});
    }
    if (!entries.empty()) json[container.name] = std::move(entries);
  }
  if (!trace.state) return json;
  forEachUpdaterField([&](std::string_view name, auto field) {
    const auto& before = trace.state->before.*field;
    if (before != trace.state->after.*field) json["state"][name] = before;
  });
  return json;
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

Json jsonFromEffectValue(const host::Effect::Value& value) {
  return std::visit([](const auto& each) { return jsonFromField(each); }, value);
}

void addCall(JsonLine& line, const CallTrace& trace) {
  line.open('{');
  line.member("call", trace.call);
  if (trace.sensor) line.member("sensor", *trace.sensor);
  line.member("args", trace.arguments);
  line.member("return", trace.result);
  for (const auto& [name, value] : trace.extras) line.member(name, value);
  for (const ContainerTrace& container : trace.containers) {
    line.key(container.name);
    if (container.after) {
      addMetadata(line, *container.after);
    } else {
      line.add(nullptr);
    }
  }
  if (const Json before = beforeOf(trace); !before.isNull()) line.member("before", before);
  if (trace.takesUpdater) addState(line, trace.state);
  addList(line, "effects", trace.effects, addEffect);
  addList(line, "logs", trace.logs, addRecord);
  if (trace.accesses) addList(line, "writes", *trace.accesses, addWrite);
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
  mOut << (mHasCall ? "\n  ],\n" : "],\n")
       << "  \"eventStore\": " << brokenJson(jsonFromTextMap(eventStore), 2) << "\n}\n";
}

}  // namespace camhook
