// SPDX-License-Identifier: Apache-2.0
// What clients are told about traffic events, and when: the events that they asked for, and routes
// around those that lie on the guided route.
//
// Both are kept as what was told last, and telling compares with what holds now. So it doesn't
// matter what has changed: events, their treatment, a mode, or the guidance.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "bench/model/replies.h"
#include "bench/model/traffic_events.h"

namespace ventrik::bench {

struct EngineState;
struct TrafficWish;

using ToldEvents = std::map<std::int64_t, std::string>;  // their texts by number

// Which events clients want to hear of; the bits of the wire, of which any is enough.
enum TrafficFilter : std::int32_t {
  kOnRoute = 0x1,
  kSignificant = 0x2,     // traffic stands, or the road is closed
  kNonSignificant = 0x4,  // all others
  kAllMessages = 0x8,
  kAvoided = 0x10,
  kIgnored = 0x20,
};

// The handles of the routes that events have a bearing on: the one that guidance is wanted for,
// also while it is calculated, so that an offer outlasts a calculation on the way.
std::vector<std::int32_t> RoutesAffected(const EngineState& state);

// The kept events that a filter lets through.
ToldEvents WantedEvents(const EngineState& state, std::int32_t filter);

// Tells what has changed since it was last told: each client in the mode `onChange` the events,
// INFO_TMC_DEL_EVENTS before INFO_TMC_NEW_EVENTS, and then everyone the routes. A route that is
// accepted is calculated anew.
void TellTrafficChanges(EngineState& state, TimePoint now, Replies& out);

// How many events that route leads around: those of the offer that was accepted for it, as long as
// it stands.
std::size_t EventsAvoided(const EngineState& state, std::int32_t route);

// Whether that would tell anything.
bool HasTrafficChanges(const EngineState& state);

// The report of the mode `frequency` to a client: what has gone since the last one, and all that
// there is.
void TellTrafficReport(const EngineState& state, ClientNumber client, TrafficWish& wish,
                       Replies& out);

}  // namespace ventrik::bench
