#include "tools/camhook/explain/Reruns.h"

#include <algorithm>
#include <string>
#include <utility>

#include "tools/camhook/explain/ChangedScenario.h"
#include "tools/camhook/input/InputError.h"
#include "tools/camhook/input/MetadataJson.h"

namespace camhook {
namespace {

using Kind = Input::Kind;

bool leavesOut(const Change& change, std::size_t call) {
  return change.input.kind == Kind::call && change.input.number == static_cast<std::int64_t>(call);
}

/// The places of the call's arguments: each number is an input.
std::vector<std::string> argumentsOf(const Question& question) {
  std::vector<std::string> places;
  for (const auto& [key, value] : question.callDocument.members()) {
    if (key == "call" || containerOf(question.askedCall(), key) != nullptr) continue;
    if (key == "streams" || value.size() == 0) places.push_back(key);
    for (std::size_t i = 0; value.isList() && i < value.size(); ++i) {
      const std::string item = std::string(key).append("[").append(std::to_string(i)).append("]");
      if (!value[i].isObject()) places.push_back(item);
      if (!value[i].isObject()) continue;
      for (const auto& [member, number] : value[i].members()) {
        places.push_back(std::string(item).append(".").append(member));
      }
    }
  }
  return places;
}

}  // namespace

Reruns::Reruns(const Question& question)
    : mQuestion(question),
      mPhone(unchangedPhone(question)),
      mReplay(mPhone, [this](int sensor) { return updaterOf(sensor); }) {
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
  mReplay.followSteps(&mFinder);
  mTrace = mReplay.run(question.scenario.calls[question.call], Replay::Detail::accesses);
  mReplay.followSteps(nullptr);
  mAnswer = answerOf(mTrace);

  ReadInputs inputs(question.platform);
  for (std::string& place : argumentsOf(question)) {
    inputs.add(Input{.kind = Kind::argument, .key = std::move(place)});
  }
  addInputs(inputs, mTrace);
  const auto sensor = sensorOf(question.askedCall());
  if (sensor && mUpdaters.has(*sensor)) {
    mBurst = HeskParameterUpdaterInspector{*mUpdaters.of(*sensor)}.nonZslFrames();
  }
  for (std::size_t i = 0; sensor && i < question.call; ++i) {
    if (sensorOf(question.scenario.calls[i].call) != sensor) continue;
    inputs.add(
        Input{.kind = Kind::call, .key = {}, .tag = 0, .number = static_cast<std::int64_t>(i)});
  }
  mInputs = inputs.inputs();
}

HeskParameterUpdater* Reruns::updaterOf(int sensor) {
  if (mUpdaters.has(sensor)) return mUpdaters.of(sensor);
  ReadInputs inputs(mQuestion.platform);
  host::Observer* const before = mReplay.phone().setObserver(&inputs);
  HeskParameterUpdater* const updater = mUpdaters.of(sensor);
  mReplay.phone().setObserver(before);
  mReadByConstruction[sensor] = inputs.inputs();
  return updater;
}

Reruns::State Reruns::state() const {
  const host::Phone& phone = mReplay.phone();
  return {.library = mUpdaters.state(),
          .events = phone.eventStore.all(),
          .properties = phone.properties.all(),
          .tuningBytes = phone.tuningBuffer.bytes().size()};
}

void Reruns::restore(const State& state) {
  host::Phone& phone = mReplay.phone();
  mUpdaters.restore(state.library);
  phone.eventStore.replaceAll(state.events);
  phone.properties.replaceAll(state.properties);
  // Its content has no effect: a call compares only what it has copied itself.
  if (phone.tuningBuffer.bytes().size() != state.tuningBytes) {
    phone.tuningBuffer.clear();
    phone.tuningBuffer.map(state.tuningBytes);
  }
}

/// Adds what the call read. An updater's construction counts as read by every
/// call on it.
void Reruns::addInputs(ReadInputs& inputs, const CallTrace& trace) const {
  if (const auto found = mReadByConstruction.find(trace.sensor.value_or(-1));
      found != mReadByConstruction.end()) {
    for (const Input& input : found->second) inputs.add(input);
  }
  for (const StepAccess& access : *trace.accesses) inputs.add(access.access, access.container);
}

AnyValue Reruns::answerOf(const CallTrace& trace) const {
  if (mQuestion.container.empty()) return AnyValue(trace.result);
  for (const ContainerTrace& container : trace.containers) {
    if (container.name == mQuestion.container && container.after) {
      return AnyValue(container.after->entryFor(mQuestion.tag));
    }
  }
  return {};
}

std::set<Input> Reruns::readBy(std::string_view step) const {
  ReadInputs inputs(mQuestion.platform);
  for (const StepAccess& access : *mTrace.accesses) {
    if (access.step.name == step) inputs.add(access.access, access.container);
  }
  return {inputs.inputs().begin(), inputs.inputs().end()};
}

AnyValue Reruns::valueOf(const Input& input) const {
  const auto textIn = [&input](const host::TextMap& texts) {
    const auto found = texts.find(input.key);
    return found != texts.end() && !found->second.empty() ? AnyValue(Json(found->second))
                                                          : AnyValue();
  };
  switch (input.kind) {
    case Kind::metadata: {
      const MetadataArgument* container = containerOf(mQuestion.askedCall(), input.key);
      return container != nullptr && *container ? AnyValue((*container)->entryFor(input.tag))
                                                : AnyValue();
    }
    case Kind::statics: {
      const auto device = static_cast<std::int32_t>(input.number);
      return AnyValue(mPhone.deviceOrDefault(device).statics.entryFor(input.tag));
    }
    case Kind::event: return textIn(mStates.back().events);
    case Kind::property: return textIn(mStates.back().properties);
    case Kind::provider:
      return mPhone.provider ? AnyValue(Json(mPhone.provider->fpsCap)) : AnyValue();
    case Kind::argument: return AnyValue(valueAt(mQuestion.callDocument, input.key));
    case Kind::platform: return AnyValue(valueAt(mQuestion.platform, input.key));
    case Kind::call: break;
  }
  return AnyValue(jsonFromInput(input, mQuestion)["hook"]);
}

/// The next earlier call, from one on, that the changes affect; the question's
/// own if there is none.
std::size_t Reruns::firstAffected(const std::vector<Change>& changes, std::size_t from) const {
  for (std::size_t i = from; i < mQuestion.call; ++i) {
    const auto affects = [&](const Change& change) {
      return leavesOut(change, i) || mReads[i].contains(change.input);
    };
    if (std::ranges::any_of(changes, affects)) return i;
  }
  return mQuestion.call;
}

void Reruns::runEarlierCalls(const std::vector<Change>& changes) {
  std::size_t at = firstAffected(changes, 0);
  restore(mStates[at]);
  while (at < mQuestion.call) {
    const bool isLeftOut =
        std::ranges::any_of(changes, [at](const Change& change) { return leavesOut(change, at); });
    if (!isLeftOut) mReplay.run(mQuestion.scenario.calls[at], Replay::Detail::containers);
    ++at;
    if (state() != mStates[at]) continue;
    at = firstAffected(changes, at);
    restore(mStates[at]);
  }
}

std::optional<CallTrace> Reruns::runCall(const std::vector<Change>& changes,
                                         Replay::Detail detail) {
  try {
    const ScenarioCall call{.call = changedCall(mQuestion, changes)};
    auto phone = changedPhone(mQuestion, changes);
    const bool isChanged = phone.has_value();
    if (mIsPhoneChanged || isChanged)
      mReplay.phone().config = isChanged ? *std::move(phone) : mPhone;
    mIsPhoneChanged = isChanged;
    runEarlierCalls(changes);
    setTexts(mReplay.phone(), changes);
    if (detail == Replay::Detail::accesses) {
      mReplay.followSteps(&mFinder, Replay::StepsOf::writes);
    }
    CallTrace trace = mReplay.run(call, detail);
    mReplay.followSteps(nullptr);
    return trace;
  } catch (const InputError&) {
    return {};
  }
}

std::optional<AnyValue> Reruns::run(const std::vector<Change>& changes) {
  const auto trace = runCall(changes, Replay::Detail::containers);
  return trace ? std::optional(answerOf(*trace)) : std::nullopt;
}

std::string Reruns::writingStep(const std::vector<Change>& changes) {
  std::string step;
  const auto trace = runCall(changes, Replay::Detail::accesses);
  if (!trace) return step;
  for (const StepAccess& access : *trace->accesses) {
    const auto* write = std::get_if<host::MetadataWrite>(&access.access);
    if (write == nullptr || access.container.empty()) continue;
    if (access.container == mQuestion.container && write->tag == mQuestion.tag) {
      step = access.step.name;
    }
  }
  return step;
}

}  // namespace camhook
