// SPDX-License-Identifier: Apache-2.0
// The texts of the engine's state, its settings and its audio.
#include <gtest/gtest.h>

#include <string>

#include "tests/messages/printed_text.h"

namespace ventrik::tests {
namespace {

constexpr std::int32_t kLowest = -0x7FFFFFFF - 1;
constexpr std::int32_t kHighest = 0x7FFFFFFF;

TEST(RespInit, ResultOf0IsSuccess) {
  EXPECT_EQ(TextOf(Hex("01000000 00000000")),
            "RESP_INIT> Navigation component is initialized successfully!\n");
}

TEST(RespInit, AnyOtherResultIsShown) {
  EXPECT_EQ(TextOf(Hex("01000000 07000000")), "RESP_INIT> Initialization error! (7)\n");
  EXPECT_EQ(TextOf(Hex("01000000 FDFFFFFF")), "RESP_INIT> Initialization error! (-3)\n");
}

TEST(RespInit, CutResultReadsAs0) {
  EXPECT_EQ(TextOf(Hex("01000000 070000")),
            "RESP_INIT> Navigation component is initialized successfully!\n");
}

TEST(RespShutdown, IsOneLine) {
  EXPECT_EQ(TextOf(Hex("65000000")), "RESP_SHUTDOWN> Shutdown process is finished.\n");
}

TEST(RespRestoreFactory, IsOneLine) {
  EXPECT_EQ(TextOf(Hex("79000000")), "RESP_RESTORE_FACTORY> Response received.\n");
}

TEST(InfoHeartbeat, IsOneLine) {
  EXPECT_EQ(TextOf(Hex("6D020000")), "INFO_HEARTBEAT> Heartbeat\n");
}

TEST(MessagesWithoutFields, WhatFollowsIsNotRead) {
  for (const char* message : {"65000000", "79000000", "6D020000", "13000000"}) {
    EXPECT_EQ(TextOf(Hex(message) + Hex("FFFFFFFF 'text'")), TextOf(Hex(message)));
  }
}

TEST(InfoMeasurementSystem, ShowsItsName) {
  EXPECT_EQ(TextOf(Hex("12000000 04000000")),
            "INFO_MEASUREMENT_SYSTEM> measurementSystem: imperialfeet\n");
  EXPECT_EQ(TextOf(Hex("12000000 08000000")),
            "INFO_MEASUREMENT_SYSTEM> measurementSystem: metric\n");
}

TEST(InfoMeasurementSystem, NumberWithoutANameIsEmpty) {
  for (const std::int32_t system : {0, 3, -1, kLowest, kHighest}) {
    EXPECT_EQ(TextOf(Hex("12000000") + Word(system)),
              "INFO_MEASUREMENT_SYSTEM> measurementSystem: \n");
  }
}

TEST(InfoAppearanceStyle, IsNotRead) {
  EXPECT_EQ(TextOf(Hex("13000000")),
            "INFO_APPEARANCE_STYLE> \033[1;31mNot implemented.\n\033[0;37m");
}

TEST(InfoLanguageInfo, ShowsItsNameAndItsNumber) {
  EXPECT_EQ(TextOf(Hex("59020000 03000000 06000000")),
            "INFO_LANGUAGE_INFO> langInfo: (LangEngGB, 6)\n");
  EXPECT_EQ(TextOf(Hex("59020000 1A000000 FFFFFFFF")),
            "INFO_LANGUAGE_INFO> langInfo: (LangHindi, -1)\n");
}

TEST(InfoLanguageInfo, NumberWithoutANameIsEmpty) {
  for (const std::int32_t language : {27, -1, kLowest, kHighest}) {
    EXPECT_EQ(TextOf(Hex("59020000") + Word(language) + Word(2)),
              "INFO_LANGUAGE_INFO> langInfo: (, 2)\n");
  }
}

TEST(InfoHighwaymodeUpdate, IsEnabledOrDisabled) {
  EXPECT_EQ(TextOf(Hex("5A020000 01000000")), "INFO_HIGHWAYMODE_UPDATE> Enabled\n");
  EXPECT_EQ(TextOf(Hex("5A020000 02000000")), "INFO_HIGHWAYMODE_UPDATE> Disabled\n");
}

TEST(InfoHighwaymodeUpdate, AnyOtherStateIsInvalid) {
  EXPECT_EQ(TextOf(Hex("5A020000 00000000")), "INFO_HIGHWAYMODE_UPDATE> Invalid (0)\n");
  EXPECT_EQ(TextOf(Hex("5A020000 03000000")), "INFO_HIGHWAYMODE_UPDATE> Invalid (3)\n");
  EXPECT_EQ(TextOf(Hex("5A020000 FFFFFFFF")), "INFO_HIGHWAYMODE_UPDATE> Invalid (-1)\n");
}

TEST(InfoVehSpeedMode, ShowsModeAndSpeed) {
  EXPECT_EQ(TextOf(Hex("5C020000 01000000 82000000")),
            "INFO_VEH_SPEED_MODE> mode: valueMode\nINFO_VEH_SPEED_MODE> speed: 130\n");
}

TEST(InfoVehSpeedMode, AnyOtherModeIsOff) {
  for (const std::int32_t mode : {0, 2, -1, kLowest, kHighest}) {
    EXPECT_EQ(TextOf(Hex("5C020000") + Word(mode) + Word(-5)),
              "INFO_VEH_SPEED_MODE> mode: warningsoff\nINFO_VEH_SPEED_MODE> speed: -5\n");
  }
}

TEST(InfoSafetyCameraMode, Only0IsOff) {
  EXPECT_EQ(TextOf(Hex("5E020000 00000000")), "INFO_SAFETY_CAMERA_MODE> safetyWarningsOff\n");
  for (const std::int32_t mode : {1, 2, -1, kLowest, kHighest}) {
    EXPECT_EQ(TextOf(Hex("5E020000") + Word(mode)), "INFO_SAFETY_CAMERA_MODE> safetyWarningsOn\n");
  }
}

const std::string kCameraInput = "INFO_SAFETY_CAMERA_AUDIO_MODE> inputEIS: \"in\"\n";

TEST(InfoSafetyCameraAudioMode, ShowsItsTextAndItsState) {
  EXPECT_EQ(TextOf(Hex("77020000 02000000 01000000 'in' 0000")),
            kCameraInput + "INFO_SAFETY_CAMERA_AUDIO_MODE> valid\n");
  EXPECT_EQ(TextOf(Hex("77020000 02000000 02000000 'in' 0000")),
            kCameraInput + "INFO_SAFETY_CAMERA_AUDIO_MODE> invalid\n");
  EXPECT_EQ(TextOf(Hex("77020000 00000000 01000000")),
            "INFO_SAFETY_CAMERA_AUDIO_MODE> inputEIS: \"\"\n"
            "INFO_SAFETY_CAMERA_AUDIO_MODE> valid\n");
}

TEST(InfoSafetyCameraAudioMode, OddityAnyOtherStateRepeatsTheFirstLine) {
  for (const std::int32_t state : {0, 3, -1, kLowest, kHighest}) {
    EXPECT_EQ(TextOf(Hex("77020000 02000000") + Word(state) + Packed("in")),
              kCameraInput + kCameraInput);
  }
}

TEST(InfoRequSetVolumeLevel, ShowsItsText) {
  EXPECT_EQ(TextOf(Hex("63020000 03000000 'vol' 00")), "INFO_REQU_SET_VOLUME_LEVEL> vol\n");
  EXPECT_EQ(TextOf(Hex("63020000 00000000 'vol' 00")), "INFO_REQU_SET_VOLUME_LEVEL> \n");
}

TEST(InfoPromptReady, ShowsItsSource) {
  const char* const names[] = {"AudioIdle", "AudioAutomatic", "AudioManual", "AudioSafetyCamera"};
  for (std::int32_t source = 0; source < 4; ++source) {
    EXPECT_EQ(TextOf(Hex("F4010000") + Word(source)),
              "INFO_PROMPT_READY> audioSource: " + std::string(names[source]) + "\n");
  }
}

TEST(InfoPromptReady, AnyOtherSourceIsInvalid) {
  for (const std::int32_t source : {4, 5, -1, kLowest, kHighest}) {
    EXPECT_EQ(TextOf(Hex("F4010000") + Word(source)),
              "INFO_PROMPT_READY> audioSource: invalid value\n");
  }
}

TEST(InfoAdaIsEnabled, Only1IsOn) {
  EXPECT_EQ(TextOf(Hex("F7010000 01000000")), "INFO_ADA_IS_ENABLED> isEnabled: on\n");
  for (const std::int32_t enabled : {0, 2, -1, kLowest, kHighest}) {
    EXPECT_EQ(TextOf(Hex("F7010000") + Word(enabled)), "INFO_ADA_IS_ENABLED> isEnabled: off\n");
  }
}

TEST(InfoActiveAudioSrc, ShowsItsSource) {
  EXPECT_EQ(TextOf(Hex("FA010000 00000000")), "INFO_ACTIVE_AUDIO_SRC> audioSource: AudioIdle\n");
  EXPECT_EQ(TextOf(Hex("FA010000 02000000")), "INFO_ACTIVE_AUDIO_SRC> audioSource: AudioManual\n");
}

TEST(InfoActiveAudioSrc, AnyOtherSourceIsInvalid) {
  for (const std::int32_t source : {4, -1, kLowest, kHighest}) {
    EXPECT_EQ(TextOf(Hex("FA010000") + Word(source)),
              "INFO_ACTIVE_AUDIO_SRC> audioSource: invalid value\n");
  }
}

TEST(RespPlayPrompt, ShowsItsStateAsANumber) {
  EXPECT_EQ(TextOf(Hex("FC010000 0B000000 01000000")),
            "RESP_PLAY_PROMPT> prompt: 11\nRESP_PLAY_PROMPT> validState: 1\n");
  EXPECT_EQ(TextOf(Hex("FC010000 FFFFFFFF FEFFFFFF")),
            "RESP_PLAY_PROMPT> prompt: -1\nRESP_PLAY_PROMPT> validState: -2\n");
}

}  // namespace
}  // namespace ventrik::tests
