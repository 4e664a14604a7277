// SPDX-License-Identifier: Apache-2.0
// item, litem, citem and citems, as lines of the command language.
#include "command/list_store.h"
#include "tests/command/command_fixture.h"

namespace ventrik::tests {
namespace {

using Narrow = std::vector<std::string>;

const std::wstring kNeedsParameters = L"Command 'item' needs some parameters.\n";
const std::wstring kUnknownType = ErrorText(L"Unknown type in the 'item' command!");

const wchar_t* const kTypes[] = {L"SStringArray", L"SRouteHandleList", L"SDestinationElementList",
                                 L"SRouteModeList"};

// `item` with the type and as many parameters in all.
std::wstring ItemLine(const std::wstring& type, int parameterCount) {
  std::wstring line = L"item(\"" + type + L'"';
  for (int i = 1; i < parameterCount; ++i) line += L",\"p" + std::to_wstring(i) + L'"';
  return line + L')';
}

int CountOf(const std::wstring& type) {
  return type == L"SDestinationElementList" ? 4 : 3;
}

class ListCommandsTest : public CommandTest {
 protected:
  // The list commands themselves send nothing.
  void TearDown() override { EXPECT_EQ(server_.TakeEvents(), Events{}); }

  // Runs the lines; what they print is of no interest.
  void Quietly(const std::vector<std::wstring>& lines) {
    for (const std::wstring& line : lines) Run(line);
    Printed();
  }

  std::wstring PrintedBy(const std::wstring& line) {
    Printed();
    Run(line);
    return Printed();
  }

