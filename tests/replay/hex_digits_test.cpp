// SPDX-License-Identifier: Apache-2.0
// Blocks of sixteen characters are decoded at once, so every place in and around two blocks is
// looked at.
#include "replay/hex_digits.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace ventrik {
namespace {

constexpr std::uint8_t kUntouched = 0xEE;

std::vector<int> Decoded(const std::string& text) {
  std::vector<std::uint8_t> bytes(text.size() / 2 + 16, kUntouched);
  const std::size_t count = DecodeHexPairs(text, bytes.data());
  EXPECT_EQ(count % 2, 0u);
  for (std::size_t i = count / 2; i < bytes.size(); ++i) EXPECT_EQ(bytes[i], kUntouched) << text;
  return {bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(count / 2)};
}

TEST(HexDigit, KnowsUpperCaseAlone) {
  const std::string digits = "0123456789ABCDEF";
  for (int character = 0; character < 256; ++character) {
    const std::size_t at = digits.find(static_cast<char>(character));
    EXPECT_EQ(HexDigit(static_cast<char>(character)),
              at == std::string::npos ? -1 : static_cast<int>(at))
        << character;
  }
}

TEST(DecodeHexPairs, DecodesEachByteAtEachPlace) {
  for (std::size_t pairs = 0; pairs <= 18; ++pairs) {
    for (int value = 0; value < 256; ++value) {
      std::string text;
      std::vector<int> expected;
      for (std::size_t i = 0; i < pairs; ++i) {
        const int byte = (value + static_cast<int>(i) * 37) & 0xFF;
        text += "0123456789ABCDEF"[byte >> 4];
        text += "0123456789ABCDEF"[byte & 15];
        expected.push_back(byte);
      }
      ASSERT_EQ(Decoded(text), expected) << text;
    }
  }
}

TEST(DecodeHexPairs, StopsAtThePairWithAnotherCharacterWhereverItIs) {
  for (int character = 0; character < 256; ++character) {
    if (HexDigit(static_cast<char>(character)) >= 0) continue;
    for (std::size_t at = 0; at < 40; ++at) {
      std::string text(40, 'A');
      text[at] = static_cast<char>(character);
      ASSERT_EQ(Decoded(text), std::vector<int>(at / 2, 0xAA)) << character << " at " << at;
      ASSERT_EQ(CountHexDigits(text), at) << character;
    }
  }
}

TEST(DecodeHexPairs, LeavesALastCharacterAlone) {
  EXPECT_EQ(Decoded("01A"), std::vector<int>{1});
  EXPECT_EQ(Decoded("A"), std::vector<int>{});
  EXPECT_EQ(Decoded(std::string(17, '3')), std::vector<int>(8, 0x33));
}

TEST(ParseEightDigits, ReadsTheHighestDigitFirst) {
  EXPECT_EQ(ParseEightDigits("01234567"), 0x01234567u);
  EXPECT_EQ(ParseEightDigits("89ABCDEF"), 0x89ABCDEFu);
  EXPECT_EQ(ParseEightDigits("00000000"), 0u);
  EXPECT_EQ(ParseEightDigits("FFFFFFFF0"), 0xFFFFFFFFu);
}

TEST(ParseEightDigits, TakesEachDigitAndNothingElseAtEachPlace) {
  for (int character = 0; character < 256; ++character) {
    for (std::size_t at = 0; at < 8; ++at) {
      std::string text = "F0F0F0F0";
      text[at] = static_cast<char>(character);
      const int digit = HexDigit(text[at]);
      const auto value = ParseEightDigits(text.data());
      ASSERT_EQ(value.has_value(), digit >= 0) << character << " at " << at;
      ASSERT_EQ(value.value_or(0) >> (28 - 4 * at) & 15, static_cast<unsigned>(std::max(digit, 0)));
    }
  }
}

TEST(CountHexDigits, CountsUpToTheEnd) {
  for (std::size_t size = 0; size < 50; ++size) {
    EXPECT_EQ(CountHexDigits(std::string(size, 'F')), size);
  }
}

}  // namespace
}  // namespace ventrik
