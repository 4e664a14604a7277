// SPDX-License-Identifier: Apache-2.0
#include "bench/model/traffic.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "tests/bench/model/cut_requests.h"
#include "tests/bench/model/traffic_fixture.h"

namespace ventrik::bench {
namespace {

using TrafficTest = TrafficFixture;

TEST_F(TrafficTest, ModeIsTold) {
  for (const std::int32_t onOff : {kOn, kOff}) {
    const auto sent = Ask(encode::REQU_SET_TMC_MODE(onOff, "any text"));
    ASSERT_EQ(sent.size(), 1u);
    EXPECT_EQ(sent[0].id, INFO_TMC_MODE);
    EXPECT_EQ(sent[0].fields, (MessageFields{{"mode", onOff}}));
  }
}

TEST_F(TrafficTest, OffForgetsAllEventsAndTakesNone) {
  Data(kClosed);
  Data(kQueue);
  const auto sent = Ask(encode::REQU_SET_TMC_MODE(kOff, ""));
  ASSERT_EQ(IdsOf(sent), (Ids{INFO_TMC_MODE, INFO_TMC_INFO_CHANGED}));
  EXPECT_EQ(sent[1].Number("tmcInfoChanged"), 0);
  EXPECT_TRUE(Data(kClosed).empty());
  EXPECT_EQ(state().traffic.refused, 1u);
  Ask(encode::REQU_SET_TMC_MODE(kOn, ""));
  EXPECT_EQ(Data(kClosed)[0].Number("tmcInfoChanged"), 1);
}

TEST_F(TrafficTest, RouteModeIsToldAndKept) {
  struct Row {
    std::int32_t mode, threshold, toldMode, toldThreshold;
  };
  constexpr std::int32_t kHuge = std::numeric_limits<std::int32_t>::max();
  for (const Row& row : std::vector<Row>{{0, 1, 0, 1},
                                         {1, 2, 1, 2},
                                         {2, 3, 2, 3},
                                         {4, kHuge, 4, kHuge},
                                         {3, 9, 4, kHuge},
                                         {5, 9, 4, kHuge},
                                         {-1, 9, 4, kHuge},
                                         {1, -1, 4, kHuge}}) {
    const auto sent = RouteMode(row.mode, row.threshold);
    ASSERT_EQ(sent.size(), 1u);
    EXPECT_EQ(sent[0].id, INFO_TMC_ROUTE_MODE);
    EXPECT_EQ(sent[0].fields,
              (MessageFields{{"mode", row.toldMode}, {"delayThreshold", row.toldThreshold}}));
  }
}

TEST_F(TrafficTest, TuningModeIsToldAndKept) {
  const auto told = [this](std::int32_t mode, const std::string& parameters) {
    const auto sent = Ask(encode::REQU_TMC_TUNING_MODE(mode, parameters));
    EXPECT_EQ(IdsOf(sent), Ids{INFO_TMC_TUNING_MODE});
    return sent.at(0).fields;
  };
  const auto fields = [](std::int32_t mode, const std::string& parameters) {
    return MessageFields{{"tmcTuningMode", mode}, {"tuningParameters", parameters}};
  };
  EXPECT_EQ(told(2, "<FRQ>98.5<*>"), fields(2, "<FRQ>98.5<*>"));
  EXPECT_EQ(told(7, "x"), fields(2, "<FRQ>98.5<*>"));
  EXPECT_EQ(told(1, ""), fields(1, ""));
  EXPECT_EQ(told(2, std::string(kLongestTuningParameters + 1, 'x')), fields(1, ""));
  const std::string longest(kLongestTuningParameters, 'x');
  EXPECT_EQ(told(2, longest), fields(2, longest));
}

TEST_F(TrafficTest, EventsAreCounted) {
  const auto first = Data(kClosed);
  ASSERT_EQ(IdsOf(first), Ids{INFO_TMC_INFO_CHANGED});
  EXPECT_EQ(first[0].Number("tmcInfoChanged"), 1);
  EXPECT_EQ(Data(kQueue)[0].Number("tmcInfoChanged"), 2);
  EXPECT_EQ(Data(kQueue)[0].Number("tmcInfoChanged"), 2) << "the same number replaces it";
  EXPECT_EQ(Data("EVENT htmc=2 age=0")[0].Number("tmcInfoChanged"), 1);
  EXPECT_TRUE(Data("EVENT htmc=2 age=0").empty());
  EXPECT_TRUE(Data("nonsense").empty());
  EXPECT_EQ(state().traffic.refused, 2u);
}

TEST_F(TrafficTest, EventsEndWithTheirAge) {
  Data(kClosed);
  Data(kQueue);
  Data(kFree);
  EXPECT_TRUE(Pass(minutes(15) - Milliseconds(1)).empty());
  const auto two = Pass(Milliseconds(1));
  ASSERT_EQ(IdsOf(two), Ids{INFO_TMC_INFO_CHANGED});
  EXPECT_EQ(two[0].Number("tmcInfoChanged"), 1);
  EXPECT_TRUE(Pass(minutes(45) - Milliseconds(1)).empty());
  EXPECT_EQ(Pass(Milliseconds(1)).at(0).Number("tmcInfoChanged"), 0);
  EXPECT_TRUE(Pass(minutes(3000)).empty());
}

TEST_F(TrafficTest, AReplacedEventLivesAsTheNewOneSays) {
  Data(kClosed);
  Pass(minutes(59));
  Data(kClosed);
  EXPECT_TRUE(Pass(minutes(60) - Milliseconds(1)).empty());
  EXPECT_EQ(Pass(Milliseconds(1)).size(), 1u);
}

TEST_F(TrafficTest, AvoidsAreAnsweredWhateverTheyName) {
  for (const std::int32_t mode : {kUsual, kAvoid, kIgnore, 3, -1}) {
    EXPECT_EQ(IdsOf(Avoids(mode, {})), Ids{INFO_TMC_AVOIDS_CHANGED});
    EXPECT_EQ(IdsOf(Avoids(mode, {"", "x", "99", std::string(100'000, 'x')})),
              Ids{INFO_TMC_AVOIDS_CHANGED});
  }
}

TEST_F(TrafficTest, TreatmentsStayWithTheirEvents) {
  Data(kClosed);
  Data(kQueue);
  const auto treatment = [this](std::int64_t event) {
    return state().traffic.events.at(event).treatment;
  };
  Avoids(kIgnore, {"1", "2"});
  Avoids(kAvoid, {});
  Avoids(3, {"1"});
  Data(kClosed);
  EXPECT_EQ(treatment(1), TrafficTreatment::ignore);
  EXPECT_EQ(treatment(2), TrafficTreatment::ignore);
  Avoids(kAvoid, {"1"});
  EXPECT_EQ(treatment(1), TrafficTreatment::avoid);
  Avoids(kUsual, {"1"});
  EXPECT_EQ(treatment(1), TrafficTreatment::usual);
  EXPECT_EQ(treatment(2), TrafficTreatment::ignore);
  Avoids(kUsual, {});
  EXPECT_EQ(treatment(2), TrafficTreatment::usual);
}

TEST_F(TrafficTest, BroadcastDataIsCounted) {
  Block block;
  std::string error;
  ASSERT_TRUE(EncodeMessage(RDSTMC_DATA, {{"body", std::string("\x01\x00\xFF", 3)}}, block, error));
  EXPECT_TRUE(Ask(block).empty());
  EXPECT_EQ(state().traffic.rdsBlocks, 1u);
  HandleCutShort(model_, block, now_);
}

TEST_F(TrafficTest, AsManyEventsAsFitAreKept) {
  Guide(kRoute);
  RouteMode(kManual);
  std::string codes;
  for (int i = 1; i <= kMostCodes; ++i) {
    codes += " event_" + std::to_string(i) + "=106 len_" + std::to_string(i) + "=1000";
  }
  const auto text = [&codes](std::size_t index, int location) {
    return "EVENT htmc=" + std::to_string(4294967295 - index) + " loc=" + std::to_string(location) +
           " extent=31 cc=65535 ltn=65535" + codes;
  };
  for (std::size_t i = 0; i < kMostTrafficEvents; ++i) {
    EXPECT_FALSE(Data(text(i, 65535)).empty()) << i;
  }
  EXPECT_TRUE(Data(text(kMostTrafficEvents, 65535)).empty());
  EXPECT_EQ(state().traffic.refused, 1u);
  EXPECT_FALSE(Data(text(0, 65535)).empty()) << "those that are kept can be replaced";

  // The longest message: all events are new to it, and all those before have gone.
  Guide(0);
  Tick();
  Guide(kRoute);
  Tick();
  Guide(0);
  for (std::size_t i = 0; i < kMostTrafficEvents; ++i) {
    state().traffic.events.at(static_cast<std::int64_t>(4294967295 - i)).text.back() = ']';
  }
  Guide(kRoute);
  Replies out;
  TellTrafficChanges(state(), now_, out);
  const auto messages = out.Take();
  ASSERT_EQ(messages.size(), 1u);
  EXPECT_GT(messages[0].block.size(), 2 * kMostTrafficEvents * 100);
  EXPECT_LE(messages[0].block.size(), kMaxAnswer);
}

TEST_F(TrafficTest, RestoringTellsWhatItChanges) {
  const auto restore = [this] {
    Replies out;
    RestoreTraffic(state(), now_, out);
    return Decode(out.Take());
  };
  EXPECT_TRUE(restore().empty());
  Guide(kRoute);
  RouteMode(kManual, 5);
  Ask(encode::REQU_TMC_TUNING_MODE(2, "abc"));
  Subscribe(kAllMessages, kNotifyOnChange);
  Data(kClosed);
  const auto sent = restore();
  ASSERT_EQ(IdsOf(sent), (Ids{INFO_TMC_INFO_CHANGED, INFO_TMC_DEL_EVENTS, INFO_TMC_ROUTES_DELETED,
                              INFO_TMC_ROUTE_MODE, INFO_TMC_TUNING_MODE}));
  EXPECT_EQ(sent[3].fields, (MessageFields{{"mode", 0}, {"delayThreshold", 0}}));
  EXPECT_EQ(sent[4].fields,
            (MessageFields{{"tmcTuningMode", 1}, {"tuningParameters", std::string()}}));
  EXPECT_EQ(IdsOf(Data(kClosed)), Ids{INFO_TMC_INFO_CHANGED}) << "nothing is subscribed to";
  Ask(encode::REQU_SET_TMC_MODE(kOff, ""));
  const auto on = restore();
  ASSERT_EQ(IdsOf(on), Ids{INFO_TMC_MODE});
  EXPECT_EQ(on[0].Number("mode"), kOn);
}

TEST_F(TrafficTest, CutShort) {
  Guide(kRoute);
  RouteMode(kAutomatic);
  Data(kClosed);
  HandleCutShort(model_, encode::TMC_DATA(kQueue), now_);
  HandleCutShort(model_, encode::REQU_TMC_AVOIDS(kAvoid, {{"1", kClosedText, ""}}), now_);
  HandleCutShort(model_, encode::REQU_TMC_SET_INFO_NOTIFICATION(-1, kNotifyOnChange), now_);
  HandleCutShort(model_, encode::REQU_TMC_TUNING_MODE(2, "abc"), now_);
  HandleCutShort(model_, encode::REQU_SET_TMC_ROUTE_MODE(kManual, 3), now_);
  HandleCutShort(model_, encode::REQU_SET_TMC_MODE(kOn, "abc"), now_);
  EXPECT_EQ(state().traffic.routeMode, kManual);
}

}  // namespace
}  // namespace ventrik::bench
