// SPDX-License-Identifier: Apache-2.0
#include "bench/model/recording.h"

#include "tests/bench/model/trip_fixture.h"

namespace ventrik::bench {
namespace {

const char kActive[] = "all: INFO_ROUTE_RECORDING_ACTIVE routeRecordingActive=1";
const char kNotActive[] = "all: INFO_ROUTE_RECORDING_ACTIVE routeRecordingActive=2";

class RecordingTest : public TripFixture {
 protected:
  Lines Begin() { return SentLines(Handle(encode::REQU_ROUTE_START_RECORDING())); }
  Lines End() { return SentLines(Handle(encode::REQU_ROUTE_STOP_RECORDING())); }

  Sent TripOf(const std::string& path, const Words& modes) {
    const std::vector<Sent> sent = Handle(encode::REQU_NEW_TRIP_FILE(path, {modes}));
    EXPECT_EQ(sent.size(), 1u);
    EXPECT_EQ(sent[0].id, RESP_NEW_TRIP_FILE);
    return sent[0];
  }

  // Two corners, at 11 km each.
  void RecordARoute() {
    Begin();
    Gps(13.41053, 52.62437);
    Gps(13.57053, 52.62437);
    End();
  }
};

TEST_F(RecordingTest, BeginsAndEnds) {
  EXPECT_EQ(Begin(), (Lines{"RESP_ROUTE_START_RECORDING validState=1", kActive}));
  EXPECT_EQ(End(), (Lines{kNotActive,
                          "all: INFO_ROUTE_RECORDING_COMPLETE detailsEIS="
                          "'<PATH>route-1.rec<*><PTS>1<*><LEN>0<*>'"}));
}

TEST_F(RecordingTest, TheSecondStartIsInvalidAndTheFirstGoesOn) {
  Begin();
  EXPECT_EQ(Begin(), (Lines{"RESP_ROUTE_START_RECORDING validState=2", kActive}));
  EXPECT_EQ(End().size(), 2u);
}

TEST_F(RecordingTest, AnEndWithoutABeginningIsNotActive) {
  EXPECT_EQ(End(), Lines{kNotActive});
  Begin();
  End();
  EXPECT_EQ(End(), Lines{kNotActive});
}

TEST_F(RecordingTest, TellsTheWayThatWasGone) {
  Begin();
  Gps(13.41053, 52.62437);
  Gps(13.41053, 52.52437);
  EXPECT_EQ(End()[1],
            "all: INFO_ROUTE_RECORDING_COMPLETE detailsEIS="
            "'<PATH>route-1.rec<*><PTS>3<*><LEN>22239<*>'");
}

TEST_F(RecordingTest, SmallMovesAreRecordedByTheirEnd) {
  Begin();
  for (int step = 1; step <= 5; ++step) Gps(13.41053, 52.52437 + step * 0.00001);
  const RecordingState& recording = state().recording;
  EXPECT_EQ(recording.running->points.size(), 1u);
  End();
  ASSERT_EQ(recording.kept.back().points.size(), 2u);
  EXPECT_NEAR(recording.kept.back().points[1].latitude, 52.52442, 1e-5);
}

TEST_F(RecordingTest, ALongRecordingIsThinnedAndKeepsItsEnds) {
  Begin();
  RecordingState& recording = state().recording;
  for (int step = 1; step <= 5000; ++step) RecordPosition(recording, {13.41053, 52 + step * 0.001});
  const Recording& running = *recording.running;
  EXPECT_LT(running.points.size(), kMostRecordedPoints);
  EXPECT_GT(running.points.size(), kMostRecordedPoints / 4);
  EXPECT_NEAR(running.points.front().latitude, 52.52437, 1e-9);
  End();
  EXPECT_NEAR(recording.kept.back().points.back().latitude, 57, 1e-9);
}

TEST_F(RecordingTest, TheOldestGoesFirst) {
  for (std::size_t count = 0; count <= kMostRecordings; ++count) RecordARoute();
  EXPECT_EQ(state().recording.kept.size(), kMostRecordings);
  EXPECT_EQ(TripOf("route-1.rec", {1}).Number("validState"), kNo);
  EXPECT_EQ(TripOf("route-2.rec", {1}).Number("validState"), kYes);
}

TEST_F(RecordingTest, ARecordingMakesATrip) {
  RecordARoute();
  const Sent answer = TripOf("route-1.rec", {1, 2});
  EXPECT_EQ(SentText(answer),
            "RESP_NEW_TRIP_FILE pathEIS='route-1.rec' routeModes=[1,2] validState=1 handles=[1,2]");
  EXPECT_EQ(TripOf("<PATH>route-1.rec<*>", {}).Field<Words>("handles"), Words{3});
  Gps(13.41053, 52.52437);
  const std::vector<Sent> sent = Start(Calculated({kBerlin}));
  EXPECT_EQ(sent[0].Number("routeDesc1"), 4);
}

TEST_F(RecordingTest, TheTrackIsFollowedToItsEndOrFromIt) {
  RecordARoute();
  Gps(13.41053, 52.52437);
  TripOf("route-1.rec", {1});
  TripOf("route-1.rec", {kFromEnd});
  const TripRoute& there = state().trips.routes[0];
  const TripRoute& back = state().trips.routes[1];
  EXPECT_EQ(there.names, Lines{"route-1.rec"});
  EXPECT_NEAR(there.waypoints.back().position.longitude, 13.57053, 1e-5);
  EXPECT_NEAR(back.waypoints.back().position.latitude, 52.52437, 1e-5);
  ASSERT_TRUE(there.shape);
  EXPECT_NEAR(there.shape->Length(), 22'000, 500);
}

TEST_F(RecordingTest, WhatIsNoRecordingMakesNoTrip) {
  RecordARoute();
  for (const std::string& path :
       {std::string(), std::string("route-2.rec"), std::string("<PATH><*>"),
        std::string("<FILE>route-1.rec<*>"), std::string("route-1"), std::string(300'000, 'x')}) {
    const Sent answer = TripOf(path, {1});
    EXPECT_EQ(answer.Number("validState"), kNo);
    EXPECT_EQ(answer.Text("pathEIS"), path);
    EXPECT_EQ(answer.Field<Words>("handles"), Words{});
  }
  EXPECT_EQ(TripOf(std::string(600'000, 'x'), {1}).Text("pathEIS"), "") << "too long to repeat";
}

TEST_F(RecordingTest, OneThatIsUnderWayIsNoTripYet) {
  Begin();
  EXPECT_EQ(TripOf("route-1.rec", {1}).Number("validState"), kNo);
}

TEST_F(RecordingTest, FactoryResetForgetsThem) {
  RecordARoute();
  Begin();
  const Lines lines = SentLines(Handle(encode::REQU_RESTORE_FACTORY()));
  EXPECT_EQ(std::count(lines.begin(), lines.end(), kNotActive), 1);
  EXPECT_EQ(TripOf("route-1.rec", {1}).Number("validState"), kNo);
  EXPECT_EQ(End(), Lines{kNotActive});
}

TEST_F(RecordingTest, RequestsCutShortAreAnswered) {
  HandleCutShort(model_, encode::REQU_ROUTE_START_RECORDING(), now_);
  HandleCutShort(model_, encode::REQU_ROUTE_STOP_RECORDING(), now_);
}

}  // namespace
}  // namespace ventrik::bench
