// SPDX-License-Identifier: Apache-2.0
#include "bench/model/vehicle.h"

#include <limits>

#include "tests/bench/model/trip_fixture.h"

namespace ventrik::bench {
namespace {

constexpr std::int32_t kMin = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kMax = std::numeric_limits<std::int32_t>::max();

const char kAtFirst[] = "posInfo='<GEO>13.41053 52.52437<*><CTY>Berlin<*><SPD>0<*><HDG>0<*>'";

class VehicleTest : public TripFixture {
 protected:
  Lines Ask(std::int32_t mode, std::int32_t number) {
    return SentLines(Handle(encode::REQU_VEH_LOC_INFO_DETAILS(mode, number)));
  }

  std::size_t ToldWithin(Milliseconds time) { return Pass(time).size(); }
};

// ---- notifications

TEST_F(VehicleTest, OnceIsForTheRequesterAndOnce) {
  EXPECT_EQ(Ask(1, 5), Lines{std::string("INFO_VEH_LOC_INFO_DETAILS ") + kAtFirst});
  EXPECT_TRUE(Gps(13, 52).empty());
  EXPECT_FALSE(model_.NextTick());
}

TEST_F(VehicleTest, OnChangeTellsNowAndAtEachMove) {
  EXPECT_EQ(Ask(2, 0), Lines{std::string("INFO_VEH_LOC_INFO_DETAILS ") + kAtFirst});
  EXPECT_EQ(Gps(13.43122, 48.5665).size(), 1u);
  EXPECT_TRUE(Gps(13.43122, 48.5665).empty()) << "no move";
  EXPECT_FALSE(model_.NextTick());
}

TEST_F(VehicleTest, ByFrequencyTellsEverySoManySeconds) {
  EXPECT_EQ(Ask(4, 3).size(), 1u);
  EXPECT_EQ(ToldWithin(Milliseconds{2999}), 0u);
  EXPECT_EQ(ToldWithin(Milliseconds{1}), 1u);
  EXPECT_EQ(ToldWithin(Milliseconds{30'000}), 10u);
  EXPECT_TRUE(Gps(13, 52).empty()) << "a move is no reason";
}

TEST_F(VehicleTest, ByFrequencyTakesAnyNumber) {
  for (const std::int32_t number : {0, -1, kMin, 1}) {
    Ask(4, number);
    EXPECT_EQ(ToldWithin(Milliseconds{5000}), 5u) << number;
  }
  Ask(4, kMax);
  EXPECT_EQ(model_.NextTick(), now_ + std::chrono::hours(24));
}

TEST_F(VehicleTest, TimesThatNobodySawAreLeftOut) {
  Ask(4, 1);
  now_ += Milliseconds{10'500};
  EXPECT_EQ(model_.Tick(now_).size(), 1u);
  EXPECT_EQ(model_.NextTick(), now_ + Milliseconds{1000});
}

TEST_F(VehicleTest, OtherModesEndTheNotification) {
  for (const std::int32_t mode : {0, 3, 8, -1, kMin, kMax}) {
    Ask(4, 1);
    EXPECT_EQ(Ask(mode, 1).size(), 1u) << mode;
    EXPECT_EQ(Ask(mode, 1)[0].substr(0, 31), "INFO_VEH_LOC_INFO_DETAILS posIn") << "not to all";
    EXPECT_FALSE(model_.NextTick());
    EXPECT_TRUE(Gps(13, 52 + mode % 7 * 0.1).empty());
  }
  Ask(2, 0);
  Ask(1, 0);
  EXPECT_EQ(Gps(12, 51).size(), 1u) << "once leaves the others on";
}

TEST_F(VehicleTest, EachClientIsToldAsItWishes) {
  Ask(2, 0);
  client_ = 2;
  Ask(4, 3);
  client_ = 3;
  Ask(1, 0);
  const std::vector<Sent> moved = Gps(13, 52);
  ASSERT_EQ(moved.size(), 1u);
  EXPECT_EQ(moved[0].audience, Audience::one);
  EXPECT_EQ(moved[0].client, 1u);
  const std::vector<Sent> later = Pass(Milliseconds{3000});
  ASSERT_EQ(later.size(), 1u);
  EXPECT_EQ(later[0].client, 2u);
  client_ = 2;
  Ask(0, 0);
  EXPECT_EQ(ToldWithin(Milliseconds{10'000}), 0u);
  EXPECT_EQ(Gps(13, 51).size(), 1u) << "the other one is told on";
}

TEST_F(VehicleTest, WhoIsGoneOrShutsDownIsNotTold) {
  Ask(2, 0);
  model_.Forget(client_);
  EXPECT_TRUE(Gps(13, 52).empty());
  Ask(4, 1);
  client_ = 2;
  Handle(encode::REQU_SHUTDOWN());
  EXPECT_EQ(ToldWithin(Milliseconds{1000}), 1u) << "another one has";
  client_ = 1;
  Handle(encode::REQU_SHUTDOWN());
  EXPECT_EQ(ToldWithin(Milliseconds{10'000}), 0u);
}

// ---- GPS records

TEST_F(VehicleTest, AGpsRecordMovesTheVehicle) {
  EXPECT_TRUE(Gps(13.43122, 48.5665).empty());
  EXPECT_NEAR(state().vehicle.position.longitude, 13.43122, 1e-9);
  EXPECT_NEAR(state().vehicle.position.latitude, 48.5665, 1e-9);
  EXPECT_NE(Ask(1, 0)[0].find("<CTY>Passau<*><SPD>0<*><HDG>180<*>"), std::string::npos);
}

TEST_F(VehicleTest, TwoRecordsGiveASpeedAndAHeading) {
  Gps(13.4, 52.5);
  Pass(Milliseconds{2000});
  Gps(13.4004, 52.5);
  EXPECT_NEAR(state().vehicle.speed, 13.5, 0.1);
  EXPECT_NEAR(state().vehicle.heading, 90, 0.1);
  EXPECT_NE(Ask(1, 0)[0].find("<SPD>49<*><HDG>90<*>"), std::string::npos);
  Pass(Milliseconds{1000});
  Gps(-80, 40);
  EXPECT_EQ(state().vehicle.speed, 70) << "a jump is no drive";
  Gps(-80, 40);
  EXPECT_EQ(state().vehicle.speed, 0) << "two at the same time";
}

TEST_F(VehicleTest, HeadingsAreRoundedWithinTheCircle) {
  MoveVehicle(state(), {{13, 52}, 0, 359.7}, *std::make_unique<Replies>());
  EXPECT_NE(PositionInfo(state()).find("<HDG>0<*>"), std::string::npos);
}

TEST_F(VehicleTest, RecordsOffTheEarthAreIgnored) {
  const Position before = state().vehicle.position;
  for (const auto& [longitude, latitude] : {std::pair{18'000'001, 0},
                                            {-18'000'001, 0},
                                            {0, 9'000'001},
                                            {0, -9'000'001},
                                            {kMin, kMin},
                                            {kMax, kMax}}) {
    EXPECT_TRUE(Handle(GpsRecord(longitude, latitude)).empty());
    EXPECT_EQ(DistanceMetres(state().vehicle.position, before), 0);
  }
  Handle(GpsRecord(18'000'000, -9'000'000));
  EXPECT_EQ(state().vehicle.position.longitude, 180);
  EXPECT_EQ(state().vehicle.position.latitude, -90);
}

TEST_F(VehicleTest, RecordsThatAreTooShortAreIgnored) {
  const Block whole = GpsRecord(1'300'000, 4'800'000);
  for (std::size_t size = 4; size < 24; ++size) {
    const auto end = whole.begin() + static_cast<std::ptrdiff_t>(size);
    EXPECT_TRUE(Handle(Block(whole.begin(), end)).empty());
    EXPECT_EQ(state().vehicle.position.longitude, 13.41053) << size;
  }
  Handle(Block(whole.begin(), whole.begin() + 24));
  EXPECT_EQ(state().vehicle.position.longitude, 13) << "nothing need follow the position";
}

TEST_F(VehicleTest, DemoModeGoesBeforeTheSensors) {
  DemoOn(13.43122, 48.5665);
  Gps(10, 50);
  EXPECT_EQ(state().vehicle.position.longitude, 13.43122);
  Handle(encode::REQU_SET_DEMO_MODE(2, 0, 0));
  Gps(10, 50);
  EXPECT_EQ(state().vehicle.position.longitude, 10);
}

TEST_F(VehicleTest, RequestsCutShortAreAnswered) {
  HandleCutShort(model_, encode::REQU_VEH_LOC_INFO_DETAILS(1, 3), now_);
  HandleCutShort(model_, encode::REQU_VEH_LOC_INFO_DETAILS(4, 3), now_);
  HandleCutShort(model_, GpsRecord(1'300'000, 4'800'000), now_);
}

}  // namespace
}  // namespace ventrik::bench
