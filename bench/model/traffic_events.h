// SPDX-License-Identifier: Apache-2.0
// Traffic messages: the text that a receiver hands in, the event that it makes, and how the event
// is told to clients.
//
//   EVENT htmc=80 loc=294 extent=11 dir=0 bidi=0 age=15 cc=11 ltn=1 new=1 event_1=101 len_1=3
//
// The words behind EVENT may stand in any order; a word said twice counts as said first, unknown
// words are skipped, and a value that is no number in its range counts as left out:
//
// | Word              | Values        | Meaning                                       | Left out |
// |-------------------|---------------|-----------------------------------------------|----------|
// | htmc              | 0 to 2^32 - 1 | the event's number                            | no event |
// | loc               | 0 to 65535    | the location's number                         | no event |
// | event_1 to _8     | 1 to 2047     | codes of what has happened                    | no event |
// | len_1 to len_8    | 1 to 1000     | kilometres of it, for the code of that number | not told |
// | age               | 0 to 1440     | minutes that the event has left               | 15       |
// | extent            | 0 to 31       | locations that it reaches on                  | 0        |
// | dir               | 0, 1          | along or against the locations' direction     | 0        |
// | bidi              | 0, 1          | in both directions                            | 0        |
// | cc, ltn           | 0 to 65535    | country and table of the location             | 0        |
//
// A message that clears needs its htmc alone: its age is 0, or one of its codes says that
// something is over. Pure functions, any text.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "bench/model/replies.h"

namespace ventrik::bench {

inline constexpr std::int32_t kMostCodes = 8;  // of one event

// How much a code says. An event weighs as its heaviest code.
enum class TrafficWeight { clears, informs, slows, blocks };

// What clients want done about an event; the numbers are those of the wire.
enum class TrafficTreatment : std::int32_t { usual = 0, avoid = 1, ignore = 2 };

struct TrafficEvent {
  std::int64_t number = 0;
  std::string text;  // as told to clients
  TrafficWeight weight = TrafficWeight::informs;
  std::chrono::minutes delay{0};  // of all its codes
  bool ahead = true;              // concerns those who drive in the locations' direction
  TrafficTreatment treatment = TrafficTreatment::usual;
  TimePoint end;  // when its age is over; for the keeper to set
};

struct TrafficNotice {
  TrafficEvent event;
  std::chrono::minutes age{0};
  bool clears = false;  // the event of that number is over; nothing but the number is known
};

// None if the text makes no event and clears none. The example gives
//   "<TMC>80<*><TEV>101<*><TET>stationary traffic for 3 km; country 11, table 1, location 294,
//   extent 11, positive direction<*>"
std::optional<TrafficNotice> ParseTrafficNotice(std::string_view text);

// The number of the event that a client names, by it alone or by the event's text:
//   "80", "<TMC>80<*><TEV>101<*>" => 80      "", "x", "-1" => none
std::optional<std::int64_t> NamedTrafficEvent(std::string_view text);

}  // namespace ventrik::bench
