// SPDX-License-Identifier: Apache-2.0
#include "bench/model/trips.h"

#include <limits>

#include "tests/bench/model/trip_fixture.h"

namespace ventrik::bench {
namespace {

constexpr std::int32_t kMin = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kMax = std::numeric_limits<std::int32_t>::max();

class TripsTest : public TripFixture {
 protected:
  std::string Kill(const Words& handles) {
    const Lines lines = SentLines(Handle(encode::REQU_KILL_TRIP({handles})));
    EXPECT_FALSE(lines.empty());
    return lines.empty() ? "" : lines[0];
  }

  Lines Blocked(std::int32_t mode, const Lines& items) {
    return SentLines(Handle(encode::REQU_BLOCK_ROUTE(mode, {items})));
  }

  double LengthOf(std::int32_t handle) {
    const TripRoute* route = FindRoute(state().trips, handle);
    EXPECT_TRUE(route != nullptr && route->shape);
    return route != nullptr && route->shape ? route->shape->Length() : 0;
  }

  std::string NameOf(const std::string& destination) {
    const auto handles = AskForTrip({destination}, {}).Field<Words>("handles");
    return handles.empty() ? "none" : FindRoute(state().trips, handles[0])->names[0];
  }
};

// ---- new trips

TEST_F(TripsTest, ANewTripHasAHandleForEachMode) {
  const Sent answer = AskForTrip({kPotsdam, kPassau}, {1, 0x22}, {"<NAM>Lunch<*>", "<DUR>45<*>"});
  EXPECT_EQ(answer.Field<DestinationValues>("destinations"),
            (DestinationValues{{kPotsdam, {"<NAM>Lunch<*>", "<DUR>45<*>"}},
                               {kPassau, {"<NAM>Lunch<*>", "<DUR>45<*>"}}}));
  EXPECT_EQ(answer.Field<Words>("routeModes"), (Words{1, 0x22}));
  EXPECT_EQ(answer.Number("validState"), kYes);
  EXPECT_EQ(answer.Field<Words>("handles"), (Words{1, 2}));
  EXPECT_EQ(AskForTrip({kPotsdam}, {1}).Field<Words>("handles"), Words{3});
}

TEST_F(TripsTest, ATripWithoutModesHasOneRoute) {
  const Sent answer = AskForTrip({kPotsdam}, {});
  EXPECT_EQ(answer.Field<Words>("handles"), Words{1});
  EXPECT_EQ(answer.Field<Words>("routeModes"), Words{});
}

TEST_F(TripsTest, DestinationsArePlacesAndPositions) {
  EXPECT_EQ(NameOf(kPassau), "Passau");
  EXPECT_EQ(NameOf("<GEOC>Germany<*>"), "Germany");
  EXPECT_EQ(NameOf("<GEO>13.5 48.5<*>"), "13.50000 48.50000");
  EXPECT_EQ(NameOf("<CTY>Home<*><GEO>13.5 48.5<*>"), "Home");
  EXPECT_EQ(NameOf("<CTY><*><GEO>13.5 48.5<*>"), "13.50000 48.50000");
  EXPECT_EQ(NameOf("<CTR>Germany<*><STA>Bayern<*><CTY>Passau<*><POP>9<*>"), "Passau");
  EXPECT_EQ(NameOf("<CTY>Passau<*><GEO>x<*>"), "none");
}

TEST_F(TripsTest, WhatIsNoPlaceMakesNoTrip) {
  for (const std::string& text :
       {std::string(), std::string("Passau"), std::string("<CTY>Pass<*>"), std::string("<GEO><*>"),
        std::string("<GEO>13.5 98<*>"), std::string("<CTY>"), std::string(100'000, '<')}) {
    const Sent answer = AskForTrip({text}, {1});
    EXPECT_EQ(answer.Number("validState"), kNo) << text.substr(0, 40);
    EXPECT_EQ(answer.Field<Words>("handles"), Words{});
    EXPECT_EQ(answer.Field<DestinationValues>("destinations"), (DestinationValues{{text, {}}}));
  }
  EXPECT_EQ(AskForTrip({}, {1}).Number("validState"), kNo);
  EXPECT_FALSE(model_.NextTick());
}

TEST_F(TripsTest, DestinationsThatAreNotFoundAreLeftOut) {
  const Sent answer = AskForTrip({"<CTY>Nowhere<*>", kPassau}, {1});
  EXPECT_EQ(answer.Number("validState"), kYes);
  EXPECT_EQ(answer.Field<DestinationValues>("destinations"), (DestinationValues{{kPassau, {}}}));
  EXPECT_EQ(FindRoute(state().trips, 1)->names, Lines{"Passau"});
}

TEST_F(TripsTest, TripsHaveLimits) {
  EXPECT_EQ(AskForTrip(Lines(kMostDestinations, kBerlin), {1}).Number("validState"), kYes);
  EXPECT_EQ(AskForTrip(Lines(kMostDestinations + 1, kBerlin), {1}).Number("validState"), kNo);
  EXPECT_EQ(AskForTrip({kBerlin}, Words(kMostRouteModes, 1)).Number("validState"), kYes);
  EXPECT_EQ(AskForTrip({kBerlin}, Words(kMostRouteModes + 1, 1)).Number("validState"), kNo);
  while (state().trips.routes.size() < kMostRoutes) {
    ASSERT_EQ(AskForTrip({kBerlin}, {1}).Number("validState"), kYes);
  }
  EXPECT_EQ(AskForTrip({kBerlin}, {1}).Number("validState"), kNo);
  Kill({1});
  EXPECT_EQ(AskForTrip({kBerlin}, {1}).Number("validState"), kYes);
}

TEST_F(TripsTest, AnAnswerThatWouldBeTooLongRepeatsNothing) {
  const Sent answer = AskForTrip({std::string(600'000, 'x') + kPassau}, {1});
  EXPECT_EQ(answer.Field<DestinationValues>("destinations"), DestinationValues{});
  EXPECT_EQ(answer.Field<Words>("handles"), Words{1});
}

// ---- calculation

TEST_F(TripsTest, ARouteIsCalculatedStepByStep) {
  AskForTrip({kPassau}, {1});
  EXPECT_EQ(SentLines(Pass(kCalculation)),
            (Lines{"all: INFO_CALC_STATE routeHandle=1 calcState=1 calcPercent=0",
                   "all: INFO_CALC_STATE routeHandle=1 calcState=2 calcPercent=0",
                   "all: INFO_CALC_STATE routeHandle=1 calcState=3 calcPercent=10",
                   "all: INFO_CALC_STATE routeHandle=1 calcState=3 calcPercent=40",
                   "all: INFO_CALC_STATE routeHandle=1 calcState=3 calcPercent=70",
                   "all: INFO_CALC_STATE routeHandle=1 calcState=3 calcPercent=90",
                   "all: INFO_CALC_STATE routeHandle=1 calcState=4 calcPercent=100"}));
  EXPECT_FALSE(model_.NextTick());
}

TEST_F(TripsTest, AClockThatComesLateTakesAllSteps) {
  AskForTrip({kPassau}, {1, 2});
  now_ += std::chrono::hours(1);
  EXPECT_EQ(model_.Tick(now_).size(), 14u);
  EXPECT_FALSE(model_.NextTick());
}

TEST_F(TripsTest, ARouteOverAnOceanFails) {
  EXPECT_EQ(AskForTrip({kOverTheOcean}, {1, 2}).Number("validState"), kYes);
  const std::vector<Sent> steps = Pass(kCalculation);
  ASSERT_EQ(steps.size(), 10u);
  EXPECT_EQ(SentText(steps[8]), "all: INFO_CALC_STATE routeHandle=1 calcState=7 calcPercent=40");
  EXPECT_EQ(SentText(steps[9]), "all: INFO_CALC_STATE routeHandle=2 calcState=7 calcPercent=40");
  EXPECT_FALSE(model_.NextTick());
}

TEST_F(TripsTest, ModesMakeDifferentRoutes) {
  AskForTrip({kPassau}, {1, kShortest, kScenic, kMin, kMax});
  const double air =
      DistanceMetres(state().vehicle.position, FindRoute(state().trips, 1)->waypoints[0].position);
  EXPECT_GT(LengthOf(2), air);
  EXPECT_GT(LengthOf(1), LengthOf(2));
  EXPECT_GT(LengthOf(3), LengthOf(1));
}

// ---- the end of trips

TEST_F(TripsTest, KillingGivesTheHandlesThatWereThere) {
  AskForTrip({kPassau}, {1, 2, 4});
  EXPECT_EQ(Kill({3, 9, 1, 3, 0, -1, kMin, kMax}), "RESP_KILL_TRIP handles=[3,1]");
  EXPECT_EQ(Kill({3, 1}), "RESP_KILL_TRIP handles=[]");
  EXPECT_EQ(Kill({}), "RESP_KILL_TRIP handles=[]");
  EXPECT_EQ(AskForTrip({kPassau}, {1}).Field<Words>("handles"), Words{4}) << "none is used again";
}

TEST_F(TripsTest, AKilledRouteIsNotCalculatedAnyMore) {
  AskForTrip({kPassau}, {1, 2});
  Kill({1});
  for (const Sent& step : Pass(kCalculation)) EXPECT_EQ(step.Number("routeHandle"), 2);
}

TEST_F(TripsTest, KillingTheGuidedRouteEndsGuidance) {
  Start(Calculated({kPassau}));
  const Lines lines = SentLines(Handle(encode::REQU_KILL_TRIP({{1}})));
  EXPECT_EQ(lines, (Lines{"RESP_KILL_TRIP handles=[1]", "all: INFO_HIGHWAYMODE_UPDATE state=2",
                          kNoRoute[0]}));
  EXPECT_FALSE(state().guidance.active);
}

TEST_F(TripsTest, KillingAnotherRouteLeavesGuidance) {
  AskForTrip({kPassau}, {1, 2});
  Pass(kCalculation);
  Start(1);
  EXPECT_EQ(SentLines(Handle(encode::REQU_KILL_TRIP({{2}}))), Lines{"RESP_KILL_TRIP handles=[2]"});
  EXPECT_TRUE(state().guidance.active);
}

// ---- blocks

TEST_F(TripsTest, BlocksAreAddedAndRemoved) {
  EXPECT_EQ(Blocked(0, {"A3", "B12"}),
            Lines{"RESP_BLOCK_ROUTE word1=0 blockedItems=['A3''B12'] validState=1"});
  EXPECT_EQ(Blocked(0, {"A3"}),
            Lines{"RESP_BLOCK_ROUTE word1=0 blockedItems=['A3''B12'] validState=1"});
  EXPECT_EQ(Blocked(1, {"A3"}),
            Lines{"RESP_BLOCK_ROUTE word1=1 blockedItems=['B12'] validState=1"});
  EXPECT_EQ(Blocked(1, {"A3"}),
            Lines{"RESP_BLOCK_ROUTE word1=1 blockedItems=['B12'] validState=2"});
  EXPECT_EQ(Blocked(1, {}), Lines{"RESP_BLOCK_ROUTE word1=1 blockedItems=[] validState=1"});
}

TEST_F(TripsTest, BadBlocksChangeNothing) {
  Blocked(0, {"A3"});
  const std::string same = " blockedItems=['A3'] validState=2";
  EXPECT_EQ(Blocked(0, {}), Lines{"RESP_BLOCK_ROUTE word1=0" + same});
  EXPECT_EQ(Blocked(0, {"B1", ""}), Lines{"RESP_BLOCK_ROUTE word1=0" + same});
  EXPECT_EQ(Blocked(0, {std::string(300'000, 'x')}), Lines{"RESP_BLOCK_ROUTE word1=0" + same});
  EXPECT_EQ(Blocked(2, {"B1"}), Lines{"RESP_BLOCK_ROUTE word1=2" + same});
  EXPECT_EQ(Blocked(kMin, {}), Lines{"RESP_BLOCK_ROUTE word1=" + std::to_string(kMin) + same});
}

TEST_F(TripsTest, BlocksHaveALimit) {
  Lines items;
  for (std::size_t item = 0; item <= kMostBlockedItems; ++item) {
    items.push_back(std::to_string(item));
  }
  Blocked(0, items);
  EXPECT_EQ(state().trips.blocked, Lines{});
  items.pop_back();
  Blocked(0, items);
  EXPECT_EQ(state().trips.blocked, items);
  Blocked(0, {"one more"});
  EXPECT_EQ(state().trips.blocked, items);
  EXPECT_EQ(SentLines(Handle(encode::REQU_BLOCK_ROUTE(0, {{"5"}}))).size(), 1u);
}

TEST_F(TripsTest, ABlockMakesTheGuidedRouteLonger) {
  Start(Calculated({kPassau}));
  const double before = LengthOf(1);
  Blocked(0, {"A9"});
  EXPECT_FALSE(state().guidance.active);
  const std::vector<Sent> sent = Pass(kCalculation);
  const std::vector<Sent> steps = Only(sent, INFO_CALC_STATE);
  ASSERT_EQ(steps.size(), 5u);
  EXPECT_EQ(SentText(steps[0]), "all: INFO_CALC_STATE routeHandle=1 calcState=3 calcPercent=10");
  EXPECT_EQ(steps[4].Number("calcPercent"), 100);
  ASSERT_EQ(Only(sent, INFO_ACTIVE_ROUTE_DESC).size(), 1u);
  EXPECT_GT(LengthOf(1), before);
  Blocked(1, {"A9"});
  Pass(kCalculation);
  EXPECT_NEAR(LengthOf(1), before, 1);
}

TEST_F(TripsTest, ABlockThatIsNoNewsCalculatesNothing) {
  Start(Calculated({kPassau}));
  Blocked(1, {"A9"});
  EXPECT_FALSE(model_.NextTick());
}

// ---- cut short

TEST_F(TripsTest, RequestsCutShortAreAnswered) {
  HandleCutShort(model_,
                 encode::REQU_NEW_TRIP(Destinations({kPassau, kPotsdam}, {"a", "bb"}), {{1, 2}}),
                 now_);
  HandleCutShort(model_, encode::REQU_BLOCK_ROUTE(0, {{"A3", "B12"}}), now_);
  HandleCutShort(model_, encode::REQU_KILL_TRIP({{1, 2, 3}}), now_);
  HandleCutShort(model_, encode::REQU_NEW_TRIP_FILE("route-1.rec", {{1, 2}}), now_);
  Pass(kCalculation);
}

TEST_F(TripsTest, CountsThatLieAreNoHarm) {
  const std::int32_t words[] = {REQU_NEW_TRIP, kMax, kMax, 0x00000041, -1, 5};
  Block block(sizeof words);
  std::memcpy(block.data(), words, sizeof words);
  EXPECT_EQ(Handle(block).size(), 1u);
}

}  // namespace
}  // namespace ventrik::bench
