// SPDX-License-Identifier: Apache-2.0
#include "monkey/monkey_config.h"

#include <climits>
#include <sstream>

#include "tests/monkey/monkey_fixture.h"

namespace ventrik::tests {
namespace {

using Sections = std::vector<std::string>;

// "name base current activeRoute key=factor ...", with the blanks of a key as "_".
std::string Told(const MonkeyCommandRecord& record) {
  std::ostringstream text;
  text << std::string(record.name.begin(), record.name.end()) << ' ' << record.baseWeight << ' '
       << record.currentWeight << ' ' << record.activeRouteWeight;
  for (const auto& [key, factor] : record.influences) {
    text << ' ';
    for (const wchar_t letter : key) text << (letter == L' ' ? '_' : static_cast<char>(letter));
    text << '=' << factor;
  }
  return text.str();
}

Sections Parsed(std::string_view file) {
  MonkeyRegion region;
  Sections sections;
  for (const MonkeyCommandRecord& record : ParseMonkeyConfig(file, region)) {
    sections.push_back(Told(record));
  }
  return sections;
}

// The one section that these key lines make.
std::string Section(const std::string& keyLines) {
  const Sections sections = Parsed("[a]\n" + keyLines + "\n");
  EXPECT_EQ(sections.size(), 1u) << keyLines;
  return sections.empty() ? "" : sections.front();
}

using Bounds = std::vector<std::int32_t>;

Bounds BoundsOf(const MonkeyRegion& region) {
  return {region.longitudeMin, region.longitudeMax, region.latitudeMin, region.latitudeMax};
}

// The bounds after a file; all 0 at first.
Bounds Region(std::string_view file) {
  MonkeyRegion region;
  ParseMonkeyConfig(file, region);
  return BoundsOf(region);
}

const Bounds kNone = {0, 0, 0, 0};
const Bounds kNorthAmerica = {-128, -61, 30, 50};
const Bounds kEurope = {-8, 40, 37, 57};

TEST(ParseMonkeyConfig, FileWithoutASectionHasNoRecords) {
  for (const char* file :
       {"", "\n", "\n\n\n", "text", "default=5\nrkill=1\n", " [a]\n", "\t[a]\n"}) {
    EXPECT_EQ(Parsed(file), Sections{}) << file;
  }
}

TEST(ParseMonkeyConfig, SectionsAreKeptInTheOrderOfTheFile) {
  EXPECT_EQ(Parsed("[verd]\ndefault=5\n\n[adas]\ndefault=2\n\n"),
            (Sections{"verd 5 5 5", "adas 2 2 2"}));
}

TEST(ParseMonkeyConfig, SectionsOfTheSameNameAreKeptApart) {
  EXPECT_EQ(Parsed("[a]\ndefault=5\n\n[a]\ndefault=2\n\n"), (Sections{"a 5 5 5", "a 2 2 2"}));
}

TEST(ParseMonkeyConfig, TextBetweenSectionsIsAComment) {
  EXPECT_EQ(Parsed("intro\n[a]\ndefault=5\n\ntext\ndefault=9\n\n\n [b]\n[c]\ndefault=1\n"),
            (Sections{"a 5 5 5", "c 1 1 1"}));
}

TEST(ParseMonkeyConfig, NameIsTheHeaderWithoutItsEnds) {
  const std::pair<const char*, const char*> kHeaders[] = {
      {"[verd]", "verd"},
      {"[abX", "ab"},
      {"[ab] ", "ab]"},
      {"[]", ""},
      {"[", ""},
      {"[a", ""},
      {"[ab", "a"},
      {"[ a b ]", " a b "},
      {"[[a]]", "[a]"},
      {"[a=b]", "a=b"},
      {"[Config]", "Config"},
      {"[config] ", "config]"},
      {"[wait(\"3\")]", "wait(\"3\")"},
      {"[batch(\"a.txt\")]", "batch(\"a.txt\")"},
  };
  for (const auto& [header, name] : kHeaders) {
    EXPECT_EQ(Parsed(std::string(header) + "\ndefault=1\n"), Sections{name + std::string(" 1 1 1")})
        << header;
  }
}

TEST(ParseMonkeyConfig, MinusOrSemicolonSwitchesASectionOff) {
  for (const char* header : {"[-a]", "[;a]", "[-", "[;", "[-config]", "[--", "[-;"}) {
    EXPECT_EQ(Parsed("[x]\ndefault=1\n\n" + std::string(header) +
                     "\ndefault=7\nifactiveroute=9\nx=3\n\n[y]\n\n[z]\ndefault=2\n"),
              (Sections{"x 1 1 1", "y 1 1 1", "z 2 2 2"}))
        << header;
  }
}

TEST(ParseMonkeyConfig, OnlyAnEmptyLineEndsASection) {
  EXPECT_EQ(Parsed("[a]\ndefault=1\n[b]\ndefault=2\n\n[c]\n"),
            (Sections{"a 2 2 2 [b]=0", "c 2 2 2"}));
  EXPECT_EQ(Parsed("[a]\ndefault=1\n \n[-b]\n\n"), Sections{"a 1 1 1 _=0 [-b]=0"});
}

TEST(ParseMonkeyConfig, SemicolonBeginsACommentInASection) {
  EXPECT_EQ(Section("default=1\n;default=2\n; x=3\n;"), "a 1 1 1");
  EXPECT_EQ(Section("default=1\n ;x=3"), "a 1 1 1 _;x=3");
}

TEST(ParseMonkeyConfig, SectionWithoutKeysIsKept) {
  EXPECT_EQ(Parsed("[a]\n\n[b]\n"), (Sections{"a 0 0 0", "b 0 0 0"}));
}

TEST(ParseMonkeyConfig, LastSectionNeedsNoEmptyLineAndNoLineFeed) {
  EXPECT_EQ(Parsed("[a]\ndefault=1\n"), Sections{"a 1 1 1"});
  EXPECT_EQ(Parsed("[a]\ndefault=1"), Sections{"a 1 1 1"});
  EXPECT_EQ(Parsed("[a]\ndefault=1\nx=2"), Sections{"a 1 1 1 x=2"});
  EXPECT_EQ(Parsed("[a]\n"), Sections{"a 0 0 0"});
  EXPECT_EQ(Parsed("[a]"), Sections{"a 0 0 0"});
}

TEST(ParseMonkeyConfig, DefaultSetsAllThreeWeights) {
  EXPECT_EQ(Section("default=5"), "a 5 5 5");
}

TEST(ParseMonkeyConfig, IfActiveRouteBelowTheDefaultSetsTheThird) {
  EXPECT_EQ(Section("default=5\nifactiveroute=9"), "a 5 5 9");
  EXPECT_EQ(Section("default=0\nifactiveroute=5"), "a 0 0 5");
}

TEST(ParseMonkeyConfig, OddityIfActiveRouteAboveTheDefaultIsLost) {
  EXPECT_EQ(Section("ifactiveroute=9\ndefault=5"), "a 5 5 5");
}

TEST(ParseMonkeyConfig, SecondDefaultWins) {
  EXPECT_EQ(Section("default=5\nifactiveroute=1\ndefault=2"), "a 2 2 2");
}

TEST(ParseMonkeyConfig, WeightsMayBeFollowedByAnything) {
  const std::pair<const char*, int> kNumbers[] = {
      {"5 per cent", 5},
      {"5;6", 5},
      {"5=6", 5},
      {"-3", -3},
      {"+3", 3},
      {"  7", 7},
      {"\t7", 7},
      {"", 0},
      {"many", 0},
      {"0x10", 0},
      {"010", 10},
      {"2.9", 2},
      {"\"5\"", 0},
      {"- 5", 0},
      {"2147483647", INT_MAX},
      {"2147483648", INT_MAX},
      {"-2147483648", INT_MIN},
      {"-99999999999", INT_MIN},
      {"99999999999999999999999", INT_MAX},
  };
  for (const auto& [text, number] : kNumbers) {
    const std::string word = std::to_string(number);
    EXPECT_EQ(Section(std::string("default = ") + text), "a " + word + " " + word + " " + word)
        << text;
    EXPECT_EQ(Section(std::string("ifactiveroute = ") + text), "a 0 0 " + word) << text;
  }
}

TEST(ParseMonkeyConfig, OtherKeysAreFactors) {
  EXPECT_EQ(Section("rkill=0.5\nstart = 20"), "a 0 0 0 rkill=0.5 start=20");
}

TEST(ParseMonkeyConfig, FactorsMayBeFollowedByAnything) {
  const std::pair<const char*, const char*> kNumbers[] = {
      {"0.5x", "0.5"}, {"1e2", "100"}, {"-2.25", "-2.25"}, {"  3", "3"}, {".5", "0.5"},
      {"", "0"},       {"text", "0"},  {"0,5", "0"},       {"1=2", "1"}, {"1e99", "inf"},
  };
  for (const auto& [text, number] : kNumbers) {
    EXPECT_EQ(Section(std::string("x = ") + text), std::string("a 0 0 0 x=") + number) << text;
  }
}

TEST(ParseMonkeyConfig, FactorsHaveThirtyTwoBits) {
  MonkeyRegion region;
  const auto records = ParseMonkeyConfig("[a]\nx=0.1\n", region);
  EXPECT_EQ(records.at(0).influences.at(L"x"), 0.1f);
}

TEST(ParseMonkeyConfig, RepeatedFactorKeepsTheLast) {
  EXPECT_EQ(Section("x=1\ny=2\nx=3"), "a 0 0 0 x=3 y=2");
}

TEST(ParseMonkeyConfig, FactorsAreSortedByCharacterAndShorterFirst) {
  EXPECT_EQ(Section("ab=1\nb=2\na=3\nB=4\n1=5"), "a 0 0 0 1=5 B=4 a=3 ab=1 b=2");
}

TEST(ParseMonkeyConfig, KeysAreWholeAndLowerCase) {
  EXPECT_EQ(Section("Default=1\ndefaults=2\nifactiveRoute=3"),
            "a 0 0 0 Default=1 defaults=2 ifactiveRoute=3");
}

TEST(ParseMonkeyConfig, OneBlankOnBothSidesIsAsGoodAsNone) {
  EXPECT_EQ(Section("default=5"), "a 5 5 5");
  EXPECT_EQ(Section("default = 5"), "a 5 5 5");
  EXPECT_EQ(Section("default =   5"), "a 5 5 5");
  EXPECT_EQ(Section("default=5\nifactiveroute = 4"), "a 5 5 4");
}

TEST(ParseMonkeyConfig, OddityKeyIsCutByTheCharacterBehindTheEqualsSign) {
  EXPECT_EQ(Section("default =5"), "a 0 0 0 default_=5");
  EXPECT_EQ(Section("default= 5"), "a 0 0 0 defaul=5");
  EXPECT_EQ(Section("default  = 5"), "a 0 0 0 default_=5");
  EXPECT_EQ(Section("defaultX= 5"), "a 5 5 5");
  EXPECT_EQ(Section("default=\t5"), "a 5 5 5");
  EXPECT_EQ(Section("default= "), "a 0 0 0 defaul=0");
}

TEST(ParseMonkeyConfig, KeyBeforeALeadingEqualsSignIsEmpty) {
  EXPECT_EQ(Section("=5"), "a 0 0 0 =5");
  EXPECT_EQ(Section("= 5"), "a 0 0 0 =5");
  EXPECT_EQ(Section("="), "a 0 0 0 =0");
}

TEST(ParseMonkeyConfig, LineWithoutAnEqualsSignIsKeyAndValue) {
  EXPECT_EQ(Section("verd\n3x"), "a 0 0 0 3x=3 verd=0");
  EXPECT_EQ(Section(" 4 y"), "a 0 0 0 _4_y=4");
}

TEST(ParseMonkeyConfig, OddityDefaultWithoutAnEqualsSignIsZero) {
  EXPECT_EQ(Section("default=5\nifactiveroute=6\ndefault"), "a 0 0 0");
}

TEST(ParseMonkeyConfig, OddityWeightsAreCarriedOverBetweenSections) {
  EXPECT_EQ(Parsed("[a]\ndefault=5\nifactiveroute=6\n\n[b]\n\n[c]\nifactiveroute=1\n\n[d]\n"),
            (Sections{"a 5 5 6", "b 5 5 6", "c 5 5 1", "d 5 5 1"}));
}

TEST(ParseMonkeyConfig, FactorsAreNotCarriedOver) {
  EXPECT_EQ(Parsed("[a]\nx=1\n\n[b]\ny=2\n\n[c]\n"),
            (Sections{"a 0 0 0 x=1", "b 0 0 0 y=2", "c 0 0 0"}));
}

TEST(ParseMonkeyConfig, RegionSectionLeavesTheCarriedWeights) {
  EXPECT_EQ(Parsed("[a]\ndefault=5\n\n[config]\ndefault = 7\n\n[b]\n"),
            (Sections{"a 5 5 5", "b 5 5 5"}));
}

TEST(ParseMonkeyConfig, OddityCarriageReturnSpoilsItsLine) {
  EXPECT_EQ(Parsed("[start]\r\ndefault=1\r\n\r\n[verd]\r\ndefault=2\r\n"),
            Sections{"start] 2 2 2 \r=0 [verd]\r=0"});
  EXPECT_EQ(Parsed("[config]\r\ncontent = na\r\n\r\n"), Sections{"config] 0 0 0 \r=0 content=0"});
  EXPECT_EQ(Region("[config]\r\ncontent = na\r\n\r\n"), kNone);
  EXPECT_EQ(Region("[config]\ncontent = na\r\n\n"), kNone);
}

TEST(ParseMonkeyConfig, BytesAreWidenedOneByOne) {
  MonkeyRegion region;
  const auto records = ParseMonkeyConfig("[\xC3\xA9\xFF]\n\xE9=1\n", region);
  EXPECT_EQ(records.at(0).name, L"\u00C3\u00A9\u00FF");
  EXPECT_EQ(records.at(0).influences.count(L"\u00E9"), 1u);
}

TEST(ParseMonkeyConfig, LinesMayBeAMegabyteLong) {
  const std::string megabyte(1u << 20, 'x');
  EXPECT_EQ(Parsed(megabyte + "\n[" + megabyte + "]\n" + megabyte + "=2\n;" + megabyte +
                   "\ndefault=1" + megabyte),
            Sections{megabyte + " 1 1 1 " + megabyte + "=2"});
}

TEST(MonkeyRegionSection, ContentNamesTheRegion) {
  EXPECT_EQ(Region("[config]\ncontent = na\n"), kNorthAmerica);
  EXPECT_EQ(Region("[config]\ncontent = eu\n"), kEurope);
  EXPECT_EQ(Region("[config]\ncontent =eu\n"), kEurope);
  EXPECT_EQ(Region("[config]\ncontent =   eu\n"), kEurope);
}

TEST(MonkeyRegionSection, OddityCharacterBeforeTheEqualsSignIsTakenForABlank) {
  EXPECT_EQ(Region("[config]\ncontent=na\n"), kNone);
  EXPECT_EQ(Region("[config]\ncontentX=na\n"), kNorthAmerica);
  EXPECT_EQ(Region("[config]\ncontent  = na\n"), kNone);
}

TEST(MonkeyRegionSection, OtherKeysAndValuesAreIgnored) {
  for (const char* line : {"content = ", "content = xx", "content = NA", "content = na ",
                           "content = nad", "Content = na", "region = na", "content", "=", "= na",
                           "na", ";content = na", " content = na", "content = =na"}) {
    EXPECT_EQ(Region("[config]\n" + std::string(line) + "\n\n"), kNone) << line;
  }
}

TEST(MonkeyRegionSection, LastContentWins) {
  EXPECT_EQ(Region("[config]\ncontent = na\ncontent = eu\ncontent = xx\n"), kEurope);
  EXPECT_EQ(Region("[config]\ncontent = eu\n\n[a]\n\n[config]\ncontent = na\n"), kNorthAmerica);
}

TEST(MonkeyRegionSection, OddityLastLineNeedsALineFeed) {
  EXPECT_EQ(Region("[config]\ncontent = na"), kNone);
  EXPECT_EQ(Region("[config]\ncontent = na\ncontent = eu"), kNorthAmerica);
}

TEST(MonkeyRegionSection, EndsAtAnEmptyLineAlone) {
  EXPECT_EQ(Region("[config]\n\ncontent = na\n"), kNone);
  EXPECT_EQ(Region("[config]\n[a]\n;x\ncontent = na\n"), kNorthAmerica);
  EXPECT_EQ(Parsed("[config]\n[a]\ndefault=1\n\n[b]\n"), Sections{"b 0 0 0"});
  EXPECT_EQ(Parsed("[config]\ncontent = na\n\ntext\n[b]\n"), Sections{"b 0 0 0"});
  EXPECT_EQ(Parsed("[config]"), Sections{});
}

TEST(MonkeyRegionSection, WithoutOneTheRegionStays) {
  MonkeyRegion region = {1, 2, 3, 4};
  ParseMonkeyConfig("[a]\ncontent = na\n\n[config]\ncontent = xx\n\n", region);
  EXPECT_EQ(BoundsOf(region), (Bounds{1, 2, 3, 4}));
}

}  // namespace
}  // namespace ventrik::tests
