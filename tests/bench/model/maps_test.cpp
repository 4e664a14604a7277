// SPDX-License-Identifier: Apache-2.0
#include "bench/model/maps.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "bench/eis.h"
#include "bench/model/map_items.h"
#include "tests/bench/model/model_fixture.h"

namespace ventrik::bench {
namespace {

using Texts = std::vector<std::string>;

constexpr Position kPassau{13.43122, 48.56650};
constexpr char kAtPassau[] = "<MID>map<*><GEO>13.43122 48.56650<*>";

class MapsTest : public ModelFixture {
 protected:
  std::vector<Sent> Control(const std::string& text) {
    return Handle(encode::REQU_MAP_CONTROLS(text));
  }
  std::vector<Sent> Wep(const std::string& map, std::int32_t flags, const Texts& items) {
    return Handle(encode::REQU_SET_WORLD_PROPERTIES(map, flags, {items}));
  }

  const EngineMap& map(const std::string& id = "map") { return state().maps.maps.at(id); }
  Position Centre(const std::string& id = "map") { return CentreOf(state(), map(id), now_); }

  // The areas that everybody was told of.
  static Texts Areas(const std::vector<Sent>& sent) {
    Texts areas;
    for (const Sent& message : sent) {
      if (message.id != INFO_MAP_OVERLAY_AREA) continue;
      EXPECT_EQ(message.audience, Audience::everyone);
      areas.push_back(message.Text("eis"));
    }
    return areas;
  }

  // Whether the first message answers the request with that state.
  static bool IsAnswered(const std::vector<Sent>& sent, FunctionId id, std::int32_t state) {
    return !sent.empty() && sent[0].id == id && sent[0].audience == Audience::requester &&
           sent[0].Number("validState") == state;
  }
  static bool IsDone(const std::vector<Sent>& sent) {
    return IsAnswered(sent, RESP_MAP_CONTROLS, kYes);
  }
  static bool IsRefused(const std::vector<Sent>& sent) {
    return IsAnswered(sent, RESP_MAP_CONTROLS, kNo) && sent.size() == 1;
  }

