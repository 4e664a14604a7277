// SPDX-License-Identifier: Apache-2.0
// Texts of several names, as opposed to the exact words.
#include "messages/word_parsers.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace ventrik::tests {
namespace {

using Parser = std::int32_t (*)(const wchar_t*);

struct Row {
  std::wstring name;
  std::int32_t value;
};
using Rows = std::vector<Row>;

// Memory that ends right behind the terminator, so that the address sanitizer sees a parser that
// reads on.
std::int32_t Parsed(Parser parse, const std::wstring& text) {
  const std::vector<wchar_t> exact(text.c_str(), text.c_str() + text.size() + 1);
  return parse(exact.data());
}

std::wstring WithFirstLettersCaseChanged(std::wstring word) {
  word[0] = static_cast<wchar_t>(word[0] ^ L' ');
  return word;
}

const Rows kRouteModes = {
    {L"fastest", 0x1},
    {L"shortest", 0x2},
    {L"eScenicRoute", 0x4},
    {L"avoidMotorways", 0x8},
    {L"avoidFerries", 0x10},
    {L"avoidTollroads", 0x20},
    {L"avoidIPD", 0x40},
    {L"avoidUnpaved", 0x80},
    {L"avoidBorder", 0x100},
    {L"ecoRoute", 0x200},
    {L"optimizeDestOrder", 0x400},
    {L"avoidCarTrain", 0x800},
    {L"avoidTimeRestricted", 0x1000},
    {L"avoidSeasonalRestricted", 0x2000},
    {L"avoidTunnels", 0x4000},
    {L"ignoreTrafficPatterns", 0x10000},
    {L"noIPDGuidance", 0x20000},
    {L"avoidRestrictedAccess", 0x40000},
    {L"sportRoute", 0x80000},
    {L"trailGuidance", 0x100000},
};

const Rows kWorldProperties = {
    {L"zoom", 0x1},
    {L"highlight", 0x2},
    {L"visible", 0x4},
    {L"setItemVisibilities", 0x8},
    {L"setTemporaryItems", 0x10},
    {L"zoomToRouteDifferences", 0x100},
};

const Rows kWorldElements = {
    {L"geoCoordinate", 0x1}, {L"locationDetails", 0x2}, {L"poiData", 0x4},
    {L"tmcData", 0x8},       {L"weatherData", 0x10},
};

struct FlagTable {
  const char* name;
  Parser parse;
  const Rows& rows;
};

const FlagTable kScannedFlags[] = {
    {"route mode", ParseRouteMode, kRouteModes},
    {"world property", ParseWorldProperty, kWorldProperties},
    {"world element", ParseWorldElement, kWorldElements},
};

const wchar_t* const kSeparators[] = {L"|", L" ", L",", L"x", L"||", L" | ", L"\u0151"};

TEST(FlagParsers, EachNameSetsItsBit) {
  for (const FlagTable& table : kScannedFlags) {
    for (const auto& [name, bit] : table.rows) {
      EXPECT_EQ(Parsed(table.parse, name), bit) << table.name << ' ' << name;
    }
  }
}

TEST(FlagParsers, NothingKnownIsNoBit) {
  for (const FlagTable& table : kScannedFlags) {
    for (const wchar_t* text : {L"", L"x", L"|", L"||||", L"nonsense", L"1", L"0x7", L"\u0151"}) {
      EXPECT_EQ(Parsed(table.parse, text), 0) << table.name << ' ' << text;
    }
  }
}

TEST(FlagParsers, LettersOfTheOtherCaseAreUnknown) {
  for (const FlagTable& table : kScannedFlags) {
    for (const auto& [name, bit] : table.rows) {
      const std::wstring other = WithFirstLettersCaseChanged(name);
      EXPECT_EQ(Parsed(table.parse, other), 0) << table.name << ' ' << other;
    }
  }
}

TEST(FlagParsers, UnknownTextRoundANameIsSkipped) {
  for (const FlagTable& table : kScannedFlags) {
    for (const auto& [name, bit] : table.rows) {
      for (const std::wstring& text : {L"xx" + name, L'|' + name, L"unknown|" + name, name + L"xx",
                                       name + L'|', L" \u0151" + name + L"! "}) {
        EXPECT_EQ(Parsed(table.parse, text), bit) << table.name << ' ' << text;
      }
    }
  }
}

TEST(FlagParsers, AnyCharacterSeparates) {
  for (const FlagTable& table : kScannedFlags) {
    for (const Row& first : table.rows) {
      for (const Row& second : table.rows) {
        for (const wchar_t* separator : kSeparators) {
          const std::wstring text = first.name + separator + second.name;
          EXPECT_EQ(Parsed(table.parse, text), first.value | second.value)
              << table.name << ' ' << text;
        }
      }
    }
  }
}

TEST(FlagParsers, AllNamesAtOnce) {
  for (const FlagTable& table : kScannedFlags) {
    std::int32_t expected = 0;
    std::wstring rising;
    std::wstring falling;
    for (const auto& [name, bit] : table.rows) {
      expected |= bit;
      rising += name + L'|';
      falling.insert(0, name + L' ');
    }
    EXPECT_EQ(Parsed(table.parse, rising), expected) << table.name;
    EXPECT_EQ(Parsed(table.parse, falling), expected) << table.name;
  }
}

// The character behind a match is taken for the separator, whatever it is.
TEST(FlagParsers, NameRightBehindANameIsLost) {
  for (const FlagTable& table : kScannedFlags) {
    for (const Row& first : table.rows) {
      if (first.name == L"ignoreTrafficPatterns") continue;
      for (const Row& second : table.rows) {
        const std::wstring text = first.name + second.name;
        EXPECT_EQ(Parsed(table.parse, text), first.value) << table.name << ' ' << text;
      }
    }
  }
}

TEST(FlagParsers, ThirdNameInARowIsFoundAgain) {
  EXPECT_EQ(Parsed(ParseRouteMode, L"fastestshortestsportRoute"), 0x80001);
  EXPECT_EQ(Parsed(ParseWorldProperty, L"zoomvisiblehighlight"), 0x3);
  EXPECT_EQ(Parsed(ParseWorldElement, L"poiDatatmcDataweatherData"), 0x14);
}

bool BeginsWithAnotherName(const std::wstring& name) {
  return name == L"zoomToRouteDifferences";
}

TEST(FlagParsers, NameThatIsCutShortIsUnknown) {
  for (const FlagTable& table : kScannedFlags) {
    for (const auto& [name, bit] : table.rows) {
      if (BeginsWithAnotherName(name)) continue;
      for (std::size_t length = 0; length < name.size(); ++length) {
        const std::wstring text = name.substr(0, length);
        EXPECT_EQ(Parsed(table.parse, text), 0) << table.name << ' ' << text;
      }
    }
  }
}

TEST(ParseRouteMode, OddityKeepLastDestIsReadAsOptimizeDestOrder) {
  EXPECT_EQ(Parsed(ParseRouteMode, L"optimizeDestOrderKeepLastDest"), 0x400);
  EXPECT_EQ(Parsed(ParseRouteMode, L"optimizeDestOrder|optimizeDestOrderKeepLastDest"), 0x400);
}

TEST(ParseRouteMode, OddityTrailGuidanceFromEndIsReadAsTrailGuidance) {
  EXPECT_EQ(Parsed(ParseRouteMode, L"trailGuidanceFromEnd"), 0x100000);
  EXPECT_EQ(Parsed(ParseRouteMode, L"trailGuidance|trailGuidanceFromEnd"), 0x100000);
}

// What is left of the longer names is unknown text, so the next name needs no separator.
TEST(ParseRouteMode, OddityTheRestOfALongerNameIsScanned) {
  EXPECT_EQ(Parsed(ParseRouteMode, L"optimizeDestOrderKeepLastDestfastest"), 0x401);
  EXPECT_EQ(Parsed(ParseRouteMode, L"trailGuidanceFromEndshortest"), 0x100002);
}

TEST(ParseRouteMode, OddityDisableStreetSideAnnouncementHasTheBitOfFastest) {
  EXPECT_EQ(Parsed(ParseRouteMode, L"disableStreetSideAnnouncement"), 0x1);
  EXPECT_EQ(Parsed(ParseRouteMode, L"disableStreetSideAnnouncement|shortest"), 0x3);
  EXPECT_EQ(Parsed(ParseRouteMode, L"disableStreetSideAnnouncementshortest"), 0x1);
  EXPECT_EQ(Parsed(ParseRouteMode, L"disableStreetSideAnnouncemen"), 0);
}

TEST(ParseRouteMode, OddityScanGoesOnInsideIgnoreTrafficPatterns) {
  for (const auto& [name, bit] : kRouteModes) {
    EXPECT_EQ(Parsed(ParseRouteMode, L"ignoreTrafficPatterns" + name), 0x10000 | bit) << name;
  }
}

TEST(ParseRouteMode, TheWholeOfIgnoreTrafficPatternsIsNeeded) {
  EXPECT_EQ(Parsed(ParseRouteMode, L"ignoreTraffic"), 0);
  EXPECT_EQ(Parsed(ParseRouteMode, L"ignoreTraffic|Patterns"), 0);
}

TEST(ParseRouteMode, SeparatorIsNeverLookedAt) {
  EXPECT_EQ(Parsed(ParseRouteMode, L"fastest|shortest"), 0x3);
  EXPECT_EQ(Parsed(ParseRouteMode, L"fastest shortest"), 0x3);
  EXPECT_EQ(Parsed(ParseRouteMode, L"xxfastest"), 0x1);
  EXPECT_EQ(Parsed(ParseRouteMode, L"fastest|||unknown;;avoidIPD"), 0x41);
}

TEST(ParseRouteMode, NameThatIsGivenTwiceCountsOnce) {
  EXPECT_EQ(Parsed(ParseRouteMode, L"shortest|shortest|shortest"), 0x2);
}

TEST(ParseRouteMode, CannotSetEveryBitThatIsPrinted) {
  const std::wstring allNames =
      L"fastest|shortest|eScenicRoute|avoidMotorways|avoidFerries|avoidTollroads|avoidIPD|"
      L"avoidUnpaved|avoidBorder|ecoRoute|optimizeDestOrder|avoidCarTrain|avoidTimeRestricted|"
      L"avoidSeasonalRestricted|avoidTunnels|optimizeDestOrderKeepLastDest|ignoreTrafficPatterns|"
      L"noIPDGuidance|avoidRestrictedAccess|sportRoute|trailGuidance|trailGuidanceFromEnd";
  EXPECT_EQ(Parsed(ParseRouteMode, allNames), 0x3FFFFF & ~0x8000 & ~0x200000);
}

TEST(ParseWorldProperty, TheLongerZoomIsTriedFirst) {
  EXPECT_EQ(Parsed(ParseWorldProperty, L"zoomToRouteDifferences"), 0x100);
  EXPECT_EQ(Parsed(ParseWorldProperty, L"zoom|zoomToRouteDifferences"), 0x101);
  EXPECT_EQ(Parsed(ParseWorldProperty, L"zoomToRouteDifference"), 0x1);
}

TEST(ParseWorldProperty, VisibleIsNoPartOfSetItemVisibilities) {
  EXPECT_EQ(Parsed(ParseWorldProperty, L"setItemVisibilities"), 0x8);
  EXPECT_EQ(Parsed(ParseWorldProperty, L"setItemVisibilities|visible"), 0xC);
}

// Names that are looked for anywhere.

const Rows kTmcInfoFilters = {
    {L"tmcOnRoute", 0x1},     {L"tmcSignificent", 0x2}, {L"tmcNonSignificent", 0x4},
    {L"tmcAllMessages", 0x8}, {L"tmcAvoided", 0x10},    {L"tmcIgnoredMessages", 0x20},
};

TEST(ParseTmcInfoFilter, EachNameSetsItsBit) {
  for (const auto& [name, bit] : kTmcInfoFilters) {
    EXPECT_EQ(Parsed(ParseTmcInfoFilter, name), bit) << name;
    EXPECT_EQ(Parsed(ParseTmcInfoFilter, L"xx" + name + L"xx"), bit) << name;
    EXPECT_EQ(Parsed(ParseTmcInfoFilter, name + L'|' + name), bit) << name;
  }
}

// Unlike the scanned flags, these need no separator.
TEST(ParseTmcInfoFilter, NamesMayStandRightBehindEachOther) {
  for (const Row& first : kTmcInfoFilters) {
    for (const Row& second : kTmcInfoFilters) {
      EXPECT_EQ(Parsed(ParseTmcInfoFilter, first.name + second.name), first.value | second.value)
          << first.name << second.name;
      EXPECT_EQ(Parsed(ParseTmcInfoFilter, first.name + L'|' + second.name),
                first.value | second.value)
          << first.name << second.name;
    }
  }
}

TEST(ParseTmcInfoFilter, AllNamesAtOnce) {
  EXPECT_EQ(Parsed(ParseTmcInfoFilter,
                   L"tmcIgnoredMessages tmcAvoided tmcAllMessages tmcNonSignificent "
                   L"tmcSignificent tmcOnRoute"),
            0x3F);
}

TEST(ParseTmcInfoFilter, NameThatIsCutShortIsUnknown) {
  for (const auto& [name, bit] : kTmcInfoFilters) {
    EXPECT_EQ(Parsed(ParseTmcInfoFilter, name.substr(0, name.size() - 1)), 0) << name;
    EXPECT_EQ(Parsed(ParseTmcInfoFilter, name.substr(1)), 0) << name;
  }
}

TEST(ParseTmcInfoFilter, NothingKnownIsNoBit) {
  for (const wchar_t* text : {L"", L"x", L"tmc", L"1", L"TMCONROUTE", L"tmcAvoid", L"tmcIgnore",
                              L"tmcSignificant", L"tmcNonSignificant", L"tmcon route"}) {
    EXPECT_EQ(Parsed(ParseTmcInfoFilter, text), 0) << text;
  }
}

}  // namespace
}  // namespace ventrik::tests
