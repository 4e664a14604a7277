// SPDX-License-Identifier: Apache-2.0
#include "shell/wait_states.h"

#include <gtest/gtest.h>

#include "state/process_state.h"

namespace ventrik {
namespace {

class WaitStates : public testing::Test {
 protected:
  WaitStates() { Set(0, 0); }
  ~WaitStates() override { Set(0, 0); }

  static void Set(std::uint32_t milliseconds, std::int32_t responseId) {
    waitMilliseconds = milliseconds;
    waitResponseId = responseId;
  }

  // Ticks until the next line is fetched, at most `limit`.
  static int Ticks(int limit = 1000) {
    int ticks = 0;
    while (ticks < limit && CountTick()) ++ticks;
    return ticks;
  }
};

TEST_F(WaitStates, NothingToWaitForFetchesAtOnce) {
  EXPECT_EQ(Ticks(), 0);
}

TEST_F(WaitStates, OneSecondPassesTwentyTicks) {
  Set(1000, 0);
  EXPECT_EQ(Ticks(), 20);
}

TEST_F(WaitStates, LastTickTakesWhatIsLeft) {
  Set(120, 0);
  EXPECT_EQ(Ticks(), 3);
  Set(49, 0);
  EXPECT_EQ(Ticks(), 1);
  Set(50, 0);
  EXPECT_EQ(Ticks(), 1);
}

TEST_F(WaitStates, LargestWaitCountsDown) {
  Set(4294966296, 0);
  EXPECT_TRUE(CountTick());
  EXPECT_EQ(waitMilliseconds, 4294966246u);
}

TEST_F(WaitStates, ResponseThatNeverComesHoldsForEver) {
  Set(0, 307);
  EXPECT_EQ(Ticks(500), 500);
  waitResponseId = 0;  // as the listener clears it
  EXPECT_EQ(Ticks(), 0);
}

TEST_F(WaitStates, TimeRunsOutBeforeTheResponseIsLookedAt) {
  Set(100, 307);
  EXPECT_TRUE(CountTick());
  EXPECT_TRUE(CountTick());
  EXPECT_EQ(waitMilliseconds, 0u);
  EXPECT_TRUE(CountTick()) << "now for the response";
  waitResponseId = 0;
  EXPECT_FALSE(CountTick());
}

TEST_F(WaitStates, ResponseThatCameMeanwhileIsNotWaitedFor) {
  Set(100, 307);
  CountTick();
  waitResponseId = 0;
  CountTick();
  EXPECT_FALSE(CountTick());
}

}  // namespace
}  // namespace ventrik
