// SPDX-License-Identifier: Apache-2.0
#include "bench/model/route.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "tests/bench/built_in_world.h"

namespace ventrik::bench {
namespace {

constexpr Position kBerlin{13.41053, 52.52437};
constexpr Position kPassau{13.43122, 48.56650};
constexpr Position kVienna{16.37208, 48.20849};
constexpr double kQuarter = 10'007'557.2;  // metres, of the way around the earth

bool IsAt(const Position& position, const Position& expected) {
  return DistanceMetres(position, expected) < 0.1;
}

TEST(RouteTest, BearingIsACompassDirection) {
  EXPECT_NEAR(Bearing({0, 0}, {0, 10}), 0, 1e-9);
  EXPECT_NEAR(Bearing({0, 0}, {10, 0}), 90, 1e-9);
  EXPECT_NEAR(Bearing({0, 0}, {0, -10}), 180, 1e-9);
  EXPECT_NEAR(Bearing({0, 0}, {-10, 0}), 270, 1e-9);
  EXPECT_NEAR(Bearing({179, 0}, {-179, 0}), 90, 1e-9) << "over the date line";
  EXPECT_EQ(Bearing(kBerlin, kBerlin), 0);
}

TEST(RouteTest, AStraightRouteIsAsLongAsTheDistance) {
  const Route route = LayRoute(kBerlin, {{kPassau}, {kVienna}}, 0);
  const double first = DistanceMetres(kBerlin, kPassau);
  EXPECT_NEAR(route.Length(), first + DistanceMetres(kPassau, kVienna), 0.01);
  ASSERT_EQ(route.waypoints.size(), 2u);
  EXPECT_NEAR(route.waypoints[0], first, 0.01);
  EXPECT_EQ(route.waypoints[1], route.Length());
  EXPECT_EQ(route.points.size(), 13u) << "five inner points on each leg";
}

TEST(RouteTest, AStraightWayHasNoTurns) {
  const Route route = LayRoute({0, 0}, {{{2, 0}, false}, {{4, 0}, true}}, 0);
  ASSERT_EQ(route.manoeuvres.size(), 1u);
  EXPECT_EQ(route.manoeuvres[0].turn, Turn::arrive);
  EXPECT_EQ(route.manoeuvres[0].at, route.Length());
}

TEST(RouteTest, ABentRouteTurnsFromSideToSide) {
  const Route route = LayRoute(kBerlin, {{kPassau}}, 0.1);
  EXPECT_GT(route.Length(), DistanceMetres(kBerlin, kPassau) * 1.001);
  EXPECT_LT(route.Length(), DistanceMetres(kBerlin, kPassau) * 1.1);
  std::vector<Turn> turns;
  for (const Manoeuvre& manoeuvre : route.manoeuvres) turns.push_back(manoeuvre.turn);
  // The first inner point lies to the left, so there it goes to the right.
  EXPECT_EQ(turns, (std::vector<Turn>{Turn::right, Turn::left, Turn::right, Turn::left, Turn::right,
                                      Turn::arrive}));
  EXPECT_NEAR(route.manoeuvres[1].angle, -2 * std::atan(0.2) * 180 / 3.14159265, 1);
}

TEST(RouteTest, WaypointsThatAreNoStopsAreTurns) {
  const Route route = LayRoute({0, 0}, {{{1, 0}, false}, {{1, -1}, false}, {{1, 0}, true}}, 0);
  ASSERT_EQ(route.manoeuvres.size(), 3u);
  EXPECT_EQ(route.manoeuvres[0].turn, Turn::right);
  EXPECT_EQ(route.manoeuvres[0].angle, 90);
  EXPECT_EQ(route.manoeuvres[1].turn, Turn::back);
  EXPECT_EQ(std::abs(route.manoeuvres[1].angle), 180);
  EXPECT_EQ(route.manoeuvres[2].turn, Turn::arrive);
}

TEST(RouteTest, ShortLegsHaveNoInnerPoints) {
  EXPECT_EQ(LayRoute({0, 0}, {{{0, 0.003}}}, 0.1).points.size(), 2u);
  EXPECT_EQ(LayRoute({0, 0}, {{{0, 0.008}}}, 0.1).points.size(), 4u);
}

TEST(RouteTest, PositionsLieOnTheWay) {
  const Route route = LayRoute({0, 0}, {{{90, 0}}}, 0);
  EXPECT_TRUE(IsAt(PositionAt(route, 0), {0, 0}));
  EXPECT_TRUE(IsAt(PositionAt(route, kQuarter / 2), {45, 0}));
  EXPECT_TRUE(IsAt(PositionAt(route, route.Length()), {90, 0}));
  EXPECT_TRUE(IsAt(PositionAt(route, -5), {0, 0}));
  EXPECT_TRUE(IsAt(PositionAt(route, 1e12), {90, 0}));
  EXPECT_NEAR(HeadingAt(route, kQuarter / 2), 90, 1e-6);
  EXPECT_NEAR(HeadingAt(route, route.Length()), 90, 1e-6);
}

TEST(RouteTest, APositionIsAsFarAsItsMetres) {
  const Route route = LayRoute(kBerlin, {{kVienna}}, 0);
  for (const double share : {0.1, 0.35, 0.5, 0.99}) {
    const double metres = route.Length() * share;
    EXPECT_NEAR(DistanceMetres(kBerlin, PositionAt(route, metres)), metres, 0.1) << share;
  }
}

TEST(RouteTest, OverTheDateLineAndThePole) {
  const Route line = LayRoute({179, 10}, {{{-179, 10}}}, 0);
  EXPECT_LT(line.Length(), 220'000);
  EXPECT_NEAR(std::fabs(PositionAt(line, line.Length() / 2).longitude), 180, 1e-6);
  const Route pole = LayRoute({0, 80}, {{{180, 80}}}, 0);
  EXPECT_NEAR(PositionAt(pole, pole.Length() / 2).latitude, 90, 1e-4);
}

TEST(RouteTest, ARouteToTheOtherSideOfTheEarthIsSomeRoute) {
  const Route route = LayRoute({10, 20}, {{{-170, -20}}}, 0);
  EXPECT_NEAR(route.Length(), 2 * kQuarter, 10'000);
  EXPECT_NEAR(DistanceMetres({10, 20}, PositionAt(route, kQuarter)), kQuarter, 1000);
}

TEST(RouteTest, ARouteToWhereOneIsHasNoLength) {
  const Route route = LayRoute(kBerlin, {{kBerlin}, {kBerlin}}, 0.1);
  EXPECT_EQ(route.Length(), 0);
  EXPECT_TRUE(IsAt(PositionAt(route, 0), kBerlin));
  EXPECT_EQ(HeadingAt(route, 0), HeadingAt(route, 5));
  EXPECT_EQ(NearestAlong(route, kPassau, 0, 0), 0);
}

TEST(RouteTest, ARouteWithoutWaypointsIsItsBeginning) {
  const Route route = LayRoute(kBerlin, {}, 0.1);
  EXPECT_EQ(route.Length(), 0);
  EXPECT_TRUE(route.manoeuvres.empty());
  EXPECT_TRUE(IsAt(PositionAt(route, 100), kBerlin));
  EXPECT_EQ(HeadingAt(route, 100), 0);
  EXPECT_EQ(NearestAlong(route, kPassau, 0, 0), 0);
}

TEST(RouteTest, NearestIsSideways) {
  const Route route = LayRoute({0, 0}, {{{1, 0}}, {{0, 0}}}, 0);
  const double leg = route.waypoints[0];
  EXPECT_NEAR(NearestAlong(route, {0.25, 0.1}, 0, leg), leg / 4, 1);
  EXPECT_NEAR(NearestAlong(route, {0.25, 0.1}, leg, 2 * leg), leg * 1.75, 1) << "on the way back";
  EXPECT_EQ(NearestAlong(route, {0.25, 0.1}, leg / 2, leg), leg / 2) << "not back behind the begin";
  EXPECT_NEAR(NearestAlong(route, {5, 0}, 0, leg), leg, 1);
}

TEST(RouteTest, NextManoeuvreIsTheOneAhead) {
  const Route route = LayRoute(kBerlin, {{kPassau}}, 0.1);
  EXPECT_EQ(NextManoeuvre(route, 0), 0u);
  EXPECT_EQ(NextManoeuvre(route, route.manoeuvres[0].at), 1u);
  EXPECT_EQ(NextManoeuvre(route, route.manoeuvres[0].at - 1), 0u);
  EXPECT_EQ(NextManoeuvre(route, route.Length()), std::nullopt);
}

TEST(RouteTest, RoadsAreWhereTownsAre) {
  const World& world = BuiltInWorld();
  EXPECT_TRUE(HasRoads(world, kBerlin, kVienna));
  EXPECT_TRUE(HasRoads(world, kBerlin, {-9.13333, 38.71667})) << "Lisbon";
  EXPECT_TRUE(HasRoads(world, kBerlin, {-0.12574, 51.50853})) << "London";
  EXPECT_TRUE(HasRoads(world, {-123.11934, 49.24966}, {-80.19366, 25.77427})) << "to Miami";
  EXPECT_FALSE(HasRoads(world, kBerlin, {-79.4163, 43.70011})) << "Toronto";
  EXPECT_FALSE(HasRoads(world, kBerlin, {151.20732, -33.86785})) << "Sydney";
  EXPECT_FALSE(HasRoads(world, {0, 0}, {0, 0})) << "in the gulf";
  EXPECT_FALSE(HasRoads(World{}, kBerlin, kBerlin));
}

}  // namespace
}  // namespace ventrik::bench
