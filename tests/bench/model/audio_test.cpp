// SPDX-License-Identifier: Apache-2.0
#include "bench/model/audio.h"

#include <limits>

#include "tests/bench/model/sent_text.h"

namespace ventrik::bench {
namespace {

const char kAutomaticReady[] = "all: INFO_PROMPT_READY audioSource=1";
const char kManualReady[] = "all: INFO_PROMPT_READY audioSource=2";
const char kCameraReady[] = "all: INFO_PROMPT_READY audioSource=3";
const char kAutomaticActive[] = "all: INFO_ACTIVE_AUDIO_SRC audioSource=1";
const char kManualActive[] = "all: INFO_ACTIVE_AUDIO_SRC audioSource=2";
const char kIdle[] = "all: INFO_ACTIVE_AUDIO_SRC audioSource=0";
const char kIdleForMe[] = "INFO_ACTIVE_AUDIO_SRC audioSource=0";
const char kValidPrompt[] = "RESP_PLAY_PROMPT prompt=1 validState=1";

class AudioTest : public ModelFixture {
 protected:
  template <class Request>
  Lines Answers(const Request& request) {
    return SentLines(Handle(request));
  }

  Lines Announce(std::int32_t source) {
    Replies out;
    AnnouncePrompt(state(), source, now_, out);
    return SentLines(Decode(out.Take()));
  }

