// SPDX-License-Identifier: Apache-2.0
#include "bench/model/guidance.h"

#include <cmath>
#include <limits>

#include "tests/bench/model/trip_fixture.h"

namespace ventrik::bench {
namespace {

constexpr std::int32_t kMin = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kMax = std::numeric_limits<std::int32_t>::max();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

const char kDemoIsOn[] = "all: INFO_DEMO_MODE_STATE state=1";
const char kDemoIsOff[] = "all: INFO_DEMO_MODE_STATE state=2";

class GuidanceTest : public TripFixture {
 protected:
  Lines DemoOff() { return SentLines(Handle(encode::REQU_SET_DEMO_MODE(2, 0, 0))); }
  Lines Stop() { return SentLines(Handle(encode::REQU_STOP_GUIDANCE())); }

  double MetresFrom(double longitude, double latitude) {
    return DistanceMetres(state().vehicle.position, {longitude, latitude});
  }

  // A demo drive from its start to its end.
  std::vector<Sent> Drive(const Lines& destinations, std::int32_t mode = 1) {
    DemoOn(0, 0);
    const std::int32_t handle = Calculated(destinations, mode);
    std::vector<Sent> sent = Start(handle);
    for (Sent& message : Pass(kLongestDrive)) sent.push_back(std::move(message));
    return sent;
  }

  static Lines ReachedIn(const std::vector<Sent>& sent) {
    return SentLines(Only(sent, INFO_DESTINATION_REACHED));
  }

