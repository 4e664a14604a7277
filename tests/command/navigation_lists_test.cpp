// SPDX-License-Identifier: Apache-2.0
// The named lists that requests carry: found, created by the look-up, or missed.
#include "tests/command/navigation_fixture.h"

namespace ventrik::tests {
namespace {

std::wstring NoFields(const std::wstring& name) {
  return ErrorText(L"Can't find SStringArray '" + name + L"'.");
}

class NavigationLists : public NavigationTest {
 protected:
  // Runs a line that creates nothing but lists of one kind, "never" the only one.
  template <class Lists>
  void ExpectCreates(const Lists& lists, const Sample& sample) {
    ExpectSent({sample});
    EXPECT_EQ(ListsInAll(), 1u) << sample.line;
    ASSERT_EQ(lists.count("never"), 1u) << sample.line;
    EXPECT_TRUE(lists.at("never")->items.empty()) << sample.line;
    app_.stringArrayLists.clear();
    app_.routeModeLists.clear();
    app_.destinationElementLists.clear();
  }
};

TEST_F(NavigationLists, NameWithoutAListCreatesItEmptyAndSendsIt) {
  ExpectCreates(app_.stringArrayLists,
                {L"blk(\"AddBlock\",\"never\")", "92010000 00000000 00000000"});
  ExpectCreates(app_.stringArrayLists,
                {L"tmca(\"tmcAvoid\",\"never\")", "29030000 01000000 00000000"});
  ExpectCreates(app_.stringArrayLists, {L"wep(\"abc\",\"zoom\",\"never\")",
                                        "74000000 03000000 01000000 00000000 'abc' 00"});
  ExpectCreates(app_.stringArrayLists,
                {L"list(\"abc\",\"1\",\"2\",\"ascending\",\"never\",\"on\")",
                 "32010000 03000000 01000000 02000000 01000000 00000000 01000000 'abc' 00"});
  ExpectCreates(app_.routeModeLists,
                {L"rfnew(\"abc\",\"never\")", "9E010000 03000000 00000000 'abc' 00"});
}

TEST_F(NavigationLists, TripCreatesDestinationsAndRouteModes) {
  ExpectSent({{L"rnew(\"never\",\"ever\")", "94010000 00000000 00000000"}});
  EXPECT_EQ(ListsInAll(), 2u);
  EXPECT_EQ(app_.destinationElementLists.count("never"), 1u);
  EXPECT_EQ(app_.routeModeLists.count("ever"), 1u);
}

TEST_F(NavigationLists, EmptyNameIsANameAsWell) {
  ExpectSent({{L"blk(\"AddBlock\",\"\")", "92010000 00000000 00000000"}});
  EXPECT_EQ(app_.stringArrayLists.count(""), 1u);
}

TEST_F(NavigationLists, NameIsNarrow) {
  Run(L"blk(\"AddBlock\",\"n\u00E9v\u0151r\")");
  EXPECT_EQ(app_.stringArrayLists.count("n\xE9v?r"), 1u);
  ExpectSent({{L"det(\"\",\"n\u00E9v\u0171r\")", "34010000 00000000 00000000 00000000"}});
}

TEST_F(NavigationLists, ListOfAnotherKindIsNotMeant) {
  FillLists();
  ExpectSent({{L"rnew(\"s\",\"h\")", "94010000 00000000 00000000"}});
  Run(L"rkill(\"s\")");
  EXPECT_EQ(Printed(), L"No such RouteHandleList: \"s\"\n");
  Run(L"det(\"x\",\"m\")");
  EXPECT_EQ(Printed(), NoFields(L"m"));
}

TEST_F(NavigationLists, StaysForTheNextCommand) {
  FillLists();
  for (int time = 0; time < 2; ++time) {
    ExpectSent({
        {L"rkill(\"h\")", "96010000 02000000 07000000 FFFFFFFF"},
        {L"rfnew(\"\",\"m\")", "9E010000 00000000 02000000 00000000 02000000 10000000"},
        {L"blk(\"AddBlock\",\"s\")", "92010000 00000000 02000000 'NAME' 00000000 C396 'l' 00"},
        {L"tmca(\"tmcAvoid\",\"s\")", "29030000 01000000 02000000 'NAME' 00000000 C396 'l' 00"},
    });
  }
  EXPECT_EQ(ListsInAll(), 4u);
}

TEST_F(NavigationLists, DetailsOfAMissingListAreAnError) {
  Run(L"det(\"x\",\"never\")");
  EXPECT_EQ(console_.TakeTexts(),
            Texts{L"\033[1;31mError: Can't find SStringArray 'never'.\n\033[0;37m"});
  EXPECT_EQ(server_.TakeEvents(), Events{});
  EXPECT_EQ(ListsInAll(), 0u);
}

TEST_F(NavigationLists, DetailsErrorShowsTheNameAsTyped) {
  Run(L"det(\"x\",\"n\u00E9v\u0151r\")");
  EXPECT_EQ(Printed(), NoFields(L"n\u00E9v\u0151r"));
  Run(L"det(\"x\",\"\")");
  EXPECT_EQ(Printed(), NoFields(L""));
}

TEST_F(NavigationLists, DetailsTakeAnEmptyList) {
  Run(L"blk(\"AddBlock\",\"never\")");
  ExpectSent({{L"det(\"x\",\"never\")", "34010000 01000000 00000000 'x' 000000"}});
}

TEST_F(NavigationLists, KillOfAMissingListIsAnError) {
  Run(L"rkill(\"n\u00E9ver\")");
  EXPECT_EQ(console_.TakeTexts(), Texts{L"No such RouteHandleList: \"n\u00E9ver\"\n"});
  EXPECT_EQ(server_.TakeEvents(), Events{});
  EXPECT_EQ(ListsInAll(), 0u);
}

TEST_F(NavigationLists, KillTakesAnEmptyList) {
  FindOrCreateList(app_.routeHandleLists, "none");
  ExpectSent({{L"rkill(\"none\")", "96010000 00000000"}});
}

}  // namespace
}  // namespace ventrik::tests
