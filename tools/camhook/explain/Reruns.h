// Runs a scenario up to the question's call, then repeats that call with changes.
//
// The first, unchanged run records what each earlier call reads and the state before it. A changed
// run begins at the first earlier call that the changes affect, and skips calls as soon as the
// state is that of the unchanged run again.

#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "tools/camhook/explain/OwnUpdaters.h"
#include "tools/camhook/explain/Question.h"
#include "tools/camhook/explain/ReadInputs.h"
#include "tools/camhook/run/Replay.h"

namespace camhook {

class Reruns {
 public:
  /// A write of the question's tag; null clears it.
  struct Write {
    Json value;
    Step step;
  };

  /// Runs the scenario without changes. `question` must outlive this object. There must be no other
  /// phone or updaters.
  explicit Reruns(const Question& question);
  Reruns(const Reruns&) = delete;
  Reruns& operator=(const Reruns&) = delete;

  // The unchanged call.

  /// The value of the tag before the call.
  [[nodiscard]] Json before() const;

  /// The value of the tag after the call, or the return value.
  [[nodiscard]] const Json& answer() const { return mAnswer; }

  [[nodiscard]] std::vector<Write> writes() const { return writesOf(mTrace); }

  /// The call's arguments, what it and the construction of its updater read, and the earlier calls
  /// on its sensor.
  [[nodiscard]] const std::vector<Input>& inputs() const { return mInputs.inputs(); }

  /// The inputs that a step reads.
  [[nodiscard]] std::set<Input> readBy(std::string_view step) const;

  /// The value of an input at the start of the call.
  [[nodiscard]] Json valueOf(const Input& input) const;

  /// The latest burst of the updater after the call: frame index by request.
  [[nodiscard]] const std::map<std::uint32_t, std::uint32_t>& burst() const { return mBurst; }

  // Calls with changes.

  /// The step that writes the tag last; empty if none does.
  std::string writingStep(const std::vector<Change>& changes);

  /// The answer; nullopt if a scenario cannot have these changes.
  std::optional<Json> run(const std::vector<Change>& changes);

 private:
  /// The state before a call.
  struct State {
    LibraryState library;
    host::TextMap events;
    host::TextMap properties;
    std::size_t tuningBytes = 0;  // of the shared buffer
    Replay::KeptMeta meta;

    friend bool operator==(const State&, const State&) = default;
  };

  HeskParameterUpdater* updaterOf(int sensor);
  [[nodiscard]] State state() const;
  void restore(const State& state);
  void addInputs(ReadInputs& inputs, const CallTrace& trace) const;
  void findInputs();
  static const NSCam::IMetadata::IEntry& entryOf(const CallTrace& trace,
                                                 MetadataArgument ContainerTrace::*when,
                                                 const Input& input);
  [[nodiscard]] Json answerOf(const CallTrace& trace) const;
  [[nodiscard]] std::vector<Write> writesOf(const CallTrace& trace) const;
  [[nodiscard]] std::size_t firstAffected(const std::vector<Change>& changes,
                                          std::size_t from) const;
  std::optional<CallTrace> runCall(const std::vector<Change>& changes, Replay::Detail detail);
  void runEarlierCalls(const std::vector<Change>& changes);

  const Question& mQuestion;
  OwnUpdaters mUpdaters;
  Replay mReplay;
  bool mIsPhoneChanged = false;

  std::map<int, ReadInputs> mReadByConstruction;  // by sensor
  std::vector<State> mStates;                     // before each call, unchanged
  std::vector<std::set<Input>> mReads;            // of each earlier call
  StepFinder mFinder;
  CallTrace mTrace;
  std::map<std::uint32_t, std::uint32_t> mBurst;
  Json mAnswer;
  ReadInputs mInputs;
};

}  // namespace camhook
