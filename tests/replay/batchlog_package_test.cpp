// SPDX-License-Identifier: Apache-2.0
// Recordings with a package of engine state. Nearly all records are of one moment, so that none
// waits.
#include <atomic>
#include <chrono>
#include <thread>

#include "replay/batchlog.h"
#include "state/process_state.h"
#include "tests/replay/replay_fixture.h"

namespace ventrik::tests {
namespace {

const std::string kBefore = Record(9, "83030000");
const std::string kOpen = Record(9, "33230000");   // 9011
const std::string kPiece = Record(9, "34230000");  // 9012
const std::string kWithin = Record(9, "84030000");
const std::string kEnd = Record(9, "35230000");  // 9013
const std::string kAfter = Record(9, "85030000");

class BatchlogPackageTest : public ReplayTest {
 protected:
  BatchlogPackageTest() {
    server_.onSend = [this] { ++sent_; };
  }
  ~BatchlogPackageTest() override {
    if (engine_.joinable()) engine_.join();
  }

  // Once the replay waits for the engine, notes what has been sent and does `act`.
  template <class Act>
  void WhenWaiting(Act act) {
    engine_ = std::thread([this, act] {
      const auto hang = std::chrono::steady_clock::now() + std::chrono::seconds(20);
      while (!(packagePhase && livePhase)) {
        if (std::chrono::steady_clock::now() > hang) return;
        std::this_thread::yield();
      }
      std::this_thread::sleep_for(std::chrono::milliseconds(30));  // to go wrong in
      sentWhenWaiting_ = sent_.load();
      act();
    });
  }

  std::atomic<int> sent_ = 0;
  std::atomic<int> sentWhenWaiting_ = -1;

 private:
  std::thread engine_;
};

TEST_F(BatchlogPackageTest, IsSentFirstAndTheRestWhenTheEngineHasLoadedIt) {
  WhenWaiting([] { packagePhase = 0; });
  Play(kOpen + kPiece + kWithin + kPiece + kEnd + kAfter);
  EXPECT_EQ(server_.TakeEvents(),
            (Events{"send 9011", "send 9012", "send 9012", "send 900", "send 901"}));
  EXPECT_EQ(sentWhenWaiting_, 3);
  EXPECT_EQ(PrintedTexts().back(), kFinished);
  EXPECT_EQ(packagePhase, 0);
  EXPECT_EQ(livePhase, 0);
}

TEST_F(BatchlogPackageTest, ItsEndIsNotSent) {
  WhenWaiting([] { packagePhase = 0; });
  Play(kOpen + kEnd);
  EXPECT_EQ(server_.TakeEvents(), Events{"send 9011"});
}

TEST_F(BatchlogPackageTest, PositionRunsOnOverTheWayBack) {
  WhenWaiting([] { packagePhase = 0; });
  Play(kOpen + kWithin + kEnd + kAfter);
  EXPECT_EQ(PrintedTexts(), (Texts{Unnamed(9011, L"0x10"), Unnamed(900, L"0x5b"),
                                   Unnamed(901, L"0x8d"), kFinished}));
}

TEST_F(BatchlogPackageTest, RecordsBeforeItAreNeverPlayed) {
  WhenWaiting([] { packagePhase = 0; });
  Play(kBefore + kOpen + kEnd + kAfter);
  EXPECT_EQ(server_.TakeEvents(), (Events{"send 9011", "send 901"}));
}

TEST_F(BatchlogPackageTest, ReplayResumesBehindTheRecordThatOpensIt) {
  server_.onSend = [] { stopBatchlog = 1; };
  Play(kBefore + kOpen + kPiece);
  EXPECT_EQ(packageResume, 25u + 24u);
}

TEST_F(BatchlogPackageTest, LoadedBeforeItsEndTheRecordingStartsFromTheTop) {
  server_.onSend = [this] {
    if (++sent_ == 2) packagePhase = 0;
  };
  Play(kBefore + kOpen + kPiece + kWithin + kEnd + kAfter);
  EXPECT_EQ(server_.TakeEvents(),
            (Events{"send 9011", "send 9012", "send 899", "send 900", "send 901"}));
}

TEST_F(BatchlogPackageTest, PiecesAreSentAtTheirPace) {
  const auto start = std::chrono::steady_clock::now();
  Play(Record(0, "33230000") + Record(200, "34230000"));
  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(200));
  EXPECT_EQ(server_.TakeEvents(), (Events{"send 9011", "send 9012"}));
}

TEST_F(BatchlogPackageTest, WithoutAnEndNothingOfTheRecordingIsPlayed) {
  Play(kOpen + kWithin + kPiece + kAfter);
  EXPECT_EQ(server_.TakeEvents(), (Events{"send 9011", "send 9012"}));
  EXPECT_EQ(PrintedTexts().back(), kFinished);
  EXPECT_EQ(packagePhase, 0);
}

TEST_F(BatchlogPackageTest, WaitingForTheEngineCanBeStopped) {
  WhenWaiting([] { stopBatchlog = 1; });
  Play(kOpen + kPiece + kEnd + kAfter);
  EXPECT_EQ(server_.TakeEvents(), (Events{"send 9011", "send 9012"}));
  EXPECT_EQ(sentWhenWaiting_, 2);
  EXPECT_EQ(PrintedTexts().back(), kStopped);
  EXPECT_EQ(packagePhase, 0);
  EXPECT_EQ(livePhase, 0);
}

TEST_F(BatchlogPackageTest, EndWithoutAPackageIsNone) {
  Play(kBefore + kEnd + kAfter);
  EXPECT_EQ(server_.TakeEvents(), (Events{"send 899", "send 901"}));
}

TEST_F(BatchlogPackageTest, OddityThePhasesOfACancelledReplayGoOn) {
  packagePhase = 1;
  Play(kBefore + kPiece + kAfter);
  EXPECT_EQ(server_.TakeEvents(), Events{"send 9012"});
  EXPECT_EQ(packagePhase, 0);
  livePhase = 1;
  console_.TakeTexts();
  Play(kOpen + kAfter);
  EXPECT_EQ(PrintedTexts(), (Texts{Unnamed(901, L"0x29"), kFinished}));
  EXPECT_EQ(livePhase, 0);
}

TEST_F(BatchlogPackageTest, ErrorWithinItClearsThePhases) {
  Play(kOpen + "0000000900000001gg\n");
  EXPECT_EQ(server_.TakeEvents(), Events{"send 9011"});
  EXPECT_EQ(PrintedTexts(), (Texts{Unnamed(9011, L"0x10"), kUnreadable + L"0x2b)", kFinished}));
  EXPECT_EQ(packagePhase, 0);
}

}  // namespace
}  // namespace ventrik::tests
