// Runs a scenario up to the question's call, then that call again and again with changes.
//
// The first, unchanged run records what each earlier call reads and the state before it. A changed
// run begins at the first earlier call that the changes affect, and skips calls as soon as the
// state is that of the unchanged run again.

#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <set>
#include <string_view>
#include <vector>

#include "tools/camhook/explain/Input.h"
#include "tools/camhook/explain/ReadInputs.h"
#include "tools/camhook/run/OwnUpdaters.h"
#include "tools/camhook/run/Replay.h"

namespace camhook {

class Reruns {
 public:
  /// Runs the scenario without changes. `question` must outlive this object. There must be no other
  /// phone or updaters.
  explicit Reruns(const Question& question);
  Reruns(const Reruns&) = delete;
  Reruns& operator=(const Reruns&) = delete;

  /// The unchanged call, with its accesses and their steps.
  [[nodiscard]] const CallTrace& trace() const { return mTrace; }

  /// The unchanged call's answer.
  [[nodiscard]] const AnyValue& answer() const { return mAnswer; }

  /// The call's arguments, what it and the construction of its updater read, and the earlier calls
  /// on its sensor.
  [[nodiscard]] const std::vector<Input>& inputs() const { return mInputs; }

  /// The inputs that a step of the unchanged call reads.
  [[nodiscard]] std::set<Input> readBy(std::string_view step) const;

  /// The value of an input at the start of the call.
  [[nodiscard]] AnyValue valueOf(const Input& input) const;

  /// The answer with these changes; none if a scenario cannot have them.
  std::optional<AnyValue> run(const std::vector<Change>& changes);

 private:
  /// The state before a call.
  struct State {
    LibraryState library;
    host::TextMap events;
    host::TextMap properties;
    std::size_t tuningBytes = 0;  // of the shared buffer

    friend bool operator==(const State&, const State&) = default;
  };

  HeskParameterUpdater* updaterOf(int sensor);
  [[nodiscard]] State state() const;
  void restore(const State& state);
  void addInputs(ReadInputs& inputs, const CallTrace& trace) const;
  [[nodiscard]] AnyValue answerOf(const CallTrace& trace) const;
  [[nodiscard]] std::size_t firstAffected(const std::vector<Change>& changes,
                                          std::size_t from) const;
  void runEarlierCalls(const std::vector<Change>& changes);

  const Question& mQuestion;
  host::PhoneConfig mPhone;  // unchanged
  OwnUpdaters mUpdaters;
  Replay mReplay;
  bool mIsPhoneChanged = false;

  std::map<int, std::vector<Input>> mReadByConstruction;  // by sensor
  std::vector<State> mStates;                             // before each call, unchanged
  std::vector<std::set<Input>> mReads;                    // of each earlier call
  CallTrace mTrace;
  AnyValue mAnswer;
  std::vector<Input> mInputs;
};

}  // namespace camhook
