// Counts the allocations of the process.

#pragma once

#include <cstddef>

/// Returns the number of calls of operator new on all threads since the process started.
std::size_t allocationCount();

/// Returns the number of allocations while `run` runs.
template <typename Run>
std::size_t allocationsIn(Run run) {
  const std::size_t before = allocationCount();
  run();
  return allocationCount() - before;
}
