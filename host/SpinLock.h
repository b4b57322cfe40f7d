// A lock for what takes nanoseconds.

#pragma once

#include <sched.h>

#include <atomic>

namespace host {

/// For std::lock_guard, around a look-up or a copy of a short text: taking and leaving it costs
/// half of what a mutex does, and every request takes it several times. Who waits lets others run.
class SpinLock {
 public:
  void lock() {
    while (mTaken.exchange(true, std::memory_order_acquire)) sched_yield();
  }
  void unlock() { mTaken.store(false, std::memory_order_release); }

 private:
  std::atomic<bool> mTaken = false;
};

}  // namespace host
