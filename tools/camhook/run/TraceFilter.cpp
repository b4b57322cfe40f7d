#include "tools/camhook/run/TraceFilter.h"

#include <algorithm>
#include <optional>
#include <variant>
#include <vector>

#include "tools/camhook/input/DumpScenario.h"
#include "tools/camhook/input/InputError.h"
#include "tools/camhook/input/Joined.h"
#include "tools/camhook/input/JsonLine.h"
#include "tools/camhook/input/MetadataJson.h"
#include "tools/camhook/input/NearNames.h"
#include "tools/camhook/input/ScenarioReader.h"
#include "tools/camhook/input/WholeNumber.h"

namespace camhook {
namespace {

/// The only call with a request number. Throws InputError.
std::size_t callOfRequest(const std::string& text, std::optional<std::uint32_t> request,
                          std::size_t count, const std::function<Call(std::size_t)>& callAt) {
  std::size_t index = 0;
  std::vector<std::string> found;
  for (std::size_t i = 0; request && i < count; ++i) {
    std::visit(
        [&](const auto& call) {
          if constexpr (requires { call.requestNo; }) {
            if (call.requestNo != *request) return;
            index = i;
            found.push_back(std::to_string(i + 1) + " " + std::string(call.kName));
          }
        },
        callAt(i));
  }
  if (found.empty()) throw InputError("no call has " + jsonText(text));
  if (found.size() > 1) {
    throw InputError(text + " matches several calls: " + joined(found, ", "));
  }
  return index;
}

bool changes(const ContainerTrace& container, const std::set<std::uint32_t>& tags) {
  return std::ranges::any_of(changedTags(container),
                             [&](std::uint32_t tag) { return tags.contains(tag); });
}

void keepTags(MetadataArgument& container, const std::set<std::uint32_t>& tags) {
  NSCam::IMetadata kept;
  for (const std::uint32_t tag : tags) {
    const NSCam::IMetadata::IEntry& entry = container->entryFor(tag);
    if (!entry.isEmpty()) kept.update(tag, entry);
  }
  container = std::move(kept);
}

}  // namespace

std::size_t callFromText(const std::string& text, std::size_t count,
                         const std::function<Call(std::size_t)>& callAt) {
  constexpr std::string_view kRequest = "requestNo:";
  if (text.starts_with(kRequest)) {
    const auto request = wholeNumber<std::uint32_t>(std::string_view(text).substr(kRequest.size()));
    return callOfRequest(text, request, count, callAt);
  }
  if (text == "last" && count > 0) return count - 1;
  const auto number = wholeNumber<std::size_t>(text);
  if (text != "last" && !number) {
    throw InputError("expected a call number from 1, last, or requestNo:N, found " +
                     jsonText(text));
  }
  if (!number || *number < 1 || *number > count) {
    throw InputError("no call " + text + ": the scenario has " + std::to_string(count) +
                     (count == 1 ? " call" : " calls"));
  }
  return *number - 1;
}

std::string_view hookFromText(const std::string& text) {
  const DumpHook* const hook = findDumpHook(text);
  std::vector<std::string_view> names = callNames();
  const auto found = std::ranges::find(names, hook != nullptr ? hook->call : text);
  if (found != names.end()) return *found;
  for (const DumpHook& known : dumpHooks()) names.push_back(known.word);
  throw InputError("unknown call " + jsonText(text) + nearNames(text, names));
}

bool TraceFilter::apply(CallTrace& trace) const {
  if (!calls.empty() && !calls.contains(trace.number - 1)) return false;
  if (!hooks.empty() && !hooks.contains(trace.call)) return false;
  if (tags.empty()) return true;
  std::erase_if(trace.containers, [&](const auto& container) { return !changes(container, tags); });
  for (ContainerTrace& container : trace.containers) {
    keepTags(container.before, tags);
    keepTags(container.after, tags);
  }
  if (trace.accesses) {
    std::erase_if(*trace.accesses, [&](const StepAccess& access) {
      const auto* write = std::get_if<host::MetadataWrite>(&access.access);
      return write == nullptr || !tags.contains(write->tag);
    });
  }
  trace.takesUpdater = false;
  trace.state.reset();
  trace.effects.clear();
  trace.logs.clear();
  return !trace.containers.empty();
}

}  // namespace camhook
