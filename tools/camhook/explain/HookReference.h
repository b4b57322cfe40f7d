// The reference page of hooks: what each step of each hook reads and writes, as runs show it.

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

namespace camhook {

/// Names that runs come by, in one order: of two the one stands first that is first in every run
/// which has both; where runs disagree, the one that was seen first.
class RunOrder {
 public:
  /// Runs are numbered from 1 and come one behind the other.
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
  /// Runs a scenario in a process of its own, since updaters live as long as theirs, and adds what
  /// its hooks do. Throws InputError where that process fails.
  void add(const Scenario& scenario);

  /// Writes the page in Markdown: hooks, steps and accesses in the order of the runs.
  void write(std::ostream& out) const;

 private:
  /// Tags by their container, keys by what they are keys of.
  struct Cell {
    RunOrder groups;
    std::map<std::string, RunOrder> members;

    void add(std::size_t run, std::string_view group, std::string_view member);

    /// "meta `A`, `B`<br>event `C`".
    [[nodiscard]] std::string text() const;
  };
  struct Step {
    Cell reads;
    Cell writes;
  };
  struct Hook {
    RunOrder stepNames;
    std::map<std::string, Step> steps;
  };

  void addLine(std::string_view line);

  std::size_t mRun = 0;  // a run is a call
  RunOrder mHookNames;
  std::map<std::string, Hook> mHooks;
};

}  // namespace camhook
