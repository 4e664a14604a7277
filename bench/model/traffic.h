// SPDX-License-Identifier: Apache-2.0
// Traffic messages, their modes and what becomes of them on a guided route:
//
// | Request                        | Answer; to everyone but the fourth, which the requester    |
// |                                | alone gets                                                 |
// |--------------------------------|------------------------------------------------------------|
// | REQU_SET_TMC_MODE              | INFO_TMC_MODE; off forgets all events                      |
// | REQU_SET_TMC_ROUTE_MODE        | INFO_TMC_ROUTE_MODE                                        |
// | REQU_TMC_AVOIDS                | INFO_TMC_AVOIDS_CHANGED                                    |
// | REQU_TMC_SET_INFO_NOTIFICATION | INFO_TMC_INFO_CHANGED, INFO_TMC_NEW_EVENTS                 |
// | REQU_TMC_TUNING_MODE           | INFO_TMC_TUNING_MODE                                       |
// | TMC_DATA                       | INFO_TMC_INFO_CHANGED if it made, changed or ended an event|
// | RDSTMC_DATA                    | none; it is counted                                        |
//
// INFO_TMC_INFO_CHANGED tells the number of events that are kept. A value that a mode doesn't have
// changes nothing, and the answer tells what still holds. Any of these may also set off news of
// events and routes (traffic_news.h), and so does an event whose age is over.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "bench/model/subject.h"
#include "bench/model/traffic_events.h"
#include "bench/model/traffic_news.h"

namespace ventrik::bench {

// What is kept and told at most, so that every message fits a receiver.
inline constexpr std::size_t kMostTrafficEvents = 500;         // more are refused
inline constexpr std::size_t kLongestTuningParameters = 4096;  // bytes; longer ones are refused

// How often the mode `frequency` reports; its request names no time.
inline constexpr Milliseconds kTrafficReportPeriod{10'000};

// The numbers are those of the wire.

enum class TrafficRouteMode : std::int32_t { off = 0, automatic = 1, manual = 2, delay = 4 };

enum TrafficNotification : std::int32_t {
  kNotifyOff = 0,
  kNotifyOnce = 1,
  kNotifyOnChange = 2,
  kNotifyByFrequency = 4,
};

// Which events a client wants to hear of, and how.
struct TrafficWish {
  std::int32_t filter = 0;  // TrafficFilter
  std::int32_t mode = kNotifyOff;
  TimePoint nextReport{};  // with kNotifyByFrequency
  ToldEvents told;
};

// Routes around events, as told last.
struct TrafficOffer {
  std::vector<std::int32_t> routes;
  ToldEvents events;
  bool isAccepted = false;  // the routes lead around the events
};

struct TrafficState {
  bool on = true;
  std::int32_t routeMode = 0;
  std::int32_t delayThreshold = 0;  // minutes, for the mode `delay`
  std::int32_t tuningMode = 1;      // 1 automatic, 2 manual
  std::string tuningParameters;

  std::map<std::int64_t, TrafficEvent> events;
  std::map<ClientNumber, TrafficWish> wishes;  // of the modes onChange and frequency
  TrafficOffer offer;

  std::uint64_t refused = 0;    // blocks of TMC_DATA that did nothing
  std::uint64_t rdsBlocks = 0;  // of RDSTMC_DATA
};

// Sets everything back and tells everyone of the modes that this changed, and of what went with the
// events.
void RestoreTraffic(EngineState& state, TimePoint now, Replies& out);

HandlerRows TrafficHandlers();
SubjectClock TrafficClock();

}  // namespace ventrik::bench
