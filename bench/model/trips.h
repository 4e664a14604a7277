// SPDX-License-Identifier: Apache-2.0
// Trips and the calculation of their routes:
//
// | Request            | Answer                                                               |
// |--------------------|----------------------------------------------------------------------|
// | REQU_NEW_TRIP      | RESP_NEW_TRIP with the destinations that were found and a handle for |
// |                    | each route mode; invalid if none was found                           |
// | REQU_NEW_TRIP_FILE | RESP_NEW_TRIP_FILE; invalid if there is no recording of that name    |
// | REQU_KILL_TRIP     | RESP_KILL_TRIP with the handles that there were, in the order asked  |
// | REQU_BLOCK_ROUTE   | RESP_BLOCK_ROUTE with all that is blocked now; the guided route is   |
// |                    | calculated anew                                                      |
//
// A route is calculated in the background, within half a second, and every step is told to
// everyone by INFO_CALC_STATE. The first leg begins where the vehicle stands at the request.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "bench/model/route.h"
#include "bench/model/subject.h"
#include "bench/world.h"

namespace ventrik::bench {

// A request that goes beyond one of these is invalid.
inline constexpr std::size_t kMostDestinations = 50;   // of a trip
inline constexpr std::size_t kMostRouteModes = 16;     // of a trip
inline constexpr std::size_t kMostRoutes = 256;        // at a time; killing some makes room
inline constexpr std::size_t kMostBlockedItems = 100;  // at a time

// Bits of a route mode that change a route.
inline constexpr std::int32_t kShortest = 0x2;
inline constexpr std::int32_t kScenic = 0x4;
inline constexpr std::int32_t kAvoidMotorways = 0x8;
inline constexpr std::int32_t kFromEnd = 0x200000;  // a recording the other way round

// The numbers are those of the wire.
enum class CalcState : std::int32_t {
  planning = 1,
  planned = 2,
  calculating = 3,
  calculated = 4,
  failed = 7,
};

struct TripRoute {
  std::int32_t handle = 0;
  std::int32_t mode = 0;            // bits, as in the request
  std::vector<Waypoint> waypoints;  // the last one is a stop
  std::vector<std::string> names;   // of the stops, in their order

  CalcState state = CalcState::planning;
  std::int32_t percent = 0;
  std::size_t nextStep = 0;  // of the calculation
  TimePoint due{};           // when that comes; meaningless once it has ended

  Position start;              // where the shape begins
  std::size_t firstLeg = 0;    // the waypoint that the shape leads to first
  std::optional<Route> shape;  // none if there is no way; what the calculation will find, while it
                               // runs

  bool IsCalculated() const { return state == CalcState::calculated; }
  bool IsUnderWay() const { return state != CalcState::calculated && state != CalcState::failed; }
};

struct TripsState {
  std::vector<TripRoute> routes;  // by handle
  std::int32_t lastHandle = 0;    // handles count from 1 and are not used again
  std::vector<std::string> blocked;
};

// The route of that handle; null if there is none. Valid until a route is made or killed.
TripRoute* FindRoute(TripsState& trips, std::int32_t handle);
const TripRoute* FindRoute(const TripsState& trips, std::int32_t handle);

// Calculates the route anew, from `start` to the waypoints from `firstLeg` on. It takes as long as
// a calculation does; until then the route is not calculated.
void Recalculate(EngineState& state, TripRoute& route, const Position& start, std::size_t firstLeg,
                 TimePoint now);

// Forgets all routes and blocks. Guidance along one of them must have ended.
void RestoreTrips(EngineState& state);

// Metres a second on open road.
double RoadSpeed(const TripRoute& route);

HandlerRows TripsHandlers();
SubjectClock TripsClock();

}  // namespace ventrik::bench
