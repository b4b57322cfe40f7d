// What the rows of the benchmark come to.

#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <limits>
#include <map>
#include <string>
#include <vector>

namespace bench {

/// Keeps the shortest run of each row.
class Shortest final : public benchmark::BenchmarkReporter {
 public:
  struct Figures {
    double ns = std::numeric_limits<double>::infinity();
    double accesses = 0;
    double allocations = 0;
  };

  bool ReportContext(const Context& /*context*/) override { return true; }

  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.run_type != Run::RT_Iteration) continue;
      Figures& row = mRows[run.run_name.function_name];
      row.ns = std::min(row.ns, run.GetAdjustedCPUTime());
      row.allocations = counterOf(run, "allocations");
      row.accesses = counterOf(run, "accesses");
    }
  }

  /// None for a row that did not run.
  [[nodiscard]] const Figures* find(const std::string& row) const {
    const auto found = mRows.find(row);
    return found != mRows.end() ? &found->second : nullptr;
  }

 private:
  /// 0 where the row does not count that.
  static double counterOf(const Run& run, const char* name) {
    const auto found = run.counters.find(name);
    return found != run.counters.end() ? found->second.value : 0;
  }

  std::map<std::string, Figures> mRows;
};

/// Ends a line by what it may come to at most. Returns whether it comes to no more.
inline bool judge(double figure, double most, const char* unit) {
  const bool isWithin = figure <= most;
  std::printf("  %s %.0f %s\n", isWithin ? "ok, at most" : "MISSED: at most", most, unit);
  return isWithin;
}

}  // namespace bench
