// SPDX-License-Identifier: Apache-2.0
// Numbers, letters, and where the search stands.
#include "monkey/generators.h"

#include <climits>
#include <cstdio>
#include <cstdlib>

#include "console/utf8.h"
#include "tests/monkey/monkey_fixture.h"

namespace ventrik::tests {
namespace {

class GeneratorsTest : public MonkeyTest {
 protected:
  std::wstring IntegerOf(const Draws& draws, std::int32_t low, std::int32_t high) {
    return Appended(draws, [&] { AppendInteger(monkey_, low, high); });
  }
  std::wstring DoubleOf(const Draws& draws, std::int32_t low, std::int32_t high,
                        std::int32_t digits) {
    return Appended(draws, [&] { GenerateDouble(monkey_, low, high, digits); });
  }
  std::wstring StringOf(const Draws& draws, std::int32_t length) {
    return Appended(draws, [&] { GenerateString(monkey_, length); });
  }
  std::wstring ListEis(const Draws& draws) {
    return Appended(draws, [this] { AppendListEis(monkey_); });
  }
  std::wstring RandomEis(const Draws& draws) {
    return Appended(draws, [this] { AppendRandomEis(monkey_); });
  }
};

TEST_F(GeneratorsTest, TextGoesToTheLineOrToATarget) {
  monkey_.commandBuffer = L"map";
  AppendText(monkey_, L"(\"");
  EXPECT_EQ(monkey_.commandBuffer, L"map(\"");
  std::wstring target = L"a";
  AppendText(monkey_, L"b", &target);
  EXPECT_EQ(target, L"ab");
  EXPECT_EQ(monkey_.commandBuffer, L"map(\"");
}

TEST_F(GeneratorsTest, LineHasNoLimit) {
  for (int i = 0; i < 3; ++i) AppendText(monkey_, std::wstring(4096, L'x'));
  EXPECT_EQ(monkey_.commandBuffer, std::wstring(3 * 4096, L'x'));
}

TEST_F(GeneratorsTest, IntegerIsTheLowerBoundPlusTheRemainder) {
  EXPECT_EQ(IntegerOf({0}, 10, 100), L"10");
  EXPECT_EQ(IntegerOf({90}, 10, 100), L"100");
  EXPECT_EQ(IntegerOf({91}, 10, 100), L"10");
  EXPECT_EQ(IntegerOf({5}, -3, 3), L"2");
  EXPECT_EQ(IntegerOf({5}, -3, -1), L"-1");
  EXPECT_EQ(IntegerOf({77}, 4, 4), L"4");
  EXPECT_TRUE(monkey_.commandValid);
}

TEST_F(GeneratorsTest, IntegerRangesMayBeAsWideAsAWord) {
  EXPECT_EQ(IntegerOf({0}, INT_MIN, INT_MAX), L"-2147483648");
  EXPECT_EQ(IntegerOf({RAND_MAX}, INT_MIN, INT_MAX), L"-1");
  EXPECT_EQ(IntegerOf({RAND_MAX}, 0, INT_MAX), L"2147483647");
}

TEST_F(GeneratorsTest, IntegerBetweenCrossedBoundsIsInvalid) {
  EXPECT_EQ(IntegerOf({}, 5, 4), L"");
  EXPECT_FALSE(monkey_.commandValid);
}

TEST_F(GeneratorsTest, ValidIntegerDoesntMendTheLine) {
  monkey_.commandValid = false;
  EXPECT_EQ(IntegerOf({1}, 0, 4), L"1");
  EXPECT_FALSE(monkey_.commandValid);
}

TEST_F(GeneratorsTest, DigitsAreDrawnOneByOne) {
  EXPECT_EQ(Appended({1, 12, 9, 10}, [this] { AppendDigits(monkey_, 4); }), L"1290");
  EXPECT_EQ(Appended({}, [this] { AppendDigits(monkey_, 0); }), L"");
  EXPECT_EQ(Appended({}, [this] { AppendDigits(monkey_, -1); }), L"");
  EXPECT_TRUE(monkey_.commandValid);
}

TEST_F(GeneratorsTest, PairHasACommaBetween) {
  EXPECT_EQ(Appended({3, 4}, [this] { AppendIntegerPair(monkey_, 0, 240, -5, 120); }), L"3,-1");
}

TEST_F(GeneratorsTest, PairKeepsItsCommaWithoutNumbers) {
  EXPECT_EQ(Appended({4}, [this] { AppendIntegerPair(monkey_, 1, 0, 0, 9); }), L",4");
  EXPECT_FALSE(monkey_.commandValid);
}

TEST_F(GeneratorsTest, DoubleHasItsWholePartBelowTheUpperBound) {
  EXPECT_EQ(DoubleOf({0, 1, 7}, 3, 4, 2), L"3.17");
  EXPECT_EQ(DoubleOf({1, 1, 7}, 3, 4, 2), L"3.17");
  EXPECT_EQ(DoubleOf({0, 0, 0, 0, 0, 0, 0}, -128, -61, 6), L"-128.000000");
  EXPECT_EQ(DoubleOf({66, 9, 9, 9, 9, 9, 9}, -128, -61, 6), L"-62.999999");
  EXPECT_EQ(DoubleOf({67, 0, 0, 0, 0, 0, 0}, -128, -61, 6), L"-128.000000");
}

TEST_F(GeneratorsTest, DoubleOfNoDigitsKeepsThePoint) {
  EXPECT_EQ(DoubleOf({0}, 3, 4, 0), L"3.");
}

TEST_F(GeneratorsTest, DoubleAcrossZeroHasTheSignOfItsWholePart) {
  EXPECT_EQ(DoubleOf({0, 5}, -1, 1, 1), L"-1.5");
  EXPECT_EQ(DoubleOf({1, 5}, -1, 1, 1), L"0.5");
}

TEST_F(GeneratorsTest, CrossedBoundsOfADoubleChangePlaces) {
  EXPECT_EQ(DoubleOf({0, 1, 2, 3, 4, 5, 6}, 7, 3, 6), L"3.123456");
  EXPECT_EQ(DoubleOf({3, 1, 2, 3, 4, 5, 6}, 7, 3, 6), L"6.123456");
  EXPECT_EQ(DoubleOf({4, 1, 2, 3, 4, 5, 6}, 7, 3, 6), L"3.123456");
  EXPECT_TRUE(monkey_.commandValid);
}

TEST_F(GeneratorsTest, OddityEqualBoundsOfADoubleGiveNoPoint) {
  EXPECT_EQ(DoubleOf({17}, 3, 3, 2), L"300");
  EXPECT_EQ(DoubleOf({17}, 5, 5, 6), L"5000000");
  EXPECT_EQ(DoubleOf({17}, 0, 0, 6), L"0000000");
  EXPECT_EQ(DoubleOf({17}, -4, -4, 0), L"-4");
}

TEST_F(GeneratorsTest, PositionIsLongitudeAndThenLatitude) {
  monkey_.region = {-8, 40, 37, 57};
  EXPECT_EQ(
      Appended({8, 1, 2, 3, 4, 5, 6, 19, 6, 5, 4, 3, 2, 1}, [this] { AppendGeoPosition(monkey_); }),
      L"0.123456 56.654321");
}

TEST_F(GeneratorsTest, PositionWithoutARegionHasNoPoints) {
  EXPECT_EQ(Appended({1, 2}, [this] { AppendGeoPosition(monkey_); }), L"0000000 0000000");
}

TEST_F(GeneratorsTest, OddityLettersRunFromAToY) {
  Draws draws;
  for (int drawn = 0; drawn < 52; ++drawn) draws.push_back(drawn);
  EXPECT_EQ(StringOf(draws, 52), L"abcdefghijklmnopqrstuvwxyabcdefghijklmnopqrstuvwxyab");
}

TEST_F(GeneratorsTest, StringBelowOneLetterIsEmpty) {
  EXPECT_EQ(StringOf({}, 0), L"");
  EXPECT_EQ(StringOf({}, -7), L"");
  EXPECT_TRUE(monkey_.commandValid);
}

TEST_F(GeneratorsTest, StringMayHave4095Letters) {
  EXPECT_EQ(StringOf(Draws(4095, 1), 4095), std::wstring(4095, L'b'));
}

TEST_F(GeneratorsTest, StringMayGoToATarget) {
  std::wstring target = L"x";
  EXPECT_EQ(Appended(
                {0, 1}, [&] { GenerateString(monkey_, 2, &target); }, L"line"),
            L"line");
  EXPECT_EQ(target, L"xab");
}

TEST_F(GeneratorsTest, RandomNameHasThreeLettersAndLeavesTheLine) {
  std::wstring name;
  EXPECT_EQ(Appended(
                {0, 24, 25}, [&name] { name = MakeRandomName(); }, L"line"),
            L"line");
  EXPECT_EQ(name, L"aya");
}

// What a fault of the program prints goes to standard error, too, where death tests look.
class GeneratorsDeathTest : public GeneratorsTest {
 protected:
  GeneratorsDeathTest() {
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    console_.onPrint = [](const std::wstring& text) {
      std::fputs(WideToUtf8(text).c_str(), stderr);
    };
  }
};

TEST_F(GeneratorsDeathTest, LessThanNoDigitsAreAFaultOfTheProgram) {
  EXPECT_DEATH(GenerateDouble(monkey_, 1, 2, -1),
               "ASSERT FAILED!\nfile:monkey\nline:[0-9]+\nfunc:GenerateDouble\n");
  EXPECT_DEATH(GenerateDouble(monkey_, 1, 1, -1), "func:GenerateDouble\n");
}

TEST_F(GeneratorsDeathTest, StringOf4096LettersIsAFaultOfTheProgram) {
  EXPECT_DEATH(GenerateString(monkey_, 4096),
               "ASSERT FAILED!\nfile:monkey\nline:[0-9]+\nfunc:GenerateString\n");
}

TEST_F(GeneratorsDeathTest, ItemOfRoadSegmentsIsAFaultOfTheProgram) {
  std::vector<std::int32_t> unused;
  EXPECT_DEATH(GenerateItem(monkey_, L"SRoadSegmentList", L"a", unused),
               "ASSERT FAILED!\nfile:monkey\nline:[0-9]+\nfunc:GenerateItem\n");
}

TEST_F(GeneratorsTest, PathIsFollowedByTheTerm) {
  SetSearch(monkey_, L"<CTR>AT<*>", L"<CTY>Wi<*>");
  const auto append = [this] { AppendEisPath(monkey_); };
  EXPECT_EQ(Appended({}, append), L"<CTR>AT<*><CTY>Wi<*>");
  SetSearch(monkey_, L"", L"<CTY><*>");
  EXPECT_EQ(Appended({}, append), L"<CTY><*>");
  SetSearch(monkey_, L"", L"");
  EXPECT_EQ(Appended({}, append), L"");
}

TEST_F(GeneratorsTest, CountryAndStateOfAListBecomePositions) {
  monkey_.region = {-8, 40, 37, 57};
  SetSearch(monkey_, L"<X>1<*>", L"<GEOC><*>");
  EXPECT_EQ(ListEis({8, 1, 2, 3, 4, 5, 6, 19, 6, 5, 4, 3, 2, 1}),
            L"<X>1<*><GEOC>0.123456 56.654321<*>");
  SetSearch(monkey_, L"", L"<GEOS><*>");
  EXPECT_EQ(ListEis({0, 1, 2, 3, 4, 5, 6, 0, 6, 5, 4, 3, 2, 1}), L"<GEOS>-8.123456 37.654321<*>");
}

TEST_F(GeneratorsTest, OtherTermsOfAListStayAsTheyAre) {
  for (const std::wstring term :
       {L"", L"<CTY>a<*>", L"<GEOC>a<*>", L"<GEOX><*>", L"<GEOC>", L"<GEOC><*> ", L"<geoc><*>"}) {
    SetSearch(monkey_, L"<X>1<*>", term);
    EXPECT_EQ(ListEis({}), L"<X>1<*>" + term);
  }
}

TEST_F(GeneratorsTest, RandomChainMayBeEmpty) {
  EXPECT_EQ(RandomEis({0}), L"");
  EXPECT_EQ(RandomEis({20}), L"");
}

// Gate, letters of the tag, kind of the value, what the value takes; gate.
TEST_F(GeneratorsTest, RandomChainOfEachKindOfValue) {
  monkey_.region = {0, 1, 5, 6};
  EXPECT_EQ(RandomEis({1, 0, 3, 0, 2, 0, 1, 10}), L"<d>ab<*>");
  EXPECT_EQ(RandomEis({9, 3, 0, 1, 2, 3, 1, 8 + 2, 4, 5, 0}), L"<abcd>45<*>");
  EXPECT_EQ(RandomEis({1, 0, 0, 2, 30 + 3, 5, 8 + 2, 1, 7, 8, 0}), L"<a>4.78<*>");
  EXPECT_EQ(RandomEis({1, 0, 0, 3, 51, 110, 52, 120, 4, 5, 0}), L"<a>5,7<*>");
  EXPECT_EQ(RandomEis({1, 0, 0, 4, 0, 1, 2, 3, 4, 5, 6, 0, 6, 5, 4, 3, 2, 1, 0}),
            L"<a>0.123456 5.654321<*>");
}

TEST_F(GeneratorsTest, RandomChainGoesOnUntilADrawEndsIt) {
  EXPECT_EQ(RandomEis({1, 0, 0, 0, 0, 2, 0, 1, 0, 0, 3, 0, 2, 0, 0, 0}), L"<a><*><b><*><c><*>");
}

TEST_F(GeneratorsTest, RandomPairOfCrossedBoundsIsInvalid) {
  EXPECT_EQ(RandomEis({1, 0, 0, 3, 9, 8, 2, 20, 5, 0}), L"<a>,7<*>");
  EXPECT_FALSE(monkey_.commandValid);
}

}  // namespace
}  // namespace ventrik::tests
