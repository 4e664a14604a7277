// SPDX-License-Identifier: Apache-2.0
// A model that gets traffic messages.
#pragma once

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "bench/model/traffic.h"
#include "tests/bench/model/model_fixture.h"

namespace ventrik::bench {

using std::chrono::minutes;
using Texts = std::vector<std::string>;
using Numbers = std::vector<std::int32_t>;
using Ids = std::vector<FunctionId>;

inline constexpr std::int32_t kOn = 1;
inline constexpr std::int32_t kOff = 2;
inline constexpr std::int32_t kAutomatic = 1;
inline constexpr std::int32_t kManual = 2;
inline constexpr std::int32_t kByDelay = 4;
inline constexpr std::int32_t kUsual = 0;
inline constexpr std::int32_t kAvoid = 1;
inline constexpr std::int32_t kIgnore = 2;

inline constexpr std::int32_t kRoute = 7;

inline const std::string kClosed = "EVENT htmc=1 loc=113 extent=1 dir=0 bidi=0 age=60 event_1=401";
inline const std::string kQueue = "EVENT htmc=2 loc=61 extent=1 dir=0 bidi=0 age=15 event_1=108";
inline const std::string kFree = "EVENT htmc=3 loc=60 extent=1 dir=0 bidi=0 age=15 event_1=126";
inline const std::string kAway = "EVENT htmc=4 loc=59 extent=1 dir=1 bidi=0 age=15 event_1=401";
inline const std::string kClosedText =
    "<TMC>1<*><TEV>401<*><TET>closed; country 0, table 0, location 113, extent 1, positive "
    "direction<*>";

inline Ids IdsOf(const std::vector<Sent>& sent) {
  Ids ids;
  for (const Sent& message : sent) ids.push_back(message.id);
  return ids;
}

class TrafficFixture : public ModelFixture {
 protected:
  ~TrafficFixture() override {
    for (const Sent& message : seen_) {
      const bool isNews = message.id == INFO_TMC_NEW_EVENTS || message.id == INFO_TMC_DEL_EVENTS;
      EXPECT_EQ(message.audience, isNews ? Audience::one : Audience::everyone);
    }
  }

  template <class Request>
  std::vector<Sent> Ask(const Request& request) {
    auto sent = Handle(request);
    seen_.insert(seen_.end(), sent.begin(), sent.end());
    return sent;
  }

  std::vector<Sent> Data(const std::string& text) { return Ask(encode::TMC_DATA(text)); }
  std::vector<Sent> Avoids(std::int32_t mode, const Texts& events) {
    return Ask(encode::REQU_TMC_AVOIDS(mode, {events}));
  }
  std::vector<Sent> Subscribe(std::int32_t filter, std::int32_t mode) {
    auto sent = Handle(encode::REQU_TMC_SET_INFO_NOTIFICATION(filter, mode));
    for (const Sent& message : sent) EXPECT_NE(message.audience, Audience::everyone);
    return sent;
  }
  std::vector<Sent> RouteMode(std::int32_t mode, std::int32_t threshold = 0) {
    return Ask(encode::REQU_SET_TMC_ROUTE_MODE(mode, threshold));
  }

  // The numbers of the events that a filter lets through.
  std::set<std::int64_t> Wanted(std::int32_t filter) {
    std::set<std::int64_t> numbers;
    for (const Sent& message : Subscribe(filter, kNotifyOnce)) {
      if (message.id != INFO_TMC_NEW_EVENTS) continue;
      for (const std::string& text : message.Field<Texts>("tmcEvents")) {
        numbers.insert(NamedTrafficEvent(text).value_or(-1));
      }
    }
    return numbers;
  }

  // As if a trip were guided.
  void Guide(std::int32_t route) { state().guidance.handle = route; }

  // Lets the traffic's own clock do what is due now, without that of the guidance.
  std::vector<Sent> Tick() {
    Replies out;
    const SubjectClock clock = TrafficClock();
    EXPECT_EQ(clock.next(state()), TimePoint());
    clock.tick(state(), now_, out);
    EXPECT_NE(clock.next(state()), TimePoint());
    return Decode(out.Take());
  }

  std::vector<Sent> seen_;
};

}  // namespace ventrik::bench
