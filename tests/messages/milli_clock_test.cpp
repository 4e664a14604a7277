// SPDX-License-Identifier: Apache-2.0
#include "messages/milli_clock.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <thread>
#include <vector>

namespace ventrik::tests {
namespace {

TEST(MilliClock, CountsMilliseconds) {
  const std::uint32_t before = MilliClock();
  usleep(20'000);
  EXPECT_GE(MilliClock() - before, 19u);
}

TEST(MilliClock, NeverRunsBackwardsInAnyThread) {
  std::atomic<std::uint32_t> newest = MilliClock();
  std::atomic<int> backwards = 0;
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&] {
      for (int n = 0; n < 20000; ++n) {
        const std::uint32_t known = newest;
        const std::uint32_t now = MilliClock();
        if (now < known) ++backwards;
        newest = now;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(backwards, 0);
}

}  // namespace
}  // namespace ventrik::tests
