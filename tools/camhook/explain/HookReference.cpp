#include "tools/camhook/explain/HookReference.h"

#include <algorithm>
#include <array>
#include <ostream>
#include <regex>
#include <utility>
#include <variant>

#include "tools/camhook/explain/Children.h"
#include "tools/camhook/input/MetadataJson.h"
#include "tools/camhook/run/Replay.h"
#include "tools/camhook/run/StepFinder.h"

namespace camhook {
namespace {

constexpr char kSeparator = '\t';
constexpr std::string_view kRead = "r";
constexpr std::string_view kWritten = "w";

/// "devices.N.faces", "sat.cameras[N].fov": the page speaks of any device and camera.
std::string withoutNumbers(const std::string& place) {
  static const std::regex number(R"(([.\[])-?\d+)");
  return std::regex_replace(place, number, "$1N");
}

/// An access as the page has it: read or written, the group, the member.
struct AccessText {
  std::string_view container;

  using Words = std::array<std::string, 3>;

  Words operator()(const host::MetadataRead& read) const {
    return {std::string(kRead), std::string(container), tagText(read.tag)};
  }
  Words operator()(const host::MetadataWrite& write) const {
    return {std::string(kWritten), std::string(container), tagText(write.tag)};
  }
  Words operator()(const host::StaticRead& read) const {
    return {std::string(kRead), "static", tagText(read.tag)};
  }
  Words operator()(const host::EventRead& read) const {
    return {std::string(kRead), "event", read.key};
  }
  Words operator()(const host::PropertyRead& read) const {
    return {std::string(kRead), "property", read.name};
  }
  Words operator()(const host::ServiceRead& read) const {
    return {std::string(kRead), "service", withoutNumbers(read.place)};
  }
  Words operator()(const host::Effect& effect) const {
    if (effect.op == "eventStore.set") {
      return {std::string(kWritten), "event", std::get<std::string>(effect.fields.front().value)};
    }
    return {std::string(kWritten), "effect", effect.op};
  }
};

/// The accesses of a call, a line each: hook, step, and the words of the access. Begins with an
/// empty line.
std::string linesOf(const CallTrace& trace) {
  std::string lines = "\n";
  for (const auto& [access, container, step] : *trace.accesses) {
    const auto [direction, group, member] = std::visit(AccessText{container}, access);
    if (group.empty()) continue;  // a container of the library's own
    // The first call on a sensor makes its updater, whichever it is.
    const bool isConstruction = step.name == "HeskParameterUpdater";
    lines += isConstruction ? CreateInstance::kName : trace.call;
    for (const std::string& word : {step.name, direction, group, member}) {
      lines += kSeparator + word;
    }
    lines += '\n';
  }
  return lines;
}

std::string linesOf(const Scenario& scenario) {
  StepFinder steps;
  Replay replay(scenario.platform);
  replay.followSteps(&steps);
  std::string lines;
  for (const ScenarioCall& call : scenario.calls) lines += linesOf(replay.run(call));
  return lines;
}

/// What stands before the separator, which is taken off with it.
std::string_view takeWord(std::string_view& line) {
  const std::size_t end = line.find(kSeparator);
  const std::string_view word = line.substr(0, end);
  line.remove_prefix(end == std::string_view::npos ? line.size() : end + 1);
  return word;
}

constexpr const char* kIntroduction = R"(# What the hooks read and write

Made from runs of all stored scenarios on the simulated phone: `./camhook hooks scenarios/*.json`. It tells
what these runs came by, steps and accesses in the order in which a call first comes to them. A step is a
function of the library.

- `meta`, `app`, `hal`, `out`: tags of the container that the hook is handed under that name. Clearing a tag is
  writing it. A tag without a published name is shown by its value ([tags.md](tags.md)).
- static: tags of a device's static characteristics.
- event, property: keys of the event store, system properties.
- service: what of the phone was asked, as the `platform` of a scenario has it ([scenarios.md](scenarios.md)).
- effect: what was done to the phone, as a trace has it.
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

void HookReference::Cell::add(std::size_t run, std::string_view group, std::string_view member) {
  groups.add(run, group);
  members[std::string(group)].add(run, member);
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
  const Json lines = inChild([&] { return Json(linesOf(scenario)); });
  std::string_view rest = lines.get_ref<const std::string&>();
  while (!rest.empty()) {
    const std::size_t end = rest.find('\n');
    if (end == 0) {
      ++mRun;
    } else {
      addLine(rest.substr(0, end));
    }
    rest.remove_prefix(end + 1);
  }
}

void HookReference::addLine(std::string_view line) {
  const std::string_view hookName = takeWord(line);
  mHookNames.add(mRun, hookName);
  Hook& hook = mHooks[std::string(hookName)];
  const std::string_view stepName = takeWord(line);
  hook.stepNames.add(mRun, stepName);
  Step& step = hook.steps[std::string(stepName)];
  Cell& cell = takeWord(line) == kRead ? step.reads : step.writes;
  const std::string_view group = takeWord(line);
  cell.add(mRun, group, line);
}

void HookReference::write(std::ostream& out) const {
  out << kIntroduction;
  for (const std::string& hookName : mHookNames.names()) {
    const Hook& hook = mHooks.at(hookName);
    out << "\n## " << hookName << "\n\n| step | reads | writes |\n|---|---|---|\n";
    for (const std::string& stepName : hook.stepNames.names()) {
      const Step& step = hook.steps.at(stepName);
      out << "| `" << stepName << "` | " << step.reads.text() << " | " << step.writes.text()
          << " |\n";
    }
  }
}

}  // namespace camhook
