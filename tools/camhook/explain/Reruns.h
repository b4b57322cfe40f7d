// A scenario up to one of its calls, run again and again in one process, each time with other
// changes.
//
// A first unchanged run tells what each call reads and leaves behind, and so which calls a change
// can touch at all: the others are passed over, and what they leave behind is put in place.

#pragma once

#include <cstddef>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "tools/camhook/explain/Input.h"
#include "tools/camhook/explain/PhoneState.h"
#include "tools/camhook/run/Replay.h"

namespace camhook {

class Reruns {
 public:
  using Detail = Replay::Detail;

  /// What the call did without any change.
  struct Study {
    CallTrace trace;       // with the accesses and their steps
    host::TextMap events;  // at the start of the call
    host::TextMap properties;
  };

  /// What the call read, and its way as far as it can be seen from outside.
  struct Course {
    std::vector<Input> inputs;  // in the order of the first read
    std::string signature;      // of the reads, writes and effects
  };

  /// A phone for the question's scenario, on which nothing has run. `question` must outlive this.
  explicit Reruns(const Question& question);

  /// Runs everything unchanged. The first thing that a process runs.
  Study study();

  /// The call with these changes, none of which `needsFreshProcess`; behind `study`. None where a
  /// scenario cannot have them.
  std::optional<CallTrace> run(const std::vector<Change>& changes,
                               Detail detail = Detail::containers);

  /// Of a call that was run with its accesses.
  [[nodiscard]] Course courseOf(const CallTrace& trace) const;

  /// Whether the library keeps what it has made of this input until the process ends.
  [[nodiscard]] bool needsFreshProcess(const Input& input) const;

  /// The same as `run`, with any changes, the first thing that a process runs.
  static std::optional<CallTrace> runOnce(const Question& question,
                                          const std::vector<Change>& changes);

 private:
  HeskParameterUpdater* updaterOf(int sensor);
  [[nodiscard]] std::vector<Input> inputsOf(const CallTrace& trace) const;
  [[nodiscard]] std::size_t nextTouched(const std::vector<Change>& changes, std::size_t from) const;
  void runCallsBefore(const std::vector<Change>& changes);

  const Question& mQuestion;
  Replay mReplay;
  StateKeeper mKeeper;
  std::vector<Input> mReadByConstruction;

  std::vector<PhoneState> mStates;      // before each call of the unchanged run
  std::vector<std::set<Input>> mReads;  // of each call, what is not of it alone
};

}  // namespace camhook
