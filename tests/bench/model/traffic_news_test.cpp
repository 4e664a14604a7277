// SPDX-License-Identifier: Apache-2.0
#include "bench/model/traffic_news.h"

#include <gtest/gtest.h>

#include <limits>
#include <set>
#include <string>
#include <vector>

#include "tests/bench/model/traffic_fixture.h"
#include "tests/bench/model/trip_fixture.h"

namespace ventrik::bench {
namespace {

using TrafficNewsTest = TrafficFixture;

// Over a real trip: guidance begins and ends by the requests of other subjects.
using TrafficOnATripTest = TripFixture;

TEST_F(TrafficNewsTest, FiltersLetThroughWhatTheySay) {
  for (const std::string& text : {kClosed, kQueue, kFree, kAway}) Data(text);
  Avoids(kAvoid, {"2"});
  Avoids(kIgnore, {"3"});
  using Set = std::set<std::int64_t>;
  EXPECT_EQ(Wanted(0), Set{});
  EXPECT_EQ(Wanted(kOnRoute), Set{}) << "without a route";
  EXPECT_EQ(Wanted(kSignificant), (Set{1, 4}));
  EXPECT_EQ(Wanted(kNonSignificant), (Set{2, 3}));
  EXPECT_EQ(Wanted(kAllMessages), (Set{1, 2, 3, 4}));
  EXPECT_EQ(Wanted(kAvoided), Set{2});
  EXPECT_EQ(Wanted(kIgnored), Set{3});
  EXPECT_EQ(Wanted(kIgnored | kAvoided), (Set{2, 3}));
  EXPECT_EQ(Wanted(0x40), Set{});
  EXPECT_EQ(Wanted(-1), (Set{1, 2, 3, 4}));
  Guide(kRoute);
  EXPECT_EQ(Wanted(kOnRoute), (Set{1, 2}));
}

TEST_F(TrafficNewsTest, OnceTellsWhatThereIsAndNoMore) {
  Data(kClosed);
  const auto sent = Subscribe(kAllMessages, kNotifyOnce);
  ASSERT_EQ(IdsOf(sent), (Ids{INFO_TMC_INFO_CHANGED, INFO_TMC_NEW_EVENTS}));
  EXPECT_EQ(sent[0].Number("tmcInfoChanged"), 1);
  EXPECT_EQ(sent[1].Field<Texts>("tmcEvents"), Texts{kClosedText});
  EXPECT_EQ(IdsOf(Data(kQueue)), Ids{INFO_TMC_INFO_CHANGED});
  EXPECT_EQ(IdsOf(Pass(minutes(60))), (Ids{INFO_TMC_INFO_CHANGED, INFO_TMC_INFO_CHANGED}));
}

TEST_F(TrafficNewsTest, OnChangeTellsWhatComesAndGoes) {
  Subscribe(kSignificant, kNotifyOnChange);
  const auto fresh = Data(kClosed);
  ASSERT_EQ(IdsOf(fresh), (Ids{INFO_TMC_INFO_CHANGED, INFO_TMC_NEW_EVENTS}));
  EXPECT_EQ(fresh[1].Field<Texts>("tmcEvents"), Texts{kClosedText});
  EXPECT_EQ(IdsOf(Data(kClosed)), Ids{INFO_TMC_INFO_CHANGED}) << "nothing new in it";
  EXPECT_EQ(IdsOf(Data(kQueue)), Ids{INFO_TMC_INFO_CHANGED}) << "not significant";

  const auto changed = Data("EVENT htmc=1 loc=113 age=60 event_1=402");
  ASSERT_EQ(IdsOf(changed), (Ids{INFO_TMC_INFO_CHANGED, INFO_TMC_DEL_EVENTS, INFO_TMC_NEW_EVENTS}));
  EXPECT_EQ(changed[1].Field<Texts>("tmcEvents"), Texts{kClosedText});
  EXPECT_NE(changed[2].Field<Texts>("tmcEvents").at(0).find("blocked"), std::string::npos);

  EXPECT_EQ(IdsOf(Data("EVENT htmc=1 loc=113 age=60 event_1=108")),
            (Ids{INFO_TMC_INFO_CHANGED, INFO_TMC_DEL_EVENTS}));
  Data(kClosed);
  const auto cleared = Data("EVENT htmc=1 event_1=467");
  ASSERT_EQ(IdsOf(cleared), (Ids{INFO_TMC_INFO_CHANGED, INFO_TMC_DEL_EVENTS}));
  EXPECT_EQ(cleared[1].Field<Texts>("tmcEvents"), Texts{kClosedText});

  Data(kClosed);
  const auto old = Pass(minutes(60));
  ASSERT_EQ(IdsOf(old), (Ids{INFO_TMC_INFO_CHANGED, INFO_TMC_INFO_CHANGED, INFO_TMC_DEL_EVENTS}));
  EXPECT_EQ(old[2].Field<Texts>("tmcEvents"), Texts{kClosedText});
}

TEST_F(TrafficNewsTest, OnChangeTellsEventsThatBecomeWanted) {
  Data(kClosed);
  Data(kQueue);
  EXPECT_EQ(IdsOf(Subscribe(kAvoided | kOnRoute, kNotifyOnChange)), Ids{INFO_TMC_INFO_CHANGED});
  const auto avoided = Avoids(kAvoid, {kClosedText});
  ASSERT_EQ(IdsOf(avoided), (Ids{INFO_TMC_AVOIDS_CHANGED, INFO_TMC_NEW_EVENTS}));
  EXPECT_EQ(avoided[1].Field<Texts>("tmcEvents"), Texts{kClosedText});
  EXPECT_EQ(IdsOf(Avoids(kUsual, {})), (Ids{INFO_TMC_AVOIDS_CHANGED, INFO_TMC_DEL_EVENTS}));
  Guide(kRoute);
  const auto onRoute = Tick();
  ASSERT_EQ(IdsOf(onRoute), Ids{INFO_TMC_NEW_EVENTS});
  EXPECT_EQ(onRoute[0].Field<Texts>("tmcEvents").size(), 2u);
  Guide(0);
  EXPECT_EQ(IdsOf(Tick()), Ids{INFO_TMC_DEL_EVENTS});
}

TEST_F(TrafficNewsTest, FrequencyReportsAllEachTime) {
  Data(kClosed);
  Subscribe(kSignificant, kNotifyByFrequency);
  EXPECT_EQ(IdsOf(Data("EVENT htmc=5 loc=1 age=1 event_1=402")), Ids{INFO_TMC_INFO_CHANGED});
  EXPECT_TRUE(Pass(kTrafficReportPeriod - Milliseconds(1)).empty());
  const auto first = Pass(Milliseconds(1));
  ASSERT_EQ(IdsOf(first), Ids{INFO_TMC_NEW_EVENTS});
  EXPECT_EQ(first[0].Field<Texts>("tmcEvents").size(), 2u);
  Data("EVENT htmc=5 age=0");
  const auto second = Pass(kTrafficReportPeriod);
  ASSERT_EQ(IdsOf(second), (Ids{INFO_TMC_DEL_EVENTS, INFO_TMC_NEW_EVENTS}));
  EXPECT_EQ(second[1].Field<Texts>("tmcEvents"), Texts{kClosedText});
  EXPECT_EQ(IdsOf(Pass(kTrafficReportPeriod)), Ids{INFO_TMC_NEW_EVENTS});

  now_ += kTrafficReportPeriod * 3 + Milliseconds(1);
  EXPECT_EQ(IdsOf(Pass(Milliseconds(0))), Ids{INFO_TMC_NEW_EVENTS}) << "missed ones are left out";
  EXPECT_TRUE(Pass(kTrafficReportPeriod - Milliseconds(2)).empty());
  EXPECT_EQ(IdsOf(Pass(Milliseconds(1))), Ids{INFO_TMC_NEW_EVENTS});
}

TEST_F(TrafficNewsTest, EachClientHasItsOwnFilterAndMode) {
  Subscribe(kSignificant, kNotifyOnChange);
  client_ = 2;
  Subscribe(kNonSignificant, kNotifyOnChange);
  client_ = 3;
  Subscribe(kAllMessages, kNotifyByFrequency);
  const auto closed = Data(kClosed);
  ASSERT_EQ(IdsOf(closed), (Ids{INFO_TMC_INFO_CHANGED, INFO_TMC_NEW_EVENTS}));
  EXPECT_EQ(closed[1].client, 1u);
  const auto free = Data(kFree);
  ASSERT_EQ(IdsOf(free), (Ids{INFO_TMC_INFO_CHANGED, INFO_TMC_NEW_EVENTS}));
  EXPECT_EQ(free[1].client, 2u);
  const auto report = Pass(kTrafficReportPeriod);
  ASSERT_EQ(IdsOf(report), Ids{INFO_TMC_NEW_EVENTS});
  EXPECT_EQ(report[0].client, 3u);
  EXPECT_EQ(report[0].Field<Texts>("tmcEvents").size(), 2u);
  model_.Forget(1);
  EXPECT_EQ(IdsOf(Data("EVENT htmc=1 age=0")), Ids{INFO_TMC_INFO_CHANGED});
}

TEST_F(TrafficNewsTest, AModeThatIsNoneEndsTheNews) {
  Data(kClosed);
  for (const std::int32_t mode : {0, 3, 5, -1, std::numeric_limits<std::int32_t>::max()}) {
    Subscribe(kAllMessages, kNotifyByFrequency);
    EXPECT_EQ(IdsOf(Subscribe(kAllMessages, mode)), Ids{INFO_TMC_INFO_CHANGED});
    EXPECT_EQ(IdsOf(Data(kClosed)), Ids{INFO_TMC_INFO_CHANGED});
    EXPECT_TRUE(Pass(minutes(1)).empty());
  }
}

TEST_F(TrafficNewsTest, AutomaticOffersAndAccepts) {
  Guide(kRoute);
  RouteMode(kAutomatic);
  const auto sent = Data(kClosed);
  ASSERT_EQ(IdsOf(sent),
            (Ids{INFO_TMC_INFO_CHANGED, INFO_TMC_ROUTES_AVAILABLE, INFO_TMC_ROUTE_ACCEPTED}));
  EXPECT_EQ(sent[1].fields, (MessageFields{{"routeHandles", Numbers{kRoute}},
                                           {"tmcNewEvents", Texts{kClosedText}},
                                           {"tmcDeletedEvents", Texts{}},
                                           {"word4", 0}}));
  EXPECT_EQ(sent[2].fields, (MessageFields{{"word1", 0},
                                           {"tmcNewEvents", Texts{kClosedText}},
                                           {"tmcDeletedEvents", Texts{}},
                                           {"routeHandle", kRoute}}));
}

TEST_F(TrafficNewsTest, ManualOffersOnly) {
  Guide(kRoute);
  RouteMode(kManual);
  EXPECT_EQ(IdsOf(Data(kClosed)), (Ids{INFO_TMC_INFO_CHANGED, INFO_TMC_ROUTES_AVAILABLE}));
}

TEST_F(TrafficNewsTest, AnOfferChangesWithItsEventsAndEndsWithTheLast) {
  Guide(kRoute);
  RouteMode(kManual);
  Data(kClosed);
  const auto more = Data(kQueue);
  ASSERT_EQ(IdsOf(more), (Ids{INFO_TMC_INFO_CHANGED, INFO_TMC_ROUTES_AVAILABLE}));
  EXPECT_EQ(more[1].Field<Texts>("tmcNewEvents").size(), 1u);
  EXPECT_NE(more[1].Field<Texts>("tmcNewEvents")[0].find("queuing"), std::string::npos);
  const auto fewer = Data("EVENT htmc=1 age=0");
  ASSERT_EQ(IdsOf(fewer), (Ids{INFO_TMC_INFO_CHANGED, INFO_TMC_ROUTES_AVAILABLE}));
  EXPECT_EQ(fewer[1].Field<Texts>("tmcNewEvents"), Texts{});
  EXPECT_EQ(fewer[1].Field<Texts>("tmcDeletedEvents"), Texts{kClosedText});
  const auto none = Data("EVENT htmc=2 age=0");
  ASSERT_EQ(IdsOf(none), (Ids{INFO_TMC_INFO_CHANGED, INFO_TMC_ROUTES_DELETED}));
  EXPECT_EQ(none[1].fields, (MessageFields{{"routeHandles", Numbers{kRoute}}}));
}

TEST_F(TrafficNewsTest, WhatIsNoReasonForAnotherRoute) {
  Guide(kRoute);
  RouteMode(kAutomatic);
  EXPECT_EQ(IdsOf(Data(kFree)), Ids{INFO_TMC_INFO_CHANGED});
  EXPECT_EQ(IdsOf(Data(kAway)), Ids{INFO_TMC_INFO_CHANGED});
  EXPECT_EQ(IdsOf(Avoids(kAvoid, {"4"})), Ids{INFO_TMC_AVOIDS_CHANGED}) << "the other direction";
  EXPECT_EQ(IdsOf(Avoids(kAvoid, {"3"})),
            (Ids{INFO_TMC_AVOIDS_CHANGED, INFO_TMC_ROUTES_AVAILABLE, INFO_TMC_ROUTE_ACCEPTED}));
  EXPECT_EQ(IdsOf(Avoids(kIgnore, {"3"})), (Ids{INFO_TMC_AVOIDS_CHANGED, INFO_TMC_ROUTES_DELETED}));
}

TEST_F(TrafficNewsTest, RouteModeDecidesOnEventsThatAreThere) {
  Guide(kRoute);
  EXPECT_EQ(IdsOf(Data(kClosed)), Ids{INFO_TMC_INFO_CHANGED});
  EXPECT_EQ(IdsOf(RouteMode(kManual)), (Ids{INFO_TMC_ROUTE_MODE, INFO_TMC_ROUTES_AVAILABLE}));
  EXPECT_EQ(IdsOf(RouteMode(0)), (Ids{INFO_TMC_ROUTE_MODE, INFO_TMC_ROUTES_DELETED}));
  EXPECT_EQ(IdsOf(RouteMode(kManual)), (Ids{INFO_TMC_ROUTE_MODE, INFO_TMC_ROUTES_AVAILABLE}));
  EXPECT_EQ(IdsOf(Ask(encode::REQU_SET_TMC_MODE(kOff, ""))),
            (Ids{INFO_TMC_MODE, INFO_TMC_INFO_CHANGED, INFO_TMC_ROUTES_DELETED}));
}

TEST_F(TrafficNewsTest, DelayModeWaitsForItsThreshold) {
  Guide(kRoute);
  RouteMode(kByDelay, 20);
  EXPECT_EQ(IdsOf(Data(kQueue)), Ids{INFO_TMC_INFO_CHANGED}) << "10 minutes";
  EXPECT_EQ(IdsOf(Data("EVENT htmc=6 loc=1 event_1=108")),
            (Ids{INFO_TMC_INFO_CHANGED, INFO_TMC_ROUTES_AVAILABLE, INFO_TMC_ROUTE_ACCEPTED}));
  EXPECT_EQ(IdsOf(Data("EVENT htmc=6 age=0")),
            (Ids{INFO_TMC_INFO_CHANGED, INFO_TMC_ROUTES_DELETED}));
  EXPECT_EQ(IdsOf(Avoids(kAvoid, {"2"})),
            (Ids{INFO_TMC_AVOIDS_CHANGED, INFO_TMC_ROUTES_AVAILABLE, INFO_TMC_ROUTE_ACCEPTED}));
}

TEST_F(TrafficNewsTest, GuidanceDecidesOnEventsThatAreThere) {
  RouteMode(kAutomatic);
  EXPECT_EQ(IdsOf(Data(kClosed)), Ids{INFO_TMC_INFO_CHANGED});
  Guide(kRoute);
  EXPECT_EQ(IdsOf(Tick()), (Ids{INFO_TMC_ROUTES_AVAILABLE, INFO_TMC_ROUTE_ACCEPTED}));
  Guide(kRoute + 1);
  const auto other = Tick();
  ASSERT_EQ(IdsOf(other),
            (Ids{INFO_TMC_ROUTES_DELETED, INFO_TMC_ROUTES_AVAILABLE, INFO_TMC_ROUTE_ACCEPTED}));
  EXPECT_EQ(other[0].Field<Numbers>("routeHandles"), Numbers{kRoute});
  EXPECT_EQ(other[1].Field<Numbers>("routeHandles"), Numbers{kRoute + 1});
  EXPECT_EQ(other[1].Field<Texts>("tmcNewEvents"), Texts{kClosedText});
  Guide(0);
  EXPECT_EQ(IdsOf(Tick()), Ids{INFO_TMC_ROUTES_DELETED});
}

TEST_F(TrafficOnATripTest, RoutesComeAndGoWithGuidance) {
  Handle(encode::REQU_SET_TMC_ROUTE_MODE(kAutomatic, 0));
  Handle(encode::TMC_DATA(kClosed));
  const std::int32_t handle = Calculated({kPotsdam});
  ASSERT_NE(handle, 0);
  Start(handle);
  const auto begun = Pass(Milliseconds(0));
  const auto available = Only(begun, INFO_TMC_ROUTES_AVAILABLE);
  ASSERT_EQ(available.size(), 1u);
  EXPECT_EQ(available[0].Field<Numbers>("routeHandles"), Numbers{handle});
  EXPECT_EQ(available[0].Field<Texts>("tmcNewEvents"), Texts{kClosedText});
  EXPECT_EQ(Only(begun, INFO_TMC_ROUTE_ACCEPTED).size(), 1u);
  Handle(encode::REQU_STOP_GUIDANCE());
  EXPECT_EQ(Only(Pass(Milliseconds(0)), INFO_TMC_ROUTES_DELETED).size(), 1u);
}

TEST_F(TrafficOnATripTest, AnAcceptedRouteLeadsAroundTheEvents) {
  const std::int32_t handle = Calculated({kPotsdam});
  const Sent direct = Only(Start(handle), INFO_ACTIVE_ROUTE_DESC).at(0);
  Handle(encode::REQU_SET_TMC_ROUTE_MODE(kAutomatic, 0));
  EXPECT_EQ(Only(Handle(encode::TMC_DATA(kClosed)), INFO_TMC_ROUTE_ACCEPTED).size(), 1u);
  const auto around = Pass(kCalculation);
  EXPECT_EQ(Only(around, INFO_CALC_STATE).size(), 5u);
  const auto description = Only(around, INFO_ACTIVE_ROUTE_DESC);
  ASSERT_EQ(description.size(), 1u);
  EXPECT_EQ(description[0].Number("routeDesc1"), handle);
  EXPECT_GT(description[0].Number("routeDesc2"), direct.Number("routeDesc2")) << "metres";
  EXPECT_GT(description[0].Number("routeDesc3"), direct.Number("routeDesc3")) << "seconds";

  Handle(encode::TMC_DATA(kQueue));
  const Sent further = Only(Pass(kCalculation), INFO_ACTIVE_ROUTE_DESC).at(0);
  EXPECT_GT(further.Number("routeDesc2"), description[0].Number("routeDesc2")) << "one event more";

  // The way around is kept when it isn't needed any more, until something else asks for a new one.
  Handle(encode::REQU_SET_TMC_MODE(kOff, ""));
  EXPECT_TRUE(Only(Pass(kCalculation), INFO_ACTIVE_ROUTE_DESC).empty());
  Handle(encode::REQU_BLOCK_ROUTE(0, {{"x"}}));
  Handle(encode::REQU_BLOCK_ROUTE(1, {{"x"}}));
  const Sent again = Only(Pass(kCalculation), INFO_ACTIVE_ROUTE_DESC).at(0);
  EXPECT_EQ(again.Number("routeDesc2"), direct.Number("routeDesc2"));
}

TEST_F(TrafficOnATripTest, ARouteThatIsOnlyOfferedStaysAsItIs) {
  Start(Calculated({kPotsdam}));
  Handle(encode::REQU_SET_TMC_ROUTE_MODE(kManual, 0));
  EXPECT_EQ(Only(Handle(encode::TMC_DATA(kClosed)), INFO_TMC_ROUTES_AVAILABLE).size(), 1u);
  EXPECT_TRUE(Pass(kCalculation).empty());
  EXPECT_EQ(EventsAvoided(state(), 1), 0u);
}

}  // namespace
}  // namespace ventrik::bench
