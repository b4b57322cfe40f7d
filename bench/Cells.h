// The benchmark's table: every cell is one measurement, all cells run in one process in random
// order, and what a cell shows is the median of its repetitions.
//
//   addCell({"a table", "a row", "a column"}, Cache::warm, [](Stopwatch& time) {
//     IMetadata metadata = ...;                           // not measured
//     time(1, [&] { benchmark::DoNotOptimize(metadata.entryFor(1)); });
//   });
//
// The first column of a row is what the others of the row are compared with.

#pragma once

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstddef>
#include <functional>
#include <string>

#include "tests/support/AllocationCounter.h"

namespace bench {

/// Whether what is measured finds its data in the processor's caches.
enum class Cache { warm, cold };

struct CellName {
  std::string table;
  std::string row;
  std::string column;
};

/// What one run of a cell costs, told before the repetitions: how long they must be is chosen by
/// it.
struct Probe {
  double nanoseconds = 0;
  double operations = 1;
  double allocations = 0;
};

/// Puts memory of the size of the largest caches between a run and the one before it.
void sweepCaches();

/// Runs what a cell measures as often as it needs.
class Stopwatch {
 public:
  explicit Stopwatch(Probe& probe) : mProbe(&probe) {}
  Stopwatch(benchmark::State& state, Cache cache) : mState(&state), mCache(cache) {}

  /// Measures `run`, which does `operations` operations; `prepare` runs before it, not measured,
  /// where the caches are cold.
  template <typename Run, typename Prepare>
  void operator()(std::size_t operations, Run run, Prepare prepare) {
    using Clock = std::chrono::steady_clock;
    if (mProbe != nullptr) {
      run();
      mProbe->operations = static_cast<double>(operations);
      mProbe->allocations = static_cast<double>(allocationsIn(run)) / mProbe->operations;
      const auto start = Clock::now();
      run();
      mProbe->nanoseconds = std::chrono::duration<double, std::nano>(Clock::now() - start).count();
    } else if (mCache == Cache::warm) {
      for ([[maybe_unused]] auto _ : *mState) run();
    } else {
      for ([[maybe_unused]] auto _ : *mState) {
        sweepCaches();
        prepare();
        const auto start = Clock::now();
        run();
        mState->SetIterationTime(std::chrono::duration<double>(Clock::now() - start).count());
      }
    }
  }

  template <typename Run>
  void operator()(std::size_t operations, Run run) {
    (*this)(operations, run, [] {});
  }

 private:
  Probe* mProbe = nullptr;
  benchmark::State* mState = nullptr;
  Cache mCache = Cache::warm;
};

/// Adds a cell. `body` sets up what it needs, then hands the Stopwatch what is to be measured,
/// once.
void addCell(CellName name, Cache cache, const std::function<void(Stopwatch&)>& body);

/// A line below the tables: whether a cell is what it should be.
struct Target {
  enum class Kind {
    atLeastTimes,
    atMostTimes,
    atMostNs,
    atMostNsAbove,
    atMostAllocations,
    atMostAllocationsAbove
  };

  std::string text;
  CellName cell;
  Kind kind;  // by itself, or beside the first cell of its row
  double bound;
};
void addTarget(Target target);

/// Runs all cells and prints the tables and the targets. Google Benchmark's options hold.
int runCells(int argc, char** argv);

}  // namespace bench
