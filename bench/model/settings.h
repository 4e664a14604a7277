// SPDX-License-Identifier: Apache-2.0
// Language, units, speed and camera warnings, volume, and what the engine is told about its
// surroundings:
//
// | Request                            | Answer, to everyone                                 |
// |------------------------------------|-----------------------------------------------------|
// | REQU_SET_LANGUAGE                  | INFO_LANGUAGE_INFO                                  |
// | REQU_SET_MEASUREMENT_SYSTEM        | INFO_MEASUREMENT_SYSTEM                             |
// | REQU_SET_VEH_SPEED_MODE            | INFO_VEH_SPEED_MODE                                 |
// | REQU_SET_SAFETY_CAMERA_MODE        | INFO_SAFETY_CAMERA_MODE                             |
// | REQU_SET_VOLUME_LEVEL              | INFO_REQU_SET_VOLUME_LEVEL                          |
// | REQU_SET_SAFETY_CAMERA_AUDIO_MODE  | INFO_SAFETY_CAMERA_AUDIO_MODE, state valid; invalid |
// |                                    | goes to the requester alone                         |
// | REQU_SET_DATA_CONNECTION_AVAILABLE | none: there is no message for it; kept              |
// | REQU_SET_DATA_CONNECTION_INFO      | the same                                            |
// | REQU_USER_INPUT                    | the same                                            |
// | SAVE_VOLTH_LOG                     | none: there is no such log                          |
//
// An answer tells what holds from now on. A value that can't be set changes nothing, so its answer
// tells what held before.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "bench/model/subject.h"

namespace ventrik::bench {

inline constexpr std::size_t kMaxSettingText = 4096;  // bytes; a longer text is not set
inline constexpr std::int32_t kMaxWarnedSpeed = 500;  // in the units of the measurement system

// The numbers are those of messages/word_parsers.h, the texts as the tester sent them.
struct SettingsState {
  std::int32_t language = 3;  // British English
  std::int32_t languageNumber = 0;
  std::int32_t measurementSystem = 8;  // metric
  std::int32_t speedMode = 0;          // no warnings
  std::int32_t warnedSpeed = 0;
  std::int32_t safetyCameraMode = 1;  // warnings
  std::string safetyCameraAudio;
  std::string volume = "<VOL>50<*>";

  std::int32_t dataConnectionAvailable = 0;
  std::string dataConnection;
  std::string dataConnectionInfo;
  std::string userInput;
};

// Sets everything back and tells everyone of the settings that this changed.
void RestoreSettings(EngineState& state, Replies& out);

HandlerRows SettingsHandlers();

}  // namespace ventrik::bench
