// SPDX-License-Identifier: Apache-2.0
#include "bench/model/trips.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

#include "bench/eis.h"
#include "bench/model/engine_state.h"
#include "bench/search.h"

namespace ventrik::bench {
namespace {

using Words = std::vector<std::int32_t>;
using Texts = std::vector<std::string>;

// ---- calculation

struct CalcStep {
  Milliseconds wait;  // since the step before
  CalcState state;
  std::int32_t percent;
};

constexpr std::array<CalcStep, 7> kSteps = {{
    {Milliseconds{50}, CalcState::planning, 0},
    {Milliseconds{50}, CalcState::planned, 0},
    {Milliseconds{80}, CalcState::calculating, 10},
    {Milliseconds{80}, CalcState::calculating, 40},
    {Milliseconds{80}, CalcState::calculating, 70},
    {Milliseconds{80}, CalcState::calculating, 90},
    {Milliseconds{80}, CalcState::calculated, 100},
}};
constexpr std::size_t kFirstCalculating = 2;  // where a route that is only laid anew begins
constexpr std::size_t kFailing = 4;           // the step that a route without a way fails at

struct ModeBend {
  std::int32_t bit;
  double bend;  // what it adds to the route's
};

constexpr double kBend = 0.08;  // of a route of no special mode
constexpr ModeBend kModeBends[] = {
    {kShortest, -0.05},
    {kScenic, 0.12},
    {kAvoidMotorways, 0.04},
};
constexpr double kAvoidingBend = 0.03;    // for each blocked item and traffic event, the way around
constexpr std::size_t kBendingItems = 8;  // more change nothing

double BendOf(const EngineState& state, const TripRoute& route) {
  double bend = kBend;
  for (const ModeBend& each : kModeBends) {
    if ((route.mode & each.bit) != 0) bend += each.bend;
  }
  const std::size_t avoided = state.trips.blocked.size() + EventsAvoided(state, route.handle);
  return bend + kAvoidingBend * static_cast<double>(std::min(avoided, kBendingItems));
}

// Whether there are roads from `start` over the waypoints from `firstLeg` on.
bool CanBeReached(const World& world, const TripRoute& route, const Position& start,
                  std::size_t firstLeg) {
  Position from = start;
  for (std::size_t leg = firstLeg; leg < route.waypoints.size(); ++leg) {
    const Position& to = route.waypoints[leg].position;
    if (!HasRoads(world, from, to)) return false;
    from = to;
  }
  return true;
}

void BeginAt(TripRoute& route, std::size_t step, TimePoint now) {
  route.state = kSteps[step].state;
  route.percent = 0;
  route.nextStep = step;
  route.due = now + kSteps[step].wait;
}

void Lay(const EngineState& state, TripRoute& route, const Position& start, std::size_t firstLeg,
         bool isReachable) {
  const auto first = route.waypoints.begin() + static_cast<std::ptrdiff_t>(firstLeg);
  route.start = start;
  route.firstLeg = firstLeg;
  route.shape.reset();
  if (!isReachable) return;
  route.shape = LayRoute(start, {first, route.waypoints.end()}, BendOf(state, route));
}

void TakeStep(TripRoute& route, Replies& out) {
  const CalcStep& step = kSteps[route.nextStep];
  if (route.nextStep == kFailing && !route.shape) {
    route.state = CalcState::failed;
  } else {
    route.state = step.state;
    route.percent = step.percent;
  }
  if (++route.nextStep < kSteps.size()) route.due += kSteps[route.nextStep].wait;
  out.Notify(INFO_CALC_STATE, {{"routeHandle", route.handle},
                               {"calcState", static_cast<std::int32_t>(route.state)},
                               {"calcPercent", route.percent}});
}

std::optional<TimePoint> NextStep(const EngineState& state) {
  std::optional<TimePoint> next;
  for (const TripRoute& route : state.trips.routes) {
    if (route.IsUnderWay() && (!next || route.due < *next)) next = route.due;
  }
  return next;
}

void TakeSteps(EngineState& state, TimePoint now, Replies& out) {
  for (TripRoute& route : state.trips.routes) {
    while (route.IsUnderWay() && route.due <= now) TakeStep(route, out);
  }
}

// ---- new trips

struct Destination {
  std::string name;
  Position position;
};

// A place by its position, which a GEO gives whatever else is said, or by its name.
std::optional<Destination> FindDestination(const World& world, const std::string& text) {
  const std::vector<EisPair> pairs = ParseEis(text);
  const auto geo = FindEis(pairs, "GEO");
  const auto position = geo ? ParsePosition(*geo) : std::nullopt;
  if (position) {
    const auto town = FindEis(pairs, "CTY");
    const bool isNamed = town && !town->empty();
    return Destination{isNamed ? std::string(*town) : PositionText(*position), *position};
  }
  const DetailsResult details = Details(world, text, {"CTR", "STA", "CTY"});
  if (!details.valid) return std::nullopt;
  // The deepest level is the last one.
  return Destination{std::string(ParseEis(details.outputEis).back().value), details.position};
}

// What a new trip leads to; empty waypoints if that was not found.
struct Plan {
  std::vector<Waypoint> waypoints;
  std::vector<std::string> names;  // of the stops
};

// Makes the routes of a trip, one for each mode, and returns their handles; none if there is
// nothing to go to, or too much is asked for.
Words MakeRoutes(EngineState& state, const Plan& plan, Words modes, TimePoint now) {
  if (modes.empty()) modes.push_back(0);
  TripsState& trips = state.trips;
  const bool fits =
      modes.size() <= kMostRouteModes && trips.routes.size() + modes.size() <= kMostRoutes;
  if (plan.waypoints.empty() || !fits) return {};

  Words handles;
  const Position start = state.vehicle.position;
  for (const std::int32_t mode : modes) {
    TripRoute& route = trips.routes.emplace_back();
    route.handle = ++trips.lastHandle;
    route.mode = mode;
    route.waypoints = plan.waypoints;
    route.names = plan.names;
    const TripRoute& first = trips.routes[trips.routes.size() - 1 - handles.size()];
    const bool isFirst = handles.empty();
    const bool isReachable =
        isFirst ? CanBeReached(state.world, route, start, 0) : first.shape.has_value();
    Lay(state, route, start, 0, isReachable);
    BeginAt(route, 0, now);
    handles.push_back(route.handle);
  }
  return handles;
}

void HandleNewTrip(EngineState& state, const MessageFields& request, TimePoint now, Replies& out) {
  const auto& asked = Get<DestinationValues>(request, "destinations");
  const Words& modes = Get<Words>(request, "routeModes");
  Plan plan;
  DestinationValues found;
  const std::size_t looked = asked.size() <= kMostDestinations ? asked.size() : 0;
  for (std::size_t index = 0; index < looked; ++index) {
    const auto destination = FindDestination(state.world, asked[index].first);
    if (!destination) continue;
    plan.waypoints.push_back({destination->position, true});
    plan.names.push_back(destination->name);
    found.push_back(asked[index]);
  }
  const Words handles = MakeRoutes(state, plan, modes, now);
  out.Answer(RESP_NEW_TRIP,
             {{"destinations", handles.empty() ? asked : found},
              {"routeModes", modes},
              {"validState", YesOrNo(!handles.empty())},
              {"handles", handles}},
             {"destinations", "routeModes"});
}

// The recording's track, of which only the end is a destination.
Plan PlanOfRecording(const Recording& recording, std::int32_t mode) {
  Plan plan;
  for (const Position& point : recording.points) plan.waypoints.push_back({point, false});
  if ((mode & kFromEnd) != 0) std::reverse(plan.waypoints.begin(), plan.waypoints.end());
  plan.waypoints.back().isStop = true;
  plan.names.push_back(recording.path);
  return plan;
}

void HandleNewTripFile(EngineState& state, const MessageFields& request, TimePoint now,
                       Replies& out) {
  const auto& path = Get<std::string>(request, "path");
  const Words& modes = Get<Words>(request, "routeModes");
  const Recording* recording = FindRecording(state.recording, path);
  Words handles;
  if (recording != nullptr) {
    // The direction is the trip's, not one route's: the first mode decides.
    const std::int32_t mode = modes.empty() ? 0 : modes.front();
    handles = MakeRoutes(state, PlanOfRecording(*recording, mode), modes, now);
  }
  out.Answer(RESP_NEW_TRIP_FILE,
             {{"pathEIS", path},
              {"routeModes", modes},
              {"validState", YesOrNo(!handles.empty())},
              {"handles", handles}},
             {"pathEIS", "routeModes"});
}

// ---- the end of trips

void HandleKillTrip(EngineState& state, const MessageFields& request, TimePoint now, Replies& out) {
  std::vector<TripRoute>& routes = state.trips.routes;
  Words killed;
  for (const std::int32_t handle : Get<Words>(request, "handles")) {
    const auto isMeant = [handle](const TripRoute& route) { return route.handle == handle; };
    const auto found = std::find_if(routes.begin(), routes.end(), isMeant);
    if (found == routes.end()) continue;
    routes.erase(found);
    killed.push_back(handle);
  }
  out.Answer(RESP_KILL_TRIP, {{"handles", killed}});
  const bool endsGuidance =
      std::find(killed.begin(), killed.end(), state.guidance.handle) != killed.end();
  if (!endsGuidance) return;
  EndGuidance(state, out);
  DropGuidancePrompts(state, now, out);
}

// ---- blocks

constexpr std::int32_t kAddBlock = 0;
constexpr std::int32_t kRemoveBlock = 1;

bool IsAmong(const Texts& texts, const std::string& text) {
  return std::find(texts.begin(), texts.end(), text) != texts.end();
}

// Whether there was something to add and room for it. An item counts once.
bool AddBlocks(Texts& blocked, const Texts& items) {
  Texts all = blocked;
  for (const std::string& item : items) {
    if (item.empty() || item.size() > kMaxEisValue || all.size() > kMostBlockedItems) return false;
    if (!IsAmong(all, item)) all.push_back(item);
  }
  if (items.empty() || all.size() > kMostBlockedItems) return false;
  blocked = std::move(all);
  return true;
}

// Whether one of them was there. Without items all blocks go, also if there are none.
bool RemoveBlocks(Texts& blocked, const Texts& items) {
  if (items.empty()) {
    blocked.clear();
    return true;
  }
  const std::size_t before = blocked.size();
  for (const std::string& item : items) {
    blocked.erase(std::remove(blocked.begin(), blocked.end(), item), blocked.end());
  }
  return blocked.size() < before;
}

void HandleBlockRoute(EngineState& state, const MessageFields& request, TimePoint now,
                      Replies& out) {
  const auto mode = Get<std::int32_t>(request, "mode");
  const Texts& items = Get<Texts>(request, "items");
  Texts& blocked = state.trips.blocked;
  const Texts before = blocked;
  bool isValid = false;
  if (mode == kAddBlock) isValid = AddBlocks(blocked, items);
  if (mode == kRemoveBlock) isValid = RemoveBlocks(blocked, items);
  out.Answer(RESP_BLOCK_ROUTE,
             {{"word1", mode}, {"blockedItems", blocked}, {"validState", YesOrNo(isValid)}});
  if (blocked != before) Reroute(state, now);
}

constexpr HandlerRow kHandlers[] = {
    {REQU_NEW_TRIP, HandleNewTrip},
    {REQU_NEW_TRIP_FILE, HandleNewTripFile},
    {REQU_KILL_TRIP, HandleKillTrip},
    {REQU_BLOCK_ROUTE, HandleBlockRoute},
};

}  // namespace

const TripRoute* FindRoute(const TripsState& trips, std::int32_t handle) {
  const auto found =
      std::find_if(trips.routes.begin(), trips.routes.end(),
                   [handle](const TripRoute& route) { return route.handle == handle; });
  return found == trips.routes.end() ? nullptr : &*found;
}

TripRoute* FindRoute(TripsState& trips, std::int32_t handle) {
  return const_cast<TripRoute*>(FindRoute(std::as_const(trips), handle));
}

void Recalculate(EngineState& state, TripRoute& route, const Position& start, std::size_t firstLeg,
                 TimePoint now) {
  Lay(state, route, start, firstLeg, CanBeReached(state.world, route, start, firstLeg));
  BeginAt(route, kFirstCalculating, now);
}

void RestoreTrips(EngineState& state) {
  state.trips.routes.clear();
  state.trips.blocked.clear();
}

double RoadSpeed(const TripRoute& route) {
  if ((route.mode & kAvoidMotorways) != 0) return 17;
  return (route.mode & kShortest) != 0 ? 19 : 25;
}

HandlerRows TripsHandlers() {
  return {std::begin(kHandlers), std::end(kHandlers)};
}

SubjectClock TripsClock() {
  return {NextStep, TakeSteps};
}

}  // namespace ventrik::bench