  std::size_t ListCount() const {
    return app_.stringArrayLists.size() + app_.routeHandleLists.size() +
           app_.destinationElementLists.size() + app_.routeModeLists.size();
  }
};

TEST_F(ListCommandsTest, ItemTellsWhereItWasAdded) {
  EXPECT_EQ(PrintedBy(L"item(\"SStringArray\",\"a\",\"text\")"),
            L"New SStringArray item is added to 'a'.\n");
  EXPECT_EQ(PrintedBy(L"item(\"SRouteHandleList\",\"b\",\"1\")"),
            L"New SRouteHandleList item is added to 'b'.\n");
  EXPECT_EQ(PrintedBy(L"item(\"SDestinationElementList\",\"c d\",\"text\",\"\")"),
            L"New SDestinationElement item is added to 'c d'.\n");
  EXPECT_EQ(PrintedBy(L"item(\"SRouteModeList\",\"%s\",\"fastest\")"),
            L"New SRouteModeList item is added to '%s'.\n");
}

TEST_F(ListCommandsTest, ItemGoesIntoTheListOfItsType) {
  for (const wchar_t* type : kTypes) {
    Run(ItemLine(type, CountOf(type)));
    EXPECT_EQ(ListItemsAsText(app_, type, "p1").size(), 1u) << type;
    Quietly({L"citems"});
  }
}

TEST_F(ListCommandsTest, ItemsAreAddedAtTheEnd) {
  Quietly({L"item(\"SStringArray\",\"a\",\"x\")", L"item(\"SStringArray\",\"b\",\"other\")",
           L"item(\"SStringArray\",\"a\",\"x\")", L"item(\"SStringArray\",\"a\",\"\")"});
  EXPECT_EQ(ListItemsAsText(app_, L"SStringArray", "a"), (Narrow{"x", "x", ""}));
  EXPECT_EQ(ListItemsAsText(app_, L"SStringArray", "b"), Narrow{"other"});
}

TEST_F(ListCommandsTest, ItemWithoutParametersSaysSo) {
  for (const wchar_t* line : {L"item", L"item()", L"item(,)", L" item ( ) "}) {
    EXPECT_EQ(PrintedBy(line), kNeedsParameters) << line;
  }
  EXPECT_EQ(ListCount(), 0u);
}

TEST_F(ListCommandsTest, OddityWrongCountIsAnUnknownType) {
  for (const std::wstring type : kTypes) {
    for (int count = 1; count <= 6; ++count) {
      if (count == CountOf(type)) continue;
      EXPECT_EQ(PrintedBy(ItemLine(type, count)), kUnknownType) << type << count;
    }
  }
  EXPECT_EQ(ListCount(), 0u);
}

TEST_F(ListCommandsTest, UnknownTypes) {
  for (const wchar_t* type :
       {L"", L"SRoadSegmentList", L"DetSStringArray", L"ListSStringArray", L"SDestinationElement",
        L"sstringarray", L"SStringArray ", L"SStringArra", L"SStringArrays", L"item"}) {
    for (int count = 1; count <= 6; ++count) {
      EXPECT_EQ(PrintedBy(ItemLine(type, count)), kUnknownType) << type << count;
    }
  }
  EXPECT_EQ(ListCount(), 0u);
}

TEST_F(ListCommandsTest, UnknownTypeIsOneRedText) {
  Run(L"item(\"x\")");
  EXPECT_EQ(console_.TakeTexts(),
            Texts{L"\033[1;31mError: Unknown type in the 'item' command!\n\033[0;37m"});
}

TEST_F(ListCommandsTest, MoreThanSixParametersAreBadSyntax) {
  EXPECT_EQ(PrintedBy(ItemLine(L"SStringArray", 7)), kBadSyntax);
}

TEST_F(ListCommandsTest, ErrorLeavesTheListAsItWas) {
  Quietly({L"item(\"SStringArray\",\"a\",\"x\")", L"item(\"SStringArray\",\"a\")",
           L"item(\"SStringArray\",\"a\",\"y\",\"z\")"});
  EXPECT_EQ(ListItemsAsText(app_, L"SStringArray", "a"), Narrow{"x"});
}

TEST_F(ListCommandsTest, RouteHandlesAreNumbersInAnyBase) {
  for (const wchar_t* handle : {L"0x10", L"10", L"010", L"-5", L"", L"ten", L"7seven", L"-1",
                                L"99999999999", L"-99999999999"}) {
    Run(std::wstring(L"item(\"SRouteHandleList\",\"h\",\"") + handle + L"\")");
  }
  EXPECT_EQ(app_.routeHandleLists.at("h")->items,
            (std::vector<std::int32_t>{16, 10, 8, -5, 0, 0, 7, -1, 2147483647, -2147483647 - 1}));
  EXPECT_EQ(PrintedBy(L"litem(\"h\")"),
            L"Type: SRouteHandleList\n"
            L"Item[0]=16\n"
            L"Item[1]=10\n"
            L"Item[2]=8\n"
            L"Item[3]=-5\n"
            L"Item[4]=0\n"
            L"Item[5]=0\n"
            L"Item[6]=7\n"
            L"Item[7]=-1\n"
            L"Item[8]=2147483647\n"
            L"Item[9]=-2147483648\n");
}

TEST_F(ListCommandsTest, RouteModesAreReadFromTheirNames) {
  Quietly({L"item(\"SRouteModeList\",\"m\",\"fastest\")",
           L"item(\"SRouteModeList\",\"m\",\"avoidFerries fastest\")",
           L"item(\"SRouteModeList\",\"m\",\"\")", L"item(\"SRouteModeList\",\"m\",\"nonsense\")",
           L"item(\"SRouteModeList\",\"m\",\"trailGuidanceFromEnd\")",
           L"item(\"SRouteModeList\",\"m\",\"disableStreetSideAnnouncement\")"});
  EXPECT_EQ(app_.routeModeLists.at("m")->items,
            (std::vector<std::int32_t>{0x1, 0x11, 0, 0, 0x100000, 0x1}));
  EXPECT_EQ(PrintedBy(L"litem(\"m\")"),
            L"Type: SRouteModeList\n"
            L"Item[0]=fastest\n"
            L"Item[1]=fastest|avoidFerries\n"
            L"Item[2]=0\n"
            L"Item[3]=0\n"
            L"Item[4]=trailGuidance\n"
            L"Item[5]=fastest\n");
}

TEST_F(ListCommandsTest, LitemShowsStringsBetweenQuotes) {
  Quietly({L"item(\"SStringArray\",\"a\",\"x y\")", L"item(\"SStringArray\",\"a\",\"\")",
           L"item(\"SStringArray\",\"a\",\"%d'%s\")",
           L"item(\"SStringArray\",\"a\",\"<CTY>New York<*>\")"});
  EXPECT_EQ(PrintedBy(L"litem(\"a\")"),
            L"Type: SStringArray\n"
            L"Item[0]='x y'\n"
            L"Item[1]=''\n"
            L"Item[2]='%d'%s'\n"
            L"Item[3]='<CTY>New York<*>'\n");
}

TEST_F(ListCommandsTest, LitemShowsTheKindsOfANameInOrder) {
  Quietly({L"item(\"SRouteModeList\",\"a\",\"shortest\")",
           L"item(\"SDestinationElementList\",\"a\",\"A\",\"a\")",
           L"item(\"SRouteHandleList\",\"a\",\"0x10\")", L"item(\"SStringArray\",\"a\",\"x\")",
           L"item(\"SStringArray\",\"a\",\"y\")", L"item(\"SStringArray\",\"b\",\"z\")"});
  EXPECT_EQ(PrintedBy(L"litem(\"a\")"),
            L"Type: SStringArray\n"
            L"Item[0]='x'\n"
            L"Item[1]='y'\n"
            L"Type: SRouteHandleList\n"
            L"Item[0]=16\n"
            L"Type: SDestinationElementList\n"
            L"Item[0]=(\"A\",(\"x\",\"y\"))\n"
            L"Type: SRouteModeList\n"
            L"Item[0]=shortest\n");
}

TEST_F(ListCommandsTest, LitemOfAnUnknownNamePrintsNothing) {
  Quietly({L"item(\"SStringArray\",\"a\",\"x\")"});
  for (const wchar_t* line : {L"litem(\"b\")", L"litem(\"A\")", L"litem(\"\")", L"litem(\"a \")"}) {
    EXPECT_EQ(PrintedBy(line), L"") << line;
  }
  EXPECT_EQ(ListCount(), 1u) << "looking creates no list";
}

TEST_F(ListCommandsTest, LitemOfAnEmptyListIsItsHeading) {
  Run(L"blk(\"1\",\"nosuch\")");
  EXPECT_EQ(server_.TakeEvents().size(), 1u);
  EXPECT_EQ(PrintedBy(L"litem(\"nosuch\")"), L"Type: SStringArray\n");
}

TEST_F(ListCommandsTest, LitemAndCitemNeedOneParameter) {
  Quietly({L"item(\"SStringArray\",\"a\",\"x\")"});
  EXPECT_EQ(PrintedBy(L"litem"), CountError(L'l', 1));
  EXPECT_EQ(PrintedBy(L"litem(\"a\",\"a\")"), CountError(L'l', 1));
  EXPECT_EQ(PrintedBy(L"citem"), CountError(L'c', 1));
  EXPECT_EQ(PrintedBy(L"citem()"), CountError(L'c', 1));
  EXPECT_EQ(PrintedBy(L"citem(\"a\",\"a\")"), CountError(L'c', 1));
  EXPECT_EQ(ListCount(), 1u);
}

TEST_F(ListCommandsTest, CitemDeletesTheListsOfEveryKind) {
  for (const wchar_t* type : kTypes) Run(ItemLine(type, CountOf(type)));
  Quietly({L"item(\"SStringArray\",\"other\",\"x\")"});
  EXPECT_EQ(PrintedBy(L"citem(\"p1\")"), L"Lists 'p1' were deleted.\n");
  EXPECT_EQ(PrintedBy(L"litem(\"p1\")"), L"");
  // The destination's attributes were made as a list of their own.
  EXPECT_EQ(PrintedBy(L"litem(\"p3\")"), L"Type: SStringArray\n");
  EXPECT_EQ(PrintedBy(L"litem(\"other\")"), L"Type: SStringArray\nItem[0]='x'\n");
}

TEST_F(ListCommandsTest, CitemOfAnUnknownNameSaysTheSame) {
  EXPECT_EQ(PrintedBy(L"citem(\"x\")"), L"Lists 'x' were deleted.\n");
  EXPECT_EQ(PrintedBy(L"citem(\"\")"), L"Lists '' were deleted.\n");
  EXPECT_EQ(PrintedBy(L"citem(\"%d\u0151\")"), L"Lists '%d\u0151' were deleted.\n");
}

TEST_F(ListCommandsTest, CitemsDeletesEverythingWithAnyParameters) {
  for (const wchar_t* line :
       {L"citems", L"citems()", L"citems(\"a\")", L"citems(\"1\",\"2\",\"3\",\"4\",\"5\",\"6\")"}) {
    for (const wchar_t* type : kTypes) Run(ItemLine(type, CountOf(type)));
    Quietly({L"item(\"SStringArray\",\"\",\"x\")"});
    EXPECT_EQ(PrintedBy(line), L"All list items are deleted.\n") << line;
    EXPECT_EQ(ListCount(), 0u) << line;
    EXPECT_EQ(PrintedBy(line), L"All list items are deleted.\n") << line;
  }
}

TEST_F(ListCommandsTest, ListCanBeMadeAgainAfterDeleting) {
  Quietly({L"item(\"SStringArray\",\"a\",\"old\")", L"citem(\"a\")",
           L"item(\"SStringArray\",\"a\",\"new\")"});
  EXPECT_EQ(PrintedBy(L"litem(\"a\")"), L"Type: SStringArray\nItem[0]='new'\n");
}

TEST_F(ListCommandsTest, EmptyNameIsANameLikeAnyOther) {
  EXPECT_EQ(PrintedBy(L"item(\"SStringArray\",\"\",\"x\")"),
            L"New SStringArray item is added to ''.\n");
  EXPECT_EQ(PrintedBy(L"litem(\"\")"), L"Type: SStringArray\nItem[0]='x'\n");
  Quietly({L"citem(\"\")"});
  EXPECT_EQ(ListCount(), 0u);
}

// Characters above 255 have no byte of their own, so such names run together.
TEST_F(ListCommandsTest, NamesAreNarrowedToOneByteForEachCharacter) {
  EXPECT_EQ(PrintedBy(L"item(\"SStringArray\",\"l\u0151\",\"x\")"),
            L"New SStringArray item is added to 'l\u0151'.\n");
  Quietly(
      {L"item(\"SStringArray\",\"l\u0171\",\"y\")", L"item(\"SStringArray\",\"\u00E9\",\"z\")"});
  EXPECT_EQ(ListItemsAsText(app_, L"SStringArray", "l?"), (Narrow{"x", "y"}));
  EXPECT_EQ(ListItemsAsText(app_, L"SStringArray", "\xE9"), Narrow{"z"});
  EXPECT_EQ(PrintedBy(L"litem(\"l?\")"), L"Type: SStringArray\nItem[0]='x'\nItem[1]='y'\n");
  EXPECT_EQ(PrintedBy(L"litem(\"\u00E9\")"), L"Type: SStringArray\nItem[0]='z'\n");
  EXPECT_EQ(PrintedBy(L"litem(\"e\")"), L"");
  EXPECT_EQ(PrintedBy(L"citem(\"l\u20AC\")"), L"Lists 'l\u20AC' were deleted.\n");
  EXPECT_EQ(PrintedBy(L"litem(\"l?\")"), L"");
}

TEST_F(ListCommandsTest, TextsAreKeptInUtf8) {
  Quietly({L"item(\"SStringArray\",\"a\",\"\u00E9\u0151\u20AC\")",
           L"item(\"SDestinationElementList\",\"a\",\"\u00D6\",\"a\")"});
  EXPECT_EQ(ListItemsAsText(app_, L"SStringArray", "a"), Narrow{"\xC3\xA9\xC5\x91\xE2\x82\xAC"});
  EXPECT_EQ(app_.destinationElementLists.at("a")->items.at(0).text, "\xC3\x96");
  EXPECT_EQ(PrintedBy(L"litem(\"a\")"),
            L"Type: SStringArray\n"
            L"Item[0]='\u00E9\u0151\u20AC'\n"
            L"Type: SDestinationElementList\n"
            L"Item[0]=(\"\u00D6\",(\"\u00E9\u0151\u20AC\"))\n");
}

TEST_F(ListCommandsTest, OddityTextsHaveAtMostThreeBytesForACharacter) {
  Quietly({L"item(\"SStringArray\",\"a\",\"\U0001F600\")"});
  EXPECT_EQ(ListItemsAsText(app_, L"SStringArray", "a"), Narrow{"\xFF\x98\x80"});
}

TEST_F(ListCommandsTest, DestinationSharesTheNamedList) {
  Quietly({L"item(\"SStringArray\",\"x\",\"one\")",
           L"item(\"SDestinationElementList\",\"d\",\"A\",\"x\")",
           L"item(\"SDestinationElementList\",\"e\",\"B\",\"x\")",
           L"item(\"SStringArray\",\"x\",\"two\")"});
  EXPECT_EQ(PrintedBy(L"litem(\"d\")"),
            L"Type: SDestinationElementList\nItem[0]=(\"A\",(\"one\",\"two\"))\n");
  EXPECT_EQ(PrintedBy(L"litem(\"e\")"),
            L"Type: SDestinationElementList\nItem[0]=(\"B\",(\"one\",\"two\"))\n");
}

TEST_F(ListCommandsTest, DestinationCreatesTheListThatItNames) {
  Quietly({L"item(\"SDestinationElementList\",\"d\",\"A\",\"x\u0151\")"});
  EXPECT_EQ(PrintedBy(L"litem(\"x?\")"), L"Type: SStringArray\n");
  EXPECT_EQ(PrintedBy(L"litem(\"d\")"), L"Type: SDestinationElementList\nItem[0]=(\"A\",())\n");
  Quietly({L"item(\"SStringArray\",\"x?\",\"late\")"});
  EXPECT_EQ(PrintedBy(L"litem(\"d\")"),
            L"Type: SDestinationElementList\nItem[0]=(\"A\",(\"late\"))\n");
}

TEST_F(ListCommandsTest, DestinationWithoutAListNameHasNoAttributes) {
  Quietly({L"item(\"SDestinationElementList\",\"d\",\"t\",\"\")"});
  EXPECT_EQ(PrintedBy(L"litem(\"d\")"), L"Type: SDestinationElementList\nItem[0]=(\"t\",())\n");
  EXPECT_EQ(app_.stringArrayLists.size(), 0u);
}

TEST_F(ListCommandsTest, EmptyListNameIsNotTheListOfThatName) {
  Quietly({L"item(\"SStringArray\",\"\",\"x\")",
           L"item(\"SDestinationElementList\",\"d\",\"t\",\"\")",
           L"item(\"SStringArray\",\"\",\"y\")"});
  EXPECT_EQ(PrintedBy(L"litem(\"d\")"), L"Type: SDestinationElementList\nItem[0]=(\"t\",())\n");
}

TEST_F(ListCommandsTest, DestinationKeepsReadingADeletedList) {
  Quietly({L"item(\"SStringArray\",\"x\",\"old\")",
           L"item(\"SDestinationElementList\",\"d\",\"A\",\"x\")", L"citem(\"x\")",
           L"item(\"SStringArray\",\"x\",\"new\")",
           L"item(\"SDestinationElementList\",\"d\",\"B\",\"x\")"});
  EXPECT_EQ(PrintedBy(L"litem(\"d\")"),
            L"Type: SDestinationElementList\n"
            L"Item[0]=(\"A\",(\"old\"))\n"
            L"Item[1]=(\"B\",(\"new\"))\n");
}

TEST_F(ListCommandsTest, CitemOfADestinationLeavesItsAttributes) {
  Quietly({L"item(\"SStringArray\",\"x\",\"kept\")",
           L"item(\"SDestinationElementList\",\"d\",\"A\",\"x\")", L"citem(\"d\")"});
  EXPECT_EQ(PrintedBy(L"litem(\"x\")"), L"Type: SStringArray\nItem[0]='kept'\n");
}

TEST_F(ListCommandsTest, OddityEleventhDestinationLosesFive) {
  for (int i = 0; i < 11; ++i) {
    Run(L"item(\"SDestinationElementList\",\"d\",\"" + std::to_wstring(i) + L"\",\"x\")");
    Run(L"item(\"SStringArray\",\"s\",\"" + std::to_wstring(i) + L"\")");
  }
  Quietly({L"item(\"SStringArray\",\"x\",\"y\")"});
  std::wstring destinations = L"Type: SDestinationElementList\n";
  std::wstring strings = L"Type: SStringArray\n";
  for (int i = 0; i < 11; ++i) {
    const std::wstring index = L"Item[" + std::to_wstring(i) + L"]=";
    const bool lost = i >= 5 && i < 10;
    destinations += index;
    destinations += lost ? L"(\"\",())\n" : L"(\"" + std::to_wstring(i) + L"\",(\"y\"))\n";
    strings += index + L'\'' + std::to_wstring(i) + L"'\n";
  }
  EXPECT_EQ(PrintedBy(L"litem(\"d\")"), destinations);
  EXPECT_EQ(PrintedBy(L"litem(\"s\")"), strings);
}

TEST_F(ListCommandsTest, NamesOfTheCommandsAreExact) {
  for (const wchar_t* line : {L"items(\"a\")", L"Item(\"a\")", L"litems(\"a\")", L"citemss",
                              L"ite(\"SStringArray\",\"a\",\"x\")"}) {
    EXPECT_EQ(PrintedBy(line), kUnknownCommand) << line;
  }
  EXPECT_EQ(ListCount(), 0u);
}

}  // namespace
}  // namespace ventrik::tests
