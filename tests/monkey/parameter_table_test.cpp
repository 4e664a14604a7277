// SPDX-License-Identifier: Apache-2.0
// Which parameters each command gets, and what happens beside.
#include "monkey/command_generation.h"
#include "monkey/weights.h"
#include "tests/monkey/monkey_fixture.h"

namespace ventrik::tests {
namespace {

// A command's parameters as these draws make them.
struct Sample {
  std::wstring name;
  Draws draws;
  std::wstring parameters;
};

class ParameterTableTest : public MonkeyTest {
 protected:
  // The line that is generated for a name.
  std::wstring Generated(const std::wstring& name, const Draws& draws = {}) {
    return Appended(
        draws, [&] { GenerateParameters(app_, monkey_, name); }, name);
  }

  void NoteItem(const std::wstring& type, const std::wstring& name) {
    monkey_.itemRecords.push_back({type, name});
  }
};

const Sample kSamples[] = {
    {L"adas", {1}, L"(\"on\")"},
    {L"audio", {2}, L"(\"AudioManual\")"},
    {L"blk", {1}, L"(\"RemoveBlock\", \"\")"},
    {L"citem", {0, 1, 2}, L"(\"abc\")"},
    {L"info", {}, L"(\"<CTR>AT<*>\")"},
    {L"item", {0, 1, 2, 3}, L"(\"\")"},
    {L"lang", {1, 5}, L"(\"LangGerman\", \"5\")"},
    {L"lang", {1, 6}, L"(\"LangGerman\", \"0\")"},
    {L"litem", {3, 2, 1, 0}, L"(\"dcba\")"},
    {L"meas", {2}, L"(\"metric\")"},
    {L"opt", {}, L"(\"<CTR>AT<*><CTY>W<*>\")"},
    {L"overlay", {}, L"(\"\")"},
    {L"posdet", {3, 10}, L"(\"frequency\", \"10\")"},
    {L"posdet", {3, 11}, L"(\"frequency\", \"0\")"},
    {L"prompt", {0}, L"(\"off\")"},
    {L"rswarn", {1, 90}, L"(\"valueMode\", \"100\")"},
    {L"rswarn", {0, 91}, L"(\"warningsOff\", \"10\")"},
    {L"sci", {480, 240, 1, 10}, L"(\"\", \"480\", \"240\", \"locationDetails\", \"11\")"},
    {L"sci", {481, 241, 0, 11}, L"(\"\", \"0\", \"0\", \"geoCoordinate\", \"1\")"},
    {L"savevolthlog", {}, L"(\"\")"},
    {L"spell", {}, L"(\"<CTR>AT<*><CTY>W<*>\")"},
    {L"sscm", {1}, L"(\"safetyWarningsOff\")"},
    {L"startlog", {0, 1, 2, 3, 4, 5, 6, 7}, L"(\"abcdefgh\")"},
    {L"sshot", {0, 1, 2, 3, 4}, L"(\"\", \"abcde\")"},
    {L"tmcm", {1}, L"(\"on\")"},
    {L"tmcrm", {3, 10}, L"(\"tmcDelay\", \"10\")"},
    {L"tmca", {2, 0, 1, 2}, L"(\"tmcIgnore\", \"abc\")"},
    {L"tmci", {1, 2}, L"(\"tmcSignificent\", \"onChange\")"},
    {L"tmctm", {1}, L"(\"tmcTuningAutomatic\", \"\")"},
    {L"wait", {0}, L"(\"1\")"},
    {L"wait", {4}, L"(\"5\")"},
    {L"wait", {5}, L"(\"1\")"},
    {L"weather", {1}, L"(\"on\")"},
};

TEST_F(ParameterTableTest, EachCommandHasItsParameters) {
  SetSearch(monkey_, L"<CTR>AT<*>", L"<CTY>W<*>");
  for (const Sample& sample : kSamples) {
    EXPECT_EQ(Generated(sample.name, sample.draws), sample.name + sample.parameters);
  }
  EXPECT_TRUE(monkey_.commandValid);
  EXPECT_EQ(server_.TakeEvents(), Events{});
  EXPECT_EQ(Printed(), L"");
  EXPECT_EQ(pauses_.Take(), Pauses{});
}

TEST_F(ParameterTableTest, OtherNamesGoOutAsTheyStand) {
  for (const wchar_t* name : {L"adac",
                              L"adar",
                              L"batchlog",
                              L"done",
                              L"device_status",
                              L"help",
                              L"init",
                              L"rrfac",
                              L"server",
                              L"stoplog",
                              L"stopbatchlog",
                              L"update",
                              L"verd",
                              L"vers",
                              L"vrloc",
                              L"wait(\"3\")",
                              L"nosuch",
                              L"lists",
                              L"adas ",
                              L"Adas",
                              L"xwait",
                              L"zoom",
                              L"`",
                              L"",
                              L"\u00E4",
                              L"{",
                              L"bat",
                              L"stopmonkey"}) {
    EXPECT_EQ(Generated(name), name);
  }
  EXPECT_TRUE(monkey_.commandValid);
  EXPECT_EQ(Printed(), L"");
}

TEST_F(ParameterTableTest, DemoHasAnEndAndAPlaceInsideTheRegion) {
  monkey_.region = {0, 2, 5, 7};
  EXPECT_EQ(Generated(L"demo", {1, 1, 1, 2, 3, 4, 5, 6, 0, 6, 5, 4, 3, 2, 1}),
            L"demo(\"on\", \"1.123456\", \"5.654321\")");
}

TEST_F(ParameterTableTest, MapHasAChainOfControls) {
  Draws draws(26 + 1, 0);
  draws[5] = 1;
  EXPECT_EQ(Generated(L"map", draws), L"map(\"<MID>map<*>\")");
}

TEST_F(ParameterTableTest, StartHasAHandle) {
  monkey_.routeHandles.Store({11, 22});
  EXPECT_EQ(Generated(L"start", {3}), L"start(\"22\")");
}

TEST_F(ParameterTableTest, StartWithoutARouteGoesOutEmpty) {
  EXPECT_EQ(Generated(L"start"), L"start(\"\")");
  EXPECT_TRUE(monkey_.commandValid);
}

TEST_F(ParameterTableTest, ListHasItsSixParameters) {
  SetSearch(monkey_, L"<CTR>AT<*>", L"<CTY>W<*>", 8);
  NoteItem(L"ListSStringArray", L"abc");
  EXPECT_EQ(Generated(L"list", {8, 10, 2, 0, 1}),
            L"list(\"<CTR>AT<*><CTY>W<*>\", \"9\", \"9\", \"nearFirst\", \"abc\", \"on\")");
  EXPECT_EQ(Generated(L"list", {9, 11, 0, 0, 0}),
            L"list(\"<CTR>AT<*><CTY>W<*>\", \"1\", \"-1\", \"ascending\", \"abc\", \"off\")");
  EXPECT_TRUE(monkey_.commandValid);
}

TEST_F(ParameterTableTest, ListOfCountriesAsksByAPosition) {
  SetSearch(monkey_, L"", L"<GEOC><*>");
  NoteItem(L"ListSStringArray", L"abc");
  EXPECT_EQ(Generated(L"list", {0, 0, 0, 0, 0, 0, 0}),
            L"list(\"<GEOC>0000000 0000000<*>\", \"1\", \"-1\", \"ascending\", \"abc\", \"off\")");
}

TEST_F(ParameterTableTest, PathsHaveNoLimit) {
  const std::wstring path = L"<CTR>" + std::wstring(10000, L'x') + L"<*>";
  SetSearch(monkey_, path, L"<CTY>W<*>");
  EXPECT_EQ(Generated(L"info"), L"info(\"" + path + L"\")");
  EXPECT_EQ(Generated(L"spell"), L"spell(\"" + path + L"<CTY>W<*>\")");
}

TEST_F(ParameterTableTest, ListBelowANegativeLimitIsInvalid) {
  NoteItem(L"ListSStringArray", L"abc");
  SetSearch(monkey_, L"", L"", -1);
  EXPECT_EQ(Generated(L"list", {1, 0, 0, 0}),
            L"list(\"\", \"\", \"0\", \"ascending\", \"abc\", \"off\")");
  EXPECT_FALSE(monkey_.commandValid);
  SetSearch(monkey_, L"", L"", -3);
  EXPECT_EQ(Generated(L"list", {0, 0, 0}),
            L"list(\"\", \"\", \"\", \"ascending\", \"abc\", \"off\")");
}

TEST_F(ParameterTableTest, LimitCountsAsAWordDoes) {
  NoteItem(L"ListSStringArray", L"abc");
  SetSearch(monkey_, L"", L"", 2147483647);
  EXPECT_EQ(Generated(L"list", {0, 0, 0}),
            L"list(\"\", \"\", \"\", \"ascending\", \"abc\", \"off\")");
  EXPECT_FALSE(monkey_.commandValid);
}

TEST_F(ParameterTableTest, ListWithoutFieldsIsInvalid) {
  EXPECT_EQ(Generated(L"list", {0, 0, 0, 1}),
            L"list(\"\", \"1\", \"-1\", \"ascending\", \"\", \"on\")");
  EXPECT_FALSE(monkey_.commandValid);
}

TEST_F(ParameterTableTest, WepTakesTwoMoreSeconds) {
  NoteItem(L"WepGeo", L"abc");
  EXPECT_EQ(Generated(L"wep", {1, 0}),
            L"wep(\"<MID>map<*>\", \"zoom|highlight|visible\", \"abc\")");
  EXPECT_EQ(pauses_.Take(), Pauses{2000000});
  EXPECT_TRUE(monkey_.commandValid);
}

TEST_F(ParameterTableTest, WepWithoutItsItemIsInvalidAndWaitsAllTheSame) {
  EXPECT_EQ(Generated(L"wep", {0}), L"wep(\"<MID>all<*>\", \"setTemporaryItems|zoom\", \"\")");
  EXPECT_FALSE(monkey_.commandValid);
  EXPECT_EQ(pauses_.Take(), Pauses{2000000});
}

TEST_F(ParameterTableTest, DeletingItemsForgetsThemAll) {
  NoteItem(L"WepGeo", L"xyz");
  EXPECT_EQ(Generated(L"citem", {0, 0, 0}), L"citem(\"aaa\")");
  EXPECT_TRUE(monkey_.itemRecords.empty());
  NoteItem(L"WepGeo", L"xyz");
  EXPECT_EQ(Generated(L"citems"), L"citems");
  EXPECT_TRUE(monkey_.itemRecords.empty());
}

TEST_F(ParameterTableTest, ListAndWepStayInvalidOnceItemsAreForgotten) {
  NoteItem(L"ListSStringArray", L"abc");
  NoteItem(L"WepGeo", L"xyz");
  Generated(L"citem", {0, 0, 0});
  Generated(L"item", {0, 1, 2, 3});  // makes one again, which has no type
  Generated(L"list", {0, 0, 0, 0, 1});
  EXPECT_FALSE(monkey_.commandValid);
  monkey_.commandValid = true;
  Generated(L"wep", {1, 0});
  EXPECT_FALSE(monkey_.commandValid);
}

TEST_F(ParameterTableTest, ItemIsNotedWithoutAType) {
  Generated(L"item", {0, 1, 2, 3});
  ASSERT_EQ(monkey_.itemRecords.size(), 1u);
  EXPECT_EQ(monkey_.itemRecords[0].type, L"");
  EXPECT_EQ(monkey_.itemRecords[0].name, L"abc");
}

TEST_F(ParameterTableTest, QuitEndsTheMonkey) {
  monkey_.monkeyRunning = 1;
  EXPECT_EQ(Generated(L"quit"), L"quit");
  EXPECT_EQ(monkey_.monkeyRunning, 0);
  EXPECT_EQ(mainLoopRunning, 1);
}

TEST_F(ParameterTableTest, StopEndsTheRoute) {
  SetRecords(monkey_, {{L"a", 1, 2, 3, {}}});
  BlockCommand(monkey_, L"demo");
  BlockCommand(monkey_, L"rnew");
  monkey_.activeRoute = 1;
  EXPECT_EQ(Generated(L"stop"), L"stop");
  EXPECT_EQ(monkey_.activeRoute, 0);
  EXPECT_EQ(CurrentWeights(monkey_), std::vector<std::int32_t>{1});
  EXPECT_EQ(WeightTotal(monkey_), 2);
  EXPECT_EQ(BlockedCommands(monkey_), Texts{L"demo"});
}

TEST_F(ParameterTableTest, NamesThatBeginAsStopAreNotStop) {
  monkey_.activeRoute = 1;
  for (const wchar_t* name : {L"stoplog", L"stopbatchlog", L"stop("}) Generated(name);
  EXPECT_EQ(monkey_.activeRoute, 1);
}

// The lines of such a file are for tests of their own; here it is whether it is looked for.
TEST_F(ParameterTableTest, NamesThatBeginAsBatchNameAFile) {
  const std::pair<const wchar_t*, const wchar_t*> kNames[] = {
      {L"batch(\"a.txt\")", L"a.txt"},
      {L"batch(\"a b/c\")", L"a b/c"},
      {L"batch", L""},
      {L"batch(\"\")", L""},
      {L"batch(\"", L""},
      {L"batchlogs", L""},
      {L"batchlog(\"a.txt\")", L"g(\"a.txt"},
      {L"batches(a.txt))", L"(a.txt"},
  };
  for (const auto& [name, path] : kNames) {
    EXPECT_EQ(Generated(name), name);
    EXPECT_EQ(Printed(), path + std::wstring(L" does not exist\n")) << name;
  }
  EXPECT_TRUE(monkey_.commandValid);
}

}  // namespace
}  // namespace ventrik::tests
