#include "tools/camhook/show/JsonTrace.h"

#include <ostream>
#include <string_view>
#include <vector>

#include "tools/camhook/input/JsonLine.h"
#include "tools/camhook/input/MetadataJson.h"

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

Json jsonFromRecord(const host::LogRecord& record) {
  Json json;
  json["level"] = std::string_view(&record.level, 1);
  json["tag"] = record.tag;
  json["file"] = record.file;
  json["function"] = record.function;
  json["message"] = record.message;
  return json;
}

/// The writes to the call's containers.
Json jsonFromWrites(const std::vector<StepAccess>& accesses) {
  Json::List list;
  for (const auto& [access, container, step] : accesses) {
    const auto* write = std::get_if<host::MetadataWrite>(&access);
    if (write == nullptr || container.empty()) continue;
    list.push_back({{"container", container},
                    {"tag", tagText(write->tag)},
                    {"value", jsonFromEntry(write->entry)},
                    {"step", step.name},
                    {"file", step.file},
                    {"line", step.line}});
  }
  return list;
}

/// The old values of everything that the call changed; null if it changed nothing.
Json beforeOf(const CallTrace& trace) {
  Json json;
  for (const ContainerTrace& container : trace.containers) {
    for (const std::uint32_t tag : changedTags(container)) {
      json[container.name][tagText(tag)] = jsonFromEntry(container.before->entryFor(tag));
    }
  }
  if (!trace.state) return json;
  for (const auto& [name, after] : trace.state->after.members()) {
    const Json& before = trace.state->before[name];
    if (before != after) json["state"][name] = before;
  }
  return json;
}

}  // namespace

Json jsonFromEffect(const host::Effect& effect) {
  Json json = {{"op", effect.op}};
  for (const auto& [name, value] : effect.fields) {
    json[name] = std::visit([](const auto& each) { return jsonFromField(each); }, value);
  }
  return json;
}

Json jsonFromTrace(const CallTrace& trace) {
  Json json = {{"call", trace.call}};
  if (trace.sensor) json["sensor"] = *trace.sensor;
  json["args"] = trace.arguments;
  json["return"] = trace.result;
  for (const auto& [name, value] : trace.extras) json[name] = value;
  for (const ContainerTrace& container : trace.containers) {
    json[container.name] = container.after ? jsonFromMetadata(*container.after) : Json();
  }
  if (Json before = beforeOf(trace); !before.isNull()) json["before"] = std::move(before);
  if (trace.takesUpdater) json["state"] = trace.state ? trace.state->after : Json();
  Json::List effects;
  for (const host::Effect& effect : trace.effects) effects.push_back(jsonFromEffect(effect));
  json["effects"] = std::move(effects);
  Json::List records;
  for (const host::LogRecord& record : trace.logs) records.push_back(jsonFromRecord(record));
  json["logs"] = std::move(records);
  if (trace.accesses) json["writes"] = jsonFromWrites(*trace.accesses);
  return json;
}

JsonTrace::JsonTrace(std::ostream& out) : mOut(out) { mOut << "{\n  \"calls\": ["; }

void JsonTrace::write(const CallTrace& trace) {
  mOut << (mHasCall ? ",\n    " : "\n    ") << brokenJson(jsonFromTrace(trace), 4);
  mHasCall = true;
}

void JsonTrace::finish(const host::TextMap& eventStore) {
  mOut << (mHasCall ? "\n  ],\n" : "],\n")
       << "  \"eventStore\": " << brokenJson(jsonFromTextMap(eventStore), 2) << "\n}\n";
}

}  // namespace camhook
