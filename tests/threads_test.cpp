// The making of updaters on several threads at once.

#include <gtest/gtest.h>

#include <barrier>
#include <set>
#include <thread>
#include <vector>

#include "common/HeskParameterUpdater.h"
#include "host/Phone.h"

namespace {

constexpr int kThreads = 16;

TEST(Threads, CreateInstanceConstructsEveryUpdaterOnce) {
  host::Phone phone;
  HeskParameterUpdater* updaters[kThreads][11];
  std::barrier start(kThreads);
  std::vector<std::thread> threads;
  threads.reserve(kThreads);
  for (int thread = 0; thread < kThreads; ++thread) {
    threads.emplace_back([&, thread] {
      start.arrive_and_wait();
      // Half of the threads walk the sensors from the other end.
      for (int step = 0; step <= 10; ++step) {
        const int sensor = thread % 2 == 0 ? step : 10 - step;
        updaters[thread][sensor] = HeskParameterUpdater::createInstance(sensor);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();

  std::set<HeskParameterUpdater*> distinct;
  for (int sensor = 0; sensor <= 10; ++sensor) {
    distinct.insert(updaters[0][sensor]);
    for (const auto& ofThread : updaters) EXPECT_EQ(ofThread[sensor], updaters[0][sensor]);
  }
  EXPECT_EQ(distinct.size(), 11U);
  std::size_t constructed = 0;
  for (const auto& record : phone.log.take()) {
    if (record.function == "HeskParameterUpdater") ++constructed;
  }
  EXPECT_EQ(constructed, 11U);
}

}  // namespace