  static constexpr Milliseconds kLongestDrive{20'000};
};

// ---- start and stop

TEST_F(GuidanceTest, StartTellsTheRouteAndWhatComesNext) {
  const std::int32_t handle = Calculated({kPassau});
  const std::vector<Sent> sent = Start(handle);
  ASSERT_GE(sent.size(), 3u);
  const double length = FindRoute(state().trips, handle)->shape->Length();
  EXPECT_EQ(sent[0].id, INFO_ACTIVE_ROUTE_DESC);
  EXPECT_EQ(sent[0].Number("routeDesc1"), handle);
  EXPECT_EQ(sent[0].Number("routeDesc2"), std::lround(length));
  EXPECT_EQ(sent[0].Number("routeDesc3"), std::lround(length / 25));
  const Sent next = Only(sent, INFO_NEXT_MAN_INFO).at(0);
  const Manoeuvre& first = FindRoute(state().trips, handle)->shape->manoeuvres[0];
  EXPECT_EQ(next.Number("distance"), std::lround(first.at));
  EXPECT_EQ(next.Number("time"), std::lround(first.at / 25));
  EXPECT_EQ(next.Number("nextManInfo1"), kNo) << "it is far";
  EXPECT_EQ(next.Number("nextManInfo2"), static_cast<std::int32_t>(Turn::right));
  EXPECT_EQ(next.Number("nextManInfo3"), first.angle);
  const Sent destination = Only(sent, INFO_NEXT_DEST_INFO).at(0);
  EXPECT_EQ(destination.Number("nextDestInfo1"), std::lround(length / 25));
  EXPECT_EQ(destination.Number("nextDestInfo2"), std::lround(length));
  for (const Sent& message : sent) EXPECT_EQ(message.audience, Audience::everyone);
  EXPECT_FALSE(model_.NextTick()) << "nothing moves by itself";
}

TEST_F(GuidanceTest, AnUnknownHandleTellsThatThereIsNoRoute) {
  for (const std::int32_t handle : {0, 1, -1, kMin, kMax}) {
    EXPECT_EQ(SentLines(Start(handle)), kNoRoute) << handle;
  }
}

TEST_F(GuidanceTest, AnUnknownHandleLeavesGuidance) {
  const Lines active = {SentText(Start(Calculated({kPassau}))[0])};
  EXPECT_EQ(SentLines(Start(9)), active);
  EXPECT_EQ(SentLines(Start(1)), active) << "it is on already";
  EXPECT_TRUE(state().guidance.active);
}

TEST_F(GuidanceTest, ARouteThatFailedDoesNotGuide) {
  EXPECT_EQ(SentLines(Start(Calculated({kOverTheOcean}))), kNoRoute);
}

TEST_F(GuidanceTest, ARouteInCalculationGuidesWhenItIsReady) {
  AskForTrip({kPassau}, {1});
  EXPECT_TRUE(Start(1).empty());
  const std::vector<Sent> sent = Pass(kCalculation);
  ASSERT_GT(sent.size(), 8u);
  EXPECT_EQ(sent[6].Number("calcPercent"), 100);
  EXPECT_EQ(sent[7].id, INFO_ACTIVE_ROUTE_DESC);
  EXPECT_EQ(sent[7].Number("routeDesc1"), 1);
}

TEST_F(GuidanceTest, ARouteThatFailsWhileItIsWaitedForEndsTheWish) {
  AskForTrip({kOverTheOcean}, {1});
  Start(1);
  EXPECT_EQ(SentText(Pass(kCalculation).back()), kNoRoute[0]);
  EXPECT_EQ(state().guidance.handle, 0);
}

TEST_F(GuidanceTest, AnotherRouteTakesOver) {
  AskForTrip({kPassau}, {1, 2});
  Pass(kCalculation);
  Start(1);
  EXPECT_EQ(Only(Start(2), INFO_ACTIVE_ROUTE_DESC).at(0).Number("routeDesc1"), 2);
}

TEST_F(GuidanceTest, AStartAwayFromTheRouteCalculatesItFromThere) {
  const std::int32_t handle = Calculated({kPassau});
  Gps(11.57549, 48.13743);
  EXPECT_TRUE(Start(handle).empty());
  const std::vector<Sent> sent = Pass(kCalculation);
  EXPECT_EQ(Only(sent, INFO_CALC_STATE).size(), 5u);
  const double air = MetresFrom(13.43122, 48.5665);
  EXPECT_NEAR(Only(sent, INFO_ACTIVE_ROUTE_DESC).at(0).Number("routeDesc2"), air, air / 20);
}

TEST_F(GuidanceTest, AStartFromAcrossTheOceanFails) {
  const std::int32_t handle = Calculated({kPassau});
  Gps(-79.4163, 43.70011);
  Start(handle);
  const Lines lines = SentLines(Pass(kCalculation));
  ASSERT_GE(lines.size(), 2u);
  EXPECT_EQ(lines[lines.size() - 2],
            "all: INFO_CALC_STATE routeHandle=1 calcState=7 calcPercent=40");
  EXPECT_EQ(lines.back(), kNoRoute[0]);
}

TEST_F(GuidanceTest, StopEndsGuidance) {
  Start(Calculated({kPassau}));
  EXPECT_EQ(Stop().back(), kNoRoute[0]);
  EXPECT_EQ(Stop(), kNoRoute);
  EXPECT_FALSE(state().guidance.active);
}

TEST_F(GuidanceTest, StopLeavesTheHighway) {
  Start(Calculated({kPassau}));
  EXPECT_EQ(Stop(), (Lines{"all: INFO_HIGHWAYMODE_UPDATE state=2", kNoRoute[0]}));
}

// ---- demo mode

TEST_F(GuidanceTest, DemoModeTellsItsStateAndMovesTheVehicle) {
  EXPECT_EQ(DemoOn(13.43122, 48.5665), Lines{kDemoIsOn});
  EXPECT_EQ(MetresFrom(13.43122, 48.5665), 0);
  EXPECT_EQ(DemoOff(), Lines{kDemoIsOff});
  EXPECT_EQ(MetresFrom(13.43122, 48.5665), 0) << "the vehicle stays";
}

TEST_F(GuidanceTest, DemoModeWithoutAPositionLeavesTheVehicle) {
  EXPECT_EQ(DemoOn(0, 0), Lines{kDemoIsOn});
  EXPECT_EQ(MetresFrom(13.41053, 52.52437), 0);
}

TEST_F(GuidanceTest, DemoModeOffTheEarthIsRefused) {
  for (const auto& [longitude, latitude] :
       {std::pair{180.1, 0.0}, {0.0, -90.1}, {kNaN, 0.0}, {0.0, kNaN}, {-HUGE_VAL, 1e300}}) {
    EXPECT_EQ(DemoOn(longitude, latitude), Lines{kDemoIsOff});
    EXPECT_EQ(MetresFrom(13.41053, 52.52437), 0);
  }
  DemoOn(10, 50);
  EXPECT_EQ(DemoOn(kNaN, kNaN), Lines{kDemoIsOn}) << "it stays as it was";
}

TEST_F(GuidanceTest, DemoModeWithoutGuidanceStandsStill) {
  DemoOn(10, 50);
  EXPECT_FALSE(model_.NextTick());
}

// ---- demo drives

TEST_F(GuidanceTest, ADemoDriveEndsAtItsDestination) {
  const std::vector<Sent> sent = Drive({kPassau});
  EXPECT_EQ(ReachedIn(sent),
            Lines{"all: INFO_DESTINATION_REACHED dest='Passau' element=1 total=1"});
  EXPECT_EQ(SentText(Only(sent, INFO_ACTIVE_ROUTE_DESC).back()), kNoRoute[0]);
  EXPECT_LT(MetresFrom(13.43122, 48.5665), 1);
  EXPECT_FALSE(state().guidance.active);
  EXPECT_EQ(state().vehicle.speed, 0);
}

TEST_F(GuidanceTest, TheDriveComesNearerWithEachMove) {
  const std::vector<Sent> told = Only(Drive({kPassau}), INFO_NEXT_DEST_INFO);
  ASSERT_GE(told.size(), 40u);
  ASSERT_LE(told.size(), 80u);
  for (std::size_t index = 1; index < told.size(); ++index) {
    EXPECT_LT(told[index].Number("nextDestInfo2"), told[index - 1].Number("nextDestInfo2"));
    EXPECT_LE(told[index].Number("nextDestInfo1"), told[index - 1].Number("nextDestInfo1"));
  }
}

TEST_F(GuidanceTest, DrivesOfAnyLengthTakeTenToTwentySeconds) {
  for (const char* destination :
       {"<GEO>13.41053 52.52637<*>", kPotsdam, kPassau, "<GEOC>Spain<*><CTY>Seville<*>"}) {
    DemoOn(13.41053, 52.52437);
    Start(Calculated({destination}));
    EXPECT_TRUE(ReachedIn(Pass(Milliseconds{9'000})).empty()) << destination;
    EXPECT_EQ(ReachedIn(Pass(Milliseconds{11'000})).size(), 1u) << destination;
  }
}

TEST_F(GuidanceTest, EachDestinationIsReachedInTurn) {
  const Lines reached = ReachedIn(Drive({kPotsdam, kPotsdam, kPassau}));
  EXPECT_EQ(reached, (Lines{"all: INFO_DESTINATION_REACHED dest='Potsdam' element=1 total=3",
                            "all: INFO_DESTINATION_REACHED dest='Potsdam' element=2 total=3",
                            "all: INFO_DESTINATION_REACHED dest='Passau' element=3 total=3"}));
}

TEST_F(GuidanceTest, ADestinationWhereOneIsIsReachedAtOnce) {
  const std::int32_t handle = Calculated({kBerlin});
  const Lines lines = SentLines(Start(handle));
  ASSERT_EQ(lines.size(), 3u);
  EXPECT_EQ(lines[1], "all: INFO_DESTINATION_REACHED dest='13.41053 52.52437' element=1 total=1");
  EXPECT_EQ(lines[2], kNoRoute[0]);
}

TEST_F(GuidanceTest, ALongDriveUsesHighwaysAndLanes) {
  const std::vector<Sent> sent = Drive({kPassau});
  const std::vector<Sent> highways = Only(sent, INFO_HIGHWAYMODE_UPDATE);
  ASSERT_GE(highways.size(), 4u);
  for (std::size_t index = 0; index < highways.size(); ++index) {
    EXPECT_EQ(highways[index].Number("state"), index % 2 == 0 ? kYes : kNo) << index;
  }
  EXPECT_EQ(highways.size() % 2, 0u) << "it ends off the highway";
  const Lines lanes = SentLines(Only(sent, INFO_LANE_INFORMATION));
  ASSERT_EQ(lanes.size(), 5u) << "one for each turn";
  EXPECT_EQ(lanes[0], "all: INFO_LANE_INFORMATION detailsEIS='<LANES>3<*><TAKE>3<*>'");
  EXPECT_EQ(lanes[1], "all: INFO_LANE_INFORMATION detailsEIS='<LANES>3<*><TAKE>1<*>'");
}

TEST_F(GuidanceTest, HighwaysAreAvoided) {
  const std::vector<Sent> sent = Drive({kPassau}, kAvoidMotorways);
  EXPECT_TRUE(Only(sent, INFO_HIGHWAYMODE_UPDATE).empty());
  EXPECT_EQ(ReachedIn(sent).size(), 1u);
}

TEST_F(GuidanceTest, AShortDriveHasNoHighways) {
  const std::vector<Sent> sent = Drive({"<GEO>13.43 52.53<*>"});
  EXPECT_TRUE(Only(sent, INFO_HIGHWAYMODE_UPDATE).empty());
  EXPECT_TRUE(Only(sent, INFO_LANE_INFORMATION).empty());
}

TEST_F(GuidanceTest, ManoeuvresAreAnnouncedWithTheirJunctions) {
  Handle(encode::REQU_VEH_LOC_INFO_DETAILS(2, 0));
  const std::vector<Sent> sent = Drive({kPassau});
  EXPECT_FALSE(Only(sent, INFO_PROMPT_READY).empty());
  std::vector<std::string> junctions;
  for (const Sent& info : Only(sent, INFO_VEH_LOC_INFO_DETAILS)) {
    const std::string& text = info.Text("posInfo");
    const std::size_t at = text.find("<JVA>");
    if (at == std::string::npos) continue;
    const std::string junction = text.substr(at);
    if (junctions.empty() || junctions.back() != junction) junctions.push_back(junction);
  }
  EXPECT_EQ(junctions, (Lines{"<JVA>1<*>", "<JVA>2<*>", "<JVA>3<*>", "<JVA>4<*>", "<JVA>5<*>"}));
}

TEST_F(GuidanceTest, AManoeuvreThatIsNearIsTold) {
  Handle(encode::REQU_VEH_LOC_INFO_DETAILS(2, 0));
  bool near = false;
  for (const Sent& message : Drive({kPassau})) {
    if (message.id == INFO_VEH_LOC_INFO_DETAILS) {
      near = message.Text("posInfo").find("<JVA>") != std::string::npos;
    } else if (message.id == INFO_NEXT_MAN_INFO && message.Number("nextManInfo2") != 4) {
      EXPECT_EQ(message.Number("nextManInfo1"), YesOrNo(near));
    }
  }
}

TEST_F(GuidanceTest, TheDriveGoesOnAfterStopAndStart) {
  DemoOn(0, 0);
  Start(Calculated({kPotsdam, kPassau}));
  Pass(Milliseconds{5000});
  Stop();
  EXPECT_TRUE(Only(Pass(Milliseconds{5000}), INFO_NEXT_MAN_INFO).empty()) << "it stands still";
  EXPECT_TRUE(Start(1).empty()) << "the route is calculated from here first";
  const Lines reached = ReachedIn(Pass(kCalculation + kLongestDrive));
  EXPECT_EQ(reached.size(), 2u) << "it begins again with the first destination";
}

TEST_F(GuidanceTest, ADriveCanBeRepeated) {
  Drive({kPotsdam, kPassau});
  Start(1);
  EXPECT_EQ(ReachedIn(Pass(kCalculation + kLongestDrive)).size(), 2u);
}

TEST_F(GuidanceTest, DemoModeCanComeAfterTheStartAndGo) {
  Start(Calculated({kPassau}));
  EXPECT_TRUE(Pass(kLongestDrive).empty());
  DemoOn(0, 0);
  Pass(Milliseconds{3000});
  const double left = MetresFrom(13.43122, 48.5665);
  EXPECT_LT(left, 400'000);
  EXPECT_GT(state().vehicle.speed, 0);
  DemoOff();
  EXPECT_EQ(state().vehicle.speed, 0);
  EXPECT_TRUE(Pass(kLongestDrive).empty());
  DemoOn(0, 0);
  EXPECT_EQ(ReachedIn(Pass(kLongestDrive)).size(), 1u);
}

// A random tester says it again and again.
TEST_F(GuidanceTest, DemoModeSaidAgainDoesNotSlowTheDriveDown) {
  DemoOn(0, 0);
  Start(Calculated({kPassau}));
  std::size_t reached = 0;
  for (int second = 0; second < 20; ++second) {
    DemoOn(0, 0);
    reached += ReachedIn(Pass(Milliseconds{1000})).size();
  }
  EXPECT_EQ(reached, 1u);
}

TEST_F(GuidanceTest, AJumpWhileGuidingGoesOnFromThere) {
  DemoOn(0, 0);
  Start(Calculated({kPotsdam, kPassau}));
  while (ReachedIn(Pass(kDriveTick)).empty()) ASSERT_TRUE(state().guidance.active);
  DemoOn(11.57549, 48.13743);
  const std::vector<Sent> sent = Pass(kCalculation + kLongestDrive);
  EXPECT_EQ(Only(sent, INFO_CALC_STATE).size(), 5u);
  EXPECT_EQ(ReachedIn(sent), Lines{"all: INFO_DESTINATION_REACHED dest='Passau' element=2 total=2"})
      << "what has been reached stays reached";
}

TEST_F(GuidanceTest, ABlockOnTheWayKeepsTheDestinationsThatAreLeft) {
  DemoOn(0, 0);
  Start(Calculated({kPotsdam, kPassau}));
  while (ReachedIn(Pass(kDriveTick)).empty()) ASSERT_TRUE(state().guidance.active);
  Handle(encode::REQU_BLOCK_ROUTE(0, {{"A9"}}));
  Pass(Milliseconds{200});
  Handle(encode::REQU_BLOCK_ROUTE(0, {{"A3"}}));
  EXPECT_EQ(ReachedIn(Pass(kCalculation + kLongestDrive)),
            Lines{"all: INFO_DESTINATION_REACHED dest='Passau' element=2 total=2"});
}

TEST_F(GuidanceTest, AClockThatComesLateMakesOneMove) {
  DemoOn(0, 0);
  Start(Calculated({kPassau}));
  now_ += Milliseconds{5000};
  model_.Tick(now_);
  EXPECT_EQ(model_.NextTick(), now_ + kDriveTick);
  EXPECT_NEAR(state().guidance.progress, state().guidance.step, 1);
}

// ---- guidance by GPS

TEST_F(GuidanceTest, GpsRecordsBringTheVehicleOn) {
  const std::int32_t handle = Calculated({kPassau});
  Start(handle);
  const Route shape = *FindRoute(state().trips, handle)->shape;
  const Position half = PositionAt(shape, shape.Length() / 2);
  const std::vector<Sent> sent = Gps(half.longitude, half.latitude);
  const Sent destination = Only(sent, INFO_NEXT_DEST_INFO).at(0);
  EXPECT_NEAR(destination.Number("nextDestInfo2"), shape.Length() / 2, 2);
  EXPECT_EQ(ReachedIn(Gps(13.43122, 48.5665)).size(), 1u);
  EXPECT_FALSE(state().guidance.active);
}

TEST_F(GuidanceTest, GpsRecordsDontLeaveOutDestinations) {
  Start(Calculated({kPassau, kBerlin}));
  EXPECT_TRUE(ReachedIn(Gps(13.41, 52.524)).empty()) << "near the second, but before the first";
  EXPECT_EQ(ReachedIn(Gps(13.43122, 48.5665)).size(), 1u);
  EXPECT_EQ(ReachedIn(Gps(13.41053, 52.52437)),
            Lines{"all: INFO_DESTINATION_REACHED dest='13.41053 52.52437' element=2 total=2"});
}

TEST_F(GuidanceTest, AGpsRecordFarFromTheRouteIsNoArrival) {
  Start(Calculated({kPassau}));
  EXPECT_TRUE(ReachedIn(Gps(13.43122, 40)).empty());
}

// A vehicle that is guided from Berlin to Passau and drives due east instead.
class OffRouteTest : public GuidanceTest {
 protected:
  OffRouteTest() { Start(Calculated({kPassau})); }

  // A record so many metres east of Berlin, where the route leads south.
  std::vector<Sent> East(double metres) { return Gps(13.41053 + metres / 67'650, 52.52437); }

  bool IsRerouting() { return !state().guidance.active && state().guidance.handle == 1; }
};

TEST_F(OffRouteTest, SomeWayOffTheRouteLeadsToANewOne) {
  EXPECT_FALSE(East(150).empty()) << "guided on, at first";
  now_ += Milliseconds{1000};
  EXPECT_FALSE(East(449).empty());
  EXPECT_TRUE(East(451).empty());
  EXPECT_TRUE(IsRerouting());
  const std::vector<Sent> sent = Pass(kCalculation);
  EXPECT_EQ(Only(sent, INFO_CALC_STATE).size(), 5u);
  const double air = MetresFrom(13.43122, 48.5665);
  EXPECT_NEAR(Only(sent, INFO_ACTIVE_ROUTE_DESC).at(0).Number("routeDesc2"), air, air / 20);
  EXPECT_EQ(Only(sent, INFO_NEXT_MAN_INFO).size(), 1u);
  const Position start = FindRoute(state().trips, 1)->start;
  EXPECT_NEAR(MetresFrom(start.longitude, start.latitude), 0, 1) << "it begins at the vehicle";
}

TEST_F(OffRouteTest, SomeTimeOffTheRouteLeadsToANewOne) {
  East(150);
  now_ += kOffRoutePatience - Milliseconds{1};
  East(150);
  EXPECT_FALSE(IsRerouting());
  now_ += Milliseconds{1};
  East(150);
  EXPECT_TRUE(IsRerouting());
}

TEST_F(OffRouteTest, WhoComesBackIsGuidedOn) {
  East(150);
  now_ += kOffRoutePatience;
  East(10);
  East(150);
  now_ += kOffRoutePatience - Milliseconds{1};
  East(150);
  EXPECT_FALSE(IsRerouting()) << "counted from the second time";
}

TEST_F(OffRouteTest, WhoTurnsBackGetsANewRoute) {
  const Route shape = *FindRoute(state().trips, 1)->shape;
  for (const double metres : {5000.0, 4800.0, 4520.0}) {
    const Position position = PositionAt(shape, metres);
    Gps(position.longitude, position.latitude);
    EXPECT_FALSE(IsRerouting()) << metres;
  }
  const Position position = PositionAt(shape, 4480);
  Gps(position.longitude, position.latitude);
  EXPECT_TRUE(IsRerouting());
}

TEST_F(OffRouteTest, DestinationsThatWerePassedStayPassed) {
  Start(Calculated({kPassau, kPotsdam}));
  Gps(13.43122, 48.5665);
  Gps(13.44, 48.5665);
  now_ += kOffRoutePatience;
  Gps(13.44, 48.5665);
  EXPECT_FALSE(state().guidance.active);
  const Sent description = Only(Pass(kCalculation), INFO_ACTIVE_ROUTE_DESC).at(0);
  EXPECT_NEAR(description.Number("routeDesc2"), MetresFrom(13.06566, 52.39886), 30'000);
}

TEST_F(OffRouteTest, NobodyIsGuidedOverTheOcean) {
  Gps(-30, 45);
  now_ += kOffRoutePatience;
  Gps(-30, 45);
  EXPECT_EQ(SentLines(Pass(kCalculation)).back(), kNoRoute[0]);
  EXPECT_EQ(state().guidance.handle, 0);
}

// ---- prompts

TEST_F(GuidanceTest, StopSilencesGuidance) {
  DemoOn(0, 0);
  const std::int32_t handle = Calculated({kPassau});
  Start(handle);
  while (Only(Pass(kDriveTick), INFO_PROMPT_READY).empty()) {
    ASSERT_TRUE(state().guidance.active) << "no prompt on the way";
  }
  Stop();
  EXPECT_TRUE(state().audio.prompts.empty());
  EXPECT_TRUE(Only(Pass(Milliseconds{20'000}), INFO_PROMPT_READY).empty());

  Start(handle);
  state().audio.prompts = {kAudioAutomatic, kAudioAutomatic};
  state().audio.phase = PromptPhase::announced;
  Handle(encode::REQU_KILL_TRIP({{handle}}));
  EXPECT_TRUE(state().audio.prompts.empty()) << "so does the end of the trip";
}

// ---- the rest

TEST_F(GuidanceTest, FactoryResetEndsItAll) {
  DemoOn(0, 0);
  Start(Calculated({kPassau}));
  const Lines lines = SentLines(Handle(encode::REQU_RESTORE_FACTORY()));
  EXPECT_EQ(std::count(lines.begin(), lines.end(), kNoRoute[0]), 1);
  EXPECT_EQ(std::count(lines.begin(), lines.end(), kDemoIsOff), 1);
  EXPECT_TRUE(Only(Pass(kLongestDrive), INFO_NEXT_MAN_INFO).empty());
  EXPECT_EQ(SentLines(Start(1)), kNoRoute);
}

TEST_F(GuidanceTest, RequestsCutShortAreAnswered) {
  Calculated({kPassau});
  HandleCutShort(model_, encode::REQU_START_GUIDANCE(1), now_);
  HandleCutShort(model_, encode::REQU_SET_DEMO_MODE(1, 13.43122, 48.5665), now_);
  HandleCutShort(model_, encode::REQU_STOP_GUIDANCE(), now_);
}

}  // namespace
}  // namespace ventrik::bench
