#include "tools/camhook/explain/HookReference.h"

#include <algorithm>
#include <map>
#include <ostream>
#include <regex>
#include <string_view>
#include <variant>

#include "tools/camhook/explain/OwnUpdaters.h"
#include "tools/camhook/input/Joined.h"
#include "tools/camhook/input/JsonLine.h"
#include "tools/camhook/input/MetadataJson.h"
#include "tools/camhook/run/Replay.h"

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
  const char* kind;
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

/// Adds the steps that a call reached, in that order: a new step is inserted before the one that
/// follows it in the call.
void addSteps(Json& steps, const std::vector<std::string>& reached) {
  if (steps.isNull()) steps = Json::Object();
  Json::Object& members = steps.members();
  auto next = members.end();
  std::for_each(reached.rbegin(), reached.rend(), [&](const std::string& name) {
    auto found = std::ranges::find(members, name, &Json::Member::key);
    if (found == members.end()) {
      const Json kinds = {{kReads, Json::Object()}, {kWrites, Json::Object()}};
      found = members.insert(next, {name, kinds});
    }
    next = found;
  });
}

constexpr const char* kIntroduction = R"(# What the hooks read and write

Written by `./camhook reference docs scenarios/*.json`, from runs of all stored scenarios on the simulated
phone. Steps are listed in the order in which a call reaches them; what no run reaches is not listed. A step is a
function of the library.

- `meta`, `app`, `hal`, `out`: tags of the container of that name. Clearing a tag is a write. A tag without a
  published name is shown by its value ([tags.md](tags.md)).
- static: tags of a device's static metadata.
- event, property: keys of the event store, system properties.
- service: queries of the phone's services, named after the keys of a scenario's `platform`
  ([scenarios.md](scenarios.md)).
- effect: other effects on the phone, named as in a trace.
)";

}  // namespace

void HookReference::add(const Scenario& scenario) {
  OwnUpdaters updaters;
  Replay replay(scenario.platform, [&](int sensor) { return updaters.of(sensor); });
  replay.followSteps(&mFinder);
  for (const ScenarioCall& call : scenario.calls) {
    const CallTrace trace = replay.run(call);
    std::map<std::string_view, std::vector<std::string>> reached;  // steps by hook
    // Construction is listed as createInstance, whichever hook is called first on the sensor.
    const auto hookOf = [&trace](const Step& step) {
      return step.name == "HeskParameterUpdater" ? CreateInstance::kName : trace.call;
    };
    for (const auto& [access, container, step] : *trace.accesses) {
      std::vector<std::string>& steps = reached[hookOf(step)];
      if (std::ranges::find(steps, step.name) == steps.end()) steps.push_back(step.name);
    }
    for (const auto& [hook, steps] : reached) addSteps(mHooks[hook], steps);
    for (const auto& [access, container, step] : *trace.accesses) {
      AccessText text = std::visit([](const auto& each) { return textOf(each); }, access);
      if (text.group.empty()) text.group = container;
      if (text.group.empty()) continue;  // a container of the library's own
      mHooks[hookOf(step)][step.name][text.kind][text.group][text.member] = true;
    }
  }
}

void HookReference::write(std::ostream& page, std::ostream& data) const {
  page << kIntroduction;
  data << "// Written by `./camhook reference`.\n";
  for (const auto& [hook, steps] : mHooks.members()) {
    page << "\n## " << hook << "\n\n| step | reads | writes |\n|---|---|---|\n";
    for (const auto& [step, kinds] : steps.members()) {
      page << "| `" << step << "` |";
      for (const auto& [kind, groups] : kinds.members()) {
        std::vector<std::string> cell;
        for (const auto& [group, members] : groups.members()) {
          std::vector<std::string> names;
          for (const auto& [member, isListed] : members.members()) {
            names.push_back("`" + member + "`");
            data << kind << '('
                 << joined({jsonText(hook), jsonText(step), jsonText(group), jsonText(member)},
                           ", ")
                 << ")\n";
          }
          cell.push_back(group + " " + joined(names, ", "));
        }
        page << ' ' << joined(cell, "<br>") << " |";
      }
      page << '\n';
    }
  }
}

}  // namespace camhook
