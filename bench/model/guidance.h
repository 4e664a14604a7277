// SPDX-License-Identifier: Apache-2.0
// Guidance along a route, and demo drives:
//
// | Request             | What comes of it                                                    |
// |---------------------|---------------------------------------------------------------------|
// | REQU_START_GUIDANCE | INFO_ACTIVE_ROUTE_DESC and guidance, once the route is calculated;  |
// |                     | INFO_ACTIVE_ROUTE_DESC as it is, if there is no such route          |
// | REQU_STOP_GUIDANCE  | INFO_ACTIVE_ROUTE_DESC -1,-1,-1                                     |
// | REQU_SET_DEMO_MODE  | INFO_DEMO_MODE_STATE; on puts the vehicle at the position           |
//
// The route description is the route's handle, its metres and its seconds. While guiding, every
// move of the vehicle tells the next manoeuvre and the next destination; a manoeuvre that comes
// near is announced; a destination is reached within 50 metres, and the last one ends guidance.
//
// In demo mode a guided vehicle drives by itself, in a time lapse: four moves a second, 10 to 20
// seconds for the whole route, as it is long. Speeds and times that are told are those of a drive
// on roads. If guidance starts, or demo mode puts the vehicle, away from the route, the route is
// first calculated anew from there. So it is when GPS has had the vehicle away from the route for
// a while or a way, be it that it turned off or that it turned back.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "bench/model/subject.h"
#include "bench/model/vehicle.h"

namespace ventrik::bench {

inline constexpr Milliseconds kDriveTick{250};  // between two moves of a demo drive

inline constexpr double kOffRoute = 100;  // metres from the route that are too far:
inline constexpr Milliseconds kOffRoutePatience{
    5000};                                   // at the start of a route at once, on the way
inline constexpr double kOffRouteWay = 300;  // after that time or so many metres of it

// Where the vehicle was first seen off the route.
struct OffRoute {
  TimePoint since;
  Position at;
};

struct GuidanceState {
  bool demo = false;
  std::int32_t handle = 0;  // of the route that is wanted; 0: none
  bool active = false;      // guiding; not yet, while the wanted route is calculated

  // While guiding, in the route's shape.
  double progress = 0;               // metres
  std::size_t passed = 0;            // waypoints
  std::size_t announced = 0;         // manoeuvres
  bool onHighway = false;            // as it was told
  std::optional<OffRoute> offRoute;  // none: on the route
  double step = 0;                   // metres to each tick of a demo drive
  TimePoint nextStep{};              // in demo mode
};

// Ends guidance and the wish for it, and says that there is no active route.
void EndGuidance(EngineState& state, Replies& out);

// Ends guidance and demo mode and tells everyone, if they were on.
void RestoreGuidance(EngineState& state, Replies& out);

// Calculates the wanted route anew from where the vehicle is, if there is one.
void Reroute(EngineState& state, TimePoint now);

// Moves the vehicle as its own sensors say, and guides it on from there.
void DriveVehicle(EngineState& state, const Motion& motion, TimePoint now, Replies& out);

// The number, from 1, of the guided manoeuvre that is near; none for an arrival.
std::optional<std::int32_t> NearJunction(const EngineState& state);

HandlerRows GuidanceHandlers();
SubjectClock GuidanceClock();

}  // namespace ventrik::bench
