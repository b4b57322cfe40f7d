// The report of a benchmark.

#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <limits>
#include <map>
#include <string>
#include <vector>

namespace bench {

/// Keeps the fastest run of each row.
class FastestRuns final : public benchmark::BenchmarkReporter {
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

  /// Returns null for a row that did not run.
  [[nodiscard]] const Figures* find(const std::string& row) const {
    const auto found = mRows.find(row);
    return found != mRows.end() ? &found->second : nullptr;
  }

 private:
  /// Returns 0 if the row has no such counter.
  static double counterOf(const Run& run, const char* name) {
    const auto found = run.counters.find(name);
    return found != run.counters.end() ? found->second.value : 0;
  }

  std::map<std::string, Figures> mRows;
};

/// Prints the limit of a figure. Returns true if the figure is within the limit.
inline bool judge(double figure, double limit, const char* unit) {
  const bool isWithin = figure <= limit;
  std::printf("  %s %.0f %s\n", isWithin ? "ok, limit" : "MISSED, limit", limit, unit);
  return isWithin;
}

/// Runs the rows that `registerRows` registers. Command-line options override these
/// defaults. Returns the exit status: 1 if `report` returns false because a limit is exceeded.
template <typename Register, typename Report>
int run(int argc, char** argv, Register registerRows, Report report) {
  // Interleaved repetitions make the rows comparable.
  std::string repetitions = "--benchmark_repetitions=9";
  std::string interleaved = "--benchmark_enable_random_interleaving=true";
  std::string seconds = "--benchmark_min_time=0.05";
  std::vector<char*> words{argv[0], repetitions.data(), interleaved.data(), seconds.data()};
  words.insert(words.end(), argv + 1, argv + argc);
  auto count = static_cast<int>(words.size());
  benchmark::Initialize(&count, words.data());
  if (benchmark::ReportUnrecognizedArguments(count, words.data())) return 2;
  registerRows();
  FastestRuns fastest;
  benchmark::RunSpecifiedBenchmarks(&fastest);
  return report(fastest) ? 0 : 1;
}

}  // namespace bench
