// What each step of each hook reads and writes, as runs of scenarios show it.

#pragma once

#include <cstddef>
#include <iosfwd>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tools/camhook/input/Scenario.h"
#include "tools/camhook/run/Replay.h"
#include "tools/camhook/run/StepFinder.h"

namespace camhook {

/// Names in the order of the runs in which they occur: a name precedes another if it does so in
/// every run that has both. If runs disagree, the name that was seen first comes first.
class RunOrder {
 public:
  /// `run` is numbered from 1; runs are added one after the other.
  void add(std::size_t run, std::string_view name);

  [[nodiscard]] std::vector<std::string> names() const;

 private:
  std::size_t mRun = 0;
  std::vector<std::string> mSeen;  // in this run
  std::vector<std::string> mNames;
  std::set<std::pair<std::string, std::string>> mBefore;
};

class HookReference {
 public:
  /// Runs a scenario and adds the accesses of its hooks.
  void add(const Scenario& scenario);

  /// Writes the page docs/hooks.md.
  void write(std::ostream& out) const;

 private:
  /// Tags by container, keys by their kind.
  struct Cell {
    RunOrder groups;
    std::map<std::string, RunOrder> members;

    void add(std::size_t run, const std::string& group, const std::string& member);

    /// "meta `A`, `B`<br>event `C`".
    [[nodiscard]] std::string text() const;
  };
  struct StepCells {
    Cell reads;
    Cell writes;
  };
  struct Hook {
    RunOrder stepNames;
    std::map<std::string, StepCells> steps;
  };

  void add(const CallTrace& trace);

  StepFinder mFinder;
  std::size_t mRun = 0;  // a call is a run
  RunOrder mHookNames;
  std::map<std::string, Hook> mHooks;
};

}  // namespace camhook
