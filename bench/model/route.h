// SPDX-License-Identifier: Apache-2.0
// The shape of a route over the earth's surface, and places along it.
//
// A route begins where the vehicle stands and goes on to each waypoint in turn. This world has
// places but no streets, so between two waypoints it is a great circle, drawn aside at a few inner
// points, alternately to the left and to the right. What a driver does at these points and at the
// waypoints are its manoeuvres. Distances are metres along the route from its beginning. Pure
// functions; the same input gives the same route.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "bench/world.h"

namespace ventrik::bench {

struct Waypoint {
  Position position;
  bool isStop = true;  // a destination; otherwise only a point to come by
};

// The numbers are those that the engine sends as the kind of a manoeuvre.
enum class Turn : std::int32_t {
  left = 1,
  right = 2,
  back = 3,    // by more than 150 degrees
  arrive = 4,  // a destination
};

struct Manoeuvre {
  double at = 0;  // metres
  Turn turn = Turn::arrive;
  std::int32_t angle = 0;  // degrees, -180 to 180, to the right positive; of an arrival 0
};

struct Route {
  std::vector<Position> points;       // at least one, the beginning
  std::vector<double> at;             // metres; of each point, not falling
  std::vector<double> waypoints;      // metres; of each waypoint
  std::vector<Manoeuvre> manoeuvres;  // in their order

  double Length() const { return at.empty() ? 0 : at.back(); }
};

// Compass degrees, 0 to below 360, in which `to` lies as seen from `from`; 0 if they are the same.
double Bearing(const Position& from, const Position& to);

// Whether the way between the two, ends and all, keeps near the world's towns. Where there are
// none, over an ocean or off the data, there are no roads.
bool HasRoads(const World& world, const Position& from, const Position& to);

// `bend` is how far the inner points are drawn aside, as a share of their spacing: 0 for a straight
// way. Legs of less than 400 metres have no inner points, longer ones up to five.
Route LayRoute(const Position& start, const std::vector<Waypoint>& waypoints, double bend);

// Where one is after `metres`, and which way one looks there. What lies beyond an end is that end.
Position PositionAt(const Route& route, double metres);
double HeadingAt(const Route& route, double metres);  // compass degrees

// How far one has come who is at `position`: metres, of the nearest point between `begin` and
// `end`.
double NearestAlong(const Route& route, const Position& position, double begin, double end);

// The first manoeuvre beyond `metres`, as an index; none behind the last one.
std::optional<std::size_t> NextManoeuvre(const Route& route, double metres);

}  // namespace ventrik::bench
