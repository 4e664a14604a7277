// SPDX-License-Identifier: Apache-2.0
// Items and their notes, stored names, route handles, the parameters of `wep`.
#include "monkey/generators.h"
#include "tests/monkey/monkey_fixture.h"

namespace ventrik::tests {
namespace {

using Handles = std::vector<std::int32_t>;

class ItemsTest : public MonkeyTest {
 protected:
  // Notes items of these types; each is named by its place.
  void NoteTypes(const Texts& types) {
    monkey_.itemRecords.clear();
    for (std::size_t i = 0; i < types.size(); ++i) {
      monkey_.itemRecords.push_back({types[i], std::to_wstring(i)});
    }
  }

  // As many notes, of which only the one at `place` is of the type that is looked for.
  void NoteOne(std::size_t count, std::size_t place) {
    Texts types(count, L"other");
    types[place] = L"wanted";
    NoteTypes(types);
  }

  // The name that is appended; "(none)" if there is none and the line is invalid.
  std::wstring NameFrom(const Draws& draws, Choice choice, const std::wstring& type) {
    bool found = false;
    monkey_.commandValid = true;
    const std::wstring name =
        Appended(draws, [&] { found = AppendNameFrom(monkey_, choice, type); });
    EXPECT_EQ(found, monkey_.commandValid);
    return found ? name : name + L"(none)";
  }

  std::wstring HandleFrom(const Draws& draws, Choice choice) {
    return Appended(draws, [&] { AppendRouteHandle(monkey_, choice, collected_); });
  }

  // The text of an item.
  std::wstring Item(const Draws& draws, const std::wstring& type, const std::wstring& name) {
    return Appended(draws, [&] { GenerateItem(monkey_, type, name, collected_); });
  }

  // "type name" of each note.
  Texts Notes() const {
    Texts notes;
    for (const ItemRecord& record : monkey_.itemRecords) {
      notes.push_back(record.type + L" " + record.name);
    }
    return notes;
  }

  void SetRegion() { monkey_.region = {0, 1, 5, 6}; }

