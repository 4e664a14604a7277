// SPDX-License-Identifier: Apache-2.0
#include "bench/model/map_view.h"

#include <gtest/gtest.h>

#include <chrono>

#include "bench/model/map_controls.h"

namespace ventrik::bench {
namespace {

constexpr Position kBerlin{13.41053, 52.52437};
constexpr double kClose = 0.02;  // of distances: the map is flat

void ExpectNear(const Position& place, const Position& expected) {
  EXPECT_LT(DistanceMetres(place, expected), 1) << PositionText(place);
}

TEST(MapViewTest, AnAreaIsAsWideAsTheZoomSays) {
  for (const int zoom : {kClosestZoom, 500, 100'000}) {
    const MapArea area = AreaOf(kBerlin, zoom);
    const Position lowerRight{area.upperRight.longitude, area.lowerLeft.latitude};
    EXPECT_NEAR(DistanceMetres(area.lowerLeft, lowerRight), zoom, kClose * zoom);
    EXPECT_NEAR(DistanceMetres(lowerRight, area.upperRight), zoom / 2.0, kClose * zoom);
    EXPECT_LT(area.lowerLeft.longitude, area.upperRight.longitude);
    EXPECT_LT(area.lowerLeft.latitude, area.upperRight.latitude);
  }
}

TEST(MapViewTest, APixelAndItsPlace) {
  ExpectNear(PositionAt(kBerlin, 480, {240, 120}), kBerlin);
  const Position right = PositionAt(kBerlin, 480, {340, 120});
  EXPECT_NEAR(DistanceMetres(kBerlin, right), 100, 1);
  EXPECT_GT(right.longitude, kBerlin.longitude);
  EXPECT_GT(PositionAt(kBerlin, 480, {240, 0}).latitude, kBerlin.latitude);
  for (const MapPoint point : {MapPoint{0, 0}, MapPoint{17, 230}, MapPoint{480, 240}}) {
    const MapPoint back = PointOf(kBerlin, 5000, PositionAt(kBerlin, 5000, point));
    EXPECT_NEAR(back.x, point.x, 1e-6);
    EXPECT_NEAR(back.y, point.y, 1e-6);
  }
}

TEST(MapViewTest, AMapGoesOnBehindTheDateLine) {
  const Position centre{179.9, 0};
  EXPECT_LT(AreaOf(centre, 100'000).upperRight.longitude, -179);
  EXPECT_NEAR(PointOf(centre, 100'000, {-179.9, 0}).x, 240 + 22'239 / 100'000.0 * 480, 1);
}

TEST(MapViewTest, AMapEndsBeforeThePoles) {
  EXPECT_EQ(AsCentre({5, 90}).latitude, kMapEdge);
  EXPECT_EQ(AsCentre({5, -90}).latitude, -kMapEdge);
  MapView view;
  view.zoom = kWidestZoom;
  view.speed = 100;
  EXPECT_EQ(Scrolled(view, kBerlin, 1e6).latitude, kMapEdge);
}

TEST(MapViewTest, WhereItIsWhileItScrolls) {
  using namespace std::chrono_literals;
  MapView view;
  view.zoom = 480;
  const TimePoint start{};
  ExpectNear(CentreAt(view, kBerlin, start + 9s), kBerlin);
  view.centre = kBerlin;
  view.scrolling = start;
  view.direction = 90;
  view.speed = 10;  // 100 pixels a second
  const Position later = CentreAt(view, {0, 0}, start + 1500ms);
  EXPECT_NEAR(DistanceMetres(kBerlin, later), 150, 1);
  EXPECT_GT(later.longitude, kBerlin.longitude);
  ExpectNear(CentreAt(view, {0, 0}, start - 1s), kBerlin);
  view.direction = 180;
  EXPECT_LT(CentreAt(view, {0, 0}, start + 1s).latitude, kBerlin.latitude);
}

TEST(MapViewTest, AFrameShowsAllPlaces) {
  const std::vector<Position> places = {kBerlin, {11.57549, 48.13743}, {13.43122, 48.56650}};
  const Framing frame = FrameOf(places);
  for (const Position& place : places) {
    const MapPoint point = PointOf(frame.centre, frame.zoom, place);
    EXPECT_TRUE(point.x > 0 && point.x < kMapWidth) << point.x;
    EXPECT_TRUE(point.y > 0 && point.y < kMapHeight) << point.y;
  }
  EXPECT_EQ(FrameOf({kBerlin}).zoom, 5000) << "a town fills a map of the closest zoom";
  EXPECT_EQ(FrameOf({kBerlin, kBerlin}).zoom, 5000);
  EXPECT_EQ(FrameOf({kBerlin, {kBerlin.longitude + 0.0001, kBerlin.latitude}}).zoom, kClosestZoom);
  EXPECT_EQ(FrameOf({{-179, -89}, {179, 89}}).zoom, kWidestZoom);
}

// ---- controls

TEST(MapControlsTest, EveryKeyOfATester) {
  const auto scroll = ReadMapControls("<MID>map<*><MSD>270<*><MSM>1<*><MSS>10<*>");
  ASSERT_TRUE(scroll);
  EXPECT_EQ(scroll->id, "map");
  EXPECT_EQ(scroll->direction, 270);
  EXPECT_EQ(scroll->scroll, 1);
  EXPECT_EQ(scroll->speed, 10);
  EXPECT_FALSE(scroll->zoom || scroll->visible || scroll->centre || scroll->junction);
  EXPECT_EQ(ReadMapControls("<MID>map<*><MZ>454<*>")->zoom, 454);
  EXPECT_EQ(ReadMapControls("<MID>x<*><SJV>-12<*>")->junction, -12);
}

TEST(MapControlsTest, EverythingThatAMonkeyDraws) {
  EXPECT_TRUE(ReadMapControls(
      "<MID>all<*><MZ>-3<*><MVT>8<*><MH>4<*><MVI>0<*><MP>0,0<*><MR>480,240<*><MSD>359<*><MSM>8<*>"
      "<MSS>100<*><MEV>90<*><MAS>2<*><M3L>1<*><M3T>0<*><M3C>1<*><MLR>2<*><MSP>1<*><MSC>1<*><MTI>0<*"
      ">"
      "<MTF>1<*><MSL>2<*><MVR>479,239<*><MVP>240,120<*><MEP>475,235<*><MRT>1<*><PRE>0<*>"));
}

TEST(MapControlsTest, BadValues) {
  for (const char* text : {"<MZ>99<*>",    "<MZ>1000001<*>",
                           "<MZ>0<*>",     "<MZ>-4<*>",
                           "<MZ><*>",      "<MZ>5e2<*>",
                           "<MZ>500 <*>",  "<MZ>99999999999999<*>",
                           "<MSM>3<*>",    "<MSM>0<*>",
                           "<MSS>0<*>",    "<MSD>360<*>",
                           "<MVI>2<*>",    "<MVT>5<*>",
                           "<SJV>x<*>",    "<GEO>13 95<*>",
                           "<GEO><*>",     "<MP>1<*>",
                           "<MP>1,241<*>", "<MP>-1,0<*>",
                           "<MP>,<*>",     "<MID>map<*><MZ>500<*><MH>9<*>"}) {
    EXPECT_FALSE(ReadMapControls(text)) << text;
  }
}

TEST(MapControlsTest, WhatIsNoControl) {
  for (const char* text : {"", "zoom", "<>", "<*>", "<XY>1<*>", "<mz>500<*>"}) {
    EXPECT_FALSE(ReadMapControls(text)) << text;
  }
  EXPECT_TRUE(ReadMapControls("<XY>1<*><MID>map<*>"));
  EXPECT_EQ(ReadMapControls("<MZ>500<*><MZ>600<*>")->zoom, 500);
}

TEST(MapControlsTest, TheMapOfAText) {
  EXPECT_EQ(MapIdOf(""), "map");
  EXPECT_EQ(MapIdOf("<MID><*>"), "map");
  EXPECT_EQ(MapIdOf("<MZ>500<*>"), "map");
  EXPECT_EQ(MapIdOf("<MZ>500<*><MID>second map<*>"), "second map");
  EXPECT_EQ(MapIdOf("second"), "second");
}

}  // namespace
}  // namespace ventrik::bench
