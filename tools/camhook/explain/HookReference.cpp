#include "tools/camhook/explain/HookReference.h"

#include <algorithm>
#include <ostream>
#include <regex>
#include <utility>
#include <variant>

#include "tools/camhook/input/JsonLine.h"
#include "tools/camhook/input/MetadataJson.h"
#include "tools/camhook/run/OwnUpdaters.h"

namespace camhook {
namespace {

/// "devices.N.faces", "sat.cameras[N].fov": the page speaks of any device and
/// camera.
std::string withoutNumbers(const std::string& place) {
  static const std::regex number(R"(([.\[])-?\d+)");
  return std::regex_replace(place, number, "$1N");
}

/// An access as the page lists it: "meta" and a tag, or "event" and a key.
struct AccessText {
  bool isWrite = false;
  std::string group;
  std::string member;
};

AccessText textOf(const host::MetadataRead& read) { return {false, {}, tagText(read.tag)}; }
AccessText textOf(const host::MetadataWrite& write) { return {true, {}, tagText(write.tag)}; }
AccessText textOf(const host::StaticRead& read) { return {false, "static", tagText(read.tag)}; }
AccessText textOf(const host::EventRead& read) { return {false, "event", read.key}; }
AccessText textOf(const host::PropertyRead& read) { return {false, "property", read.name}; }
AccessText textOf(const host::ServiceRead& read) {
  return {false, "service", withoutNumbers(read.place)};
}
AccessText textOf(const host::Effect& effect) {
  if (effect.op == "eventStore.set") {
    return {true, "event", std::get<std::string>(effect.fields.front().value)};
  }
  return {true, "effect", effect.op};
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

void HookReference::Cell::add(std::size_t run, const std::string& group,
                              const std::string& member) {
  groups.add(run, group);
  members[group].add(run, member);
}

std::string HookReference::Cell::text() const {
  std::string text;
  for (const std::string& group : groups.names()) {
    if (!text.empty()) text += "<br>";
    text += group;
    const char* separator = " `";
    for (const std::string& member : members.at(group).names()) {
      text += std::exchange(separator, ", `") + member + '`';
    }
  }
  return text;
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
    // The first call on a sensor constructs its updater, whichever call it is.
    const bool isConstruction = step.name == "HeskParameterUpdater";
    const std::string hookName(isConstruction ? CreateInstance::kName : trace.call);
    mHookNames.add(mRun, hookName);
    Hook& hook = mHooks[hookName];
    hook.stepNames.add(mRun, step.name);
    StepCells& cells = hook.steps[step.name];
    (text.isWrite ? cells.writes : cells.reads).add(mRun, text.group, text.member);
  }
}

void HookReference::write(std::ostream& out) const {
  out << kIntroduction;
  for (const std::string& hookName : mHookNames.names()) {
    const Hook& hook = mHooks.at(hookName);
    out << "\n## " << hookName << "\n\n| step | reads | writes |\n|---|---|---|\n";
    for (const std::string& stepName : hook.stepNames.names()) {
      const auto& [reads, writes] = hook.steps.at(stepName);
      out << "| `" << stepName << "` | " << reads.text() << " | " << writes.text() << " |\n";
    }
  }
}

void HookReference::writeData(std::ostream& out) const {
  out << "// Written by `./camhook reference`.\n";
  for (const std::string& hookName : mHookNames.names()) {
    const Hook& hook = mHooks.at(hookName);
    for (const std::string& stepName : hook.stepNames.names()) {
      const auto& [reads, writes] = hook.steps.at(stepName);
      for (const Cell* cell : {&reads, &writes}) {
        for (const std::string& group : cell->groups.names()) {
          for (const std::string& member : cell->members.at(group).names()) {
            out << (cell == &reads ? "READS(" : "WRITES(") << jsonText(hookName) << ", "
                << jsonText(stepName) << ", " << jsonText(group) << ", " << jsonText(member)
                << ")\n";
          }
        }
      }
    }
  }
}

}  // namespace camhook
