// SPDX-License-Identifier: Apache-2.0
#include "messages/word_printers.h"

#include <gtest/gtest.h>

#include <limits>
#include <list>
#include <string>
#include <vector>

#include "tests/messages/bytes.h"
#include "tests/messages/guarded_block.h"

namespace ventrik::tests {
namespace {

constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();

struct Row {
  std::int32_t value;
  std::string name;
};
using Rows = std::vector<Row>;

TEST(MeasurementSystemText, EachValueHasItsName) {
  EXPECT_STREQ(MeasurementSystemText(1), "undefined");
  EXPECT_STREQ(MeasurementSystemText(2), "imperialyards");
  EXPECT_STREQ(MeasurementSystemText(4), "imperialfeet");
  EXPECT_STREQ(MeasurementSystemText(8), "metric");
}

TEST(MeasurementSystemText, AnyOtherValueIsEmpty) {
  for (const std::int32_t value : {0, 3, 5, 6, 7, 9, 10, 16, -1, kLowest, kHighest}) {
    EXPECT_STREQ(MeasurementSystemText(value), "") << value;
  }
}

TEST(LanguageText, EachValueHasItsName) {
  const char* const names[] = {
      "LangUndef",          "LangDansk",       "LangGerman",     "LangEngGB",
      "LangEngUS",          "LangSpanish",     "LangSpanishUS",  "LangFrench",
      "LangItalian",        "LangNetherlands", "LangPortuguese", "LangSwedish",
      "LangTurkish",        "LangFlemish",     "LangArabic",     "LangChineseTraditional",
      "LangChineseSimple",  "LangKorean",      "LangJapanese",   "LangBrazilianPortuguese",
      "LangFrenchCanadian", "LangFinnish",     "LangGreek",      "LangNorwegian",
      "LangPolish",         "LangRussian",     "LangHindi",
  };
  std::int32_t value = 0;
  for (const char* name : names) EXPECT_STREQ(LanguageText(value++), name);
  EXPECT_EQ(value, 27);
}

TEST(LanguageText, AnyOtherValueIsEmpty) {
  for (const std::int32_t value : {27, 28, 100, 256, -1, -26, kLowest, kHighest}) {
    EXPECT_STREQ(LanguageText(value), "") << value;
  }
}

TEST(RouteCalcStateText, EachValueHasItsName) {
  EXPECT_STREQ(RouteCalcStateText(0), "Idle");
  EXPECT_STREQ(RouteCalcStateText(1), "Planning");
  EXPECT_STREQ(RouteCalcStateText(2), "Planned");
  EXPECT_STREQ(RouteCalcStateText(3), "Calculating");
  EXPECT_STREQ(RouteCalcStateText(4), "Calculated");
  EXPECT_STREQ(RouteCalcStateText(5), "Routing");
  EXPECT_STREQ(RouteCalcStateText(6), "Routed");
  EXPECT_STREQ(RouteCalcStateText(7), "Failed");
}

TEST(RouteCalcStateText, AnyOtherValueIsEmpty) {
  for (const std::int32_t value : {8, 9, 16, 256, -1, -7, kLowest, kHighest}) {
    EXPECT_STREQ(RouteCalcStateText(value), "") << value;
  }
}

TEST(SortOptionText, EachValueHasItsName) {
  EXPECT_EQ(SortOptionText(0), "defaultSort");
  EXPECT_EQ(SortOptionText(1), "ascending");
  EXPECT_EQ(SortOptionText(2), "descending");
  EXPECT_EQ(SortOptionText(4), "nearFirst");
  EXPECT_EQ(SortOptionText(8), "farFirst");
  EXPECT_EQ(SortOptionText(16), "hierarchicalSort");
  EXPECT_EQ(SortOptionText(32), "hierarchicalDescSort");
}

TEST(SortOptionText, OddityCombinationHasNoName) {
  EXPECT_EQ(SortOptionText(3), "3");
  EXPECT_EQ(SortOptionText(17), "17");
  EXPECT_EQ(SortOptionText(63), "63");
}

TEST(SortOptionText, AnyOtherValueIsDecimal) {
  EXPECT_EQ(SortOptionText(64), "64");
  EXPECT_EQ(SortOptionText(-1), "-1");
  EXPECT_EQ(SortOptionText(kHighest), "2147483647");
  EXPECT_EQ(SortOptionText(kLowest), "-2147483648");
}

const Rows kRouteModes = {
    {0x1, "fastest"},
    {0x2, "shortest"},
    {0x4, "eScenicRoute"},
    {0x8, "avoidMotorways"},
    {0x10, "avoidFerries"},
    {0x20, "avoidTollroads"},
    {0x40, "avoidIPD"},
    {0x80, "avoidUnpaved"},
    {0x100, "avoidBorder"},
    {0x200, "ecoRoute"},
    {0x400, "optimizeDestOrder"},
    {0x800, "avoidCarTrain"},
    {0x1000, "avoidTimeRestricted"},
    {0x2000, "avoidSeasonalRestricted"},
    {0x4000, "avoidTunnels"},
    {0x8000, "optimizeDestOrderKeepLastDest"},
    {0x10000, "ignoreTrafficPatterns"},
    {0x20000, "noIPDGuidance"},
    {0x40000, "avoidRestrictedAccess"},
    {0x80000, "sportRoute"},
    {0x100000, "trailGuidance"},
    {0x200000, "trailGuidanceFromEnd"},
};

const std::string kAllRouteModes =
    "fastest|shortest|eScenicRoute|avoidMotorways|avoidFerries|avoidTollroads|avoidIPD|"
    "avoidUnpaved|avoidBorder|ecoRoute|optimizeDestOrder|avoidCarTrain|avoidTimeRestricted|"
    "avoidSeasonalRestricted|avoidTunnels|optimizeDestOrderKeepLastDest|ignoreTrafficPatterns|"
    "noIPDGuidance|avoidRestrictedAccess|sportRoute|trailGuidance|trailGuidanceFromEnd";

TEST(RouteModeText, EachBitHasItsName) {
  for (const auto& [bit, name] : kRouteModes) EXPECT_EQ(RouteModeText(bit), name);
}

TEST(RouteModeText, NamesAreJoinedFromTheLowestBitUp) {
  for (const Row& low : kRouteModes) {
    for (const Row& high : kRouteModes) {
      if (low.value >= high.value) continue;
      EXPECT_EQ(RouteModeText(low.value | high.value), low.name + "|" + high.name);
    }
  }
  EXPECT_EQ(RouteModeText(0x3FFFFF), kAllRouteModes);
}

TEST(RouteModeText, HigherBitsAreLeftOut) {
  for (const auto& [bit, name] : kRouteModes) {
    EXPECT_EQ(RouteModeText(bit | 0x400000), name);
    EXPECT_EQ(RouteModeText(bit | kLowest), name);
  }
  EXPECT_EQ(RouteModeText(kHighest), kAllRouteModes);
  EXPECT_EQ(RouteModeText(-1), kAllRouteModes);
}

TEST(RouteModeText, NoNameIsTheWholeValueInDecimal) {
  EXPECT_EQ(RouteModeText(0), "0");
  EXPECT_EQ(RouteModeText(0x400000), "4194304");
  EXPECT_EQ(RouteModeText(0x40000000), "1073741824");
  EXPECT_EQ(RouteModeText(kLowest), "-2147483648");
  EXPECT_EQ(RouteModeText(-0x400000), "-4194304");
}

TEST(WorldPropertyText, EachNameHasABlankBehindIt) {
  EXPECT_EQ(WorldPropertyText(0x1), "zoom ");
  EXPECT_EQ(WorldPropertyText(0x2), "highlight ");
  EXPECT_EQ(WorldPropertyText(0x4), "visible ");
  EXPECT_EQ(WorldPropertyText(0x3), "zoom highlight ");
  EXPECT_EQ(WorldPropertyText(0x5), "zoom visible ");
  EXPECT_EQ(WorldPropertyText(0x6), "highlight visible ");
  EXPECT_EQ(WorldPropertyText(0x7), "zoom highlight visible ");
}

// The parser knows words for three bits more.
TEST(WorldPropertyText, OtherBitsAreLeftOut) {
  for (const std::int32_t flags : {0, 0x8, 0x10, 0x20, 0x100, 0x118, kLowest, -8}) {
    EXPECT_EQ(WorldPropertyText(flags), "") << flags;
  }
  EXPECT_EQ(WorldPropertyText(0x119), "zoom ");
  EXPECT_EQ(WorldPropertyText(-1), "zoom highlight visible ");
}

TEST(WorldElementText, EachNameButTheLastHasABlankBehindIt) {
  EXPECT_EQ(WorldElementText(0x1), "geoCoordinate ");
  EXPECT_EQ(WorldElementText(0x2), "locationDetails ");
  EXPECT_EQ(WorldElementText(0x4), "poiData ");
  EXPECT_EQ(WorldElementText(0x8), "tmcData ");
  EXPECT_EQ(WorldElementText(0x10), "weatherData");
}

TEST(WorldElementText, EveryCombinationGoesFromTheLowestBitUp) {
  const std::string names[] = {"geoCoordinate ", "locationDetails ", "poiData ", "tmcData ",
                               "weatherData"};
  for (std::int32_t flags = 0; flags < 0x20; ++flags) {
    std::string expected;
    for (int bit = 0; bit < 5; ++bit) {
      if ((flags >> bit & 1) != 0) expected += names[bit];
    }
    EXPECT_EQ(WorldElementText(flags), expected) << flags;
  }
  EXPECT_EQ(WorldElementText(0x1F), "geoCoordinate locationDetails poiData tmcData weatherData");
}

TEST(WorldElementText, OtherBitsAreLeftOut) {
  for (const std::int32_t flags : {0, 0x20, 0x100, 0x40000000, kLowest, -32}) {
    EXPECT_EQ(WorldElementText(flags), "") << flags;
  }
  EXPECT_EQ(WorldElementText(0x31), "geoCoordinate weatherData");
  EXPECT_EQ(WorldElementText(-1), "geoCoordinate locationDetails poiData tmcData weatherData");
}

TEST(UpdateResultText, EachBitHasItsName) {
  EXPECT_EQ(UpdateResultText(0), "updSuccess(0)");
  EXPECT_EQ(UpdateResultText(0x1), "updInvalidPackage(1)");
  EXPECT_EQ(UpdateResultText(0x4), "updNotEnoughSpace(4)");
  EXPECT_EQ(UpdateResultText(0x8), "updOlderPackage(8)");
  EXPECT_EQ(UpdateResultText(0x10), "updNoPackage(16)");
  EXPECT_EQ(UpdateResultText(0x20), "updSamePackage(32)");
}

TEST(UpdateResultText, NamesAreJoinedFromTheLowestBitUp) {
  EXPECT_EQ(UpdateResultText(40), "updOlderPackage|updSamePackage(40)");
  EXPECT_EQ(UpdateResultText(5), "updInvalidPackage|updNotEnoughSpace(5)");
  EXPECT_EQ(UpdateResultText(0x3D),
            "updInvalidPackage|updNotEnoughSpace|updOlderPackage|updNoPackage|updSamePackage(61)");
}

TEST(UpdateResultText, BitsWithoutANameUpTo127AddNothing) {
  EXPECT_EQ(UpdateResultText(2), "(2)");
  EXPECT_EQ(UpdateResultText(3), "updInvalidPackage(3)");
  EXPECT_EQ(UpdateResultText(64), "(64)");
  EXPECT_EQ(UpdateResultText(66), "(66)");
  EXPECT_EQ(UpdateResultText(127),
            "updInvalidPackage|updNotEnoughSpace|updOlderPackage|updNoPackage|updSamePackage(127)");
}

TEST(UpdateResultText, Above127IsUnknownToo) {
  EXPECT_EQ(UpdateResultText(128), "unknown(128)");
  EXPECT_EQ(UpdateResultText(129), "updInvalidPackage|unknown(129)");
  EXPECT_EQ(UpdateResultText(256), "unknown(256)");
  EXPECT_EQ(UpdateResultText(168), "updOlderPackage|updSamePackage|unknown(168)");
  EXPECT_EQ(UpdateResultText(kHighest),
            "updInvalidPackage|updNotEnoughSpace|updOlderPackage|updNoPackage|updSamePackage|"
            "unknown(2147483647)");
}

TEST(UpdateResultText, NegativeValuesAreNotAbove127) {
  EXPECT_EQ(UpdateResultText(kLowest), "(-2147483648)");
  EXPECT_EQ(UpdateResultText(-128), "(-128)");
  EXPECT_EQ(UpdateResultText(-1),
            "updInvalidPackage|updNotEnoughSpace|updOlderPackage|updNoPackage|updSamePackage(-1)");
}

class WalkingForms : public testing::Test {
 protected:
  // A block with unreadable memory behind it, and a cursor behind its first word.
  BlockCursor Behind1Word(const char* notation) {
    bytes_ = Hex(notation);
    guarded_.emplace_back(bytes_.value.data(), bytes_.value.size());
    return {guarded_.back().Block(), 1};
  }

