// What each step of each hook reads and writes, recorded in replays of scenarios.

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

  /// Writes docs/hooks.md to `page`, and the same content to `data` as docs/hooks.def.
  void write(std::ostream& page, std::ostream& data) const;

 private:
  /// The first elements of hook, step, READS or WRITES, group, member.
  using Path = std::vector<std::string>;

  void add(const CallTrace& trace);
  [[nodiscard]] std::vector<std::string> namesIn(const Path& path) const;

  StepFinder mFinder;
  std::size_t mRun = 0;             // each call is a run
  std::map<Path, RunOrder> mNames;  // the names that follow a path
};

}  // namespace camhook
