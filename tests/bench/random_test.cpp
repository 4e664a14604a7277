// SPDX-License-Identifier: Apache-2.0
#include "bench/random.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <vector>

namespace ventrik::bench {
namespace {

std::vector<std::int64_t> Draws(Random random, std::int64_t least, std::int64_t most) {
  std::vector<std::int64_t> draws(8);
  for (std::int64_t& draw : draws) draw = random.Between(least, most);
  return draws;
}

// What a seed gives must never change: notes of test runs name it.
TEST(Random, ASeedGivesTheseDraws) {
  EXPECT_EQ(Draws(Random(1), 0, 999),
            (std::vector<std::int64_t>{747, 728, 838, 182, 46, 426, 406, 538}));
  EXPECT_EQ(Draws(Random(4294967295u, "rules[0]"), -5, 5),
            (std::vector<std::int64_t>{-5, 4, 5, 5, 5, 1, -5, 2}));
}

TEST(Random, SeedsAndSeriesDiffer) {
  const auto draws = Draws(Random(1, "a"), 0, 1000000);
  EXPECT_EQ(Draws(Random(1, "a"), 0, 1000000), draws);
  EXPECT_NE(Draws(Random(2, "a"), 0, 1000000), draws);
  EXPECT_NE(Draws(Random(1, "b"), 0, 1000000), draws);
  EXPECT_NE(Draws(Random(1), 0, 1000000), draws);
}

TEST(Random, DrawsEveryNumberOfTheRangeAboutAsOften) {
  Random random(7);
  std::map<std::int64_t, int> counts;
  for (int i = 0; i < 30000; ++i) ++counts[random.Between(-1, 1)];
  ASSERT_EQ(counts.size(), 3u);
  for (std::int64_t number = -1; number <= 1; ++number) {
    EXPECT_GT(counts[number], 9700) << number;
    EXPECT_LT(counts[number], 10300) << number;
  }
}

TEST(Random, TakesTheSmallestAndTheLargestRange) {
  Random random(7);
  EXPECT_EQ(random.Between(5, 5), 5);
  bool isHigh = false;
  bool isLow = false;
  for (int i = 0; i < 100; ++i) {
    const std::int64_t draw = random.Between(INT32_MIN, INT32_MAX);
    isHigh = isHigh || draw > INT32_MAX / 2;
    isLow = isLow || draw < INT32_MIN / 2;
  }
  EXPECT_TRUE(isHigh);
  EXPECT_TRUE(isLow);
}

TEST(Random, HappensAsOftenAsItsProbabilitySays) {
  Random random(7);
  int count = 0;
  for (int i = 0; i < 10000; ++i) count += random.Happens(0.2) ? 1 : 0;
  EXPECT_GT(count, 1850);
  EXPECT_LT(count, 2150);
}

TEST(Random, CertaintyDrawsNothing) {
  Random random(7);
  EXPECT_FALSE(random.Happens(0));
  EXPECT_FALSE(random.Happens(-1));
  EXPECT_TRUE(random.Happens(1));
  EXPECT_TRUE(random.Happens(2));
  EXPECT_EQ(Draws(random, 0, 1000000), Draws(Random(7), 0, 1000000));
}

}  // namespace
}  // namespace ventrik::bench
