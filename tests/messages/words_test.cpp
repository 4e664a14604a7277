// SPDX-License-Identifier: Apache-2.0
#include "messages/words.h"

#include <gtest/gtest.h>

namespace ventrik::tests {
namespace {

TEST(ParseSortOption, KnowsItsWords) {
  EXPECT_EQ(ParseSortOption(L"ascending"), 1);
  EXPECT_EQ(ParseSortOption(L"descending"), 2);
  EXPECT_EQ(ParseSortOption(L"nearFirst"), 4);
  EXPECT_EQ(ParseSortOption(L"farFirst"), 8);
  EXPECT_EQ(ParseSortOption(L"hierarchicalSort"), 16);
  EXPECT_EQ(ParseSortOption(L"hierarchicalDescSort"), 32);
}

TEST(ParseSortOption, AnyOtherWordIsTheDefault) {
  for (const wchar_t* word : {L"defaultSort", L"", L"Ascending", L"ascending ", L"ascend", L"1",
                              L"hierarchicalDescSort|ascending"}) {
    EXPECT_EQ(ParseSortOption(word), 0) << word;
  }
}

}  // namespace
}  // namespace ventrik::tests
