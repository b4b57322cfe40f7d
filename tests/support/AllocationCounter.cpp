#include "tests/support/AllocationCounter.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::size_t> sAllocations = 0;

}  // namespace

std::size_t allocationCount() { return sAllocations; }

void* operator new(std::size_t size) {
  sAllocations.fetch_add(1, std::memory_order_relaxed);
  if (void* block = std::malloc(size)) return block;
  throw std::bad_alloc();
}

void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  sAllocations.fetch_add(1, std::memory_order_relaxed);
  return std::malloc(size);
}

void operator delete(void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t /*size*/) noexcept { std::free(block); }
