// SPDX-License-Identifier: Apache-2.0
// Delays, the pause, and the ends that a replay is put to. Waits are looked at in the silent pass,
// where none is made: the log then ends in a record that can't be read.
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <future>
#include <thread>

#include "monkey/monkey.h"
#include "replay/batchlog.h"
#include "state/process_state.h"
#include "tests/ipc/cancellable_thread.h"
#include "tests/messages/handling_fixture.h"
#include "tests/replay/replay_fixture.h"

namespace ventrik::tests {
namespace {

using Clock = std::chrono::steady_clock;

constexpr double kAtOnce = 1e9;  // a speed

std::string At(std::uint32_t timestamp) {
  return Record(timestamp, "84030000");
}

class BatchlogWaitingTest : public ReplayTest {
 protected:
  // What is printed about the times of a log.
  Texts Waits(const std::string& log, double speed = 1.0, std::int32_t pauseMinutes = 0) {
    Play(log + kUnreadableRecord, speed, pauseMinutes);
    Texts texts = PrintedTexts();
    EXPECT_GE(texts.size(), 2u);
    texts.resize(texts.size() - std::min<std::size_t>(texts.size(), 2));
    return texts;
  }
};

TEST_F(BatchlogWaitingTest, LongDelaysAreAnnouncedInTheSilentPassToo) {
  EXPECT_EQ(Waits(At(1000) + At(6000) + At(11'001) + At(30'000)),
            (Texts{L"delay 5001 ms  tick ", L"delay 18999 ms  tick "}));
  EXPECT_EQ(server_.TakeEvents(), Events{});
}

TEST_F(BatchlogWaitingTest, SpeedDividesDelays) {
  EXPECT_EQ(Waits(At(0) + At(12'000), 2.0), Texts{L"delay 6000 ms  tick "});
  EXPECT_EQ(Waits(At(0) + At(12'000), 3.0), Texts{});
  EXPECT_EQ(Waits(At(0) + At(3000), 0.5), Texts{L"delay 6000 ms  tick "});
  EXPECT_EQ(Waits(At(0) + At(1), 0.0), Texts{L"delay -1 ms  tick "});
}

TEST_F(BatchlogWaitingTest, DelayCountsFromTheRecordBefore) {
  EXPECT_EQ(Waits(At(20'000) + At(100) + At(6000) + At(10'000) + At(15'101)),
            (Texts{L"delay 5900 ms  tick ", L"delay 5101 ms  tick "}));
}

TEST_F(BatchlogWaitingTest, TimestampGoingBackwardsIsASecondWhateverTheSpeed) {
  const auto start = Clock::now();
  Play(At(3000) + At(2000), kAtOnce);
  EXPECT_GE(Clock::now() - start, std::chrono::seconds(1));
  EXPECT_EQ(PrintedTexts(), (Texts{Unnamed(900, L"0x42"), Unnamed(900, L"0x5b"), kFinished}));
}

TEST_F(BatchlogWaitingTest, LivePassWaitsAsLongAsTheRecordsSay) {
  const auto start = Clock::now();
  Play(At(0) + At(100) + At(300), 2.0);
  EXPECT_GE(Clock::now() - start, std::chrono::milliseconds(150));
}

TEST_F(BatchlogWaitingTest, StopInADelayTakesEffectBehindIt) {
  std::thread person;
  server_.onSend = [&person] {
    if (person.joinable()) return;
    person = std::thread([] {
      std::this_thread::sleep_for(std::chrono::milliseconds(30));
      stopBatchlog = 1;
    });
  };
  const auto start = Clock::now();
  Play(At(0) + At(300) + At(600));
  person.join();
  EXPECT_GE(Clock::now() - start, std::chrono::milliseconds(300));
  EXPECT_EQ(server_.TakeEvents().size(), 1u);
  EXPECT_EQ(PrintedTexts().back(), kStopped);
}

TEST_F(BatchlogWaitingTest, PauseComesInTheSilentPassOnceTheLimitIsPassed) {
  Type("xxcc");
  Play(At(1000) + At(61'000) + At(61'001) + At(99'999), kAtOnce, 1);
  const Texts texts = PrintedTexts();
  ASSERT_EQ(texts.size(), 6u);
  EXPECT_EQ(texts[0], kPressC);
  EXPECT_EQ(LeftInInput(), "c");
  EXPECT_EQ(server_.TakeEvents().size(), 4u);
}

TEST_F(BatchlogWaitingTest, PauseComesBehindTheRecordThatPassesTheLimit) {
  Type("c");
  EXPECT_EQ(
      Waits(At(0) + At(60'000) + At(66'000) + At(72'000), 1.0, 1),
      (Texts{L"delay 60000 ms  tick ", L"delay 6000 ms  tick ", kPressC, L"delay 6000 ms  tick "}));
}

TEST_F(BatchlogWaitingTest, NoPauseUpToTheLimit) {
  Type("c");
  Play(At(1000) + At(121'000), kAtOnce, 2);
  EXPECT_EQ(LeftInInput(), "c");
}

TEST_F(BatchlogWaitingTest, NoPauseIfNoneIsAskedFor) {
  Type("c");
  Play(At(1000) + At(4'000'000'000), kAtOnce, 0);
  EXPECT_EQ(LeftInInput(), "c");
}

TEST_F(BatchlogWaitingTest, NegativeMinutesMoveTheLimitBeforeTheFirstRecord) {
  Type("c");
  EXPECT_EQ(Waits(At(60'001) + At(60'002), 1.0, -1), Texts{kPressC});
}

TEST_F(BatchlogWaitingTest, WhileTheMonkeyRunsThePauseStaysArmed) {
  Type("c");
  Monkey::Instance().monkeyRunning = 1;
  server_.onSend = [] { Monkey::Instance().monkeyRunning = 0; };
  Play(At(0) + At(60'001) + At(60'002), kAtOnce, 1);
  const Texts texts = PrintedTexts();
  ASSERT_EQ(texts.size(), 5u);
  EXPECT_EQ(texts[1], kPressC);
}

TEST_F(BatchlogWaitingTest, StopEndsTheReplayBehindTheRecord) {
  server_.onSend = [] { stopBatchlog = 1; };
  Play(At(9) + At(9) + At(9));
  EXPECT_EQ(server_.TakeEvents().size(), 1u);
  EXPECT_EQ(PrintedTexts().back(), kStopped);
  EXPECT_EQ(livePhase, 0);
  EXPECT_EQ(stopBatchlog, 1);
}

TEST_F(BatchlogWaitingTest, StopBeforeAReplayDoesntCount) {
  stopBatchlog = 1;
  Play(At(9));
  EXPECT_EQ(server_.TakeEvents().size(), 1u);
  EXPECT_EQ(PrintedTexts().back(), kFinished);
}

TEST_F(BatchlogWaitingTest, StopAtTheLastRecordIsAStop) {
  server_.onSend = [] { stopBatchlog = 1; };
  Play(At(9));
  EXPECT_EQ(PrintedTexts().back(), kStopped);
}

TEST_F(BatchlogWaitingTest, StopWithAnErrorBehindItIsAStop) {
  console_.onPrint = [](const std::wstring& text) {
    if (text.rfind(kUnreadable, 0) == 0) stopBatchlog = 1;
  };
  Play(kUnreadableRecord);
  EXPECT_EQ(PrintedTexts().back(), kStopped);
}

TEST_F(BatchlogWaitingTest, CancelledInADelayItLeavesThePhasesAndNothingElse) {
  const int before = CountDescriptors();
  std::atomic<int> told = 0;
  std::promise<void> waits;
  console_.onPrint = [&](const std::wstring& text) {
    if (text.rfind(L"delay ", 0) == 0 && ++told == 2) waits.set_value();
  };
  {
    CancellableThread replay([this] { Play(At(0) + At(3'600'000) + At(3'600'000)); });
    waits.get_future().wait();
    EXPECT_TRUE(replay.CancelAndJoin());
  }
  EXPECT_EQ(livePhase, 1);
  EXPECT_EQ(holdOutput, 0);
  EXPECT_TRUE(LockIsFree());
  EXPECT_EQ(CountDescriptors(), before);
  const Texts texts = PrintedTexts();
  ASSERT_GE(texts.size(), 2u);
  EXPECT_EQ(texts[0], L"delay 3600000 ms  tick ");
  EXPECT_EQ(texts[1], Unnamed(900, L"0x5b"));
}

TEST_F(BatchlogWaitingTest, CancelledInThePauseItLeavesNothing) {
  std::promise<void> asks;
  console_.onPrint = [&asks](const std::wstring& text) {
    if (text == kPressC) asks.set_value();
  };
  const int before = CountDescriptors();
  CancellableThread replay([this] { Play(At(0) + At(60'001), kAtOnce, 1); });
  asks.get_future().wait();
  EXPECT_TRUE(replay.CancelAndJoin());
  EXPECT_EQ(CountDescriptors(), before);
  EXPECT_TRUE(LockIsFree());
}

TEST_F(BatchlogWaitingTest, CancelledInASendItReleasesTheLock) {
  std::promise<void> sends;
  server_.onSend = [&sends] {
    sends.set_value();
    for (;;) sleep(1);
  };
  const int before = CountDescriptors();
  CancellableThread replay([this] { Play(At(0) + At(1)); });
  sends.get_future().wait();
  EXPECT_FALSE(LockIsFree());
  EXPECT_TRUE(replay.CancelAndJoin());
  EXPECT_TRUE(LockIsFree());
  EXPECT_EQ(holdOutput, 0);
  EXPECT_EQ(livePhase, 1);
  EXPECT_EQ(CountDescriptors(), before);
}

TEST_F(BatchlogWaitingTest, SilentPassWithoutAnEndCanBeCancelled) {
  std::promise<void> begins;
  console_.onPrint = [&begins](const std::wstring&) { begins.set_value(); };
  CancellableThread replay([this] { RunBatchlog(app_, "/dev/zero", 1.0, 0); });
  begins.get_future().wait();  // for "The log is obsoleted"
  EXPECT_TRUE(replay.CancelAndJoin());
  EXPECT_TRUE(LockIsFree());
  EXPECT_EQ(holdOutput, 0);
}

TEST_F(BatchlogWaitingTest, SilentPassWithoutAnEndCanBeStopped) {
  console_.onPrint = [](const std::wstring&) { stopBatchlog = 1; };
  RunBatchlog(app_, "/dev/zero", 1.0, 0);
  EXPECT_EQ(PrintedTexts().back(), kStopped);
}

}  // namespace
}  // namespace ventrik::tests
