#include "tools/camhook/explain/ChangedScenario.h"

#include <algorithm>
#include <ctime>
#include <string>
#include <utility>

#include "host/MetadataAccess.h"
#include "tools/camhook/input/MetadataJson.h"
#include "tools/camhook/input/ScenarioReader.h"

namespace camhook {
namespace {

using NSCam::IMetadata;
using Kind = Input::Kind;

/// A clock that stands: what it says must not differ between runs.
std::tm startOfProgram() {
  static const std::tm kStart = [] {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    return local;
  }();
  return kStart;
}

}  // namespace

host::PhoneConfig withStandingClock(host::PhoneConfig config) {
  if (!config.clock) config.clock = startOfProgram();
  return config;
}

host::PhoneConfig changedPhone(const Question& question, const std::vector<Change>& changes) {
  const Place root;
  host::PhoneConfig config = question.scenario.platform;
  const auto isPlatform = [](const Change& change) { return change.input.kind == Kind::platform; };
  if (std::ranges::any_of(changes, isPlatform)) {
    Json document = question.platformDocument();
    for (const Change& change : changes) {
      if (isPlatform(change)) {
        document = withValueAt(std::move(document), change.input.key, change.to);
      }
    }
    config = platformFromJson(document, root);
  }
  for (const Change& change : changes) {
    if (change.input.kind == Kind::provider) {
      config.provider.reset();
      if (!change.to.is_null()) {
        config.provider = host::ProviderConfig{integerFromJson<std::int32_t>(change.to, root)};
      }
    } else if (change.input.kind == Kind::statics) {
      IMetadata& statics = config.devices[static_cast<std::int32_t>(change.input.number)].statics;
      const IMetadata::IEntry none(change.input.tag);
      statics.update(change.input.tag,
                     change.to.is_null() ? none : entryFromJson(change.input.tag, change.to, root));
    }
  }
  return withStandingClock(std::move(config));
}

ScenarioCall changedCall(const Question& question, const std::vector<Change>& changes) {
  const Place root;
  const auto isArgument = [](const Change& change) { return change.input.kind == Kind::argument; };
  ScenarioCall call = question.scenarioCall();
  if (std::ranges::any_of(changes, isArgument)) {
    Json document = question.callDocument();
    for (const Change& change : changes) {
      if (isArgument(change)) document = withValueAt(document, change.input.key, change.to);
    }
    call = callFromJson(document, root);
  }
  for (const Change& change : changes) {
    if (change.input.kind != Kind::metadata) continue;
    MetadataArgument& container = *containerOf(call.call, change.input.key);
    const std::uint32_t tag = change.input.tag;
    if (!change.to.is_null()) {
      if (!container) container.emplace();
      container->update(tag, entryFromJson(tag, change.to, root));
    } else if (container) {
      // Made anew: an entry without items would still tell its tag.
      IMetadata others;
      for (const IMetadata::IEntry* entry : host::MetadataAccess::entriesByTag(*container)) {
        if (entry->tag() != tag) others.update(entry->tag(), *entry);
      }
      container = std::move(others);
    }
  }
  return call;
}

void setTexts(host::Phone& phone, const std::vector<Change>& changes) {
  for (const Change& change : changes) {
    const std::string text = change.to.is_string() ? change.to.get<std::string>() : "";
    if (change.input.kind == Kind::event) phone.eventStore.set(change.input.key, text);
    if (change.input.kind == Kind::property) phone.properties.set(change.input.key, text);
  }
}

}  // namespace camhook
