// SPDX-License-Identifier: Apache-2.0
// The commands that run others first, through the interpreter: det, rkill and rnew.
#include "monkey/command_generation.h"
#include "monkey/weights.h"
#include "tests/monkey/monkey_fixture.h"

namespace ventrik::tests {
namespace {

using Handles = std::vector<std::int32_t>;

std::wstring Deleted(const std::wstring& list) {
  return L"Lists '" + list + L"' were deleted.\n";
}

std::wstring Added(const std::wstring& type, const std::wstring& list) {
  return L"New " + type + L" item is added to '" + list + L"'.\n";
}

class PreparedCommandsTest : public MonkeyTest {
 protected:
  std::wstring Generated(const std::wstring& name, const Draws& draws) {
    return Appended(
        draws, [&] { GenerateParameters(app_, monkey_, name); }, name);
  }

  // The items of a list; "(none)" alone if there is no such list.
  Events Strings(const std::string& name) const {
    const auto found = app_.stringArrayLists.find(name);
    return found == app_.stringArrayLists.end() ? Events{"(none)"} : found->second->items;
  }

  // The destinations' texts of the list that rnew names.
  Events Destinations() const {
    Events texts;
    for (const auto& element : app_.destinationElementLists.at("de")->items) {
      EXPECT_EQ(element.attributes->items, Events{});
      texts.push_back(element.text);
    }
    return texts;
  }

  std::size_t NotesOf(const std::wstring& type) const {
    std::size_t count = 0;
    for (const ItemRecord& record : monkey_.itemRecords) count += record.type == type ? 1 : 0;
    return count;
  }

