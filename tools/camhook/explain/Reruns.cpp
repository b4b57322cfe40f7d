#include "tools/camhook/explain/Reruns.h"

#include <algorithm>
#include <utility>

#include "tools/camhook/explain/ChangedScenario.h"
#include "tools/camhook/explain/ReadCollector.h"
#include "tools/camhook/input/MetadataJson.h"
#include "tools/camhook/show/JsonTrace.h"

namespace camhook {
namespace {

using Kind = Input::Kind;

bool leavesOut(const Change& change, std::size_t call) {
  return change.input.kind == Kind::call && change.input.number == static_cast<std::int64_t>(call);
}

bool leavesOut(const std::vector<Change>& changes, std::size_t call) {
  return std::ranges::any_of(changes,
                             [call](const Change& change) { return leavesOut(change, call); });
}

}  // namespace

Reruns::Reruns(const Question& question)
    : mQuestion(question),
      mReplay(changedPhone(question, {}), [this](int sensor) { return updaterOf(sensor); }),
      mKeeper(mReplay.phone()) {
  host::LogSink::openLevels({});
}

HeskParameterUpdater* Reruns::updaterOf(int sensor) {
  if (HeskParameterUpdater* const known = mKeeper.updaterOf(sensor)) return known;
  ReadCollector collector(mQuestion);
  host::Observer* const before = mReplay.phone().setObserver(&collector);
  HeskParameterUpdater* const updater = HeskParameterUpdater::createInstance(sensor);
  mReplay.phone().setObserver(before);
  if (updater == nullptr) return nullptr;
  mReadByConstruction.insert(mReadByConstruction.end(), collector.inputs.begin(),
                             collector.inputs.end());
  mKeeper.add(sensor, *updater);
  return updater;
}

std::vector<Input> Reruns::inputsOf(const CallTrace& trace) const {
  ReadCollector collector(mQuestion);
  // What the sensor's updater has learned when it was made counts as if this call had made it.
  for (const Input& input : mReadByConstruction) {
    if (trace.sensor == input.number) collector.keep(input);
  }
  for (const StepAccess& access : *trace.accesses) collector.add(access.access, access.container);
  return std::move(collector.inputs);
}

Reruns::Course Reruns::courseOf(const CallTrace& trace) const {
  Course course{inputsOf(trace), trace.result.dump()};
  for (const auto& [access, container, step] : *trace.accesses) {
    if (const auto* write = std::get_if<host::MetadataWrite>(&access)) {
      if (container.empty()) continue;
      course.signature.append(container).append(tagText(write->tag));
      if (!write->entry.isEmpty()) course.signature += jsonFromEntry(write->entry).dump();
    } else if (const auto* effect = std::get_if<host::Effect>(&access)) {
      course.signature += lineOfEffect(*effect);
    }
  }
  for (const Input& input : course.inputs) {
    course.signature += jsonFromInput(input, mQuestion).dump();
  }
  return course;
}

bool Reruns::needsFreshProcess(const Input& input) const {
  return std::ranges::find(mReadByConstruction, input) != mReadByConstruction.end() ||
         (input.kind == Kind::platform && input.key.starts_with("tuningBuffer"));
}

Reruns::Study Reruns::study() {
  for (std::size_t i = 0; i < mQuestion.call; ++i) {
    mStates.push_back(mKeeper.current());
    const CallTrace trace = mReplay.run(mQuestion.scenario.calls[i], Detail::accesses);
    std::set<Input>& reads = mReads.emplace_back();
    for (Input& input : inputsOf(trace)) {
      if (!input.isOfThisCall()) reads.insert(std::move(input));
    }
  }
  mStates.push_back(mKeeper.current());
  StepFinder steps;
  mReplay.followSteps(&steps, Replay::StepsOf::writes);
  CallTrace trace = mReplay.run(mQuestion.scenarioCall(), Detail::accesses);
  mReplay.followSteps(nullptr);
  return {std::move(trace), mStates.back().events, mStates.back().properties};
}

/// The next call, from one on, that is left out or has read what is changed; the question's own
/// where there is none before it.
std::size_t Reruns::nextTouched(const std::vector<Change>& changes, std::size_t from) const {
  for (std::size_t i = from; i < mQuestion.call; ++i) {
    const auto touches = [&](const Change& change) {
      return leavesOut(change, i) || mReads[i].contains(change.input);
    };
    if (std::ranges::any_of(changes, touches)) return i;
  }
  return mQuestion.call;
}

void Reruns::runCallsBefore(const std::vector<Change>& changes) {
  std::size_t at = nextTouched(changes, 0);
  mKeeper.restore(mStates[at]);
  while (at < mQuestion.call) {
    if (!leavesOut(changes, at)) mReplay.run(mQuestion.scenario.calls[at], Detail::containers);
    ++at;
    if (mKeeper.current() != mStates[at]) continue;
    at = nextTouched(changes, at);
    mKeeper.restore(mStates[at]);
  }
}

std::optional<CallTrace> Reruns::run(const std::vector<Change>& changes, Detail detail) {
  try {
    const ScenarioCall call = changedCall(mQuestion, changes);
    mReplay.phone().config = changedPhone(mQuestion, changes);
    runCallsBefore(changes);
    setTexts(mReplay.phone(), changes);
    return mReplay.run(call, detail);
  } catch (const InputError&) {
    return {};
  }
}

std::optional<CallTrace> Reruns::runOnce(const Question& question,
                                         const std::vector<Change>& changes) {
  try {
    const ScenarioCall call = changedCall(question, changes);
    Replay replay(changedPhone(question, changes));
    host::LogSink::openLevels({});
    for (std::size_t i = 0; i < question.call; ++i) {
      if (!leavesOut(changes, i)) replay.run(question.scenario.calls[i], Detail::containers);
    }
    setTexts(replay.phone(), changes);
    return replay.run(call, Detail::containers);
  } catch (const InputError&) {
    return {};
  }
}

}  // namespace camhook
