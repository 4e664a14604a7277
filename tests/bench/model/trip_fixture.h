// SPDX-License-Identifier: Apache-2.0
// A model whose vehicle goes on trips.
#pragma once

#include <cstring>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "tests/bench/model/cut_requests.h"
#include "tests/bench/model/sent_text.h"

namespace ventrik::bench {

inline constexpr char kPotsdam[] = "<GEOC>Germany<*><CTY>Potsdam<*>";
inline constexpr char kPassau[] = "<GEOC>Germany<*><CTY>Passau<*>";
inline constexpr char kBerlin[] = "<GEO>13.41053 52.52437<*>";  // where the vehicle stands at first
inline constexpr char kOverTheOcean[] = "<GEOC>Canada<*><CTY>Toronto<*>";

class TripFixture : public ModelFixture {
 protected:
  using Words = std::vector<std::int32_t>;

  static SDestinationElementList Destinations(const Lines& texts, const Lines& items = {}) {
    SDestinationElementList list;
    const auto attributes = std::make_shared<const SStringArray>(SStringArray{items});
    for (const std::string& text : texts) list.items.push_back({text, attributes});
    return list;
  }

  // The one answer to a request for a trip.
  Sent AskForTrip(const Lines& destinations, const Words& modes, const Lines& items = {}) {
    std::vector<Sent> sent =
        Handle(encode::REQU_NEW_TRIP(Destinations(destinations, items), {modes}));
    EXPECT_EQ(sent.size(), 1u);
    EXPECT_EQ(sent[0].id, RESP_NEW_TRIP);
    EXPECT_EQ(sent[0].audience, Audience::requester);
    return sent[0];
  }

  // The handle of a new route that is calculated; 0 if there is none.
  std::int32_t Calculated(const Lines& destinations, std::int32_t mode = 1) {
    const Words handles = AskForTrip(destinations, {mode}).Field<Words>("handles");
    Pass(kCalculation);
    return handles.empty() ? 0 : handles[0];
  }

  std::vector<Sent> Start(std::int32_t handle) {
    return Handle(encode::REQU_START_GUIDANCE(handle));
  }

  Lines DemoOn(double longitude, double latitude) {
    return SentLines(Handle(encode::REQU_SET_DEMO_MODE(1, longitude, latitude)));
  }

  // A GPS record, in hundred-thousandths of a degree.
  static Block GpsRecord(std::int32_t longitude, std::int32_t latitude) {
    const std::int32_t words[] = {GPS_DATA, 1, 2, 3, latitude, longitude, 4};
    Block block(sizeof words);
    std::memcpy(block.data(), words, sizeof words);
    return block;
  }

  std::vector<Sent> Gps(double longitude, double latitude) {
    return Handle(GpsRecord(static_cast<std::int32_t>(longitude * 100000),
                            static_cast<std::int32_t>(latitude * 100000)));
  }

  static std::vector<Sent> Only(const std::vector<Sent>& sent, FunctionId id) {
    std::vector<Sent> those;
    for (const Sent& message : sent) {
      if (message.id == id) those.push_back(message);
    }
    return those;
  }

  static constexpr Milliseconds kCalculation{500};  // of any route
  static inline const Lines kNoRoute{
      "all: INFO_ACTIVE_ROUTE_DESC routeDesc1=-1 routeDesc2=-1 routeDesc3=-1"};
};

}  // namespace ventrik::bench