  void ExpectCentre(const Position& expected, double metres = 1) {
    EXPECT_LT(DistanceMetres(Centre(), expected), metres) << PositionText(Centre());
  }
};

// Whether each of these is answered first of all with that message.
bool AllBegin(const std::vector<std::vector<Sent>>& answers, FunctionId id) {
  return !answers.empty() && std::all_of(answers.begin(), answers.end(), [id](const auto& sent) {
    return !sent.empty() && sent[0].id == id;
  });
}

// ---- controls

TEST_F(MapsTest, TheFirstControlTellsTheArea) {
  EXPECT_EQ(state().maps.maps.size(), 1u);
  const auto sent = Control("<MID>map<*><GEO>0.00000 0.00000<*><MZ>111195<*>");
  ASSERT_EQ(sent.size(), 2u);
  EXPECT_TRUE(IsDone(sent));
  EXPECT_EQ(sent[0].Text("mapControls"), "<MID>map<*><GEO>0.00000 0.00000<*><MZ>111195<*>");
  EXPECT_EQ(Areas(sent), Texts{"<MID>map<*><GLL>-0.50000 -0.25000<*><GUR>0.50000 0.25000<*>"});
}

TEST_F(MapsTest, NobodyIsToldOfWhatDoesNotChange) {
  Control("<MID>map<*><MZ>500<*>");
  EXPECT_EQ(Areas(Control("<MID>map<*><MZ>500<*>")).size(), 0u);
  EXPECT_EQ(Areas(Control("<MID>map<*><SJV>3<*>")).size(), 0u);
  EXPECT_EQ(Areas(Control("<MID>map<*><MSM>2<*>")).size(), 0u);
  EXPECT_EQ(Areas(Control("<MID>map<*><MZ>550<*>")).size(), 1u);
  EXPECT_EQ(map().junction, 3);
}

TEST_F(MapsTest, Zoom) {
  Control("<MZ>454<*>");
  EXPECT_EQ(map().view.zoom, 454);
  Control("<MZ>-1<*>");
  EXPECT_EQ(map().view.zoom, 227);
  Control("<MZ>-2<*>");
  EXPECT_EQ(map().view.zoom, 454);
  Control("<MZ>-3<*>");
  Control("<MZ>-2<*>");
  EXPECT_EQ(map().view.zoom, kWidestZoom);
  Control("<MZ>100<*>");
  Control("<MZ>-1<*>");
  EXPECT_EQ(map().view.zoom, kClosestZoom);
}

TEST_F(MapsTest, ABadControlChangesNothing) {
  Control("<MZ>500<*>");
  for (const std::string& text :
       {std::string(), std::string("nonsense"), std::string("<MZ>600<*><MSM>9<*>"),
        std::string("<MZ>-99999999999999<*>"), "<MID>" + std::string(65, 'x') + "<*>"}) {
    EXPECT_TRUE(IsRefused(Control(text))) << text;
  }
  EXPECT_EQ(map().view.zoom, 500);
  EXPECT_EQ(state().maps.maps.size(), 1u);
  const auto huge = Control("<MZ>600<*>" + std::string(700'000, 'x'));
  EXPECT_TRUE(IsDone(huge));
  EXPECT_EQ(huge[0].Text("mapControls"), "");
}

TEST_F(MapsTest, ControlsCutShort) {
  EXPECT_TRUE(
      AllBegin(HandleEveryPrefix(encode::REQU_MAP_CONTROLS("<MID>two<*><MZ>454<*><MSM>1<*>")),
               RESP_MAP_CONTROLS));
}

TEST_F(MapsTest, EachMapHasItsOwnState) {
  Control(kAtPassau);
  EXPECT_EQ(Areas(Control("<MID>two<*><MZ>900<*>")).size(), 1u);
  EXPECT_EQ(map("two").view.zoom, 900);
  EXPECT_EQ(map().view.zoom, 500);
  ExpectCentre(kPassau);
  EXPECT_GT(DistanceMetres(Centre("two"), kPassau), 1000);
  const auto both = Areas(Control("<MID>all<*><MZ>700<*>"));
  ASSERT_EQ(both.size(), 2u);
  EXPECT_EQ(FindEis(ParseEis(both[0]), "MID"), "map");
  EXPECT_EQ(FindEis(ParseEis(both[1]), "MID"), "two");
}

TEST_F(MapsTest, ThereIsAnEndToMaps) {
  for (std::size_t number = 1; number < kMostMaps; ++number) {
    EXPECT_TRUE(IsDone(Control("<MID>m" + std::to_string(number) + "<*>")));
  }
  EXPECT_TRUE(IsRefused(Control("<MID>one more<*>")));
  EXPECT_TRUE(IsDone(Control("<MID>m1<*>")));
}

TEST_F(MapsTest, HiddenMaps) {
  Control(kAtPassau);
  EXPECT_EQ(Areas(Control("<MVI>0<*>")).size(), 0u);
  EXPECT_FALSE(map().shown);
  EXPECT_EQ(Areas(Control("<MZ>900<*>")).size(), 0u);
  EXPECT_EQ(Areas(Control("<MVI>1<*>")).size(), 1u);
  EXPECT_EQ(Areas(Control("<MVI>1<*>")).size(), 1u) << "shown anew";
  EXPECT_EQ(map().view.zoom, 900);
}

// ---- scrolling

TEST_F(MapsTest, AShortScroll) {
  Control(kAtPassau);
  Control("<MZ>480<*>");
  EXPECT_EQ(Areas(Control("<MID>map<*><MSD>0<*><MSM>1<*><MSS>10<*>")).size(), 0u);
  EXPECT_TRUE(Pass(Milliseconds(300)).empty());
  EXPECT_EQ(Areas(Control("<MID>map<*><MSM>2<*>")).size(), 1u);
  ExpectCentre({kPassau.longitude, kPassau.latitude + 30 / 111'195.0});
  EXPECT_TRUE(Pass(Milliseconds(5000)).empty());
  ExpectCentre({kPassau.longitude, kPassau.latitude + 30 / 111'195.0});
}

TEST_F(MapsTest, ALongScrollTellsEachSecond) {
  Control(std::string(kAtPassau) + "<MZ>480<*><MSD>180<*><MSS>20<*><MSM>1<*>");
  const Texts areas = Areas(Pass(Milliseconds(3500)));
  ASSERT_EQ(areas.size(), 3u);
  EXPECT_NE(areas[0], areas[1]);
  ExpectCentre({kPassau.longitude, kPassau.latitude - 700 / 111'195.0});
  Control("<MSD>0<*>");  // turns round
  Pass(Milliseconds(3500));
  ExpectCentre(kPassau);
}

TEST_F(MapsTest, AScrollAgainstTheEdgeFallsSilent) {
  Control("<GEO>0 84.9999<*><MZ>1000000<*><MSD>0<*><MSS>100<*><MSM>1<*>");
  EXPECT_EQ(Areas(Pass(Milliseconds(10'000))).size(), 1u);
  EXPECT_EQ(Centre().latitude, kMapEdge);
}

TEST_F(MapsTest, AHiddenMapScrollsUnseen) {
  Control(std::string(kAtPassau) + "<MVI>0<*><MSD>90<*><MSM>1<*>");
  EXPECT_TRUE(Pass(Milliseconds(5000)).empty());
  EXPECT_GT(DistanceMetres(Centre(), kPassau), 100);
}

TEST_F(MapsTest, OneStep) {
  Control(std::string(kAtPassau) + "<MZ>480<*>");
  EXPECT_EQ(Areas(Control("<MSD>180<*><MSS>5<*><MSM>4<*>")).size(), 1u);
  ExpectCentre({kPassau.longitude, kPassau.latitude - 50 / 111'195.0});
  EXPECT_TRUE(Pass(Milliseconds(3000)).empty());
}

// ---- the vehicle

TEST_F(MapsTest, AMapGoesWithTheVehicle) {
  state().vehicle.position = {10, 50};
  Control("<MZ>480<*>");
  ExpectCentre({10, 50});
  state().vehicle.position = {10, 50 + 50 / 111'195.0};
  EXPECT_TRUE(Pass(Milliseconds(3000)).empty()) << "less than a quarter";
  state().vehicle.position = {10, 50 + 70 / 111'195.0};
  EXPECT_EQ(Areas(Pass(Milliseconds(1000))).size(), 1u);
  ExpectCentre(state().vehicle.position);
}

TEST_F(MapsTest, AFastVehicleIsToldOnceASecond) {
  state().vehicle.position = {10, 50};
  Control("<MZ>480<*>");
  std::size_t told = 0;
  for (int step = 1; step <= 50; ++step) {
    state().vehicle.position = {10, 50 + step / 100.0};
    told += Areas(Pass(Milliseconds(100))).size();
  }
  EXPECT_EQ(told, 5u);
}

TEST_F(MapsTest, BackToTheVehicle) {
  Control(kAtPassau);
  state().vehicle.position = {10, 50};
  EXPECT_TRUE(Pass(Milliseconds(3000)).empty()) << "the map has been put elsewhere";
  EXPECT_EQ(Areas(Control("<MSM>8<*>")).size(), 1u);
  ExpectCentre({10, 50});
}

// ---- world properties

TEST_F(MapsTest, ZoomToItems) {
  Control("<MID>map<*>");
  const auto sent = Wep("<MID>map<*>", 7, {"<GEO>13.43122 48.56650<*>", "<GEO>11.5 48.1<*>"});
  EXPECT_TRUE(IsAnswered(sent, RESP_SET_WORLD_PROPERTIES, kYes));
  EXPECT_EQ(sent[0].Text("inputEIS"), "<MID>map<*>");
  EXPECT_EQ(sent[0].Number("worldElements"), 7);
  EXPECT_EQ(sent[0].Field<Texts>("itemList").size(), 2u);
  EXPECT_EQ(Areas(sent).size(), 1u);
  ExpectCentre({(13.43122 + 11.5) / 2, (48.5665 + 48.1) / 2});
  EXPECT_GT(map().view.zoom, 140'000);
  EXPECT_EQ(map().items.size(), 2u);
  EXPECT_TRUE(map().highlighted);
}

TEST_F(MapsTest, AnItemCanBeAPathToAPlace) {
  EXPECT_TRUE(IsAnswered(Wep("<MID>map<*>", kZoomToItems, {"<GEOC>Germany<*><CTY>Passau<*>"}),
                         RESP_SET_WORLD_PROPERTIES, kYes));
  ExpectCentre(kPassau);
}

TEST_F(MapsTest, PropertiesOfAMapThatNobodyAskedForAreNotTold) {
  EXPECT_EQ(Wep("<MID>map<*>", kZoomToItems, {"<GEO>1 1<*>"}).size(), 1u);
}

TEST_F(MapsTest, TemporaryItemsAreKeptApart) {
  Wep("<MID>map<*>", kShowItems, {"<GEO>1 1<*>"});
  Wep("<MID>all<*>", kTemporaryItems | kZoomToItems,
      {"<IFT>TEMP<*><POI>Google 7<*><ID>1<*><GEO>2 2<*><ICON>/tmp/temp_poi.bmp<*>"});
  EXPECT_EQ(map().items.size(), 1u);
  EXPECT_FALSE(map().highlighted);
  EXPECT_EQ(map().temporaryItems.size(), 1u);
  ExpectCentre({2, 2});
  Wep("<MID>map<*>", kTemporaryItems, {});
  EXPECT_EQ(map().items.size(), 1u);
  EXPECT_TRUE(map().temporaryItems.empty());
}

TEST_F(MapsTest, BadProperties) {
  const auto isRefused = [this](const std::string& id, std::int32_t flags, const Texts& items) {
    const auto sent = Wep(id, flags, items);
    return sent.size() == 1 && IsAnswered(sent, RESP_SET_WORLD_PROPERTIES, kNo) &&
           map().items.empty();
  };
  EXPECT_TRUE(isRefused("<MID>none<*>", kShowItems, {"<GEO>1 1<*>"}));
  EXPECT_TRUE(isRefused("<MID>map<*>", 0, {"<GEO>1 1<*>"}));
  EXPECT_TRUE(isRefused("<MID>map<*>", 0x20 | kShowItems, {"<GEO>1 1<*>"}));
  EXPECT_TRUE(isRefused("<MID>map<*>", -1, {"<GEO>1 1<*>"}));
  EXPECT_TRUE(isRefused("<MID>map<*>", kZoomToItems, {}));
  EXPECT_TRUE(isRefused("<MID>map<*>", kShowItems, {"<GEO>1 1<*>", "<GEO>1 91<*>"}));
  EXPECT_TRUE(isRefused("<MID>map<*>", kShowItems, {"nonsense"}));
  EXPECT_TRUE(isRefused("<MID>map<*>", kShowItems, Texts(kMostMapItems + 1, "<GEO>1 1<*>")));
  EXPECT_TRUE(
      isRefused("<MID>map<*>", kShowItems, {"<GEO>1 1<*>" + std::string(kLongestMapItem, 'x')}));
  EXPECT_TRUE(IsAnswered(Wep("<MID>map<*>", kItemVisibilities, {"nonsense"}),
                         RESP_SET_WORLD_PROPERTIES, kYes));
  EXPECT_EQ(state().maps.maps.size(), 1u);
}

TEST_F(MapsTest, PropertiesCutShort) {
  EXPECT_TRUE(AllBegin(HandleEveryPrefix(encode::REQU_SET_WORLD_PROPERTIES(
                           "<MID>map<*>", 7, {{"<GEO>1 1<*>", "<GEO>2 2<*>"}})),
                       RESP_SET_WORLD_PROPERTIES));
}

}  // namespace
}  // namespace ventrik::bench
