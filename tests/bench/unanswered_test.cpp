// SPDX-License-Identifier: Apache-2.0
#include "bench/unanswered.h"

#include <gtest/gtest.h>

#include "messages/function_ids.h"

namespace ventrik::bench {
namespace {

TEST(Unanswered, CountsByNumber) {
  Unanswered unanswered;
  EXPECT_TRUE(unanswered.Lines().empty());
  unanswered.Count(4711);
  unanswered.Count(REQU_GET_SPELL);
  unanswered.Count(-3);
  unanswered.Count(REQU_GET_SPELL);
  EXPECT_EQ(unanswered.Lines(),
            (std::vector<std::string>{"1 of -3", "2 of REQU_GET_SPELL", "1 of 4711"}));
}

TEST(Unanswered, AnyNumbersTakeAThousandLinesAtMost) {
  Unanswered unanswered;
  for (std::int32_t number = 0; number < 5000; ++number) unanswered.Count(1000000 + number);
  unanswered.Count(1000000);
  const auto lines = unanswered.Lines();
  ASSERT_EQ(lines.size(), 1000u);
  EXPECT_EQ(lines.front(), "2 of 1000000");
  EXPECT_EQ(lines.back(), "4001 of other numbers");
}

}  // namespace
}  // namespace ventrik::bench