 private:
  Bytes bytes_;
  std::list<GuardedBlock> guarded_;
};

TEST_F(WalkingForms, EachCallTakesOneWord) {
  BlockCursor cursor = Behind1Word("01000000 03000000 00004000 02000000 03000000 FFFFFFFF");
  EXPECT_EQ(NextRouteMode(cursor), "fastest|shortest");
  EXPECT_EQ(cursor.Remaining(), 16u);
  EXPECT_EQ(NextRouteMode(cursor), "4194304");
  EXPECT_EQ(NextSortOption(cursor), "descending");
  EXPECT_EQ(cursor.Remaining(), 8u);
  EXPECT_EQ(NextSortOption(cursor), "3");
  EXPECT_EQ(NextSortOption(cursor), "-1");
  EXPECT_TRUE(cursor.AtEnd());
}

TEST_F(WalkingForms, WordAtTheEndIs0) {
  BlockCursor cursor = Behind1Word("01000000");
  ASSERT_TRUE(cursor.AtEnd());
  EXPECT_EQ(NextRouteMode(cursor), "0");
  EXPECT_EQ(NextSortOption(cursor), "defaultSort");
  EXPECT_TRUE(cursor.AtEnd());
}

TEST_F(WalkingForms, WordThatIsCutShortIs0AndTheLast) {
  BlockCursor modes = Behind1Word("01000000 020000");
  EXPECT_EQ(NextRouteMode(modes), "0");
  EXPECT_TRUE(modes.AtEnd());
  BlockCursor options = Behind1Word("01000000 04");
  EXPECT_EQ(NextSortOption(options), "defaultSort");
  EXPECT_TRUE(options.AtEnd());
}

}  // namespace
}  // namespace ventrik::tests
