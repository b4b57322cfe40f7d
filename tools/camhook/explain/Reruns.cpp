#include "tools/camhook/explain/Reruns.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "tools/camhook/explain/ChangedScenario.h"
#include "tools/camhook/input/InputError.h"
#include "tools/camhook/input/MetadataJson.h"

namespace camhook {
namespace {

using Kind = Input::Kind;
using NSCam::IMetadata;

bool leaveOut(const std::vector<Change>& changes, std::size_t call) {
  const Input input{.kind = Kind::call, .number = static_cast<std::int64_t>(call)};
  return std::ranges::find(changes, input, &Change::input) != changes.end();
}

/// Adds the places of the call's arguments: each number is an input.
void addArguments(ReadInputs& inputs, const Json& value, const std::string& place) {
  if (value.size() == 0 || place == "streams") inputs.add({.kind = Kind::argument, .key = place});
  for (std::size_t i = 0; value.isList() && i < value.size(); ++i) {
    addArguments(inputs, value[i], std::string(place).append("[").append(std::to_string(i)) + "]");
  }
  if (!value.isObject()) return;
  for (const auto& [key, member] : value.members()) {
    addArguments(inputs, member, place.empty() ? key : std::string(place).append(".") + key);
  }
}

}  // namespace

Reruns::Reruns(const Question& question)
    : mQuestion(question),
      mReplay(question.scenario.platform, [this](int sensor) { return updaterOf(sensor); }),
      mInputs(question.platform) {
  host::LogSink::enableLevels({});
  for (std::size_t i = 0; i < question.call; ++i) {
    mStates.push_back(state());
    ReadInputs inputs(question.platform);
    addInputs(inputs, mReplay.run(question.scenario.calls[i], Replay::Detail::accesses));
    std::set<Input>& reads = mReads.emplace_back();
    std::ranges::copy_if(inputs.inputs(), std::inserter(reads, reads.end()),
                         [](const Input& input) { return !input.isOfThisCall(); });
  }
  mStates.push_back(state());
  const Call call = mReplay.withMetaOf(question.scenario.calls[question.call]);
  // No step writes a return value.
  if (!mQuestion.container.empty()) mReplay.followSteps(&mFinder);
  mTrace = mReplay.run({.call = call, .arguments = {}}, Replay::Detail::accesses);
  mReplay.followSteps(nullptr);
  mAnswer = answerOf(mTrace);
  findInputs();
}

void Reruns::findInputs() {
  const std::vector<ScenarioCall>& calls = mQuestion.scenario.calls;
  if (mQuestion.arguments.size() > 0) addArguments(mInputs, mQuestion.arguments, "");
  addInputs(mInputs, mTrace);
  // With metaOf, the inputs of the earlier calls that wrote the container affect this call, too.
  for (std::size_t of = calls[mQuestion.call].metaOf; of != 0; of = calls[of - 1].metaOf) {
    for (const Input& input : mReads[of - 1]) mInputs.add(input);
  }
  const auto sensor = sensorOf(mQuestion.askedCall());
  if (sensor && mUpdaters.has(*sensor)) {
    mBurst = HeskParameterUpdaterInspector{*mUpdaters.of(*sensor)}.nonZslFrames();
  }
  for (std::size_t i = 0; sensor && i < mQuestion.call; ++i) {
    if (sensorOf(calls[i].call) != sensor || calls[i].isMetaUsed) continue;
    mInputs.add({.kind = Kind::call, .number = static_cast<std::int64_t>(i)});
  }
}

HeskParameterUpdater* Reruns::updaterOf(int sensor) {
  if (mUpdaters.has(sensor)) return mUpdaters.of(sensor);
  ReadInputs& inputs = mReadByConstruction.try_emplace(sensor, mQuestion.platform).first->second;
  host::Observer* const before = mReplay.phone().setObserver(&inputs);
  HeskParameterUpdater* const updater = mUpdaters.of(sensor);
  mReplay.phone().setObserver(before);
  return updater;
}

Reruns::State Reruns::state() const {
  const host::Phone& phone = mReplay.phone();
  return {.library = mUpdaters.state(),
          .events = phone.eventStore.all(),
          .properties = phone.properties.all(),
          .tuningBytes = phone.tuningBuffer.bytes().size(),
          .meta = mReplay.keptMeta()};
}

void Reruns::restore(const State& state) {
  host::Phone& phone = mReplay.phone();
  mUpdaters.restore(state.library);
  phone.eventStore.replaceAll(state.events);
  phone.properties.replaceAll(state.properties);
  // Only the size is restored: a call overwrites the content before it is compared.
  if (phone.tuningBuffer.bytes().size() != state.tuningBytes) {
    phone.tuningBuffer.clear();
    phone.tuningBuffer.map(state.tuningBytes);
  }
  mReplay.keptMeta() = state.meta;
}

/// Adds what the call read. Every call on an updater is assumed to read what its construction read.
void Reruns::addInputs(ReadInputs& inputs, const CallTrace& trace) const {
  if (const auto found = mReadByConstruction.find(trace.sensor.value_or(-1));
      found != mReadByConstruction.end()) {
    for (const Input& input : found->second.inputs()) inputs.add(input);
  }
  for (const StepAccess& access : *trace.accesses) inputs.add(access.access, access.container);
}

/// An entry of the call's containers; it has no items if the tag is absent.
const IMetadata::IEntry& Reruns::entryOf(const CallTrace& trace,
                                         MetadataArgument ContainerTrace::*when,
                                         const Input& input) {
  static const IMetadata kEmpty;
  for (const ContainerTrace& container : trace.containers) {
    if (container.name != input.key || !(container.*when)) continue;
    return (container.*when)->entryFor(input.tag);
  }
  return kEmpty.entryFor(input.tag);
}

Json Reruns::before() const {
  return jsonFromEntry(entryOf(mTrace, &ContainerTrace::before, mQuestion.tagAsInput()));
}

Json Reruns::answerOf(const CallTrace& trace) const {
  if (mQuestion.container.empty()) return trace.result;
  return jsonFromEntry(entryOf(trace, &ContainerTrace::after, mQuestion.tagAsInput()));
}

std::vector<Reruns::Write> Reruns::writesOf(const CallTrace& trace) const {
  std::vector<Write> writes;
  if (mQuestion.container.empty()) return writes;
  for (const auto& [entry, step] : camhook::writesOf(trace, mQuestion.container, mQuestion.tag)) {
    writes.push_back({jsonFromEntry(entry), step});
  }
  return writes;
}

std::set<Input> Reruns::readBy(std::string_view step) const {
  ReadInputs inputs(mQuestion.platform);
  for (const StepAccess& access : *mTrace.accesses) {
    if (access.step.name == step) inputs.add(access.access, access.container);
  }
  return {inputs.inputs().begin(), inputs.inputs().end()};
}

Json Reruns::valueOf(const Input& input) const {
  const host::PhoneConfig& phone = mQuestion.scenario.platform;
  const auto textIn = [&input](const host::TextMap& texts) {
    const auto found = texts.find(input.key);
    return found != texts.end() && !found->second.empty() ? Json(found->second) : Json();
  };
  switch (input.kind) {
    case Kind::metadata: return jsonFromEntry(entryOf(mTrace, &ContainerTrace::before, input));
    case Kind::statics: {
      const auto device = static_cast<std::int32_t>(input.number);
      return jsonFromEntry(phone.deviceOrDefault(device).statics.entryFor(input.tag));
    }
    case Kind::event: return textIn(mStates.back().events);
    case Kind::property: return textIn(mStates.back().properties);
    case Kind::provider: return phone.provider ? Json(phone.provider->fpsCap) : Json();
    case Kind::argument: return valueAt(mQuestion.arguments, input.key);
    case Kind::platform: return valueAt(mQuestion.platform, input.key);
    case Kind::call: break;
  }
  return nameOf(mQuestion.scenario.calls[static_cast<std::size_t>(input.number)].call);
}

/// The first call at or after `from` that the changes affect; `mQuestion.call` if there is none.
std::size_t Reruns::firstAffected(const std::vector<Change>& changes, std::size_t from) const {
  const auto isRead = [&](const Change& change) { return mReads[from].contains(change.input); };
  while (from < mQuestion.call && !leaveOut(changes, from) &&
         std::ranges::none_of(changes, isRead)) {
    ++from;
  }
  return from;
}

void Reruns::runEarlierCalls(const std::vector<Change>& changes) {
  std::size_t at = firstAffected(changes, 0);
  restore(mStates[at]);
  while (at < mQuestion.call) {
    if (!leaveOut(changes, at)) {
      mReplay.run(mQuestion.scenario.calls[at], Replay::Detail::containers);
    }
    ++at;
    if (state() != mStates[at]) continue;
    at = firstAffected(changes, at);
    restore(mStates[at]);
  }
}

std::optional<CallTrace> Reruns::runCall(const std::vector<Change>& changes,
                                         Replay::Detail detail) {
  try {
    auto phone = changedPhone(mQuestion, changes);
    const bool isChanged = phone.has_value();
    if (mIsPhoneChanged || isChanged) {
      mReplay.phone().config = isChanged ? *std::move(phone) : mQuestion.scenario.platform;
    }
    mIsPhoneChanged = isChanged;
    runEarlierCalls(changes);
    const Call call = mReplay.withMetaOf(mQuestion.scenario.calls[mQuestion.call]);
    const ScenarioCall changed{.call = changedCall(mQuestion, call, changes)};
    setTexts(mReplay.phone(), changes);
    if (detail == Replay::Detail::accesses && !mQuestion.container.empty()) {
      mReplay.followSteps(&mFinder, Replay::StepsOf::writes);
    }
    CallTrace trace = mReplay.run(changed, detail);
    mReplay.followSteps(nullptr);
    return trace;
  } catch (const InputError&) {
    return {};
  }
}

std::optional<Json> Reruns::run(const std::vector<Change>& changes) {
  const auto trace = runCall(changes, Replay::Detail::containers);
  if (!trace) return {};
  // The JSON of a long entry takes longer than the call.
  const auto after = [&](const CallTrace& each) -> const IMetadata::IEntry& {
    return entryOf(each, &ContainerTrace::after, mQuestion.tagAsInput());
  };
  if (!mQuestion.container.empty() && areSame(after(*trace), after(mTrace))) return mAnswer;
  return answerOf(*trace);
}

std::string Reruns::writingStep(const std::vector<Change>& changes) {
  const auto trace = runCall(changes, Replay::Detail::accesses);
  const std::vector<Write> writes = trace ? writesOf(*trace) : std::vector<Write>();
  return writes.empty() ? "" : writes.back().step.name;
}

}  // namespace camhook
