#include "tools/camhook/input/ScenarioWriter.h"

#include <ostream>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>

#include "host/AndroidTags.h"
#include "host/MetadataAccess.h"
#include "tools/camhook/input/JsonLine.h"
#include "tools/camhook/input/MetadataJson.h"
#include "tools/camhook/input/TagCatalogue.h"

namespace camhook {
namespace {

using NSCam::IMetadata;

/// The short form of an entry whose type is the catalogue's, with names for the items that have
/// one.
Json shortEntry(const IMetadata::IEntry& entry) {
  const host::ItemList& items = host::MetadataAccess::itemsOf(entry);
  const host::AndroidTag* known = host::findAndroidTag(entry.tag());
  Json list = jsonFromItems(entry);
  for (Json& item : list.items()) {
    const auto number = item.integer<std::int64_t>();
    const std::string_view name = known != nullptr && number ? known->nameOf(*number) : "";
    if (!name.empty()) item = name;
  }
  const TagDescription* info = findTag(entry.tag());
  const std::string_view type = host::typeName(items);
  if (info == nullptr || info->type != type) return Json::Object{{"type", type}, {"items", list}};
  return list.size() == 1 ? list[0] : list;
}

Json jsonFromDump(const Dump& dump) {
  if (dump.isNull) return {};
  Json::Object entries;
  for (const IMetadata::IEntry& entry : dump.entries) {
    entries.push_back({tagText(entry.tag()), shortEntry(entry)});
  }
  return entries;
}

Json platformOf(const DumpScenario& scenario) {
  Json::Object platform;
  const auto& [properties, events] = std::tie(scenario.properties, scenario.eventStore);
  if (!properties.empty()) platform.push_back({"properties", jsonFromTextMap(properties)});
  if (!events.empty()) platform.push_back({"eventStore", jsonFromTextMap(events)});
  if (scenario.statics) {
    const Json::Object device{{"static", jsonFromDump(*scenario.statics)}};
    platform.push_back({"devices", Json::Object{{std::to_string(scenario.sensor), device}}});
  }
  if (!scenario.clock.empty()) platform.push_back({"clock", scenario.clock});
  return platform;
}

Json callOf(const DumpScenario& scenario, const DumpScenario::Call& made) {
  const DumpHook& hook = *scenario.hook;
  Json::Object call{{"call", hook.call}, {"sensor", scenario.sensor}};
  if (!hook.numberKey.empty()) call.push_back({std::string(hook.numberKey), made.requestNo});
  if (hook.hasStreams) call.push_back({"streams", Json::List()});
  for (std::size_t i = 0; i < made.containers.size(); ++i) {
    call.push_back({std::string(hook.containers[i]), jsonFromDump(made.containers[i])});
  }
  return call;
}

}  // namespace

Json jsonFromTextMap(const host::TextMap& texts) {
  Json::Object members;
  for (const auto& [name, value] : texts) members.push_back({name, value});
  return members;
}

void writeScenario(std::ostream& out, const DumpScenario& scenario) {
  out << "{\n  \"about\": " << jsonText(scenario.about) << ",\n";
  if (const Json platform = platformOf(scenario); platform.size() > 0) {
    out << "  \"platform\": " << brokenJson(platform, 2) << ",\n";
  }
  out << "  \"calls\": [";
  for (const DumpScenario::Call& call : scenario.calls) {
    out << (&call != &scenario.calls.front() ? ",\n    " : "\n    ")
        << brokenJson(callOf(scenario, call), 4);
  }
  out << "\n  ]\n}\n";
}

}  // namespace camhook
