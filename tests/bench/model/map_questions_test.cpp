// SPDX-License-Identifier: Apache-2.0
// Screen shots and picking.
#include <gtest/gtest.h>
#include <unistd.h>

#include <climits>
#include <limits>
#include <string>
#include <vector>

#include "bench/model/map_items.h"
#include "bench/model/map_picks.h"
#include "bench/model/map_picture.h"
#include "tests/bench/model/model_fixture.h"
#include "tests/bench/picture/read_png.h"
#include "tests/support/temporary_directory.h"

namespace ventrik::bench {
namespace {

using Texts = std::vector<std::string>;

constexpr Position kPassau{13.43122, 48.56650};
constexpr char kPassauRow[] =
    "<GEOC>Germany<*><GEOS>Bayern<*><CTY>Passau<*><GEO>13.43122 48.56650<*><POP>50560<*>";

Pixel Solid(const MapColour& colour) {
  return {colour.red, colour.green, colour.blue, 255};
}

class MapQuestionsTest : public ModelFixture {
 protected:
  MapQuestionsTest() {
    state().pictureFolder = folder_.path();
    state().report = [this](const std::string& text) { reports_.push_back(text); };
    state().vehicle.position = {13.45, 48.5665};
    Control("<GEO>13.43122 48.56650<*><MZ>4800<*>");
  }

  void Control(const std::string& text) { Handle(encode::REQU_MAP_CONTROLS(text)); }

  // The one answer's validState; 0 if there is another answer.
  std::int32_t Shoot(const std::string& map, const std::string& file) {
    const auto sent = Handle(encode::REQU_SCREEN_SHOT(map, file));
    if (sent.size() != 1 || sent[0].id != RESP_SCREEN_SHOT) return 0;
    EXPECT_EQ(sent[0].audience, Audience::requester);
    EXPECT_EQ(sent[0].Text("map"), map);
    EXPECT_EQ(sent[0].Text("filename"), file);
    return sent[0].Number("validState");
  }
  Picture Shot(const std::string& map = "<MID>map<*>") {
    EXPECT_EQ(Shoot(map, "shot.png"), kYes);
    return ReadPng(PathOf("shot.png"));
  }
  std::string PathOf(const std::string& file) const { return folder_.path() + "/" + file; }

  Sent Pick(const std::string& map, std::int32_t x, std::int32_t y, std::int32_t elements,
            std::int32_t radius = 5) {
    auto sent = Handle(encode::REQU_PICK_INFO(map, x, y, elements, radius));
    EXPECT_EQ(sent.size(), 1u);
    EXPECT_EQ(sent.at(0).id, RESP_PICK_INFO);
    return sent.at(0);
  }
  Texts Picked(std::int32_t x, std::int32_t y, std::int32_t elements, std::int32_t radius = 5) {
    return Pick("<MID>map<*>", x, y, elements, radius).Field<Texts>("pickInfo");
  }

