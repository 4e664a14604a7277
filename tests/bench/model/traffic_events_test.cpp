// SPDX-License-Identifier: Apache-2.0
#include "bench/model/traffic_events.h"

#include <gtest/gtest.h>

#include <string>

namespace ventrik::bench {
namespace {

using std::chrono::minutes;

TrafficEvent EventOf(const std::string& text) {
  const auto notice = ParseTrafficNotice(text);
  EXPECT_TRUE(notice) << text;
  if (!notice) return {};
  EXPECT_FALSE(notice->clears) << text;
  return notice->event;
}

TEST(TrafficEventTest, OneAsAReceiverHandsItIn) {
  const auto notice = ParseTrafficNotice(
      "EVENT htmc=11272644 loc=113 extent=1 dir=0 bidi=0 age=60 cc=11 ltn=1 new=1 event_1=401 "
      "event_2=807");
  ASSERT_TRUE(notice);
  EXPECT_FALSE(notice->clears);
  EXPECT_EQ(notice->age, minutes(60));
  EXPECT_EQ(notice->event.number, 11272644);
  EXPECT_EQ(notice->event.weight, TrafficWeight::blocks);
  EXPECT_EQ(notice->event.delay, minutes(65));
  EXPECT_TRUE(notice->event.ahead);
  EXPECT_EQ(notice->event.text,
            "<TMC>11272644<*><TEV>401 807<*><TET>closed, gas main work; country 11, table 1, "
            "location 113, extent 1, positive direction<*>");
}

TEST(TrafficEventTest, LengthsBelongToTheirCodes) {
  EXPECT_EQ(EventOf("EVENT htmc=80 loc=294 event_1=101 len_1=3 event_3=115 len_2=9").text,
            "<TMC>80<*><TEV>101 115<*><TET>stationary traffic for 3 km, slow traffic; country 0, "
            "table 0, location 294, extent 0, positive direction<*>");
}

TEST(TrafficEventTest, ACodeThatIsNotKnownIsToldByItsNumber) {
  const TrafficEvent event = EventOf("EVENT htmc=1 loc=2 event_1=2000 len_1=2");
  EXPECT_NE(event.text.find("<TET>event 2000 for 2 km; "), std::string::npos) << event.text;
  EXPECT_EQ(event.weight, TrafficWeight::slows);
}

TEST(TrafficEventTest, WeighsAsItsHeaviestCode) {
  EXPECT_EQ(EventOf("EVENT htmc=1 loc=2 event_1=126").weight, TrafficWeight::informs);
  EXPECT_EQ(EventOf("EVENT htmc=1 loc=2 event_1=126 event_2=125").weight, TrafficWeight::slows);
  EXPECT_EQ(EventOf("EVENT htmc=1 loc=2 event_1=401 event_2=125").weight, TrafficWeight::blocks);
}

TEST(TrafficEventTest, DirectionsSayWhomItConcerns) {
  const std::string start = "EVENT htmc=1 loc=2 event_1=1 ";
  EXPECT_TRUE(EventOf(start).ahead);
  EXPECT_FALSE(EventOf(start + "dir=1").ahead);
  EXPECT_TRUE(EventOf(start + "dir=1 bidi=1").ahead);
  EXPECT_NE(EventOf(start + "dir=1").text.find("negative direction"), std::string::npos);
  EXPECT_NE(EventOf(start + "bidi=1").text.find("both directions"), std::string::npos);
}

TEST(TrafficEventTest, AgeHasADefaultAndBounds) {
  const auto age = [](const std::string& word) {
    return ParseTrafficNotice("EVENT htmc=1 loc=2 event_1=1 " + word)->age;
  };
  EXPECT_EQ(age(""), minutes(15));
  EXPECT_EQ(age("age=1"), minutes(1));
  EXPECT_EQ(age("age=1440"), minutes(1440));
  EXPECT_EQ(age("age=1441"), minutes(15));
  EXPECT_EQ(age("age=-1"), minutes(15));
  EXPECT_EQ(age("age=99999999999999999999"), minutes(15));
  EXPECT_EQ(age("age=5 age=6"), minutes(5));
}

TEST(TrafficEventTest, ClearsByAgeOrCode) {
  for (const char* text :
       {"EVENT htmc=7 age=0", "EVENT htmc=7 loc=2 age=0 event_1=401", "EVENT htmc=7 event_1=128",
        "EVENT htmc=7 loc=2 event_1=401 event_2=467", "\tEVENT\n event_1=333 htmc=7\r"}) {
    const auto notice = ParseTrafficNotice(text);
    ASSERT_TRUE(notice) << text;
    EXPECT_TRUE(notice->clears) << text;
    EXPECT_EQ(notice->event.number, 7) << text;
  }
}

TEST(TrafficEventTest, WhatIsNoEvent) {
  for (const char* text : {"",
                           " ",
                           "EVENT",
                           "event htmc=1 loc=2 event_1=1",
                           "htmc=1 loc=2 event_1=1",
                           "x EVENT htmc=1 loc=2 event_1=1",
                           "EVENT loc=2 event_1=1",
                           "EVENT htmc=1 event_1=1",
                           "EVENT htmc=1 loc=2",
                           "EVENT htmc= loc=2 event_1=1",
                           "EVENT htmc=x loc=2 event_1=1",
                           "EVENT htmc=-1 loc=2 event_1=1",
                           "EVENT htmc=4294967296 loc=2 event_1=1",
                           "EVENT htmc=1 loc=65536 event_1=1",
                           "EVENT htmc=1 loc=2x event_1=1",
                           "EVENT htmc=1 loc=2 event_1=0",
                           "EVENT htmc=1 loc=2 event_1=2048",
                           "EVENT htmc=1 loc=2 event_9=1",
                           "EVENT htmc=1 loc=2 event_1=+1",
                           "EVENT htmc=1,loc=2"}) {
    EXPECT_FALSE(ParseTrafficNotice(text)) << text;
  }
  EXPECT_TRUE(ParseTrafficNotice("EVENT htmc=4294967295 loc=65535 event_8=2047"));
}

TEST(TrafficEventTest, AVeryLongTextIsReadToItsLimit) {
  std::string text = "EVENT htmc=1 loc=2 event_1=1";
  for (int i = 0; i < 100'000; ++i) text += " x=1";
  text += " age=7";
  const auto notice = ParseTrafficNotice(text);
  ASSERT_TRUE(notice);
  EXPECT_EQ(notice->age, minutes(15));
}

TEST(TrafficEventTest, ClientsNameEventsByNumberOrText) {
  const std::string text = EventOf("EVENT htmc=80 loc=294 event_1=101").text;
  EXPECT_EQ(NamedTrafficEvent(text), 80);
  EXPECT_EQ(NamedTrafficEvent("80"), 80);
  EXPECT_EQ(NamedTrafficEvent("<TMC>4294967295<*>"), 4294967295);
  for (const char* name : {"", "x", "-1", "80 ", "4294967296", "<TMC><*>", "<TEV>80<*>"}) {
    EXPECT_FALSE(NamedTrafficEvent(name)) << name;
  }
}

}  // namespace
}  // namespace ventrik::bench
