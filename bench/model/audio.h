// SPDX-License-Identifier: Apache-2.0
// Prompts: what the engine says aloud, one at a time. It speaks only when a tester lets it:
//
//   INFO_PROMPT_READY(source)  ->  REQU_PROMPT_READY(source)  ->  INFO_ACTIVE_AUDIO_SRC(source)
//     ... the prompt is spoken ...  INFO_ACTIVE_AUDIO_SRC(idle), and the next one is announced
//
// A prompt that nobody lets play in time is dropped, without a word, for the next one.
//
// | Request           | Answer                                                               |
// |-------------------|----------------------------------------------------------------------|
// | REQU_PROMPT_READY | INFO_ACTIVE_AUDIO_SRC: to everyone if the announced prompt begins;   |
// |                   | if no prompt of that source is announced, the requester is told what |
// |                   | is active                                                            |
// | REQU_PLAY_PROMPT  | RESP_PLAY_PROMPT; a known prompt is announced as AudioManual         |
// | REQU_SET_ADA      | INFO_ADA_IS_ENABLED to everyone; off drops the guidance's prompts    |
// |                   | that are not being spoken yet                                        |
// | REQU_CANCEL_ADA   | INFO_ACTIVE_AUDIO_SRC(idle): the prompt that is announced or spoken  |
// |                   | ends; to everyone if it was spoken, otherwise to the requester       |
// | REQU_REPEAT_ADA   | INFO_PROMPT_READY in its turn, of the prompt spoken last; if there   |
// |                   | has been none, or too many wait, the requester is told what is       |
// |                   | active                                                               |
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>

#include "bench/model/subject.h"

namespace ventrik::bench {

// Audio sources, as on the wire.
inline constexpr std::int32_t kAudioIdle = 0;
inline constexpr std::int32_t kAudioAutomatic = 1;  // guidance
inline constexpr std::int32_t kAudioManual = 2;     // what a person asked for
inline constexpr std::int32_t kAudioSafetyCamera = 3;

inline constexpr Milliseconds kPromptPatience{5000};  // how long a prompt stays announced
inline constexpr Milliseconds kPromptLength{2000};
inline constexpr std::size_t kMaxPrompts = 8;     // announced, spoken and waiting together
inline constexpr std::int32_t kPromptCount = 16;  // REQU_PLAY_PROMPT knows the numbers from 1 on

enum class PromptPhase { none, announced, spoken };

struct AudioState {
  bool adaIsEnabled = true;
  std::deque<std::int32_t> prompts;  // their sources; the first is in `phase`, the others wait
  PromptPhase phase = PromptPhase::none;
  TimePoint end{};                         // of the phase, unless it is none
  std::optional<std::int32_t> lastSpoken;  // its source
};

// Announces a prompt of that source, at once or when those before it are over. Nothing happens if
// the source is none or is switched off (ADA for guidance, the camera mode for cameras), or too
// many wait.
void AnnouncePrompt(EngineState& state, std::int32_t audioSource, TimePoint now, Replies& out);

// Guidance falls silent, but for what it is saying: what it has announced and what waits is
// dropped.
void DropGuidancePrompts(EngineState& state, TimePoint now, Replies& out);

// Ends all prompts, sets everything back and tells everyone of what this changed.
void RestoreAudio(EngineState& state, Replies& out);

HandlerRows AudioHandlers();
SubjectClock AudioClock();

}  // namespace ventrik::bench
