// SPDX-License-Identifier: Apache-2.0
#include "bench/model/system.h"

#include "tests/bench/model/sent_text.h"

namespace ventrik::bench {
namespace {

class SystemTest : public ModelFixture {
 protected:
  template <class Request>
  Lines Answers(const Request& request) {
    return SentLines(Handle(request));
  }
};

TEST_F(SystemTest, RestoringWhatIsNewChangesNothing) {
  EXPECT_EQ(Answers(encode::REQU_RESTORE_FACTORY()), (Lines{"RESP_RESTORE_FACTORY"}));
}

TEST_F(SystemTest, RestoringTellsTheSettingsThatChanged) {
  Handle(encode::REQU_SET_LANGUAGE(7, 2));
  Handle(encode::REQU_SET_SAFETY_CAMERA_MODE(0));
  Handle(encode::REQU_SET_SAFETY_CAMERA_AUDIO_MODE("<SCA>beep<*>"));
  Handle(encode::REQU_SET_VOLUME_LEVEL("<VOL>7<*>"));
  Handle(encode::REQU_SET_VEH_SPEED_MODE(1, 60));
  Handle(encode::REQU_SET_MEASUREMENT_SYSTEM(8));  // as it was
  Handle(encode::REQU_SET_ADA(2));
  EXPECT_EQ(Answers(encode::REQU_RESTORE_FACTORY()),
            (Lines{"RESP_RESTORE_FACTORY", "all: INFO_LANGUAGE_INFO language=3 number=0",
                   "all: INFO_VEH_SPEED_MODE mode=0 speed=0", "all: INFO_SAFETY_CAMERA_MODE mode=1",
                   "all: INFO_REQU_SET_VOLUME_LEVEL text='<VOL>50<*>'",
                   "all: INFO_SAFETY_CAMERA_AUDIO_MODE inputEIS='' state=1",
                   "all: INFO_ADA_IS_ENABLED isEnabled=1"}));
  EXPECT_EQ(Answers(encode::REQU_RESTORE_FACTORY()), (Lines{"RESP_RESTORE_FACTORY"}));
}

TEST_F(SystemTest, RestoringEndsWhatIsSpokenAndDropsTheRest) {
  Handle(encode::REQU_PLAY_PROMPT(1));
  Handle(encode::REQU_PLAY_PROMPT(2));
  Handle(encode::REQU_PROMPT_READY(kAudioManual));
  EXPECT_EQ(Answers(encode::REQU_RESTORE_FACTORY()),
            (Lines{"RESP_RESTORE_FACTORY", "all: INFO_ACTIVE_AUDIO_SRC audioSource=0"}));
  EXPECT_EQ(SentLines(Pass(Milliseconds{60'000})), Lines{});
}

TEST_F(SystemTest, RestoringForgetsSourcesAndPlacesTheVehicle) {
  Handle(encode::REQU_ADD_DATA_SRC("<SRC>usb<*>"));
  const Position home = state().vehicle.position;
  state().vehicle.position = {11.5, 48.1};
  state().pictureFolder = "/pictures";
  Handle(encode::REQU_RESTORE_FACTORY());
  EXPECT_TRUE(state().dataSources.empty());
  EXPECT_EQ(state().vehicle.position.longitude, home.longitude);
  EXPECT_EQ(state().vehicle.position.latitude, home.latitude);
  EXPECT_EQ(state().pictureFolder, "/pictures");
}

TEST_F(SystemTest, RestoringTellsOfTraffic) {
  Handle(
      encode::TMC_DATA("EVENT htmc=1 loc=518 extent=1 dir=0 bidi=0 age=15 cc=11 ltn=1 new=1 "
                       "event_1=126"));
  ASSERT_EQ(state().traffic.events.size(), 1u);
  Handle(encode::REQU_SET_TMC_ROUTE_MODE(1, 5));
  Handle(encode::REQU_TMC_TUNING_MODE(2, "101.1"));
  EXPECT_EQ(Answers(encode::REQU_RESTORE_FACTORY()),
            (Lines{"RESP_RESTORE_FACTORY", "all: INFO_TMC_INFO_CHANGED tmcInfoChanged=0",
                   "all: INFO_TMC_ROUTE_MODE mode=0 delayThreshold=0",
                   "all: INFO_TMC_TUNING_MODE tmcTuningMode=1 tuningParameters=''"}));
  Handle(encode::REQU_SET_TMC_MODE(2, ""));
  EXPECT_EQ(Answers(encode::REQU_RESTORE_FACTORY()),
            (Lines{"RESP_RESTORE_FACTORY", "all: INFO_TMC_MODE mode=1"}));
}

TEST_F(SystemTest, RestoringEndsDemoModeAndTheSurfacesOfMaps) {
  Handle(encode::REQU_SET_DEMO_MODE(1, 13.4, 48.6));
  state().overlays.surfaces.push_back({"sid", std::string(kDefaultMap), now_ + kSurfaceLife});
  const Lines told = Answers(encode::REQU_RESTORE_FACTORY());
  ASSERT_EQ(told.size(), 3u);
  EXPECT_EQ(told[0], "RESP_RESTORE_FACTORY");
  EXPECT_EQ(told[1], "all: INFO_DEMO_MODE_STATE state=2");
  EXPECT_EQ(told[2].substr(0, 37), "all: INFO_MAP_OVERLAY_SURFACE_INVALID");
  EXPECT_TRUE(state().overlays.surfaces.empty());
}

TEST_F(SystemTest, RestoringEndsAnUpdate) {
  Handle(encode::REQU_CHECK_FOR_UPDATE("/map-v7.pkg"));
  Pass(Milliseconds{1000});
  EXPECT_EQ(Answers(encode::REQU_RESTORE_FACTORY()),
            (Lines{"RESP_RESTORE_FACTORY",
                   "all: INFO_UPDATE_PROGRESS updatePath='/map-v7.pkg' percent=0"}));
  EXPECT_EQ(SentLines(Pass(Milliseconds{10'000})), Lines{});
  EXPECT_EQ(state().updates.installed, 1);
}

TEST_F(SystemTest, RestoringLetsALoadingPackageEnd) {
  Handle(Block{0x34, 0x23, 0, 0});  // a piece
  ASSERT_TRUE(state().packages.loadedAt);
  EXPECT_EQ(Answers(encode::REQU_RESTORE_FACTORY()), (Lines{"RESP_RESTORE_FACTORY"}));
  EXPECT_TRUE(state().packages.loadedAt);
}

TEST_F(SystemTest, TheDataVersionTellsOfAnUpdate) {
  const auto version = [this] {
    return Handle(encode::REQU_GET_DB_VERSION())[0].Text("dbVersion");
  };
  const std::string before = version();
  state().updates.installed = 7;
  EXPECT_EQ(version(), before + UpdateSuffix(state().updates));
  EXPECT_NE(version(), before);
  Handle(encode::REQU_RESTORE_FACTORY());
  EXPECT_EQ(version(), before);
}

TEST_F(SystemTest, NothingIsUnderWayAfterRestoring) {
  Handle(encode::REQU_PLAY_PROMPT(1));
  ASSERT_TRUE(model_.NextTick());
  Handle(encode::REQU_RESTORE_FACTORY());
  EXPECT_FALSE(model_.NextTick());
}

TEST_F(SystemTest, InitIsAnsweredAlone) {
  Handle(encode::REQU_SET_LANGUAGE(7, 2));
  EXPECT_EQ(Answers(encode::REQU_INIT()), (Lines{"RESP_INIT result=0"}));
}

}  // namespace
}  // namespace ventrik::bench
