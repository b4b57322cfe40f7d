// The reference page of hooks: what each step of each hook reads and writes, as runs show it.

#pragma once

#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

#include "tools/camhook/input/Scenario.h"

namespace camhook {

class HookReference {
 public:
  /// Runs a scenario in a process of its own, since updaters live as long as theirs, and adds what
  /// its hooks do. Throws InputError where that process fails.
  void add(const Scenario& scenario);

  /// Writes the page in Markdown: hooks, steps and accesses in the order of the first one.
  void write(std::ostream& out) const;

 private:
  /// "meta", and the tags; "event", and the keys.
  struct Group {
    std::string name;
    std::vector<std::string> members;
  };
  struct Step {
    std::string name;
    std::vector<Group> reads;
    std::vector<Group> writes;
  };
  struct Hook {
    std::string name;
    std::vector<Step> steps;
  };

  void addLine(std::string_view line);

  std::vector<Hook> mHooks;
};

}  // namespace camhook
