#include "tools/camhook/explain/ChangedScenario.h"

#include <string>
#include <utility>

#include "host/MetadataAccess.h"
#include "tools/camhook/input/MetadataJson.h"
#include "tools/camhook/input/ScenarioReader.h"

namespace camhook {
namespace {

using NSCam::IMetadata;
using Kind = Input::Kind;

/// `document` with the changes of this kind applied; nullopt if there are none.
std::optional<Json> changedDocument(const Json& document, Kind kind,
                                    const std::vector<Change>& changes) {
  std::optional<Json> changed;
  for (const auto& [input, to] : changes) {
    if (input.kind != kind) continue;
    if (!changed) changed = document;
    setValueAt(*changed, input.key, to);
  }
  return changed;
}

void setEntry(IMetadata& metadata, std::uint32_t tag, const Json& value) {
  const auto entry = value.isNull() ? IMetadata::IEntry(tag) : entryFromJson(tag, value, "");
  if (entry.isEmpty()) {
    host::MetadataAccess::erase(metadata, tag);
  } else {
    metadata.update(tag, entry);
  }
}

}  // namespace

std::optional<host::PhoneConfig> changedPhone(const Question& question,
                                              const std::vector<Change>& changes) {
  std::optional<host::PhoneConfig> config;
  if (const auto platform = changedDocument(question.platform, Kind::platform, changes)) {
    config = platformFromJson(*platform, "");
    if (!config->clock) config->clock = question.scenario.platform.clock;
  }
  for (const auto& [input, to] : changes) {
    if (input.kind != Kind::provider && input.kind != Kind::statics) continue;
    if (!config) config = question.scenario.platform;
    if (input.kind == Kind::statics) {
      auto& device = config->devices[static_cast<std::int32_t>(input.number)];
      setEntry(device.statics, input.tag, to);
    } else if (to.isNull()) {
      config->provider.reset();
    } else {
      config->provider = {numberFromJson<std::int32_t>(to, "")};
    }
  }
  return config;
}

Call changedCall(const Question& question, Call call, const std::vector<Change>& changes) {
  if (auto document = changedDocument(question.arguments, Kind::argument, changes)) {
    (*document)["call"] = nameOf(call);
    for (const char* name : kContainers) {
      if (containerOf(call, name) != nullptr) (*document)[name] = Json();
    }
    Call fresh = callFromJson(*document, "").call;
    for (const char* name : kContainers) {
      if (auto* const container = containerOf(call, name)) {
        *containerOf(fresh, name) = std::move(*container);
      }
    }
    call = std::move(fresh);
  }
  for (const auto& [input, to] : changes) {
    if (input.kind != Kind::metadata) continue;
    MetadataArgument& container = *containerOf(call, input.key);
    if (!container && to.isNull()) continue;
    if (!container) container.emplace();
    setEntry(*container, input.tag, to);
  }
  return call;
}

void setTexts(host::Phone& phone, const std::vector<Change>& changes) {
  for (const auto& [input, to] : changes) {
    const std::string text = to.isText() ? to.text() : "";
    if (input.kind == Kind::event) phone.eventStore.set(input.key, text);
    if (input.kind == Kind::property) phone.properties.set(input.key, text);
  }
}

}  // namespace camhook
