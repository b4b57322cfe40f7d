#include "bench/Cells.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <optional>
#include <utility>
#include <vector>

namespace bench {
namespace {

constexpr int kRepetitions = 15;
constexpr double kRepetitionNs = 2e6;
constexpr int kColdRuns = 3;

struct Cell {
  CellName name;
  Probe probe;
  std::optional<double> nanoseconds;  // of one operation; none where a filter left the cell out
};

std::vector<Cell>& cells() {
  static std::vector<Cell> cells;
  return cells;
}

std::vector<Target>& targets() {
  static std::vector<Target> targets;
  return targets;
}

std::string fullName(const CellName& name) {
  return name.table + "/" + name.row + "/" + name.column;
}

const Cell* find(const CellName& name) {
  const auto found = std::ranges::find(cells(), fullName(name),
                                       [](const Cell& cell) { return fullName(cell.name); });
  return found != cells().end() && found->nanoseconds ? &*found : nullptr;
}

/// The cell that the others of its row are compared with.
const Cell* firstOfRow(const CellName& name) {
  const auto found = std::ranges::find_if(cells(), [&](const Cell& cell) {
    return cell.name.table == name.table && cell.name.row == name.row;
  });
  return found != cells().end() && found->nanoseconds ? &*found : nullptr;
}

/// One repetition more is done.
void showProgress() {
  static const bool isTerminal = isatty(STDERR_FILENO) != 0;
  static std::size_t done = 0;
  const std::size_t all = cells().size() * kRepetitions;
  const std::size_t before = 100 * done / all;
  const std::size_t percent = 100 * ++done / all;
  if (isTerminal && percent != before) std::fprintf(stderr, "\r%3zu %%", percent);
}

/// Takes the medians, and prints nothing by itself.
class MedianCollector final : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context& /*context*/) override { return true; }

  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.aggregate_name != "median") continue;
      for (Cell& cell : cells()) {
        if (run.run_name.function_name != fullName(cell.name)) continue;
        const bool isManual = run.run_name.time_type == "manual_time";
        const double time = isManual ? run.GetAdjustedRealTime() : run.GetAdjustedCPUTime();
        cell.nanoseconds = time / cell.probe.operations;
      }
    }
  }
};

void printRow(const std::vector<const Cell*>& row, std::size_t width) {
  std::printf("  %-*s", static_cast<int>(width), row.front()->name.row.c_str());
  for (const Cell* cell : row) {
    std::printf("  %9.1f", *cell->nanoseconds);
    if (cell != row.front()) std::printf(" %6.2f", *cell->nanoseconds / *row.front()->nanoseconds);
    std::printf(" %6.*f", cell->probe.allocations < 10 ? 1 : 0, cell->probe.allocations);
  }
  std::printf("\n");
}

void printTable(const std::string& table) {
  std::vector<std::vector<const Cell*>> rows;
  std::size_t width = 0;
  for (const Cell& cell : cells()) {
    if (cell.name.table != table || !cell.nanoseconds) continue;
    if (rows.empty() || rows.back().front()->name.row != cell.name.row) rows.emplace_back();
    rows.back().push_back(&cell);
    width = std::max(width, cell.name.row.size());
  }
  if (rows.empty()) return;
  std::printf("\n%s\n  %-*s", table.c_str(), static_cast<int>(width), "");
  for (const Cell* cell : rows.front()) {
    std::printf("  %*s", cell == rows.front().front() ? 16 : 23, cell->name.column.c_str());
  }
  std::printf("\n  %-*s", static_cast<int>(width), "");
  for (const Cell* cell : rows.front()) {
    std::printf(cell == rows.front().front() ? "  %9s %6s" : "  %9s  times %6s", "ns", "allocs");
  }
  std::printf("\n");
  for (const auto& row : rows) printRow(row, width);
}

/// What a target's cell comes to.
double measureOf(const Target& target, const Cell& cell, const Cell& first) {
  switch (target.kind) {
    case Target::Kind::atLeastTimes:
    case Target::Kind::atMostTimes: return *cell.nanoseconds / *first.nanoseconds;
    case Target::Kind::atMostNsAbove: return *cell.nanoseconds - *first.nanoseconds;
    case Target::Kind::atMostAllocations: return cell.probe.allocations;
    case Target::Kind::atMostAllocationsAbove:
      return cell.probe.allocations - first.probe.allocations;
    case Target::Kind::atMostNs: break;
  }
  return *cell.nanoseconds;
}

void printTargets() {
  std::printf("\nTargets\n");
  for (const Target& target : targets()) {
    const Cell* cell = find(target.cell);
    const Cell* first = firstOfRow(target.cell);
    if (cell == nullptr || first == nullptr) continue;
    const double measure = measureOf(target, *cell, *first);
    const bool isMet = target.kind == Target::Kind::atLeastTimes ? measure >= target.bound
                                                                 : measure <= target.bound;
    std::printf("  %s  %8.2f  %s\n", isMet ? "met   " : "MISSED", measure, target.text.c_str());
  }
}

}  // namespace

void sweepCaches() {
  constexpr std::size_t kSweepBytes = 48U << 20U;
  constexpr std::size_t kCacheLine = 64;
  static std::vector<char> memory(kSweepBytes);
  for (std::size_t at = 0; at < memory.size(); at += kCacheLine) ++memory[at];
  benchmark::ClobberMemory();
}

void addCell(CellName name, Cache cache, const std::function<void(Stopwatch&)>& body) {
  Probe probe;
  Stopwatch stopwatch(probe);
  body(stopwatch);
  auto* added = benchmark::RegisterBenchmark(fullName(name).c_str(), [=](benchmark::State& state) {
    showProgress();
    Stopwatch ofState(state, cache);
    body(ofState);
  });
  const auto runs = static_cast<benchmark::IterationCount>(kRepetitionNs / probe.nanoseconds);
  added->Iterations(cache == Cache::cold ? kColdRuns
                                         : std::max<benchmark::IterationCount>(1, runs));
  if (cache == Cache::cold) added->UseManualTime();
  cells().push_back({.name = std::move(name), .probe = probe, .nanoseconds = {}});
}

void addTarget(Target target) { targets().push_back(std::move(target)); }

int runCells(int argc, char** argv) {
  // Before the caller's own options, so that those hold.
  std::vector<std::string> texts{argv[0], "--benchmark_enable_random_interleaving=true",
                                 "--benchmark_report_aggregates_only=true",
                                 "--benchmark_repetitions=" + std::to_string(kRepetitions)};
  texts.insert(texts.end(), argv + 1, argv + argc);
  std::vector<char*> arguments;
  arguments.reserve(texts.size());
  for (std::string& text : texts) arguments.push_back(text.data());
  int count = static_cast<int>(arguments.size());
  benchmark::Initialize(&count, arguments.data());
  if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return 1;
  MedianCollector collector;
  benchmark::RunSpecifiedBenchmarks(&collector);
  std::vector<std::string> printed;
  for (const Cell& cell : cells()) {
    if (std::ranges::find(printed, cell.name.table) != printed.end()) continue;
    printTable(printed.emplace_back(cell.name.table));
  }
  printTargets();
  return 0;
}

}  // namespace bench
