// SPDX-License-Identifier: Apache-2.0
#include "bench/model/route.h"

#include <algorithm>
#include <cmath>

namespace ventrik::bench {
namespace {

constexpr double kDegrees = 57.29577951308232;  // in a radian
constexpr double kEarthRadius = 6371008.8;      // metres, as in DistanceMetres
constexpr double kInnerSpacing = 400;           // metres, at least
constexpr int kMostInnerPoints = 5;             // on a leg
constexpr double kLeastTurn = 5;                // degrees; less is straight on
constexpr double kTurnBack = 150;               // degrees; more is no turn to a side

// Towns within this distance mean that there are roads: wide enough for the plains of Canada and
// the ways to near islands, too narrow for an ocean.
constexpr double kRoadReach = 700'000;        // metres
constexpr double kRoadSampleSpace = 200'000;  // metres

struct Vector {
  double x, y, z;
};

double Dot(const Vector& a, const Vector& b) {
  return a.x * b.x + a.y * b.y + a.z * b.z;
}

Vector Cross(const Vector& a, const Vector& b) {
  return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

Vector Sum(const Vector& a, double aTimes, const Vector& b, double bTimes) {
  return {a.x * aTimes + b.x * bTimes, a.y * aTimes + b.y * bTimes, a.z * aTimes + b.z * bTimes};
}

Vector Direction(const Position& position) {
  const double latitude = position.latitude / kDegrees;
  const double longitude = position.longitude / kDegrees;
  return {std::cos(latitude) * std::cos(longitude), std::cos(latitude) * std::sin(longitude),
          std::sin(latitude)};
}

Position PositionOf(const Vector& direction) {
  return {std::atan2(direction.y, direction.x) * kDegrees,
          std::atan2(direction.z, std::hypot(direction.x, direction.y)) * kDegrees};
}

// A great circle from one place through another, by the angle gone.
struct Arc {
  Vector from;
  Vector ahead;  // at right angles to `from`
  double angle;  // to the other place, radians

  Arc(const Position& begin, const Position& end) : from(Direction(begin)) {
    const Vector to = Direction(end);
    angle = DistanceMetres(begin, end) / kEarthRadius;
    ahead = Sum(to, 1, from, -Dot(to, from));
    double size = std::sqrt(Dot(ahead, ahead));
    if (size < 1e-12) {
      // The same place or its antipode: any way will do.
      ahead = Cross(from, std::fabs(from.z) < 0.9 ? Vector{0, 0, 1} : Vector{1, 0, 0});
      size = std::sqrt(Dot(ahead, ahead));
    }
    ahead = {ahead.x / size, ahead.y / size, ahead.z / size};
  }

  Vector At(double gone) const { return Sum(from, std::cos(gone), ahead, std::sin(gone)); }

  // The same, `aside` radians to the right of the way.
  Position Beside(double gone, double aside) const {
    return PositionOf(Sum(At(gone), std::cos(aside), Cross(ahead, from), std::sin(aside)));
  }
};

std::vector<Vector> TownDirections(const World& world) {
  std::vector<Vector> towns;
  for (const Country& country : world.countries) {
    for (const State& state : country.states) {
      for (const Town& town : state.towns) towns.push_back(Direction(town.position));
    }
  }
  return towns;
}

void AddPoint(Route& route, const Position& position) {
  route.at.push_back(route.Length() + DistanceMetres(route.points.back(), position));
  route.points.push_back(position);
}

void AddLeg(Route& route, const Position& to, double bend) {
  const Position from = route.points.back();
  const double length = DistanceMetres(from, to);
  const int inner = static_cast<int>(std::min<double>(kMostInnerPoints, length / kInnerSpacing));
  const Arc arc(from, to);
  const double spacing = arc.angle / (inner + 1);
  for (int point = 1; point <= inner; ++point) {
    const double side = point % 2 == 0 ? 1 : -1;
    AddPoint(route, arc.Beside(spacing * point, side * bend * spacing));
  }
  AddPoint(route, to);
}

// The next point that isn't the same place as the point at `index`; that point itself if none is.
const Position& PointAfter(const Route& route, std::size_t index) {
  std::size_t next = index;
  while (next + 1 < route.points.size() && route.at[next] <= route.at[index]) ++next;
  return route.points[next];
}

// Degrees to the right, -180 to 180, by which the way turns at a point that is none of the ends.
double TurnAt(const Route& route, std::size_t index) {
  const Position& here = route.points[index];
  // The way back is looked at, since on a long leg the heading at its end isn't that at its start.
  const double coming = Bearing(here, route.points[index - 1]) + 180;
  const double going = Bearing(here, PointAfter(route, index));
  return std::remainder(going - coming, 360);
}

void AddTurn(Route& route, std::size_t index) {
  const bool isEdge =
      index == 0 || route.at[index] <= route.at[index - 1] || route.at[index] >= route.Length();
  if (isEdge) return;
  const double angle = TurnAt(route, index);
  if (std::fabs(angle) < kLeastTurn) return;
  const Turn side = angle < 0 ? Turn::left : Turn::right;
  route.manoeuvres.push_back({route.at[index], std::fabs(angle) > kTurnBack ? Turn::back : side,
                              static_cast<std::int32_t>(std::lround(angle))});
}

// The segment that `metres` lies on, as the index of its first point; the route has two or more.
std::size_t SegmentAt(const Route& route, double metres) {
  const auto end = std::upper_bound(route.at.begin() + 1, route.at.end() - 1, metres);
  return static_cast<std::size_t>(end - route.at.begin()) - 1;
}

}  // namespace

double Bearing(const Position& from, const Position& to) {
  const double fromLatitude = from.latitude / kDegrees;
  const double toLatitude = to.latitude / kDegrees;
  const double east = (to.longitude - from.longitude) / kDegrees;
  const double x = std::cos(fromLatitude) * std::sin(toLatitude) -
                   std::sin(fromLatitude) * std::cos(toLatitude) * std::cos(east);
  const double y = std::sin(east) * std::cos(toLatitude);
  const double degrees = std::fmod(std::atan2(y, x) * kDegrees + 360, 360);
  return DistanceMetres(from, to) > 0 ? degrees : 0;
}

bool HasRoads(const World& world, const Position& from, const Position& to) {
  const std::vector<Vector> towns = TownDirections(world);
  const double nearEnough = std::cos(kRoadReach / kEarthRadius);
  const Arc arc(from, to);
  const int parts = 1 + static_cast<int>(arc.angle * kEarthRadius / kRoadSampleSpace);
  for (int part = 0; part <= parts; ++part) {
    const Vector here = arc.At(arc.angle * part / parts);
    const auto isNear = [&](const Vector& town) { return Dot(town, here) >= nearEnough; };
    if (std::none_of(towns.begin(), towns.end(), isNear)) return false;
  }
  return true;
}

Route LayRoute(const Position& start, const std::vector<Waypoint>& waypoints, double bend) {
  Route route;
  route.points.push_back(start);
  route.at.push_back(0);
  std::vector<std::size_t> ends;  // the waypoints' points
  for (const Waypoint& waypoint : waypoints) {
    AddLeg(route, waypoint.position, bend);
    route.waypoints.push_back(route.Length());
    ends.push_back(route.points.size() - 1);
  }
  std::size_t leg = 0;
  for (std::size_t index = 1; index < route.points.size(); ++index) {
    const bool isWaypoint = leg < ends.size() && ends[leg] == index;
    if (isWaypoint && waypoints[leg].isStop) {
      route.manoeuvres.push_back({route.at[index], Turn::arrive, 0});
    } else {
      AddTurn(route, index);
    }
    if (isWaypoint) ++leg;
  }
  return route;
}

Position PositionAt(const Route& route, double metres) {
  if (route.points.size() < 2 || metres <= 0) return route.points.front();
  if (metres >= route.Length()) return route.points.back();
  const std::size_t segment = SegmentAt(route, metres);
  const Arc arc(route.points[segment], route.points[segment + 1]);
  return PositionOf(arc.At((metres - route.at[segment]) / kEarthRadius));
}

double HeadingAt(const Route& route, double metres) {
  if (route.points.size() < 2) return 0;
  const std::size_t segment = SegmentAt(route, std::clamp(metres, 0.0, route.Length()));
  const Position here = PositionAt(route, metres);
  const Position& next = route.points[segment + 1];
  if (metres < route.at[segment + 1]) return Bearing(here, next);
  return std::fmod(Bearing(next, route.points[segment]) + 180, 360);
}

double NearestAlong(const Route& route, const Position& position, double begin, double end) {
  const Vector here = Direction(position);
  double nearest = begin;
  double least = DistanceMetres(PositionAt(route, begin), position);
  for (std::size_t segment = 0; segment + 1 < route.points.size(); ++segment) {
    const double first = std::max(begin, route.at[segment]);
    const double last = std::min(end, route.at[segment + 1]);
    if (first > last) continue;
    const Arc arc(route.points[segment], route.points[segment + 1]);
    const double gone = std::atan2(Dot(here, arc.ahead), Dot(here, arc.from)) * kEarthRadius;
    const double metres = std::clamp(route.at[segment] + gone, first, last);
    const double distance = DistanceMetres(PositionAt(route, metres), position);
    if (distance >= least) continue;
    least = distance;
    nearest = metres;
  }
  return nearest;
}

std::optional<std::size_t> NextManoeuvre(const Route& route, double metres) {
  const auto next = std::find_if(route.manoeuvres.begin(), route.manoeuvres.end(),
                                 [metres](const Manoeuvre& each) { return each.at > metres; });
  if (next == route.manoeuvres.end()) return std::nullopt;
  return static_cast<std::size_t>(next - route.manoeuvres.begin());
}

}  // namespace ventrik::bench
