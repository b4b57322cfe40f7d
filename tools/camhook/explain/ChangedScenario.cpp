#include "tools/camhook/explain/ChangedScenario.h"

#include <algorithm>
#include <ctime>
#include <optional>
#include <string>
#include <utility>

#include "host/MetadataAccess.h"
#include "tools/camhook/input/MetadataJson.h"
#include "tools/camhook/input/ScenarioReader.h"

namespace camhook {
namespace {

using NSCam::IMetadata;
using Kind = Input::Kind;

std::tm startOfProgram() {
  static const std::tm kStart = [] {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    return local;
  }();
  return kStart;
}

/// The document with the changes of inputs of one kind at their places; none if there are none.
std::optional<Json> changedDocument(const Json& document, Kind kind,
                                    const std::vector<Change>& changes) {
  std::optional<Json> changed;
  for (const Change& change : changes) {
    if (change.input.kind != kind) continue;
    if (!changed) changed = document;
    changed = withValueAt(*std::move(changed), change.input.key, change.to.json());
  }
  return changed;
}

void setEntry(IMetadata& metadata, std::uint32_t tag, const IMetadata::IEntry& entry) {
  if (!entry.isEmpty()) {
    metadata.update(tag, entry);
    return;
  }
  // The other entries are copied: an entry without items would still be in the container.
  IMetadata others;
  for (const IMetadata::IEntry* other : host::MetadataAccess::entriesByTag(metadata)) {
    if (other->tag() != tag) others.update(other->tag(), *other);
  }
  metadata = std::move(others);
}

}  // namespace

host::PhoneConfig unchangedPhone(const Question& question) {
  host::PhoneConfig config = question.scenario.platform;
  if (!config.clock) config.clock = startOfProgram();
  return config;
}

std::optional<host::PhoneConfig> changedPhone(const Question& question,
                                              const std::vector<Change>& changes) {
  constexpr std::string_view root;
  std::optional<host::PhoneConfig> config;
  if (const auto platform = changedDocument(question.platform, Kind::platform, changes)) {
    config = platformFromJson(*platform, root);
    if (!config->clock) config->clock = startOfProgram();
  }
  for (const Change& change : changes) {
    if (change.input.kind != Kind::provider && change.input.kind != Kind::statics) continue;
    if (!config) config = unchangedPhone(question);
    if (change.input.kind == Kind::statics) {
      const auto device = static_cast<std::int32_t>(change.input.number);
      setEntry(config->devices[device].statics, change.input.tag, change.to.entry());
    } else if (change.to.isAbsent()) {
      config->provider.reset();
    } else {
      config->provider = {integerFromJson<std::int32_t>(change.to.json(), root)};
    }
  }
  return config;
}

Call changedCall(const Question& question, const std::vector<Change>& changes) {
  Call call = question.askedCall();
  if (const auto changed = changedDocument(question.callDocument, Kind::argument, changes)) {
    Call fresh = callFromJson(*changed, "").call;
    for (const char* name : kContainers) {
      if (auto* const container = containerOf(call, name)) {
        *containerOf(fresh, name) = std::move(*container);
      }
    }
    call = std::move(fresh);
  }
  for (const Change& change : changes) {
    if (change.input.kind != Kind::metadata) continue;
    MetadataArgument& container = *containerOf(call, change.input.key);
    if (!container && change.to.isAbsent()) continue;
    if (!container) container.emplace();
    setEntry(*container, change.input.tag, change.to.entry());
  }
  return call;
}

void setTexts(host::Phone& phone, const std::vector<Change>& changes) {
  for (const Change& change : changes) {
    const Json to = change.to.json();
    const std::string text = to.isText() ? to.text() : "";
    if (change.input.kind == Kind::event) phone.eventStore.set(change.input.key, text);
    if (change.input.kind == Kind::property) phone.properties.set(change.input.key, text);
  }
}

}  // namespace camhook
