// SPDX-License-Identifier: Apache-2.0
#include "bench/letters.h"

#include <gtest/gtest.h>

#include <string>

namespace ventrik::bench {
namespace {

std::string Encode(char32_t letter) {
  std::string bytes;
  AppendUtf8(bytes, letter);
  return bytes;
}

TEST(DecodeUtf8, ReadsWhatAppendUtf8Writes) {
  for (char32_t letter = 0; letter <= 0x10FFFF; letter += letter < 0x3000 ? 1 : 0x101) {
    if (letter >= 0xD800 && letter < 0xE000) continue;
    ASSERT_EQ(DecodeUtf8(Encode(letter)), std::u32string(1, letter)) << std::hex << letter;
  }
}

TEST(DecodeUtf8, MarksEachByteThatFitsNowhere) {
  const struct {
    std::string bytes;
    std::u32string letters;
  } kRows[] = {
      {"\x80", U"\uFFFD"},
      {"\xC3", U"\uFFFD"},
      {"\xC3"
       "A",
       U"\uFFFDA"},
      {"\xE2\x82", U"\uFFFD\uFFFD"},
      {"\xC0\xAF", U"\uFFFD\uFFFD"},                      // overlong
      {"\xE0\x80\xAF", U"\uFFFD\uFFFD\uFFFD"},            // overlong
      {"\xED\xA0\x80", U"\uFFFD\uFFFD\uFFFD"},            // surrogate
      {"\xF4\x90\x80\x80", U"\uFFFD\uFFFD\uFFFD\uFFFD"},  // above U+10FFFF
      {"\xFF", U"\uFFFD"},
      {std::string(1, '\0'), std::u32string(1, U'\0')},
  };
  for (const auto& row : kRows) EXPECT_EQ(DecodeUtf8(row.bytes), row.letters);
}

TEST(AppendUtf8, ReplacesWhatIsNoLetter) {
  for (const char32_t letter : {0xD800u, 0xDFFFu, 0x110000u, 0xFFFFFFFFu}) {
    EXPECT_EQ(Encode(letter), "\xEF\xBF\xBD");
  }
}

TEST(FoldLetter, DropsCaseAndAccents) {
  const struct {
    std::u32string letters;
    char32_t fold;
  } kRows[] = {
      {U"Aa\u00C0\u00E5\u0105\u00C6", U'a'},
      {U"Cc\u00E7\u010D\u0106", U'c'},
      {U"Ee\u00E9\u0119\u011B", U'e'},
      {U"Ll\u0141\u0142", U'l'},
      {U"Nn\u00F1\u0144", U'n'},
      {U"Oo\u00F6\u00D8\u0151\u0153", U'o'},
      {U"Ss\u015A\u0161\u00DF", U's'},
      {U"Uu\u00FC\u0171\u016F", U'u'},
      {U"Yy\u00FD\u00FF\u0178", U'y'},
      {U"Zz\u017B\u017A\u017E", U'z'},
      {U"'\u2019\u2018", U'\''},
  };
  for (const auto& row : kRows) {
    for (const char32_t letter : row.letters) {
      EXPECT_EQ(FoldLetter(letter), row.fold) << std::hex << static_cast<unsigned>(letter);
    }
  }
}

TEST(FoldLetter, LeavesTheRest) {
  for (const char32_t letter : {0x00u, 0x20u, 0x2Du, 0x40u, 0x5Bu, 0xBFu, 0xD7u, 0xF7u, 0x180u,
                                0x3B1u, 0xFFFDu, 0x10FFFFu}) {
    EXPECT_EQ(FoldLetter(letter), letter) << std::hex << static_cast<unsigned>(letter);
  }
}

TEST(FoldLetter, FoldsWhatItHasFoldedToItself) {
  for (char32_t letter = 0; letter < 0x3000; ++letter) {
    ASSERT_EQ(FoldLetter(FoldLetter(letter)), FoldLetter(letter)) << std::hex << letter;
  }
}

TEST(Name, ComparesFolded) {
  const Name name = MakeName("M\u00FCnchen");
  EXPECT_EQ(name.letters.size(), 7u);
  EXPECT_EQ(name.folded, U"munchen");
  EXPECT_TRUE(BeginsWith(name, MakeName("")));
  EXPECT_TRUE(BeginsWith(name, MakeName("MUN")));
  EXPECT_TRUE(BeginsWith(name, MakeName("m\u00DCnchen")));
  EXPECT_FALSE(BeginsWith(name, MakeName("munchen ")));
  EXPECT_FALSE(BeginsWith(name, MakeName("unchen")));
  EXPECT_TRUE(SameName(name, MakeName("munchen")));
  EXPECT_FALSE(SameName(name, MakeName("munche")));
}

}  // namespace
}  // namespace ventrik::bench
