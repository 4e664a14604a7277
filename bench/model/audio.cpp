// SPDX-License-Identifier: Apache-2.0
#include "bench/model/audio.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "bench/model/engine_state.h"

namespace ventrik::bench {
namespace {

std::int32_t ActiveSource(const AudioState& audio) {
  return audio.phase == PromptPhase::spoken ? audio.prompts.front() : kAudioIdle;
}

MessageFields ActiveSourceFields(const AudioState& audio) {
  return {{"audioSource", ActiveSource(audio)}};
}

MessageFields AdaFields(const AudioState& audio) {
  return {{"isEnabled", YesOrNo(audio.adaIsEnabled)}};
}

// Announces the first prompt that waits, if the one before it is over.
void AnnounceFirst(AudioState& audio, TimePoint now, Replies& out) {
  if (audio.phase != PromptPhase::none || audio.prompts.empty()) return;
  audio.phase = PromptPhase::announced;
  audio.end = now + kPromptPatience;
  out.Notify(INFO_PROMPT_READY, {{"audioSource", audio.prompts.front()}});
}

bool HasRoom(const AudioState& audio) {
  return audio.prompts.size() < kMaxPrompts;
}

// Expects room.
void AddPrompt(AudioState& audio, std::int32_t source, TimePoint now, Replies& out) {
  audio.prompts.push_back(source);
  AnnounceFirst(audio, now, out);
}

// The prompt that is announced or spoken is over.
void EndPrompt(AudioState& audio, Replies& out) {
  const bool wasSpoken = audio.phase == PromptPhase::spoken;
  audio.prompts.pop_front();
  audio.phase = PromptPhase::none;
  if (wasSpoken) out.Notify(INFO_ACTIVE_AUDIO_SRC, ActiveSourceFields(audio));
}

bool IsSwitchedOn(const EngineState& state, std::int32_t source) {
  switch (source) {
    case kAudioAutomatic:
      return state.audio.adaIsEnabled;
    case kAudioManual:
      return true;
    case kAudioSafetyCamera:
      return state.settings.safetyCameraMode != 0;
    default:
      return false;
  }
}

void HandlePromptReady(EngineState& state, const MessageFields& request, TimePoint now,
                       Replies& out) {
  AudioState& audio = state.audio;
  const auto source = Get<std::int32_t>(request, "audioSource");
  if (audio.phase != PromptPhase::announced || audio.prompts.front() != source) {
    out.Answer(INFO_ACTIVE_AUDIO_SRC, ActiveSourceFields(audio));
    return;
  }
  audio.phase = PromptPhase::spoken;
  audio.end = now + kPromptLength;
  audio.lastSpoken = source;
  out.Notify(INFO_ACTIVE_AUDIO_SRC, ActiveSourceFields(audio));
}

void HandlePlayPrompt(EngineState& state, const MessageFields& request, TimePoint now,
                      Replies& out) {
  const auto prompt = Get<std::int32_t>(request, "prompt");
  const bool isValid = prompt >= 1 && prompt <= kPromptCount && HasRoom(state.audio);
  out.Answer(RESP_PLAY_PROMPT, {{"prompt", prompt}, {"validState", YesOrNo(isValid)}});
  if (isValid) AddPrompt(state.audio, kAudioManual, now, out);
}

void HandleSetAda(EngineState& state, const MessageFields& request, TimePoint now, Replies& out) {
  AudioState& audio = state.audio;
  audio.adaIsEnabled = Get<std::int32_t>(request, "onOff") == kYes;
  out.Notify(INFO_ADA_IS_ENABLED, AdaFields(audio));
  if (!audio.adaIsEnabled) DropGuidancePrompts(state, now, out);
}

void HandleCancelAda(EngineState& state, const MessageFields&, TimePoint now, Replies& out) {
  AudioState& audio = state.audio;
  if (audio.phase != PromptPhase::spoken) {
    out.Answer(INFO_ACTIVE_AUDIO_SRC, ActiveSourceFields(audio));
  }
  if (audio.phase != PromptPhase::none) EndPrompt(audio, out);
  AnnounceFirst(audio, now, out);
}

void HandleRepeatAda(EngineState& state, const MessageFields&, TimePoint now, Replies& out) {
  AudioState& audio = state.audio;
  if (audio.lastSpoken && HasRoom(audio)) {
    AddPrompt(audio, *audio.lastSpoken, now, out);
  } else {
    out.Answer(INFO_ACTIVE_AUDIO_SRC, ActiveSourceFields(audio));
  }
}

constexpr HandlerRow kHandlers[] = {
    {REQU_PROMPT_READY, HandlePromptReady}, {REQU_PLAY_PROMPT, HandlePlayPrompt},
    {REQU_SET_ADA, HandleSetAda},           {REQU_CANCEL_ADA, HandleCancelAda},
    {REQU_REPEAT_ADA, HandleRepeatAda},
};

std::optional<TimePoint> NextEnd(const EngineState& state) {
  if (state.audio.phase == PromptPhase::none) return std::nullopt;
  return state.audio.end;
}

void EndWhatIsOver(EngineState& state, TimePoint now, Replies& out) {
  AudioState& audio = state.audio;
  if (audio.phase == PromptPhase::none || audio.end > now) return;
  EndPrompt(audio, out);
  AnnounceFirst(audio, now, out);
}

}  // namespace

void AnnouncePrompt(EngineState& state, std::int32_t audioSource, TimePoint now, Replies& out) {
  if (!IsSwitchedOn(state, audioSource) || !HasRoom(state.audio)) return;
  AddPrompt(state.audio, audioSource, now, out);
}

void DropGuidancePrompts(EngineState& state, TimePoint now, Replies& out) {
  AudioState& audio = state.audio;
  if (audio.phase == PromptPhase::announced && audio.prompts.front() == kAudioAutomatic) {
    EndPrompt(audio, out);
  }
  const auto waiting = audio.prompts.begin() + (audio.phase == PromptPhase::none ? 0 : 1);
  audio.prompts.erase(std::remove(waiting, audio.prompts.end(), kAudioAutomatic),
                      audio.prompts.end());
  AnnounceFirst(audio, now, out);
}

void RestoreAudio(EngineState& state, Replies& out) {
  const AudioState before = std::exchange(state.audio, {});
  if (!before.adaIsEnabled) out.Notify(INFO_ADA_IS_ENABLED, AdaFields(state.audio));
  if (ActiveSource(before) == kAudioIdle) return;
  out.Notify(INFO_ACTIVE_AUDIO_SRC, ActiveSourceFields(state.audio));
}

HandlerRows AudioHandlers() {
  return {std::begin(kHandlers), std::end(kHandlers)};
}

SubjectClock AudioClock() {
  return {NextEnd, EndWhatIsOver};
}

}  // namespace ventrik::bench
