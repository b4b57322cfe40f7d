#include "tools/camhook/explain/HookReference.h"

#include <algorithm>
#include <ostream>
#include <regex>
#include <utility>
#include <variant>

#include "tools/camhook/input/Joined.h"
#include "tools/camhook/input/JsonLine.h"
#include "tools/camhook/input/MetadataJson.h"
#include "tools/camhook/run/OwnUpdaters.h"

namespace camhook {
namespace {

/// "devices.N.faces", "sat.cameras[N].fov": the page lists all devices and cameras as one.
std::string withoutNumbers(const std::string& place) {
  static const std::regex number(R"(([.\[])-?\d+)");
  return std::regex_replace(place, number, "$1N");
}

constexpr const char* kReads = "READS";
constexpr const char* kWrites = "WRITES";

/// An access in the format of the page: "meta" and a tag, or "event" and a key.
struct AccessText {
  std::string kind;
  std::string group;  // empty for a container's tag
  std::string member;
};

AccessText textOf(const host::MetadataRead& read) { return {kReads, {}, tagText(read.tag)}; }
AccessText textOf(const host::MetadataWrite& write) { return {kWrites, {}, tagText(write.tag)}; }
AccessText textOf(const host::StaticRead& read) { return {kReads, "static", tagText(read.tag)}; }
AccessText textOf(const host::EventRead& read) { return {kReads, "event", read.key}; }
AccessText textOf(const host::PropertyRead& read) { return {kReads, "property", read.name}; }
AccessText textOf(const host::ServiceRead& read) {
  return {kReads, "service", withoutNumbers(read.place)};
}
AccessText textOf(const host::Effect& effect) {
  if (effect.op != "eventStore.set") return {kWrites, "effect", effect.op};
  return {kWrites, "event", std::get<std::string>(effect.fields.front().value)};
}

constexpr const char* kIntroduction = R"(# What the hooks read and write

Written by `./camhook reference docs scenarios/*.json`, from runs of all stored scenarios on the simulated
phone. Steps and accesses are listed in the order in which a call first reaches them; what no run reaches is
not listed. A step is a function of the library.

- `meta`, `app`, `hal`, `out`: tags of the container of that name. Clearing a tag is a write. A tag without a
  published name is shown by its value ([tags.md](tags.md)).
- static: tags of a device's static metadata.
- event, property: keys of the event store, system properties.
- service: queries of the phone's services, named after the keys of a scenario's `platform`
  ([scenarios.md](scenarios.md)).
- effect: other effects on the phone, named as in a trace.
)";

}  // namespace

void RunOrder::add(std::size_t run, std::string_view name) {
  if (run != mRun) mSeen.clear();
  mRun = run;
  if (std::ranges::find(mSeen, name) != mSeen.end()) return;
  for (const std::string& earlier : mSeen) mBefore.emplace(earlier, name);
  mSeen.emplace_back(name);
  if (std::ranges::find(mNames, name) == mNames.end()) mNames.emplace_back(name);
}

std::vector<std::string> RunOrder::names() const {
  std::vector<std::string> rest = mNames;
  const auto isNext = [&](const std::string& name) {
    return std::ranges::none_of(rest, [&](const std::string& other) {
      return mBefore.contains({other, name}) && !mBefore.contains({name, other});
    });
  };
  std::vector<std::string> ordered;
  while (!rest.empty()) {
    auto next = std::ranges::find_if(rest, isNext);
    if (next == rest.end()) next = rest.begin();
    ordered.push_back(*next);
    rest.erase(next);
  }
  return ordered;
}

void HookReference::add(const Scenario& scenario) {
  OwnUpdaters updaters;
  Replay replay(scenario.platform, [&](int sensor) { return updaters.of(sensor); });
  replay.followSteps(&mFinder);
  for (const ScenarioCall& call : scenario.calls) add(replay.run(call));
}

void HookReference::add(const CallTrace& trace) {
  ++mRun;
  for (const auto& [access, container, step] : *trace.accesses) {
    AccessText text = std::visit([](const auto& each) { return textOf(each); }, access);
    if (text.group.empty()) text.group = container;
    if (text.group.empty()) continue;  // a container of the library's own
    // Construction is listed as createInstance, whichever hook is called first on the sensor.
    const bool isConstruction = step.name == "HeskParameterUpdater";
    const std::string hook(isConstruction ? CreateInstance::kName : trace.call);
    Path path;
    for (const std::string& name : {hook, step.name, text.kind, text.group, text.member}) {
      mNames[path].add(mRun, name);
      path.push_back(name);
    }
  }
}

std::vector<std::string> HookReference::namesIn(const Path& path) const {
  const auto found = mNames.find(path);
  return found == mNames.end() ? std::vector<std::string>() : found->second.names();
}

void HookReference::write(std::ostream& page, std::ostream& data) const {
  page << kIntroduction;
  data << "// Written by `./camhook reference`.\n";
  for (const std::string& hook : namesIn({})) {
    page << "\n## " << hook << "\n\n| step | reads | writes |\n|---|---|---|\n";
    for (const std::string& step : namesIn({hook})) {
      page << "| `" << step << "` |";
      for (const char* kind : {kReads, kWrites}) {
        page << ' ';
        const char* before = "";
        for (const std::string& group : namesIn({hook, step, kind})) {
          page << std::exchange(before, "<br>") << group;
          const char* separator = " `";
          for (const std::string& member : namesIn({hook, step, kind, group})) {
            page << std::exchange(separator, ", `") << member << '`';
            data << kind << '('
                 << joined({jsonText(hook), jsonText(step), jsonText(group), jsonText(member)},
                           ", ")
                 << ")\n";
          }
        }
        page << " |";
      }
      page << '\n';
    }
  }
}

}  // namespace camhook