  Lines PassLines(Milliseconds time) { return SentLines(Pass(time)); }
};

TEST_F(AudioTest, APromptIsAnnouncedSpokenAndOver) {
  EXPECT_EQ(Announce(kAudioAutomatic), Lines{kAutomaticReady});
  EXPECT_EQ(PassLines(kPromptPatience / 2), Lines{});
  EXPECT_EQ(Answers(encode::REQU_PROMPT_READY(kAudioAutomatic)), Lines{kAutomaticActive});
  EXPECT_EQ(PassLines(kPromptLength - Milliseconds{1}), Lines{});
  EXPECT_EQ(PassLines(Milliseconds{1}), Lines{kIdle});
  EXPECT_FALSE(model_.NextTick());
}

TEST_F(AudioTest, APromptThatNobodyLetsPlayIsDropped) {
  Announce(kAudioAutomatic);
  EXPECT_EQ(PassLines(kPromptPatience), Lines{});
  EXPECT_FALSE(model_.NextTick());
  EXPECT_EQ(Answers(encode::REQU_PROMPT_READY(kAudioAutomatic)), Lines{kIdleForMe});
  EXPECT_EQ(Answers(encode::REQU_REPEAT_ADA()), Lines{kIdleForMe}) << "it has never been spoken";
}

TEST_F(AudioTest, PromptsWaitForTheirTurn) {
  EXPECT_EQ(Announce(kAudioAutomatic), Lines{kAutomaticReady});
  EXPECT_EQ(Announce(kAudioSafetyCamera), Lines{});
  EXPECT_EQ(Answers(encode::REQU_PLAY_PROMPT(1)), Lines{kValidPrompt});
  Handle(encode::REQU_PROMPT_READY(kAudioAutomatic));
  EXPECT_EQ(PassLines(kPromptLength), (Lines{kIdle, kCameraReady}));
  EXPECT_EQ(PassLines(kPromptPatience), Lines{kManualReady}) << "nobody let the camera's play";
  EXPECT_EQ(Answers(encode::REQU_PROMPT_READY(kAudioManual)), Lines{kManualActive});
}

TEST_F(AudioTest, OnlyTheAnnouncedSourceIsLetPlay) {
  Announce(kAudioAutomatic);
  for (const std::int32_t other : {kAudioIdle, kAudioManual, kAudioSafetyCamera, 4, -1,
                                   std::numeric_limits<std::int32_t>::max()}) {
    EXPECT_EQ(Answers(encode::REQU_PROMPT_READY(other)), Lines{kIdleForMe}) << other;
  }
  EXPECT_EQ(Answers(encode::REQU_PROMPT_READY(kAudioAutomatic)), Lines{kAutomaticActive});
  EXPECT_EQ(Answers(encode::REQU_PROMPT_READY(kAudioAutomatic)),
            Lines{"INFO_ACTIVE_AUDIO_SRC audioSource=1"})
      << "a second tester's word starts nothing";
  EXPECT_EQ(PassLines(kPromptLength), Lines{kIdle});
}

TEST_F(AudioTest, PlayPromptKnowsItsNumbers) {
  EXPECT_EQ(Answers(encode::REQU_PLAY_PROMPT(1)), (Lines{kValidPrompt, kManualReady}));
  EXPECT_EQ(Handle(encode::REQU_PLAY_PROMPT(kPromptCount))[0].Number("validState"), 1);
  for (const std::int32_t unknown :
       {0, kPromptCount + 1, -1, std::numeric_limits<std::int32_t>::max(),
        std::numeric_limits<std::int32_t>::min()}) {
    EXPECT_EQ(Answers(encode::REQU_PLAY_PROMPT(unknown)),
              Lines{"RESP_PLAY_PROMPT prompt=" + std::to_string(unknown) + " validState=2"});
  }
  EXPECT_EQ(state().audio.prompts.size(), 2u);
}

TEST_F(AudioTest, NotMoreThanSomePromptsWait) {
  for (std::size_t i = 0; i < kMaxPrompts; ++i) {
    EXPECT_EQ(Handle(encode::REQU_PLAY_PROMPT(1))[0].Number("validState"), 1);
  }
  EXPECT_EQ(Answers(encode::REQU_PLAY_PROMPT(1)), Lines{"RESP_PLAY_PROMPT prompt=1 validState=2"});
  EXPECT_EQ(Announce(kAudioAutomatic), Lines{});
  Handle(encode::REQU_PROMPT_READY(kAudioManual));
  EXPECT_EQ(Answers(encode::REQU_REPEAT_ADA()), Lines{"INFO_ACTIVE_AUDIO_SRC audioSource=2"});
  EXPECT_EQ(state().audio.prompts.size(), kMaxPrompts);
  PassLines(kPromptLength + kMaxPrompts * kPromptPatience);
  EXPECT_TRUE(state().audio.prompts.empty());
}

TEST_F(AudioTest, SourcesThatAreOffOrUnknownAreNotAnnounced) {
  EXPECT_EQ(Answers(encode::REQU_SET_ADA(2)), Lines{"all: INFO_ADA_IS_ENABLED isEnabled=2"});
  EXPECT_EQ(Announce(kAudioAutomatic), Lines{});
  Handle(encode::REQU_SET_SAFETY_CAMERA_MODE(0));
  EXPECT_EQ(Announce(kAudioSafetyCamera), Lines{});
  for (const std::int32_t unknown : {kAudioIdle, 4, -1}) EXPECT_EQ(Announce(unknown), Lines{});
  EXPECT_FALSE(model_.NextTick());
  EXPECT_EQ(Answers(encode::REQU_SET_ADA(1)), Lines{"all: INFO_ADA_IS_ENABLED isEnabled=1"});
  EXPECT_EQ(Announce(kAudioAutomatic), Lines{kAutomaticReady});
}

TEST_F(AudioTest, SwitchingGuidanceOffDropsWhatItHasNotSaid) {
  Announce(kAudioAutomatic);
  Announce(kAudioAutomatic);
  Announce(kAudioSafetyCamera);
  Announce(kAudioAutomatic);
  EXPECT_EQ(Answers(encode::REQU_SET_ADA(2)),
            (Lines{"all: INFO_ADA_IS_ENABLED isEnabled=2", kCameraReady}));
  EXPECT_EQ(state().audio.prompts.size(), 1u);
}

TEST_F(AudioTest, SwitchingGuidanceOffLetsItEndItsPrompt) {
  Announce(kAudioAutomatic);
  Announce(kAudioAutomatic);
  Handle(encode::REQU_PROMPT_READY(kAudioAutomatic));
  EXPECT_EQ(Answers(encode::REQU_SET_ADA(2)), Lines{"all: INFO_ADA_IS_ENABLED isEnabled=2"});
  EXPECT_EQ(PassLines(kPromptLength), Lines{kIdle});
  EXPECT_FALSE(model_.NextTick());
}

TEST_F(AudioTest, CancelEndsWhatIsSpoken) {
  Announce(kAudioAutomatic);
  Announce(kAudioSafetyCamera);
  Handle(encode::REQU_PROMPT_READY(kAudioAutomatic));
  EXPECT_EQ(Answers(encode::REQU_CANCEL_ADA()), (Lines{kIdle, kCameraReady}));
  EXPECT_EQ(Answers(encode::REQU_CANCEL_ADA()), Lines{kIdleForMe}) << "it was only announced";
  EXPECT_FALSE(model_.NextTick());
  EXPECT_EQ(Answers(encode::REQU_CANCEL_ADA()), Lines{kIdleForMe});
}

TEST_F(AudioTest, RepeatAnnouncesTheLastPromptAgain) {
  EXPECT_EQ(Answers(encode::REQU_REPEAT_ADA()), Lines{kIdleForMe});
  Announce(kAudioAutomatic);
  Handle(encode::REQU_PROMPT_READY(kAudioAutomatic));
  PassLines(kPromptLength);
  Handle(encode::REQU_SET_ADA(2));
  EXPECT_EQ(Answers(encode::REQU_REPEAT_ADA()), Lines{kAutomaticReady}) << "it was asked for";
  EXPECT_EQ(Answers(encode::REQU_PROMPT_READY(kAudioAutomatic)), Lines{kAutomaticActive});
  EXPECT_EQ(Answers(encode::REQU_REPEAT_ADA()), Lines{}) << "waits for its turn";
  EXPECT_EQ(PassLines(kPromptLength), (Lines{kIdle, kAutomaticReady}));
}

TEST_F(AudioTest, RequestsCutShortAreAnswered) {
  for (const auto& answer : HandleEveryPrefix(encode::REQU_PROMPT_READY(kAudioManual))) {
    EXPECT_EQ(answer.size(), 1u);
  }
  for (const auto& answer : HandleEveryPrefix(encode::REQU_SET_ADA(2))) {
    EXPECT_EQ(answer.size(), 1u);
  }
  const auto played = HandleEveryPrefix(encode::REQU_PLAY_PROMPT(1));
  EXPECT_EQ(SentLines(played.front()), Lines{"RESP_PLAY_PROMPT prompt=0 validState=2"});
  for (const auto& answer : played) EXPECT_FALSE(answer.empty());
}

}  // namespace
}  // namespace ventrik::bench
