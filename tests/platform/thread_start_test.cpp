// SPDX-License-Identifier: Apache-2.0
// Threads that are counted, cancelled and waited for.
#include "platform/thread_start.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstddef>

namespace platform {
namespace {

constexpr int kHang = 30000;  // milliseconds

int seenArgument = 0;
std::atomic<int> unwound{0};  // cancelling orders nothing that the thread sanitizer knows of

struct Guard {
  Guard() = default;
  ~Guard() { ++unwound; }
  Guard(const Guard&) = delete;
  Guard& operator=(const Guard&) = delete;
};

void* TakeArgument(void* argument) {
  seenArgument = *static_cast<int*>(argument);
  return nullptr;
}

void* WaitToBeCancelled(void*) {
  const Guard guard;
  for (;;) pause();
}

void* LookAtSignals(void* argument) {
  pthread_sigmask(SIG_BLOCK, nullptr, static_cast<sigset_t*>(argument));
  return nullptr;
}

long long MillisecondsOf(bool (*wait)()) {
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_FALSE(wait());
  const auto passed = std::chrono::steady_clock::now() - begin;
  return std::chrono::duration_cast<std::chrono::milliseconds>(passed).count();
}

TEST(ThreadStart, BodyGetsItsArgumentAndIsWaitedFor) {
  int argument = 42;
  pthread_t thread = 0;
  ASSERT_TRUE(StartThread(thread, TakeArgument, &argument));
  EXPECT_NE(thread, pthread_t{0});
  EXPECT_TRUE(WaitForThreads(kHang));
  EXPECT_EQ(seenArgument, 42);
  CancelAndForget(thread);  // one that has ended
  EXPECT_EQ(thread, pthread_t{0});
}

TEST(ThreadStart, SignalsThatEndTheProgramAreTheMainThreads) {
  sigset_t blocked = {};
  pthread_t thread = 0;
  ASSERT_TRUE(StartThread(thread, LookAtSignals, &blocked));
  EXPECT_TRUE(WaitForThreads(kHang));
  CancelAndForget(thread);
  for (const int number : {SIGINT, SIGTERM, SIGALRM}) {
    EXPECT_EQ(sigismember(&blocked, number), 1) << number;
  }
  sigset_t own = {};
  pthread_sigmask(SIG_BLOCK, nullptr, &own);
  EXPECT_EQ(sigismember(&own, SIGINT), 0);
}

TEST(ThreadStart, WaitEndsInTimeWithAThreadThatGoesOnAndOneThatIsCancelledUnwinds) {
  unwound = 0;
  pthread_t thread = 0;
  ASSERT_TRUE(StartThread(thread, WaitToBeCancelled, nullptr));
  // The second one nearly always carries over into the next second of the clock.
  EXPECT_GE(MillisecondsOf([] { return WaitForThreads(100); }), 90);
  EXPECT_GE(MillisecondsOf([] { return WaitForThreads(999); }), 900);
  EXPECT_EQ(unwound, 0);
  CancelAndForget(thread);
  EXPECT_EQ(thread, pthread_t{0});
  EXPECT_TRUE(WaitForThreads(kHang));
  EXPECT_EQ(unwound, 1);
  CancelAndForget(thread);  // there is none
}

#if defined(__GLIBC__)
TEST(ThreadStart, ThreadThatCantBeMadeIsNotWaitedFor) {
  pthread_attr_t before;
  ASSERT_EQ(pthread_getattr_default_np(&before), 0);
  pthread_attr_t endless;
  pthread_attr_init(&endless);
  constexpr std::size_t kMostOfAll = std::size_t{3} << (sizeof(std::size_t) * 8 - 2);
  ASSERT_EQ(pthread_attr_setstacksize(&endless, kMostOfAll), 0);
  ASSERT_EQ(pthread_setattr_default_np(&endless), 0);
  pthread_t thread = 1;
  EXPECT_FALSE(StartThread(thread, TakeArgument, nullptr));
  EXPECT_EQ(thread, pthread_t{0});
  PrepareCancellation();  // which does without, then
  EXPECT_TRUE(WaitForThreads(0));
  pthread_setattr_default_np(&before);
  pthread_attr_destroy(&endless);
  pthread_attr_destroy(&before);
}
#endif

}  // namespace
}  // namespace platform