  // Of a position where no region is set, "0000000 0000000".
  const Draws kPosition = {0, 0};
};

Draws Joined(const std::vector<Draws>& parts) {
  Draws all;
  for (const Draws& part : parts) all.insert(all.end(), part.begin(), part.end());
  return all;
}

TEST_F(PreparedCommandsTest, DetAsksForAllFieldsMostOfTheTime) {
  SetSearch(monkey_, L"<CTR>AT<*>", L"<CTY>x<*>");
  for (const int drawn : {0, 74, 101}) {
    EXPECT_EQ(Generated(L"det", {drawn}), L"det(\"<CTR>AT<*>\", \"allitem\")");
    EXPECT_EQ(Strings("allitem"), Events{"<ALL>"});
    EXPECT_EQ(console_.TakeTexts(),
              (Texts{Deleted(L"allitem"), Added(L"SStringArray", L"allitem")}));
  }
}

TEST_F(PreparedCommandsTest, DetAsksForSomeFieldsOtherwise) {
  Generated(L"det", {75, 0, 12});
  EXPECT_EQ(Strings("allitem"), Events{"<GEO>"});
  Generated(L"det", {100, 7, 1, 2, 2, 3});
  EXPECT_EQ(Strings("allitem"), (Events{"<CTR>", "<STA>", "<STA>", "<CTY>"}));
}

TEST_F(PreparedCommandsTest, DetWithoutAPathSendsAnEmptyOne) {
  EXPECT_EQ(Generated(L"det", {0}), L"det(\"\", \"allitem\")");
  EXPECT_TRUE(monkey_.commandValid);
}

TEST_F(PreparedCommandsTest, DetNotesNoItems) {
  Generated(L"det", {75, 0, 12});
  EXPECT_TRUE(monkey_.itemRecords.empty());
}

TEST_F(PreparedCommandsTest, PreparingCommandsSendNothing) {
  Generated(L"det", {0});
  Generated(L"rkill", {0});
  Generated(L"rnew", Joined({{0, 0}, {0}, {0}, kPosition}));
  EXPECT_EQ(server_.TakeEvents(), Events{});
}

TEST_F(PreparedCommandsTest, PreparingCommandsRunUnderTheLock) {
  bool free = true;
  console_.onPrint = [&free](const std::wstring&) { free = LockIsFree(); };
  Generated(L"det", {0});
  EXPECT_FALSE(free);
  EXPECT_TRUE(LockIsFree());
}

// The item lines end in a doubled closing, so the parser refuses them.
TEST_F(PreparedCommandsTest, OddityRkillFindsNoList) {
  monkey_.routeHandles.Store({11, 22, 33});
  EXPECT_EQ(Generated(L"rkill", {1, 0, 5}), L"rkill(\"rh\")");
  EXPECT_EQ(console_.TakeTexts(), (Texts{Deleted(L"rh"), kBadSyntax, kBadSyntax}));
  EXPECT_TRUE(app_.routeHandleLists.empty());
  Run(monkey_.commandBuffer);
  EXPECT_EQ(Printed(), L"No such RouteHandleList: \"rh\"\n");
  EXPECT_EQ(server_.TakeEvents(), Events{});
}

TEST_F(PreparedCommandsTest, RkillRunsItsItemLines) {
  monkey_.routeHandles.Store({11});
  Generated(L"rkill", {0, 0});
  EXPECT_EQ(app_.currentLine.Copy(), L"item(\"SRouteHandleList\",\"rh\",\"11\")\")");
  EXPECT_EQ(NotesOf(L"SRouteHandleList"), 1u);
}

TEST_F(PreparedCommandsTest, RkillForgetsTheHandlesThatWereDrawn) {
  monkey_.routeHandles.Store({11, 22, 33});
  Generated(L"rkill", {4, 0, 5});
  EXPECT_EQ(monkey_.routeHandles.Copy(), Handles{22});
  EXPECT_EQ(BlockedCommands(monkey_), Texts{});
}

TEST_F(PreparedCommandsTest, HandleThatWasDrawnTwiceIsForgottenOnce) {
  monkey_.routeHandles.Store({11, 22, 33});
  Generated(L"rkill", {2, 1, 1, 1});
  EXPECT_EQ(monkey_.routeHandles.Copy(), (Handles{11, 33}));
}

TEST_F(PreparedCommandsTest, HandleThatIsKnownTwiceLosesItsFirstEntry) {
  monkey_.routeHandles.Store({11, 22, 11});
  Generated(L"rkill", {0, 2});
  EXPECT_EQ(monkey_.routeHandles.Copy(), (Handles{22, 11}));
  monkey_.routeHandles.Store({11, 22, 11});
  Generated(L"rkill", {1, 0, 2});
  EXPECT_EQ(monkey_.routeHandles.Copy(), Handles{22});
}

TEST_F(PreparedCommandsTest, RkillOfTheLastRouteBlocksStartAndItself) {
  monkey_.routeHandles.Store({11, 22});
  Generated(L"rkill", {1, 0, 1});
  EXPECT_EQ(monkey_.routeHandles.Copy(), Handles{});
  EXPECT_EQ(BlockedCommands(monkey_), (Texts{L"start", L"rkill"}));
}

TEST_F(PreparedCommandsTest, RkillWithoutRoutesHasAnEmptyItem) {
  EXPECT_EQ(Generated(L"rkill", {17}), L"rkill(\"rh\")");
  EXPECT_EQ(app_.currentLine.Copy(), L"item(\"SRouteHandleList\",\"rh\",\"\")\")");
  EXPECT_EQ(BlockedCommands(monkey_), (Texts{L"start", L"rkill"}));
}

TEST_F(PreparedCommandsTest, RnewFillsBothLists) {
  // Two modes and three destinations: both counts come before all else.
  EXPECT_EQ(Generated(L"rnew",
                      Joined({{1, 2}, {0}, {9}, {0}, kPosition, {1}, kPosition, {2}, kPosition})),
            L"rnew(\"de\", \"rm\")");
  EXPECT_EQ(console_.TakeTexts(),
            (Texts{Deleted(L"rm"), Deleted(L"de"), Added(L"SRouteModeList", L"rm"),
                   Added(L"SRouteModeList", L"rm"), Added(L"SDestinationElement", L"de"),
                   Added(L"SDestinationElement", L"de"), Added(L"SDestinationElement", L"de")}));
  EXPECT_EQ(app_.routeModeLists.at("rm")->items.size(), 2u);
  const std::string place = "<GEO>0000000 0000000<*>";
  EXPECT_EQ(Destinations(), (Events{place, place, place}));
  EXPECT_EQ(NotesOf(L"SRouteModeList"), 2u);
  EXPECT_EQ(NotesOf(L"SDestinationElementList"), 3u);
}

TEST_F(PreparedCommandsTest, RnewCountsByTheRemainderOfThree) {
  Generated(L"rnew", Joined({{3, 3}, {0}, {0}, kPosition}));
  EXPECT_EQ(app_.routeModeLists.at("rm")->items.size(), 1u);
  EXPECT_EQ(Destinations().size(), 1u);
}

TEST_F(PreparedCommandsTest, RnewRunsItsLineWithTheLists) {
  Generated(L"rnew", Joined({{0, 0}, {0}, {0}, kPosition}));
  Run(monkey_.commandBuffer);
  EXPECT_EQ(server_.TakeEvents(), Events{"send 404"});
}

TEST_F(PreparedCommandsTest, RnewPrefersDetailsThatWereSeen) {
  monkey_.recentGeoResults.Store({L"<GEO>1 2<*>", L"<GEO>3 4<*>", L"<GEO>5 6<*>"});
  Generated(L"rnew", Joined({{0, 2}, {0}, {4}, {1}, kPosition, {7}}));
  EXPECT_EQ(Destinations(), (Events{"<GEO>1 2<*>", "<GEO>0000000 0000000<*>", "<GEO>3 4<*>"}));
  EXPECT_EQ(monkey_.recentGeoResults.Copy(), Texts{L"<GEO>5 6<*>"});
  EXPECT_EQ(NotesOf(L"SDestinationElementList"), 1u);
}

TEST_F(PreparedCommandsTest, RnewGoesOnWithPlacesWhenTheDetailsAreUsedUp) {
  monkey_.recentGeoResults.Store({L"<GEO>1 2<*>"});
  Generated(L"rnew", Joined({{0, 1}, {0}, {0}, {0}, kPosition}));
  EXPECT_EQ(Destinations(), (Events{"<GEO>1 2<*>", "<GEO>0000000 0000000<*>"}));
}

TEST_F(PreparedCommandsTest, RnewBlocksDemoAndItselfBeforeAnythingRuns) {
  Texts blocked;
  console_.onPrint = [&](const std::wstring&) {
    if (blocked.empty()) blocked = BlockedCommands(monkey_);
  };
  Generated(L"rnew", Joined({{0, 0}, {0}, {0}, kPosition}));
  EXPECT_EQ(blocked, (Texts{L"demo", L"rnew"}));
  EXPECT_EQ(BlockedCommands(monkey_), (Texts{L"demo", L"rnew"}));
}

TEST_F(PreparedCommandsTest, ItemLineReplacesTheLineUnderConstruction) {
  Handles handles;
  monkey_.routeHandles.Store({7});
  draws_.Feed({0, 1, 2, 3, 0});
  monkey_.commandBuffer = L"left from before";
  SendItemCommand(app_, monkey_, L"SRouteModeList", L"", handles);
  EXPECT_EQ(monkey_.commandBuffer, L"item(\"SRouteModeList\", \"abc\", \"avoidMotorways\")");
  EXPECT_EQ(handles, Handles{});
  SendItemCommand(app_, monkey_, L"SRouteHandleList", L"x", handles);
  EXPECT_EQ(handles, Handles{7});
}

TEST_F(PreparedCommandsTest, DestinationLineHasFourParametersAndNoNote) {
  SendDestinationItem(app_, monkey_, L"x", L"<GEO>1 2<*>");
  EXPECT_EQ(monkey_.commandBuffer,
            L"item(\"SDestinationElementList\", \"x\", \"<GEO>1 2<*>\", \"\")");
  EXPECT_EQ(Printed(), Added(L"SDestinationElement", L"x"));
  EXPECT_TRUE(monkey_.itemRecords.empty());
}

}  // namespace
}  // namespace ventrik::tests