  tests::TemporaryDirectory folder_;
  Texts reports_;
};

// ---- screen shots

TEST_F(MapQuestionsTest, AShotShowsTownsAndTheVehicle) {
  const Picture shot = Shot();
  EXPECT_EQ(shot.width, kMapWidth);
  EXPECT_EQ(shot.height, kMapHeight);
  EXPECT_EQ(PixelOf(shot, 240, 120), Solid(kTownColour));
  EXPECT_EQ(PixelOf(shot, 100, 30), Solid(kLandColour));
  const MapPoint vehicle = PointOf(kPassau, 4800, state().vehicle.position);
  EXPECT_EQ(PixelOf(shot, static_cast<int>(vehicle.x), static_cast<int>(vehicle.y)),
            Solid(kVehicleColour));
  Control("<MSM>8<*>");
  EXPECT_EQ(PixelOf(Shot(), 240, 120), Solid(kVehicleColour)) << "the map goes with the vehicle";
}

TEST_F(MapQuestionsTest, AShotShowsItemsAndAJunction) {
  Handle(encode::REQU_SET_WORLD_PROPERTIES(
      "<MID>map<*>", kHighlightItems,
      {{"<GEO>" + PositionText(PositionAt(kPassau, 4800, {60, 60})) + "<*>"}}));
  Handle(encode::REQU_SET_WORLD_PROPERTIES(
      "<MID>map<*>", kTemporaryItems,
      {{"<GEO>" + PositionText(PositionAt(kPassau, 4800, {120, 180})) + "<*>"}}));
  const Picture shot = Shot();
  EXPECT_EQ(PixelOf(shot, 60, 60), Solid(kItemColour));
  EXPECT_EQ(PixelOf(shot, 67, 60), Solid(kHighlightColour));
  EXPECT_EQ(PixelOf(shot, 120, 180), Solid(kItemColour));
  EXPECT_EQ(PixelOf(shot, 127, 180), Solid(kLandColour));
  EXPECT_EQ(PixelOf(shot, 470, 235), Solid(kLandColour));
  Control("<SJV>12<*>");
  EXPECT_EQ(PixelOf(Shot(), 470, 235), Solid(kJunctionColour));
  Control("<SJV>0<*>");
  EXPECT_EQ(PixelOf(Shot(), 470, 235), Solid(kLandColour));
}

TEST_F(MapQuestionsTest, AShotWithoutATagIsOfTheDefaultMap) {
  EXPECT_EQ(Shoot("", "a"), kYes);
  EXPECT_EQ(Shoot("map", "b"), kYes);
  EXPECT_EQ(ReadPng(PathOf("a")).pixels, ReadPng(PathOf("b")).pixels);
}

TEST_F(MapQuestionsTest, NoShotOfWhatIsNotShown) {
  EXPECT_EQ(Shoot("<MID>none<*>", "a"), kNo);
  EXPECT_EQ(Shoot("<MID>all<*>", "a"), kNo);
  Control("<MVI>0<*>");
  EXPECT_EQ(Shoot("<MID>map<*>", "a"), kNo);
  EXPECT_NE(access(PathOf("a").c_str(), F_OK), 0);
}

TEST_F(MapQuestionsTest, NoShotOutsideOfTheFolder) {
  state().pictureFolder = folder_.path() + "/sub";
  ASSERT_NE(access(state().pictureFolder.c_str(), F_OK), 0);
  for (const std::string& file :
       {std::string(), std::string(".."), std::string("../a"), folder_.path() + "/a",
        std::string("b/a"), std::string(".a"), std::string(300, 'a'), std::string(300'000, 'a')}) {
    EXPECT_EQ(Shoot("<MID>map<*>", file), kNo) << file.substr(0, 50);
  }
  EXPECT_TRUE(reports_.empty());
  EXPECT_EQ(Shoot("<MID>map<*>", "a"), kNo);
  EXPECT_EQ(reports_, Texts{state().pictureFolder + "/a: No such file or directory"});
  state().pictureFolder.clear();
  EXPECT_EQ(Shoot("<MID>map<*>", "a"), kNo);
  EXPECT_NE(access(PathOf("a").c_str(), F_OK), 0);
}

TEST_F(MapQuestionsTest, ShotsCutShort) {
  for (const auto& sent : HandleEveryPrefix(encode::REQU_SCREEN_SHOT("<MID>map<*>", "a.png"))) {
    ASSERT_EQ(sent.size(), 1u);
    EXPECT_EQ(sent[0].id, RESP_SCREEN_SHOT);
  }
  EXPECT_EQ(ReadPng(PathOf("a.png")).width, kMapWidth);
}

// ---- picking

TEST_F(MapQuestionsTest, APickRepeatsTheQuestionAndSaysWhere) {
  const Sent pick = Pick("<MID>map<*>", 340, 120, kGeoCoordinate, 7);
  EXPECT_EQ(pick.audience, Audience::requester);
  EXPECT_EQ(pick.Text("mapEIS"), "<MID>map<*>");
  EXPECT_EQ(pick.Number("xCoordinate"), 340);
  EXPECT_EQ(pick.Number("yCoordinate"), 120);
  EXPECT_EQ(pick.Number("worldElements"), kGeoCoordinate);
  EXPECT_EQ(pick.Number("radius"), 7);
  EXPECT_EQ(pick.Number("word11"), 0);
  const Position position{pick.Field<double>("xWorldCoordinate"),
                          pick.Field<double>("yWorldCoordinate")};
  EXPECT_NEAR(DistanceMetres(position, kPassau), 1000, 5);
  EXPECT_EQ(pick.Field<Texts>("pickInfo"), Texts{"<GEO>" + PositionText(position) + "<*>"});
}

TEST_F(MapQuestionsTest, APickGivesTheNearestTown) {
  const Texts here = Picked(240, 120, kLocationDetails);
  ASSERT_EQ(here.size(), 1u);
  EXPECT_EQ(here[0], std::string(kPassauRow) + "<DST>0<*>");
  const Texts near = Picked(480, 0, kLocationDetails);
  ASSERT_EQ(near.size(), 1u);
  EXPECT_EQ(near[0].find(kPassauRow), 0u);
  EXPECT_EQ(Picked(480, 0, kGeoCoordinate | kLocationDetails).size(), 2u);
}

TEST_F(MapQuestionsTest, APickGivesTheItemsInItsRadius) {
  const auto itemAt = [](double x, const char* name) {
    return "<POI>" + std::string(name) + "<*><GEO>" +
           PositionText(PositionAt(kPassau, 4800, {x, 60})) + "<*>";
  };
  const std::string left = itemAt(100, "left");
  const std::string right = itemAt(110, "right");
  Handle(encode::REQU_SET_WORLD_PROPERTIES("", kShowItems, {{left}}));
  Handle(encode::REQU_SET_WORLD_PROPERTIES("", kTemporaryItems, {{right}}));
  EXPECT_EQ(Picked(98, 60, kPoiData, 5), Texts{left});
  EXPECT_EQ(Picked(112, 60, kPoiData, 5), Texts{right});
  EXPECT_EQ(Picked(105, 60, kPoiData, 11), (Texts{left, right}));
  EXPECT_EQ(Picked(105, 60, kPoiData, 3), Texts{});
  EXPECT_EQ(Picked(105, 60, kPoiData, -1), Texts{});
  EXPECT_EQ(Picked(0, 0, kPoiData, std::numeric_limits<std::int32_t>::max()), (Texts{left, right}));
}

TEST_F(MapQuestionsTest, NothingIsPickedOfWhatIsNotAskedFor) {
  EXPECT_EQ(Picked(240, 120, 0), Texts{});
  EXPECT_EQ(Picked(240, 120, kTmcData | kWeatherData), Texts{});
  EXPECT_EQ(Picked(240, 120, 0x100), Texts{});
}

TEST_F(MapQuestionsTest, NothingIsPickedBesideTheMap) {
  constexpr std::int32_t kAll = 0x1F;
  const auto isNothing = [](const Sent& pick) {
    return pick.Field<Texts>("pickInfo").empty() && pick.Field<double>("xWorldCoordinate") == 0 &&
           pick.Field<double>("yWorldCoordinate") == 0;
  };
  for (const int x : {-1, 481, INT_MIN, INT_MAX}) {
    EXPECT_TRUE(isNothing(Pick("<MID>map<*>", x, 0, kAll)));
  }
  for (const int y : {-1, 241, INT_MIN, INT_MAX}) {
    EXPECT_TRUE(isNothing(Pick("<MID>map<*>", 0, y, kAll)));
  }
  EXPECT_TRUE(isNothing(Pick("<MID>none<*>", 0, 0, kAll)));
  EXPECT_TRUE(isNothing(Pick(std::string(300'000, 'x'), 0, 0, kAll)));
  EXPECT_FALSE(isNothing(Pick("", 480, 240, kAll)));
  Control("<MVI>0<*>");
  EXPECT_TRUE(isNothing(Pick("", 480, 240, kAll)));
}

TEST_F(MapQuestionsTest, PicksCutShort) {
  for (const auto& sent : HandleEveryPrefix(encode::REQU_PICK_INFO("<MID>map<*>", 9, 9, 31, 9))) {
    ASSERT_EQ(sent.size(), 1u);
    EXPECT_EQ(sent[0].id, RESP_PICK_INFO);
  }
}

}  // namespace
}  // namespace ventrik::bench