  Handles collected_;
  // Of a position in that region, "0.123456 5.654321".
  const Draws kPosition = {0, 1, 2, 3, 4, 5, 6, 0, 6, 5, 4, 3, 2, 1};
};

Draws operator+(Draws left, const Draws& right) {
  left.insert(left.end(), right.begin(), right.end());
  return left;
}

TEST_F(ItemsTest, WithoutNotesThereIsNoNameAndNoDraw) {
  for (const Choice choice : {Choice::first, Choice::random, Choice::last}) {
    EXPECT_EQ(NameFrom({}, choice, L""), L"(none)");
    EXPECT_EQ(NameFrom({}, choice, L"wanted"), L"(none)");
  }
}

TEST_F(ItemsTest, NameOfAnyType) {
  NoteTypes({L"a", L"b", L"c"});
  EXPECT_EQ(NameFrom({}, Choice::first, L""), L"0");
  EXPECT_EQ(NameFrom({}, Choice::last, L""), L"2");
  EXPECT_EQ(NameFrom({0}, Choice::random, L""), L"0");
  EXPECT_EQ(NameFrom({5}, Choice::random, L""), L"2");
}

TEST_F(ItemsTest, FirstAndLastNameOfAType) {
  NoteTypes({L"a", L"b", L"a", L"b", L"c"});
  EXPECT_EQ(NameFrom({}, Choice::first, L"b"), L"1");
  EXPECT_EQ(NameFrom({}, Choice::last, L"b"), L"3");
  EXPECT_EQ(NameFrom({}, Choice::first, L"a"), L"0");
  EXPECT_EQ(NameFrom({}, Choice::last, L"a"), L"2");
  EXPECT_EQ(NameFrom({}, Choice::first, L"d"), L"(none)");
  EXPECT_EQ(NameFrom({}, Choice::last, L"d"), L"(none)");
}

TEST_F(ItemsTest, TypesAreWhole) {
  NoteTypes({L"wante", L"wanted1", L"Wanted"});
  EXPECT_EQ(NameFrom({}, Choice::first, L"wanted"), L"(none)");
  EXPECT_EQ(NameFrom({1}, Choice::random, L"wanted"), L"(none)");
}

TEST_F(ItemsTest, SearchForARandomNameBeginsAtTheDrawnPlace) {
  NoteTypes({L"a", L"a", L"a", L"a"});
  EXPECT_EQ(NameFrom({1}, Choice::random, L"a"), L"1");
  EXPECT_EQ(NameFrom({7}, Choice::random, L"a"), L"3");
  EXPECT_EQ(NameFrom({4}, Choice::random, L"a"), L"0");
}

// From place 5 of 10: 5, 6, 3, 8, 1; the next step down would be below 0, the next up beyond 9.
TEST_F(ItemsTest, OdditySearchLeavesEverySecondPlaceOut) {
  const std::vector<bool> tested = {false, true, false, true, false,
                                    true,  true, false, true, false};
  for (std::size_t place = 0; place < tested.size(); ++place) {
    NoteOne(tested.size(), place);
    EXPECT_EQ(NameFrom({5}, Choice::random, L"wanted"),
              tested[place] ? std::to_wstring(place) : L"(none)");
  }
}

TEST_F(ItemsTest, OdditySearchTakesTurnsUpwardsFirst) {
  Texts types(10, L"wanted");
  types[5] = L"other";
  NoteTypes(types);
  EXPECT_EQ(NameFrom({5}, Choice::random, L"wanted"), L"6");
  types[6] = L"other";
  NoteTypes(types);
  EXPECT_EQ(NameFrom({5}, Choice::random, L"wanted"), L"3");
  types[3] = L"other";
  NoteTypes(types);
  EXPECT_EQ(NameFrom({5}, Choice::random, L"wanted"), L"8");
  types[8] = L"other";
  NoteTypes(types);
  EXPECT_EQ(NameFrom({5}, Choice::random, L"wanted"), L"1");
}

// Once one direction is over, the other goes on place by place.
TEST_F(ItemsTest, SearchThatHasOneDirectionLeftSkipsNothing) {
  for (std::size_t place = 0; place < 6; ++place) {
    NoteOne(6, place);
    EXPECT_EQ(NameFrom({0}, Choice::random, L"wanted"), std::to_wstring(place));
  }
  for (std::size_t place = 1; place < 6; ++place) {
    NoteOne(6, place);
    EXPECT_EQ(NameFrom({5}, Choice::random, L"wanted"), std::to_wstring(place));
  }
}

TEST_F(ItemsTest, OdditySearchReachesTheFirstPlaceOnlyFromThere) {
  NoteOne(4, 0);
  EXPECT_EQ(NameFrom({0}, Choice::random, L"wanted"), L"0");
  for (const int drawn : {1, 2, 3}) {
    EXPECT_EQ(NameFrom({drawn}, Choice::random, L"wanted"), L"(none)") << drawn;
  }
}

TEST_F(ItemsTest, TypesThatTakeTurnsAreFoundInAnyPlaceButTheEnds) {
  Texts types;
  for (int i = 0; i < 50; ++i) {
    types.insert(types.end(), {L"ListSStringArray", L"DetSStringArray", L"WepGeo", L"WepTempIcon"});
  }
  NoteTypes(types);
  for (const wchar_t* type : {L"ListSStringArray", L"DetSStringArray", L"WepGeo", L"WepTempIcon"}) {
    for (int drawn = 4; drawn < 196; ++drawn) {
      EXPECT_NE(NameFrom({drawn}, Choice::random, type), L"(none)") << type << drawn;
    }
  }
}

TEST_F(ItemsTest, WithoutRoutesThereIsNoHandleAndNoDraw) {
  for (const Choice choice : {Choice::first, Choice::random, Choice::last}) {
    EXPECT_EQ(HandleFrom({}, choice), L"");
  }
  EXPECT_TRUE(monkey_.commandValid);
  EXPECT_EQ(collected_, Handles{});
}

TEST_F(ItemsTest, HandleIsAppendedAndCollected) {
  monkey_.routeHandles.Store({11, -22, 33});
  EXPECT_EQ(HandleFrom({}, Choice::first), L"11");
  EXPECT_EQ(HandleFrom({}, Choice::last), L"33");
  EXPECT_EQ(HandleFrom({4}, Choice::random), L"-22");
  EXPECT_EQ(HandleFrom({1}, Choice::random), L"-22");
  EXPECT_EQ(collected_, (Handles{11, 33, -22, -22}));
  EXPECT_EQ(monkey_.routeHandles.Copy(), (Handles{11, -22, 33}));
}

TEST_F(ItemsTest, OddityRouteHandleItemEndsInAClosing) {
  monkey_.routeHandles.Store({11, 22});
  EXPECT_EQ(Item({1}, L"SRouteHandleList", L"rh"), L"SRouteHandleList\", \"rh\", \"22\")");
  EXPECT_EQ(collected_, Handles{22});
  EXPECT_EQ(Notes(), Texts{L"SRouteHandleList rh"});
}

TEST_F(ItemsTest, RouteHandleItemWithoutRoutesHasNoHandle) {
  EXPECT_EQ(Item({}, L"SRouteHandleList", L"rh"), L"SRouteHandleList\", \"rh\", \"\")");
  EXPECT_EQ(collected_, Handles{});
  EXPECT_TRUE(monkey_.commandValid);
}

TEST_F(ItemsTest, DestinationItemIsAPosition) {
  SetRegion();
  EXPECT_EQ(Item(kPosition, L"SDestinationElementList", L"de"),
            L"SDestinationElementList\", \"de\", \"<GEO>0.123456 5.654321<*>\", \"");
  EXPECT_EQ(Notes(), Texts{L"SDestinationElementList de"});
}

TEST_F(ItemsTest, RouteModeItemIsAMode) {
  EXPECT_EQ(Item({1}, L"SRouteModeList", L"rm"), L"SRouteModeList\", \"rm\", \"shortest");
  EXPECT_EQ(Notes(), Texts{L"SRouteModeList rm"});
}

TEST_F(ItemsTest, DetailsItemIsEmpty) {
  EXPECT_EQ(Item({}, L"DetSStringArray", L"x"), L"SStringArray\", \"x\", \"");
  EXPECT_EQ(Notes(), Texts{L"DetSStringArray x"});
}

TEST_F(ItemsTest, ListItemIsTheDefault) {
  EXPECT_EQ(Item({}, L"ListSStringArray", L"x"), L"SStringArray\", \"x\", \"Default");
  EXPECT_EQ(Notes(), Texts{L"ListSStringArray x"});
}

TEST_F(ItemsTest, WepGeoItemIsAPosition) {
  SetRegion();
  EXPECT_EQ(Item(kPosition, L"WepGeo", L"x"),
            L"SStringArray\", \"x\", \"<GEO>0.123456 5.654321<*>");
  EXPECT_EQ(Notes(), Texts{L"WepGeo x"});
}

TEST_F(ItemsTest, OddityWepTempIconItemIsNotedAsTemp) {
  SetRegion();
  EXPECT_EQ(Item(Draws{1041} + kPosition, L"WepTempIcon", L"abc"),
            L"SStringArray\", \"abctemp\", \"<IFT>TEMP<*><POI>Google 42<*><ID>1<*>"
            L"<GEO>0.123456 5.654321<*><ICON>/tmp/temp_poi.bmp<*>");
  EXPECT_EQ(Notes(), Texts{L"WepTempIcon temp"});
}

TEST_F(ItemsTest, OddityWepOfATempIconNamesNoList) {
  Item({999, 0, 0}, L"WepTempIcon", L"abc");
  EXPECT_EQ(Appended({0, 0}, [this] { AppendWepParameters(monkey_); }),
            L"<MID>all<*>\", \"setTemporaryItems|zoom\", \"temp");
  EXPECT_TRUE(monkey_.commandValid);
}

TEST_F(ItemsTest, TypesAndNamesAreNotedAsAWhole) {
  const std::wstring type(500, L't');
  const std::wstring name(500, L'n');
  Item({}, type, name);
  EXPECT_EQ(Notes(), Texts{type + L" " + name});
  EXPECT_EQ(NameFrom({}, Choice::last, type), name);
  EXPECT_EQ(NameFrom({}, Choice::last, type.substr(1)), L"(none)");
}

TEST_F(ItemsTest, EmptyNameIsDrawnBeforeTheValue) {
  SetRegion();
  EXPECT_EQ(Item({0, 1, 2, 3}, L"SRouteModeList", L""),
            L"SRouteModeList\", \"abc\", \"avoidMotorways");
  EXPECT_EQ(Item(Draws{2, 1, 0, 999} + kPosition, L"WepTempIcon", L""),
            L"SStringArray\", \"cbatemp\", \"<IFT>TEMP<*><POI>Google 1000<*><ID>1<*>"
            L"<GEO>0.123456 5.654321<*><ICON>/tmp/temp_poi.bmp<*>");
  EXPECT_EQ(Notes(), (Texts{L"SRouteModeList abc", L"WepTempIcon temp"}));
}

TEST_F(ItemsTest, EmptyTypeDropsADraw) {
  EXPECT_EQ(Item({17}, L"", L"x"), L"");
  EXPECT_EQ(Item({0, 1, 2, 17}, L"", L""), L"");
  EXPECT_EQ(Notes(), (Texts{L" x", L" abc"}));
}

TEST_F(ItemsTest, UnknownTypesAreNotedOnly) {
  EXPECT_EQ(Item({}, L"SStringArray", L"x"), L"");
  EXPECT_EQ(Item({}, L"wepgeo", L"y"), L"");
  EXPECT_EQ(Notes(), (Texts{L"SStringArray x", L"wepgeo y"}));
  EXPECT_TRUE(monkey_.commandValid);
}

TEST_F(ItemsTest, WepShowsAPlaceOrSetsAnIcon) {
  NoteTypes({L"ListSStringArray", L"DetSStringArray", L"WepGeo", L"WepTempIcon"});
  const auto append = [this] { AppendWepParameters(monkey_); };
  EXPECT_EQ(Appended({1, 2}, append), L"<MID>map<*>\", \"zoom|highlight|visible\", \"2");
  EXPECT_EQ(Appended({2, 3}, append), L"<MID>all<*>\", \"setTemporaryItems|zoom\", \"3");
  EXPECT_TRUE(monkey_.commandValid);
}

TEST_F(ItemsTest, WepWithoutItsItemIsInvalid) {
  const auto append = [this] { AppendWepParameters(monkey_); };
  EXPECT_EQ(Appended({1}, append), L"<MID>map<*>\", \"zoom|highlight|visible\", \"");
  EXPECT_FALSE(monkey_.commandValid);
  NoteTypes({L"other", L"WepGeo"});
  monkey_.commandValid = true;
  EXPECT_EQ(Appended({0, 1}, append), L"<MID>all<*>\", \"setTemporaryItems|zoom\", \"");
  EXPECT_FALSE(monkey_.commandValid);
}

}  // namespace
}  // namespace ventrik::tests
