// SPDX-License-Identifier: Apache-2.0
#include "bench/model/traffic_news.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "bench/model/engine_state.h"

namespace ventrik::bench {
namespace {

using Texts = std::vector<std::string>;

struct Difference {
  Texts fresh;
  Texts gone;
};

// The texts in `events` that `others` doesn't have under the same number.
Texts Without(const ToldEvents& events, const ToldEvents& others) {
  Texts texts;
  for (const auto& [number, text] : events) {
    const auto other = others.find(number);
    if (other == others.end() || other->second != text) texts.push_back(text);
  }
  return texts;
}

Difference Compare(const ToldEvents& before, const ToldEvents& after) {
  return {Without(after, before), Without(before, after)};
}

// There is no table of locations, so that every location counts as one of the guided route. What
// keeps an event off it is its direction.
bool LiesOnRoute(const TrafficEvent& event) {
  return event.ahead && event.treatment != TrafficTreatment::ignore;
}

bool IsWanted(const TrafficEvent& event, std::int32_t filter, bool guided) {
  const bool significant = event.weight == TrafficWeight::blocks;
  std::int32_t kinds = kAllMessages | (significant ? kSignificant : kNonSignificant);
  if (guided && LiesOnRoute(event)) kinds |= kOnRoute;
  if (event.treatment == TrafficTreatment::avoid) kinds |= kAvoided;
  if (event.treatment == TrafficTreatment::ignore) kinds |= kIgnored;
  return (kinds & filter) != 0;
}

bool IsToBeAvoided(const TrafficEvent& event) {
  return LiesOnRoute(event) &&
         (event.treatment == TrafficTreatment::avoid || event.weight >= TrafficWeight::slows);
}

// Whether they are reason enough for another route, in the present mode.
bool AreReason(const TrafficState& traffic, std::chrono::minutes delay, bool avoided) {
  switch (static_cast<TrafficRouteMode>(traffic.routeMode)) {
    case TrafficRouteMode::automatic:
    case TrafficRouteMode::manual:
      return true;
    case TrafficRouteMode::delay:
      return avoided || delay.count() >= traffic.delayThreshold;
    case TrafficRouteMode::off:
      break;
  }
  return false;
}

// The routes that ought to be on offer and the events that they lead around.
TrafficOffer PresentOffer(const EngineState& state) {
  TrafficOffer offer;
  std::chrono::minutes delay{0};
  bool avoided = false;
  for (const auto& [number, event] : state.traffic.events) {
    if (!IsToBeAvoided(event)) continue;
    offer.events.emplace(number, event.text);
    delay += event.delay;
    avoided = avoided || event.treatment == TrafficTreatment::avoid;
  }
  if (offer.events.empty() || !AreReason(state.traffic, delay, avoided)) return {};
  offer.routes = RoutesAffected(state);
  return offer.routes.empty() ? TrafficOffer() : offer;
}

bool Differ(const TrafficOffer& one, const TrafficOffer& other) {
  return one.routes != other.routes || one.events != other.events;
}

void TellAccepted(std::int32_t route, const Difference& events, Replies& out) {
  out.Notify(INFO_TMC_ROUTE_ACCEPTED, {{"word1", 0},
                                       {"tmcNewEvents", events.fresh},
                                       {"tmcDeletedEvents", events.gone},
                                       {"routeHandle", route}});
}

// An offer for other routes than before is a new one; the same routes with other events are offered
// once more.
void TellRoutes(EngineState& state, TrafficOffer offer, TimePoint now, Replies& out) {
  TrafficState& traffic = state.traffic;
  if (!Differ(traffic.offer, offer)) return;
  TrafficOffer before = std::exchange(traffic.offer, std::move(offer));
  if (!before.routes.empty() && before.routes != traffic.offer.routes) {
    out.Notify(INFO_TMC_ROUTES_DELETED, {{"routeHandles", before.routes}});
    before = {};
  }
  if (traffic.offer.routes.empty()) return;
  const Difference events = Compare(before.events, traffic.offer.events);
  out.Notify(INFO_TMC_ROUTES_AVAILABLE, {{"routeHandles", traffic.offer.routes},
                                         {"tmcNewEvents", events.fresh},
                                         {"tmcDeletedEvents", events.gone},
                                         {"word4", 0}});
  if (static_cast<TrafficRouteMode>(traffic.routeMode) == TrafficRouteMode::manual) return;
  traffic.offer.isAccepted = true;
  for (const std::int32_t route : traffic.offer.routes) TellAccepted(route, events, out);
  Reroute(state, now);
}

void TellEvents(ClientNumber client, const Texts& fresh, const Texts& gone, Replies& out) {
  if (!gone.empty()) out.Tell(client, INFO_TMC_DEL_EVENTS, {{"tmcEvents", gone}});
  if (!fresh.empty()) out.Tell(client, INFO_TMC_NEW_EVENTS, {{"tmcEvents", fresh}});
}

}  // namespace

std::vector<std::int32_t> RoutesAffected(const EngineState& state) {
  const std::int32_t route = state.guidance.handle;
  if (route == 0) return {};
  return {route};
}

ToldEvents WantedEvents(const EngineState& state, std::int32_t filter) {
  const bool guided = !RoutesAffected(state).empty();
  ToldEvents wanted;
  for (const auto& [number, event] : state.traffic.events) {
    if (IsWanted(event, filter, guided)) wanted.emplace(number, event.text);
  }
  return wanted;
}

void TellTrafficChanges(EngineState& state, TimePoint now, Replies& out) {
  for (auto& [client, wish] : state.traffic.wishes) {
    if (wish.mode != kNotifyOnChange) continue;
    ToldEvents wanted = WantedEvents(state, wish.filter);
    const Difference events = Compare(wish.told, wanted);
    wish.told = std::move(wanted);
    TellEvents(client, events.fresh, events.gone, out);
  }
  TellRoutes(state, PresentOffer(state), now, out);
}

std::size_t EventsAvoided(const EngineState& state, std::int32_t route) {
  const TrafficOffer& offer = state.traffic.offer;
  const bool isOffered =
      std::find(offer.routes.begin(), offer.routes.end(), route) != offer.routes.end();
  return offer.isAccepted && isOffered ? offer.events.size() : 0;
}

bool HasTrafficChanges(const EngineState& state) {
  for (const auto& [client, wish] : state.traffic.wishes) {
    const bool isNews =
        wish.mode == kNotifyOnChange && wish.told != WantedEvents(state, wish.filter);
    if (isNews) return true;
  }
  return Differ(state.traffic.offer, PresentOffer(state));
}

void TellTrafficReport(const EngineState& state, ClientNumber client, TrafficWish& wish,
                       Replies& out) {
  ToldEvents wanted = WantedEvents(state, wish.filter);
  const Difference events = Compare(wish.told, wanted);
  TellEvents(client, Without(wanted, {}), events.gone, out);
  wish.told = std::move(wanted);
}

}  // namespace ventrik::bench
