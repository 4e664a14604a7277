// SPDX-License-Identifier: Apache-2.0
#include "bench/losses.h"

#include <gtest/gtest.h>

#include "messages/function_ids.h"

namespace ventrik::bench {
namespace {

TEST(Losses, AreCountedByNumber) {
  Losses losses;
  EXPECT_TRUE(losses.Lines().empty());
  losses.Count(4711);
  losses.Count(REQU_GET_SPELL);
  losses.Count(-3);
  losses.Count(REQU_GET_SPELL);
  EXPECT_EQ(losses.Lines(),
            (std::vector<std::string>{"1 of -3", "2 of REQU_GET_SPELL", "1 of 4711"}));
}

TEST(Losses, AreCountedByReason) {
  Losses losses;
  losses.Count(REQU_INIT, "struck by unread");
  losses.Count(REQU_INIT);
  losses.Count(REQU_INIT, "struck by miscount");
  losses.Count(REQU_INIT, "struck by unread");
  EXPECT_EQ(losses.Lines(),
            (std::vector<std::string>{"1 of REQU_INIT", "1 of REQU_INIT, struck by miscount",
                                      "2 of REQU_INIT, struck by unread"}));
}

TEST(Losses, WithoutANumberComeFirst) {
  Losses losses;
  losses.Count(-3);
  losses.Count(std::nullopt, "struck by unread");
  EXPECT_EQ(losses.Lines(),
            (std::vector<std::string>{"1 without a number, struck by unread", "1 of -3"}));
}

TEST(Losses, OfAnyNumbersTakeAThousandLinesAtMost) {
  Losses losses;
  for (std::int32_t number = 0; number < 5000; ++number) losses.Count(1000000 + number);
  losses.Count(1000000);
  const auto lines = losses.Lines();
  ASSERT_EQ(lines.size(), 1000u);
  EXPECT_EQ(lines.front(), "2 of 1000000");
  EXPECT_EQ(lines.back(), "4001 of other numbers");
}

}  // namespace
}  // namespace ventrik::bench
