// SPDX-License-Identifier: Apache-2.0
#include "bench/model/guidance.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <string>
#include <utility>

#include "bench/eis.h"
#include "bench/model/engine_state.h"

namespace ventrik::bench {
namespace {

constexpr double kArrival = 50;            // metres before a waypoint at which it is reached
constexpr double kDemoArrival = 1;         // the same in demo mode, which ends exactly there
constexpr double kNear = 300;              // metres at which a manoeuvre is announced, at least
constexpr double kLongSegment = 10'000;    // metres between manoeuvres; such ones have lanes
constexpr double kShortDriveTicks = 40;    // 10 s
constexpr double kLongDriveTicks = 80;     // 20 s
constexpr double kMetresToATick = 25'000;  // each adds a tick to the shortest drive
constexpr std::int32_t kLanes = 3;

std::int32_t Rounded(double value) {
  constexpr double kMost = std::numeric_limits<std::int32_t>::max();
  return static_cast<std::int32_t>(std::min(std::round(value), kMost));
}

// The route that guides; null if none does.
const TripRoute* ActiveRoute(const EngineState& state) {
  return state.guidance.active ? FindRoute(state.trips, state.guidance.handle) : nullptr;
}

// How far before a manoeuvre it is near: in a time lapse at least two moves.
double NearDistance(const GuidanceState& guidance) {
  return guidance.demo ? std::max(kNear, 2 * guidance.step) : kNear;
}

double ArrivalDistance(const GuidanceState& guidance) {
  return guidance.demo ? kDemoArrival : kArrival;
}

// ---- what is told

void TellActiveRoute(const EngineState& state, Replies& out) {
  std::int32_t description[3] = {-1, -1, -1};
  if (const TripRoute* route = ActiveRoute(state)) {
    const double length = route->shape->Length();
    description[0] = route->handle;
    description[1] = Rounded(length);
    description[2] = Rounded(length / RoadSpeed(*route));
  }
  out.Notify(INFO_ACTIVE_ROUTE_DESC, {{"routeDesc1", description[0]},
                                      {"routeDesc2", description[1]},
                                      {"routeDesc3", description[2]}});
}

void SetHighway(GuidanceState& guidance, bool onHighway, Replies& out) {
  if (std::exchange(guidance.onHighway, onHighway) == onHighway) return;
  out.Notify(INFO_HIGHWAYMODE_UPDATE, {{"state", YesOrNo(onHighway)}});
}

// The way between the manoeuvre before and the one at `index`.
double SegmentLength(const Route& shape, std::size_t index) {
  return shape.manoeuvres[index].at - (index == 0 ? 0 : shape.manoeuvres[index - 1].at);
}

void TellLanes(const Manoeuvre& manoeuvre, Replies& out) {
  const bool toTheRight = manoeuvre.turn == Turn::right;
  std::string details;
  AppendEis(details, "LANES", std::to_string(kLanes));
  AppendEis(details, "TAKE", std::to_string(toTheRight ? kLanes : 1));  // counted from the left
  out.Notify(INFO_LANE_INFORMATION, {{"detailsEIS", details}});
}

// Announces the manoeuvre that has come near, once, and enters and leaves the highways.
void TellSurroundings(EngineState& state, const TripRoute& route, TimePoint now, Replies& out) {
  GuidanceState& guidance = state.guidance;
  const Route& shape = *route.shape;
  const auto next = NextManoeuvre(shape, guidance.progress);
  if (!next) return;
  const Manoeuvre& manoeuvre = shape.manoeuvres[*next];
  const bool isNear = manoeuvre.at - guidance.progress <= NearDistance(guidance);
  const bool isLong = SegmentLength(shape, *next) >= kLongSegment;
  const bool hasHighways = (route.mode & kAvoidMotorways) == 0;
  SetHighway(guidance, isLong && hasHighways && !isNear, out);
  if (!isNear || *next < guidance.announced) return;
  guidance.announced = *next + 1;
  AnnouncePrompt(state, kAudioAutomatic, now, out);
  if (isLong && manoeuvre.turn != Turn::arrive) TellLanes(manoeuvre, out);
}

// Where the next destination is, beyond `metres`.
std::optional<double> NextArrival(const Route& shape, double metres) {
  for (const Manoeuvre& each : shape.manoeuvres) {
    if (each.turn == Turn::arrive && each.at > metres) return each.at;
  }
  return std::nullopt;
}

void TellNext(const EngineState& state, const TripRoute& route, Replies& out) {
  const GuidanceState& guidance = state.guidance;
  const Route& shape = *route.shape;
  const double speed = RoadSpeed(route);
  if (const auto next = NextManoeuvre(shape, guidance.progress)) {
    const Manoeuvre& manoeuvre = shape.manoeuvres[*next];
    const double metres = manoeuvre.at - guidance.progress;
    out.Notify(INFO_NEXT_MAN_INFO, {{"time", Rounded(metres / speed)},
                                    {"distance", Rounded(metres)},
                                    {"nextManInfo1", YesOrNo(metres <= NearDistance(guidance))},
                                    {"nextManInfo2", static_cast<std::int32_t>(manoeuvre.turn)},
                                    {"nextManInfo3", manoeuvre.angle}});
  }
  const auto arrival = NextArrival(shape, guidance.progress);
  if (!arrival) return;
  const double metres = *arrival - guidance.progress;
  out.Notify(INFO_NEXT_DEST_INFO,
             {{"nextDestInfo1", Rounded(metres / speed)}, {"nextDestInfo2", Rounded(metres)}});
}

// ---- on the way

void TellReached(const TripRoute& route, std::size_t waypoint, Replies& out) {
  const auto end = route.waypoints.begin() + static_cast<std::ptrdiff_t>(waypoint);
  const auto stop =
      std::count_if(route.waypoints.begin(), end, [](const Waypoint& each) { return each.isStop; });
  out.Notify(INFO_DESTINATION_REACHED, {{"dest", route.names[static_cast<std::size_t>(stop)]},
                                        {"element", static_cast<std::int32_t>(stop) + 1},
                                        {"total", static_cast<std::int32_t>(route.names.size())}});
}

// Passes the waypoints that have been come to. Returns whether there are more.
bool PassWaypoints(GuidanceState& guidance, const TripRoute& route, Replies& out) {
  const std::vector<double>& ends = route.shape->waypoints;
  const double arrival = ArrivalDistance(guidance);
  while (guidance.passed < ends.size() && ends[guidance.passed] <= guidance.progress + arrival) {
    guidance.progress = std::max(guidance.progress, ends[guidance.passed]);
    const std::size_t waypoint = route.firstLeg + guidance.passed++;
    if (route.waypoints[waypoint].isStop) TellReached(route, waypoint, out);
  }
  return guidance.passed < ends.size();
}

void TellProgress(EngineState& state, TimePoint now, Replies& out) {
  const TripRoute* route = ActiveRoute(state);
  if (route == nullptr) return;
  TellSurroundings(state, *route, now, out);
  if (PassWaypoints(state.guidance, *route, out)) {
    TellNext(state, *route, out);
  } else {
    EndGuidance(state, out);
  }
}

// How far one has come, who had come to `before`, with the vehicle at `position`: not beyond the
// next destination, and not to it unless the vehicle is there, since it may be far off the route.
double ProgressAt(const Route& shape, const Position& position, double before) {
  const double end = NextArrival(shape, before).value_or(shape.Length());
  const double progress = NearestAlong(shape, position, before, end);
  if (DistanceMetres(PositionAt(shape, end), position) <= kArrival) return progress;
  return std::max(before, std::min(progress, end - kArrival - 1));
}

// Whether the vehicle, which has come to `before` and is at `position` now, has left the route for
// good.
bool HasLeft(GuidanceState& guidance, const Route& shape, const Position& position, double before,
             TimePoint now) {
  const double end = NextArrival(shape, before).value_or(shape.Length());
  const double nearest = NearestAlong(shape, position, before, end);
  if (DistanceMetres(PositionAt(shape, nearest), position) <= kOffRoute) {
    guidance.offRoute.reset();
    return false;
  }
  if (!guidance.offRoute) guidance.offRoute = OffRoute{now, position};
  return now - guidance.offRoute->since >= kOffRoutePatience ||
         DistanceMetres(guidance.offRoute->at, position) >= kOffRouteWay;
}

// The pace of a drive over what is left of the route.
void SetPace(GuidanceState& guidance, const TripRoute& route, TimePoint now) {
  const double length = route.shape->Length() - guidance.progress;
  const double ticks = std::min(kShortDriveTicks + length / kMetresToATick, kLongDriveTicks);
  guidance.step = length / std::floor(ticks);
  guidance.nextStep = now + kDriveTick;
}

void Begin(EngineState& state, const TripRoute& route, TimePoint now, Replies& out) {
  GuidanceState& guidance = state.guidance;
  guidance.active = true;
  guidance.progress = 0;
  guidance.passed = 0;
  guidance.announced = 0;
  guidance.offRoute.reset();
  SetPace(guidance, route, now);
  TellActiveRoute(state, out);
  TellProgress(state, now, out);
}

// Guides along the wanted route as soon as it can be: once it is calculated, and from here.
void Pursue(EngineState& state, TimePoint now, Replies& out) {
  TripRoute* route = FindRoute(state.trips, state.guidance.handle);
  if (route == nullptr || route->state == CalcState::failed) {
    EndGuidance(state, out);
  } else if (route->IsCalculated()) {
    const Position& vehicle = state.vehicle.position;
    if (DistanceMetres(route->start, vehicle) > kOffRoute) {
      Recalculate(state, *route, vehicle, route->firstLeg, now);
    } else {
      Begin(state, *route, now, out);
    }
  }
}

void TakeStep(EngineState& state, const TripRoute& route, TimePoint now, Replies& out) {
  GuidanceState& guidance = state.guidance;
  const Route& shape = *route.shape;
  guidance.nextStep += kDriveTick;
  if (guidance.nextStep <= now) guidance.nextStep = now + kDriveTick;
  guidance.progress = std::min(guidance.progress + guidance.step, shape.Length());
  const double metres = guidance.progress;
  MoveVehicle(state, {PositionAt(shape, metres), RoadSpeed(route), HeadingAt(shape, metres)}, out);
  TellProgress(state, now, out);
}

std::optional<TimePoint> NextStep(const EngineState& state) {
  const GuidanceState& guidance = state.guidance;
  if (!guidance.active || !guidance.demo) return std::nullopt;
  return guidance.nextStep;
}

// The trips' clock comes before this one, so a route that is wanted is seen as soon as it is there.
void Drive(EngineState& state, TimePoint now, Replies& out) {
  const GuidanceState& guidance = state.guidance;
  if (guidance.handle != 0 && !guidance.active) Pursue(state, now, out);
  const auto due = NextStep(state);
  if (due && *due <= now) TakeStep(state, *ActiveRoute(state), now, out);
}

// ---- requests

void HandleStart(EngineState& state, const MessageFields& request, TimePoint now, Replies& out) {
  GuidanceState& guidance = state.guidance;
  TripRoute* route = FindRoute(state.trips, Get<std::int32_t>(request, "routeHandle"));
  const bool isNews =
      route != nullptr && route->state != CalcState::failed && route->handle != guidance.handle;
  if (!isNews) {
    TellActiveRoute(state, out);
    return;
  }
  SetHighway(guidance, false, out);
  guidance.active = false;
  guidance.handle = route->handle;
  // A trip that was left half-way begins again with its first destination.
  if (route->firstLeg != 0) Recalculate(state, *route, state.vehicle.position, 0, now);
  Pursue(state, now, out);
}

void HandleStop(EngineState& state, const MessageFields&, TimePoint now, Replies& out) {
  EndGuidance(state, out);
  DropGuidancePrompts(state, now, out);
}

bool IsOnEarth(const Position& position) {
  return std::fabs(position.longitude) <= 180 && std::fabs(position.latitude) <= 90;
}

// Longitude and latitude 0 stand for no position.
bool IsGiven(const Position& position) {
  return position.longitude != 0 || position.latitude != 0;
}

void SwitchDemoOn(EngineState& state, const Position& position, TimePoint now, Replies& out) {
  GuidanceState& guidance = state.guidance;
  const bool wasOn = std::exchange(guidance.demo, true);
  if (IsGiven(position)) MoveVehicle(state, {position, 0, state.vehicle.heading}, out);
  const TripRoute* route = ActiveRoute(state);
  if (route == nullptr) return;
  const Position expected = PositionAt(*route->shape, guidance.progress);
  if (DistanceMetres(expected, state.vehicle.position) > kOffRoute) {
    Reroute(state, now);
  } else if (!wasOn) {
    SetPace(guidance, *route, now);  // once: a drive that goes on keeps its pace
  }
}

void HandleDemoMode(EngineState& state, const MessageFields& request, TimePoint now, Replies& out) {
  const Position position{Get<double>(request, "longitude"), Get<double>(request, "latitude")};
  if (Get<std::int32_t>(request, "onOff") != kYes) {
    state.guidance.demo = false;
    state.vehicle.speed = 0;
  } else if (IsOnEarth(position)) {
    SwitchDemoOn(state, position, now, out);
  }
  out.Notify(INFO_DEMO_MODE_STATE, {{"state", YesOrNo(state.guidance.demo)}});
}

constexpr HandlerRow kHandlers[] = {
    {REQU_START_GUIDANCE, HandleStart},
    {REQU_STOP_GUIDANCE, HandleStop},
    {REQU_SET_DEMO_MODE, HandleDemoMode},
};

}  // namespace

void RestoreGuidance(EngineState& state, Replies& out) {
  GuidanceState& guidance = state.guidance;
  if (guidance.handle != 0) EndGuidance(state, out);
  if (!std::exchange(guidance.demo, false)) return;
  out.Notify(INFO_DEMO_MODE_STATE, {{"state", kNo}});
}

void EndGuidance(EngineState& state, Replies& out) {
  GuidanceState& guidance = state.guidance;
  SetHighway(guidance, false, out);
  guidance.handle = 0;
  guidance.active = false;
  if (guidance.demo) state.vehicle.speed = 0;
  TellActiveRoute(state, out);
}

void Reroute(EngineState& state, TimePoint now) {
  GuidanceState& guidance = state.guidance;
  TripRoute* route = FindRoute(state.trips, guidance.handle);
  if (route == nullptr) return;
  const std::size_t passed = std::exchange(guidance.active, false) ? guidance.passed : 0;
  Recalculate(state, *route, state.vehicle.position, route->firstLeg + passed, now);
}

void DriveVehicle(EngineState& state, const Motion& motion, TimePoint now, Replies& out) {
  GuidanceState& guidance = state.guidance;
  const TripRoute* route = ActiveRoute(state);
  bool hasLeft = false;
  if (route != nullptr) {
    hasLeft = HasLeft(guidance, *route->shape, motion.position, guidance.progress, now);
    guidance.progress = ProgressAt(*route->shape, motion.position, guidance.progress);
  }
  MoveVehicle(state, motion, out);
  if (hasLeft) {
    Reroute(state, now);
  } else {
    TellProgress(state, now, out);
  }
}

std::optional<std::int32_t> NearJunction(const EngineState& state) {
  const TripRoute* route = ActiveRoute(state);
  const auto next =
      route != nullptr ? NextManoeuvre(*route->shape, state.guidance.progress) : std::nullopt;
  if (!next) return std::nullopt;
  const Manoeuvre& manoeuvre = route->shape->manoeuvres[*next];
  const bool isNear = manoeuvre.at - state.guidance.progress <= NearDistance(state.guidance);
  if (!isNear || manoeuvre.turn == Turn::arrive) return std::nullopt;
  return static_cast<std::int32_t>(*next) + 1;
}

HandlerRows GuidanceHandlers() {
  return {std::begin(kHandlers), std::end(kHandlers)};
}

SubjectClock GuidanceClock() {
  return {NextStep, Drive};
}

}  // namespace ventrik::bench
