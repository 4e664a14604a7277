// SPDX-License-Identifier: Apache-2.0
#include "replay/byte_search.h"

#include <gtest/gtest.h>

#include <string>

namespace ventrik {
namespace {

TEST(FindEither, FindsEitherByteAtEachPlaceFromEachPlace) {
  for (const char wanted : {'\xE5', '\xE6'}) {
    for (std::size_t size = 1; size < 70; ++size) {
      for (std::size_t at = 0; at < size; ++at) {
        std::string text(size, '\xE4');
        text[at] = wanted;
        for (const std::size_t from : {std::size_t{0}, at / 2, at}) {
          ASSERT_EQ(FindEither(text, from, '\xE5', '\xE6'), at) << size;
        }
        ASSERT_EQ(FindEither(text, at + 1, '\xE5', '\xE6'), size);
      }
    }
  }
}

TEST(FindEither, FindsTheFirstOfMany) {
  EXPECT_EQ(FindEither("..b.a..........................", 0, 'a', 'b'), 2u);
  EXPECT_EQ(FindEither("................a..............b", 1, 'a', 'b'), 16u);
  EXPECT_EQ(FindEither(std::string(40, 'b'), 17, 'a', 'b'), 17u);
}

TEST(FindEither, IsTheSizeWhereThereIsNone) {
  EXPECT_EQ(FindEither("", 0, 'a', 'b'), 0u);
  EXPECT_EQ(FindEither("", 5, 'a', 'b'), 0u);
  EXPECT_EQ(FindEither("abc", 7, 'a', 'b'), 3u);
  EXPECT_EQ(FindEither(std::string(100, '\xE7'), 0, '\xE5', '\xE6'), 100u);
}

}  // namespace
}  // namespace ventrik
