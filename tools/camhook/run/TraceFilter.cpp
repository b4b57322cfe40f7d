#include "tools/camhook/run/TraceFilter.h"

#include <algorithm>
#include <optional>
#include <variant>
#include <vector>

#include "tools/camhook/input/DumpScenario.h"
#include "tools/camhook/input/InputError.h"
#include "tools/camhook/input/JsonLine.h"
#include "tools/camhook/input/MetadataJson.h"
#include "tools/camhook/input/NearNames.h"
#include "tools/camhook/input/ScenarioReader.h"
#include "tools/camhook/input/WholeNumber.h"

namespace camhook {
namespace {

bool differs(const ContainerTrace& container, std::uint32_t tag) {
  if (!container.after) return false;  // null was handed in
  return !areSame(container.before->entryFor(tag), container.after->entryFor(tag));
}

std::optional<std::uint32_t> requestOf(const Call& call) {
  return std::visit(
      [](const auto& concrete) -> std::optional<std::uint32_t> {
        if constexpr (requires { concrete.requestNo; }) return concrete.requestNo;
        return {};
      },
      call);
}

/// The only call with a request number. Throws InputError.
std::size_t callOfRequest(const std::string& text, std::optional<std::uint32_t> request,
                          std::size_t count, const std::function<Call(std::size_t)>& callAt) {
  std::vector<std::size_t> found;
  std::string list;
  for (std::size_t i = 0; request && i < count; ++i) {
    const Call call = callAt(i);
    if (requestOf(call) != request) continue;
    found.push_back(i);
    const auto name = std::visit([](const auto& concrete) { return concrete.kName; }, call);
    list += (list.empty() ? "" : ", ") + std::to_string(i + 1) + " " + std::string(name);
  }
  if (found.size() == 1) return found.front();
  if (found.empty()) throw InputError("no call has " + jsonText(text));
  throw InputError(text + " matches several calls: " + list);
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
    throw InputError("CALL must be a number from 1, last, or requestNo:N, not " + jsonText(text));
  }
  if (!number || *number < 1 || *number > count) {
    throw InputError("there is no call " + text + ": the scenario has " + std::to_string(count));
  }
  return *number - 1;
}

void TraceFilter::addCall(const std::string& text, std::size_t count,
                          const std::function<Call(std::size_t)>& callAt) {
  mCalls.insert(callFromText(text, count, callAt));
}

void TraceFilter::addHook(const std::string& name) {
  const DumpHook* hook = findDumpHook(name);
  std::vector<std::string_view> names = callNames();
  const auto found = std::ranges::find(names, hook != nullptr ? hook->call : name);
  if (found == names.end()) {
    for (const DumpHook& known : dumpHooks()) names.push_back(known.word);
    throw InputError("unknown call " + jsonText(name) + nearNames(name, names));
  }
  mHooks.insert(*found);
}

void TraceFilter::addTag(const std::string& text) { mTags.insert(tagFromText(text)); }

bool TraceFilter::shows(std::size_t index, const CallTrace& trace) const {
  return (mCalls.empty() || mCalls.contains(index)) &&
         (mHooks.empty() || mHooks.contains(trace.call)) && (mTags.empty() || changesTag(trace));
}

bool TraceFilter::changesTag(const CallTrace& trace) const {
  return std::ranges::any_of(trace.containers, [&](const ContainerTrace& container) {
    return std::ranges::any_of(mTags, [&](std::uint32_t tag) { return differs(container, tag); });
  });
}

void TraceFilter::trim(CallTrace& trace) const {
  if (mTags.empty()) return;
  std::erase_if(trace.containers, [&](const ContainerTrace& container) {
    return std::ranges::none_of(mTags, [&](std::uint32_t tag) { return differs(container, tag); });
  });
  for (ContainerTrace& container : trace.containers) {
    keepTags(container.before);
    keepTags(container.after);
  }
  if (trace.accesses) {
    std::erase_if(*trace.accesses, [&](const StepAccess& access) {
      const auto* write = std::get_if<host::MetadataWrite>(&access.access);
      return write == nullptr || !mTags.contains(write->tag);
    });
  }
  trace.takesUpdater = false;
  trace.state.reset();
  trace.effects.clear();
  trace.logs.clear();
}

void TraceFilter::keepTags(MetadataArgument& container) const {
  NSCam::IMetadata kept;
  for (const std::uint32_t tag : mTags) {
    const NSCam::IMetadata::IEntry& entry = container->entryFor(tag);
    if (!entry.isEmpty()) kept.update(tag, entry);
  }
  container = std::move(kept);
}

}  // namespace camhook
