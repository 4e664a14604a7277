// SPDX-License-Identifier: Apache-2.0
#include "bench/drop_bursts.h"

#include <gtest/gtest.h>

namespace ventrik::bench {
namespace {

using Lines = std::vector<std::string>;

class DropBurstsTest : public ::testing::Test {
 protected:
  TimePoint At(int milliseconds) const { return start_ + Milliseconds(milliseconds); }

  const TimePoint start_{std::chrono::hours(1)};
  DropBursts bursts_;
};

TEST_F(DropBurstsTest, AreNoneAtFirst) {
  EXPECT_EQ(bursts_.NextEnd(), std::nullopt);
  EXPECT_EQ(bursts_.TakeAll(), Lines());
  bursts_.Count(7, 0, At(0));
  EXPECT_EQ(bursts_.NextEnd(), std::nullopt) << "nothing was dropped";
}

TEST_F(DropBurstsTest, AreOverASecondAfterTheLastDrop) {
  bursts_.Count(7, 1, At(0));
  bursts_.Count(7, 2, At(900));
  EXPECT_EQ(bursts_.NextEnd(), At(1900));
  EXPECT_EQ(bursts_.TakeOver(At(1899)), Lines());
  EXPECT_EQ(bursts_.TakeOver(At(1900)), Lines{"3 messages to process 7 were dropped"});
  EXPECT_EQ(bursts_.NextEnd(), std::nullopt);
  bursts_.Count(7, 1, At(2000));
  EXPECT_EQ(bursts_.TakeOver(At(3000)), Lines{"1 message to process 7 was dropped"});
}

TEST_F(DropBurstsTest, AreOverTenSecondsAfterTheFirstDrop) {
  for (int time = 0; time < 12'000; time += 500) bursts_.Count(7, 1, At(time));
  EXPECT_EQ(bursts_.NextEnd(), At(10'000));
  EXPECT_EQ(bursts_.TakeOver(At(11'500)), Lines{"24 messages to process 7 were dropped"});
}

TEST_F(DropBurstsTest, OfEachClientAreToldByThemselves) {
  bursts_.Count(7, 1, At(0));
  bursts_.Count(8, 5, At(500));
  EXPECT_EQ(bursts_.NextEnd(), At(1000));
  EXPECT_EQ(bursts_.TakeOver(At(1000)), Lines{"1 message to process 7 was dropped"});
  EXPECT_EQ(bursts_.TakeAll(), Lines{"5 messages to process 8 were dropped"});
}

}  // namespace
}  // namespace ventrik::bench
