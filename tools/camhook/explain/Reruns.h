// A scenario up to one of its calls, run again and again in one process, each time with other
// changes.
//
// The library's updaters outlive a run; between runs their fields, the event store and the
// properties are put back. What a first unchanged run has read and left behind, call by call, tells
// which calls a change can touch at all: the others are passed over.

#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "tools/camhook/explain/Input.h"
#include "tools/camhook/run/Replay.h"
#include "tools/camhook/run/StepFinder.h"

namespace camhook {

/// What a run comes to.
struct Outcome {
  NSCam::IMetadata::IEntry entry;  // of the tag, after the call
  std::string signature;           // equal for equal entries
};

class Reruns {
 public:
  struct Write {
    Json value;
    Step step;
  };

  /// What the call read, and its way as far as it can be seen from outside.
  struct Course {
    std::vector<Input> inputs;  // in the order of the first read
    std::string signature;      // of the reads and writes
  };

  /// What the call did without any change.
  struct Study {
    Json before;
    Outcome after;
    std::vector<Write> writes;  // of the tag
    host::TextMap events;       // at the start of the call
    host::TextMap properties;
    Course course;
  };

  /// A phone for the question's scenario, on which nothing has run. `question` must outlive this.
  explicit Reruns(const Question& question);

  /// Runs everything unchanged. The first thing that a process runs.
  Study study();

  /// Runs with these changes, none of which `needsFreshProcess`; behind `study`. None where a
  /// scenario cannot have them.
  std::optional<Outcome> run(const std::vector<Change>& changes);

  /// The course of such a run.
  std::optional<Course> courseWith(const std::vector<Change>& changes);

  /// Whether the library keeps what it has made of this input until the process ends.
  [[nodiscard]] bool needsFreshProcess(const Input& input) const;

  /// Runs with these changes, the first thing that a process runs.
  static std::optional<Outcome> runOnce(const Question& question,
                                        const std::vector<Change>& changes);

 private:
  struct UpdaterState {
    bool hasVideoStream = false;
    std::map<std::uint32_t, std::uint32_t> nonZslFrames;
    std::int32_t multicamFeatureMode = 0;
    NSCam::MSize previewSize;
    std::int32_t captureCount = 0;
    std::vector<std::uint32_t> streamIds;
    std::int32_t diagonalFov = 0;

    friend bool operator==(const UpdaterState&, const UpdaterState&) = default;
  };

  /// What one call leaves behind for the next.
  struct State {
    std::map<std::int32_t, UpdaterState> updaters;  // by sensor; the others are fresh
    host::TextMap events;
    host::TextMap properties;
  };

  /// A changed scenario.
  struct Variant {
    ScenarioCall call;
    std::set<std::size_t> leftOut;
    std::set<Input> ofThePhone;
    std::vector<Change> texts;
  };

  static UpdaterState stateOf(HeskParameterUpdater& updater);
  static void restore(HeskParameterUpdater& updater, const UpdaterState& state);

  HeskParameterUpdater* updaterOf(int sensor);
  [[nodiscard]] Course courseOf(const CallTrace& trace) const;

  [[nodiscard]] State currentState() const;
  void restore(const State& state);
  [[nodiscard]] bool isNow(const State& state) const;

  std::optional<Variant> prepare(const std::vector<Change>& changes);
  [[nodiscard]] std::size_t nextTouched(const Variant& variant, std::size_t from) const;
  void runCallsBefore(const Variant& variant);
  CallTrace runCall(const Variant& variant, Replay::Detail detail);

  const Question& mQuestion;
  host::PhoneConfig mConfig;
  Replay mReplay;

  std::map<std::int32_t, HeskParameterUpdater*> mUpdaters;
  std::map<std::int32_t, UpdaterState> mFresh;  // as construction leaves them
  std::vector<Input> mReadByConstruction;

  std::vector<State> mStates;           // before each call of the unchanged run
  std::vector<std::set<Input>> mReads;  // of each call
};

}  // namespace camhook
