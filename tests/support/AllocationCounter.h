// Counts what the process allocates.

#pragma once

#include <cstddef>

/// Calls of operator new since the process began, on all threads.
std::size_t allocationCount();

/// Allocations made while `run` runs.
template <typename Run>
std::size_t allocationsIn(Run run) {
  const std::size_t before = allocationCount();
  run();
  return allocationCount() - before;
}
