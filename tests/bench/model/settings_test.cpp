// SPDX-License-Identifier: Apache-2.0
#include "bench/model/settings.h"

#include <limits>

#include "tests/bench/model/sent_text.h"

namespace ventrik::bench {
namespace {

constexpr std::int32_t kHuge = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kTiny = std::numeric_limits<std::int32_t>::min();

class SettingsTest : public ModelFixture {
 protected:
  template <class Request>
  Lines Answers(const Request& request) {
    return SentLines(Handle(request));
  }
};

TEST_F(SettingsTest, Language) {
  const Lines french = {"all: INFO_LANGUAGE_INFO language=7 number=2"};
  EXPECT_EQ(Answers(encode::REQU_SET_LANGUAGE(7, 2)), french);
  for (const std::int32_t unknown : {0, 27, -1, kHuge, kTiny}) {
    EXPECT_EQ(Answers(encode::REQU_SET_LANGUAGE(unknown, 5)), french) << unknown;
  }
  EXPECT_EQ(Answers(encode::REQU_SET_LANGUAGE(26, kTiny)),
            (Lines{"all: INFO_LANGUAGE_INFO language=26 number=-2147483648"}));
}

TEST_F(SettingsTest, MeasurementSystem) {
  for (const std::int32_t system : {2, 4, 8}) {
    const Lines told = {"all: INFO_MEASUREMENT_SYSTEM measurementSystem=" + std::to_string(system)};
    EXPECT_EQ(Answers(encode::REQU_SET_MEASUREMENT_SYSTEM(system)), told);
    for (const std::int32_t unknown : {1, 0, 3, 16, kHuge, kTiny}) {
      EXPECT_EQ(Answers(encode::REQU_SET_MEASUREMENT_SYSTEM(unknown)), told) << unknown;
    }
  }
}

TEST_F(SettingsTest, SpeedWarnings) {
  const Lines warned = {"all: INFO_VEH_SPEED_MODE mode=1 speed=500"};
  EXPECT_EQ(Answers(encode::REQU_SET_VEH_SPEED_MODE(1, 500)), warned);
  EXPECT_EQ(Answers(encode::REQU_SET_VEH_SPEED_MODE(1, 501)), warned);
  EXPECT_EQ(Answers(encode::REQU_SET_VEH_SPEED_MODE(1, -1)), warned);
  EXPECT_EQ(Answers(encode::REQU_SET_VEH_SPEED_MODE(2, 50)), warned);
  EXPECT_EQ(Answers(encode::REQU_SET_VEH_SPEED_MODE(kTiny, kHuge)), warned);
  EXPECT_EQ(Answers(encode::REQU_SET_VEH_SPEED_MODE(0, 50)),
            (Lines{"all: INFO_VEH_SPEED_MODE mode=0 speed=50"}));
}

TEST_F(SettingsTest, SafetyCameras) {
  EXPECT_EQ(Answers(encode::REQU_SET_SAFETY_CAMERA_MODE(0)),
            (Lines{"all: INFO_SAFETY_CAMERA_MODE mode=0"}));
  EXPECT_EQ(Answers(encode::REQU_SET_SAFETY_CAMERA_MODE(2)),
            (Lines{"all: INFO_SAFETY_CAMERA_MODE mode=0"}));
  EXPECT_EQ(Answers(encode::REQU_SET_SAFETY_CAMERA_MODE(1)),
            (Lines{"all: INFO_SAFETY_CAMERA_MODE mode=1"}));
}

TEST_F(SettingsTest, SafetyCameraAudioIsValidIfItCanBeRead) {
  EXPECT_EQ(Answers(encode::REQU_SET_SAFETY_CAMERA_AUDIO_MODE("<SCA>beep<*>")),
            (Lines{"all: INFO_SAFETY_CAMERA_AUDIO_MODE inputEIS='<SCA>beep<*>' state=1"}));
  EXPECT_EQ(Answers(encode::REQU_SET_SAFETY_CAMERA_AUDIO_MODE("beep")),
            (Lines{"INFO_SAFETY_CAMERA_AUDIO_MODE inputEIS='beep' state=2"}));
  EXPECT_EQ(Answers(encode::REQU_SET_SAFETY_CAMERA_AUDIO_MODE("")),
            (Lines{"INFO_SAFETY_CAMERA_AUDIO_MODE inputEIS='' state=2"}));
  EXPECT_EQ(state().settings.safetyCameraAudio, "<SCA>beep<*>");
}

TEST_F(SettingsTest, VolumeTellsTheLevelThatHolds) {
  EXPECT_EQ(Answers(encode::REQU_SET_VOLUME_LEVEL("loud")),
            (Lines{"all: INFO_REQU_SET_VOLUME_LEVEL text='<VOL>50<*>'"}));
  const Lines set = {"all: INFO_REQU_SET_VOLUME_LEVEL text='<VOL>7<*>'"};
  EXPECT_EQ(Answers(encode::REQU_SET_VOLUME_LEVEL("<VOL>7<*>")), set);
  EXPECT_EQ(Answers(encode::REQU_SET_VOLUME_LEVEL("")), set);
}

TEST_F(SettingsTest, WhatHasNoAnswerIsKept) {
  EXPECT_EQ(Answers(encode::REQU_SET_DATA_CONNECTION_AVAILABLE(1, "<APN>a<*>")), Lines{});
  EXPECT_EQ(Answers(encode::REQU_SET_DATA_CONNECTION_INFO("<NET>lte<*>")), Lines{});
  EXPECT_EQ(Answers(encode::REQU_USER_INPUT("<KEY>ok<*>")), Lines{});
  EXPECT_EQ(Answers(encode::SAVE_VOLTH_LOG(3)), Lines{});
  EXPECT_EQ(state().settings.dataConnectionAvailable, 1);
  EXPECT_EQ(state().settings.dataConnection, "<APN>a<*>");
  EXPECT_EQ(state().settings.dataConnectionInfo, "<NET>lte<*>");
  EXPECT_EQ(state().settings.userInput, "<KEY>ok<*>");
}

TEST_F(SettingsTest, LongTextsAreNotSet) {
  const std::string tag = "<VOL>";
  const std::string longest = tag + std::string(kMaxSettingText - tag.size(), 'x');
  Handle(encode::REQU_SET_VOLUME_LEVEL(longest));
  EXPECT_EQ(state().settings.volume, longest);
  for (const std::size_t more : {std::size_t{1}, std::size_t{700'000}}) {
    const std::string text = longest + std::string(more, 'y');
    Handle(encode::REQU_SET_DATA_CONNECTION_AVAILABLE(1, text));
    Handle(encode::REQU_SET_DATA_CONNECTION_INFO(text));
    Handle(encode::REQU_USER_INPUT(text));
    EXPECT_EQ(Answers(encode::REQU_SET_VOLUME_LEVEL(text)),
              (Lines{"all: INFO_REQU_SET_VOLUME_LEVEL text='" + longest + "'"}));
    const Lines invalid = Answers(encode::REQU_SET_SAFETY_CAMERA_AUDIO_MODE(text));
    ASSERT_EQ(invalid.size(), 1u);
    EXPECT_EQ(invalid[0], "INFO_SAFETY_CAMERA_AUDIO_MODE inputEIS='" +
                              (more == 1 ? text : std::string()) + "' state=2");
  }
  EXPECT_EQ(state().settings.dataConnectionAvailable, 0);
  EXPECT_EQ(state().settings.dataConnection, "");
  EXPECT_EQ(state().settings.dataConnectionInfo, "");
  EXPECT_EQ(state().settings.userInput, "");
  EXPECT_EQ(state().settings.safetyCameraAudio, "");
}

TEST_F(SettingsTest, RequestsCutShortAreAnsweredWithWhatHolds) {
  for (const auto& answer : HandleEveryPrefix(encode::REQU_SET_LANGUAGE(7, 2))) {
    ASSERT_EQ(answer.size(), 1u);
    const std::int32_t language = answer[0].Number("language");
    EXPECT_TRUE(language == 3 || language == 7) << language;
  }
  for (const auto& answer : HandleEveryPrefix(encode::REQU_SET_VEH_SPEED_MODE(1, 60))) {
    EXPECT_EQ(answer.size(), 1u);
  }
  for (const auto& answer : HandleEveryPrefix(encode::REQU_SET_MEASUREMENT_SYSTEM(2))) {
    EXPECT_EQ(answer.size(), 1u);
  }
  for (const auto& answer : HandleEveryPrefix(encode::REQU_SET_SAFETY_CAMERA_MODE(0))) {
    EXPECT_EQ(answer.size(), 1u);
  }
  for (const auto& answer : HandleEveryPrefix(encode::REQU_SET_VOLUME_LEVEL("<VOL>7<*>"))) {
    EXPECT_EQ(answer.size(), 1u);
  }
  for (const auto& answer :
       HandleEveryPrefix(encode::REQU_SET_SAFETY_CAMERA_AUDIO_MODE("<SCA>beep<*>"))) {
    EXPECT_EQ(answer.size(), 1u);
  }
  HandleEveryPrefix(encode::REQU_SET_DATA_CONNECTION_AVAILABLE(1, "<APN>a<*>"));
  HandleEveryPrefix(encode::REQU_SET_DATA_CONNECTION_INFO("<NET>lte<*>"));
  HandleEveryPrefix(encode::REQU_USER_INPUT("<KEY>ok<*>"));
  EXPECT_EQ(state().settings.userInput, "<KEY>ok<*>");
}

}  // namespace
}  // namespace ventrik::bench
