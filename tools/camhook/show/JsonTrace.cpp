#include "tools/camhook/show/JsonTrace.h"

#include <ostream>

#include "tools/camhook/input/MetadataJson.h"

namespace camhook {
namespace {

template <typename T>
Json jsonFrom(const T& value) {
  return Json(value);
}

Json jsonFrom(float value) { return jsonFromFloat(value); }

Json jsonFrom(const std::vector<host::Effect::Region>& regions) {
  Json list = Json::array();
  for (const auto& [kind, rect] : regions) {
    list.push_back({{"kind", kind}, {"rect", Json::array({rect.x, rect.y, rect.w, rect.h})}});
  }
  return list;
}

Json jsonFromRecord(const host::LogRecord& record) {
  return {{"level", std::string(1, record.level)},
          {"tag", record.tag},
          {"file", record.file},
          {"function", record.function},
          {"message", record.message}};
}

/// What was written to the containers that the call was handed.
Json jsonFromWrites(const std::vector<StepAccess>& accesses) {
  Json writes = Json::array();
  for (const auto& [access, container, step] : accesses) {
    const auto* write = std::get_if<host::MetadataWrite>(&access);
    if (write == nullptr || container.empty()) continue;
    writes.push_back({{"container", container},
                      {"tag", tagText(write->tag)},
                      {"value", write->entry.isEmpty() ? Json() : jsonFromEntry(write->entry)},
                      {"step", step.name},
                      {"file", step.file},
                      {"line", step.line}});
  }
  return writes;
}

Json jsonFromCall(const CallTrace& trace) {
  Json json;
  json["call"] = trace.call;
  if (trace.sensor) json["sensor"] = *trace.sensor;
  json["args"] = trace.arguments;
  json["return"] = trace.result;
  for (const auto& [name, value] : trace.extras) json[std::string(name)] = value;
  for (const ContainerTrace& container : trace.containers) {
    json[std::string(container.name)] =
        container.after ? jsonFromMetadata(*container.after) : Json();
  }
  if (trace.state) json["state"] = trace.state->after;
  json["effects"] = Json::array();
  for (const host::Effect& effect : trace.effects)
    json["effects"].push_back(jsonFromEffect(effect));
  json["logs"] = Json::array();
  for (const host::LogRecord& record : trace.logs) json["logs"].push_back(jsonFromRecord(record));
  if (trace.accesses) json["writes"] = jsonFromWrites(*trace.accesses);
  return json;
}

}  // namespace

Json jsonFromEffect(const host::Effect& effect) {
  Json json;
  json["op"] = effect.op;
  for (const auto& [name, value] : effect.fields) {
    std::visit([&json, &key = name](const auto& concrete) { json[key] = jsonFrom(concrete); },
               value);
  }
  return json;
}

JsonTrace::JsonTrace(std::ostream& out) : mOut(out) { mOut << "{\n  \"calls\": ["; }

void JsonTrace::write(const CallTrace& trace) {
  mOut << (mHasCall ? ",\n    " : "\n    ");
  mHasCall = true;
  writeJson(mOut, jsonFromCall(trace), 4);
}

void JsonTrace::finish(const host::TextMap& eventStore) {
  mOut << (mHasCall ? "\n  ],\n" : "],\n") << "  \"eventStore\": ";
  Json json = Json::object();
  for (const auto& [key, value] : eventStore) json[key] = value;
  writeJson(mOut, json, 2);
  mOut << "\n}\n";
}

}  // namespace camhook
