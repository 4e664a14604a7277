// SPDX-License-Identifier: Apache-2.0
#include "replay/pace.h"

#include <gtest/gtest.h>

#include <limits>
#include <ostream>

namespace ventrik {

bool operator==(const ReplayDelay& left, const ReplayDelay& right) {
  return left.milliseconds == right.milliseconds && left.isAnnounced == right.isAnnounced;
}

std::ostream& operator<<(std::ostream& out, const ReplayDelay& delay) {
  return out << delay.milliseconds << " ms" << (delay.isAnnounced ? ", announced" : "");
}

namespace {

constexpr std::uint32_t kLargest = std::numeric_limits<std::uint32_t>::max();

ReplayDelay Silent(std::uint32_t milliseconds) {
  return {milliseconds, false};
}

ReplayDelay Announced(std::uint32_t milliseconds) {
  return {milliseconds, true};
}

TEST(DelayBetween, IsTheDifferenceOverTheSpeed) {
  EXPECT_EQ(DelayBetween(1000, 3000, 1.0), Silent(2000));
  EXPECT_EQ(DelayBetween(1000, 3000, 2.0), Silent(1000));
  EXPECT_EQ(DelayBetween(1000, 3000, 0.5), Silent(4000));
  EXPECT_EQ(DelayBetween(7, 7, 1.0), Silent(0));
}

TEST(DelayBetween, IsCutToAWholeNumber) {
  EXPECT_EQ(DelayBetween(0, 999, 2.0), Silent(499));
  EXPECT_EQ(DelayBetween(0, 2, 3.0), Silent(0));
}

TEST(DelayBetween, IsAnnouncedAboveFiveSeconds) {
  EXPECT_EQ(DelayBetween(0, 5000, 1.0), Silent(5000));
  EXPECT_EQ(DelayBetween(0, 5001, 1.0), Announced(5001));
  EXPECT_EQ(DelayBetween(0, 10'001, 2.0), Silent(5000));
  EXPECT_EQ(DelayBetween(0, 10'002, 2.0), Announced(5001));
  EXPECT_EQ(DelayBetween(0, 501, 0.1), Announced(5010));
}

TEST(DelayBetween, IsASecondBackwardsWhateverTheSpeed) {
  for (const double speed : {1.0, 9.0, 0.001, 0.0, -1.0}) {
    EXPECT_EQ(DelayBetween(5, 4, speed), Silent(1000)) << speed;
  }
  EXPECT_EQ(DelayBetween(kLargest, 0, 1.0), Silent(1000));
}

TEST(DelayBetween, ComparesUnsigned) {
  EXPECT_EQ(DelayBetween(0x7FFFFFFF, 0x80000001, 1.0), Silent(2));
  EXPECT_EQ(DelayBetween(0x80000000, 0x7FFFFFFF, 1.0), Silent(1000));
  EXPECT_EQ(DelayBetween(0, kLargest, 1.0), Announced(kLargest));
}

TEST(DelayBetween, IsTheLargestNumberAtSpeedZero) {
  EXPECT_EQ(DelayBetween(0, 1, 0.0), Announced(kLargest));
  EXPECT_EQ(DelayBetween(0, kLargest, 0.001), Announced(kLargest));
}

TEST(DelayBetween, IsZeroBelowSpeedZero) {
  EXPECT_EQ(DelayBetween(0, 60'000, -1.0), Silent(0));
  EXPECT_EQ(DelayBetween(0, 60'000, -0.0), Silent(0));
}

TEST(DelayBetween, IsZeroWhereTheQuotientIsNoNumber) {
  EXPECT_EQ(DelayBetween(7, 7, 0.0), Silent(0));
  EXPECT_EQ(DelayBetween(0, 60'000, std::numeric_limits<double>::quiet_NaN()), Silent(0));
  EXPECT_EQ(DelayBetween(0, 60'000, std::numeric_limits<double>::infinity()), Silent(0));
}

}  // namespace
}  // namespace ventrik
