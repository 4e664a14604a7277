// SPDX-License-Identifier: Apache-2.0
#include "bench/outbox.h"

#include <gtest/gtest.h>

#include <string>

namespace ventrik::bench {
namespace {

using std::chrono::milliseconds;

// A clock that only the test moves.
class OutboxTest : public ::testing::Test {
 protected:
  bool Post(IpcPeer& client, const std::string& text, int after = 0) {
    return outbox_.Post(&client, Block(text.begin(), text.end()), now_ + milliseconds(after));
  }
  void Repeat(IpcPeer& client, const std::string& text, int period) {
    outbox_.Repeat(&client, Block(text.begin(), text.end()), now_ + milliseconds(period),
                   milliseconds(period));
  }
  void Pass(int time) { now_ += milliseconds(time); }

  // Takes everything that is due: "a:text" for a message, "a:end" for a closed record.
  std::string TakeAll() {
    std::string all;
    while (const auto task = outbox_.TakeDue(now_)) {
      heard_ = task->heard;
      all += all.empty() ? "" : " ";
      all += task->client == &a_ ? "a:" : "b:";
      all += task->block ? std::string(task->block->begin(), task->block->end()) : "end";
    }
    return all;
  }

  // Milliseconds to the next task; -1 for none.
  int Wait() const {
    const auto next = outbox_.NextDue();
    if (!next) return -1;
    return static_cast<int>(std::chrono::duration_cast<milliseconds>(*next - now_).count());
  }

  Outbox outbox_;
  IpcPeer a_ = {};
  IpcPeer b_ = {};
  TimePoint now_{std::chrono::hours(1)};
  std::uint64_t heard_ = 0;  // of the task taken last
};

TEST_F(OutboxTest, IsEmptyAtFirst) {
  EXPECT_EQ(TakeAll(), "");
  EXPECT_EQ(Wait(), -1);
}

TEST_F(OutboxTest, GivesWhatIsDueInTheOrderOfPosting) {
  Post(a_, "1");
  Post(b_, "2");
  Post(a_, "3");
  EXPECT_EQ(Wait(), 0);
  EXPECT_EQ(TakeAll(), "a:1 b:2 a:3");
  EXPECT_EQ(Wait(), -1);
}

TEST_F(OutboxTest, GivesWhatHasBeenDueLongestFirst) {
  Post(a_, "late", 300);
  Post(b_, "early", 100);
  Post(a_, "middle", 200);
  Pass(300);
  EXPECT_EQ(TakeAll(), "b:early a:middle a:late");
}

TEST_F(OutboxTest, HoldsBackWhatIsNotDue) {
  Post(a_, "later", 50);
  Post(a_, "now");
  EXPECT_EQ(TakeAll(), "a:now");
  EXPECT_EQ(Wait(), 50);
  Pass(49);
  EXPECT_EQ(TakeAll(), "");
  Pass(1);
  EXPECT_EQ(TakeAll(), "a:later");
}

TEST_F(OutboxTest, KeepsTheOrderOfMessagesWithOneDelay) {
  for (const char* text : {"1", "2", "3"}) Post(a_, text, 10);
  Pass(10);
  EXPECT_EQ(TakeAll(), "a:1 a:2 a:3");
}

TEST_F(OutboxTest, TakesEmptyMessages) {
  EXPECT_TRUE(Post(a_, ""));
  EXPECT_EQ(TakeAll(), "a:");
}

TEST_F(OutboxTest, RepeatsAfterEachPeriod) {
  Repeat(a_, "beat", 100);
  EXPECT_EQ(TakeAll(), "");
  for (int beat = 0; beat < 3; ++beat) {
    EXPECT_EQ(Wait(), 100);
    Pass(100);
    EXPECT_EQ(TakeAll(), "a:beat");
  }
}

TEST_F(OutboxTest, DoesNotMakeUpForMissedRepeats) {
  Repeat(a_, "beat", 100);
  Pass(1050);
  EXPECT_EQ(TakeAll(), "a:beat");
  EXPECT_EQ(Wait(), 100);
}

TEST_F(OutboxTest, RepeatsOneMessageForAClient) {
  Repeat(a_, "beat", 100);
  Repeat(a_, "other", 10);
  Repeat(b_, "beat", 100);
  Pass(100);
  EXPECT_EQ(TakeAll(), "a:beat b:beat");
}

TEST_F(OutboxTest, RepeatsGoBehindWhatIsDueAtTheSameTime) {
  Repeat(a_, "beat", 100);
  Post(a_, "message", 100);
  Pass(100);
  EXPECT_EQ(TakeAll(), "a:message a:beat");
}

TEST_F(OutboxTest, DropsWhatIsForAMuteClientUntilItIsHeard) {
  Post(a_, "1");
  EXPECT_EQ(TakeAll(), "a:1");
  Post(a_, "2");
  Post(b_, "3");
  Repeat(a_, "beat", 100);
  outbox_.Mute(&a_, heard_);
  EXPECT_FALSE(Post(a_, "4"));
  Pass(200);
  EXPECT_EQ(TakeAll(), "b:3");
  EXPECT_EQ(Wait(), -1);

  outbox_.Heard(&a_);
  EXPECT_TRUE(Post(a_, "5"));
  EXPECT_EQ(TakeAll(), "a:beat a:5");
}

TEST_F(OutboxTest, DoesNotMuteAClientThatWasHeardMeanwhile) {
  Post(a_, "1");
  EXPECT_EQ(TakeAll(), "a:1");
  outbox_.Heard(&a_);
  Post(a_, "2");
  outbox_.Mute(&a_, heard_);
  EXPECT_EQ(TakeAll(), "a:2");
}

TEST_F(OutboxTest, ClosesARetiredClientAfterItsLastMessage) {
  Post(a_, "now");
  Post(a_, "later", 100);
  Repeat(a_, "beat", 10);
  outbox_.Retire(&a_, true);
  EXPECT_FALSE(Post(a_, "new"));
  EXPECT_EQ(TakeAll(), "a:now");
  EXPECT_EQ(Wait(), 100);
  Pass(100);
  EXPECT_EQ(TakeAll(), "a:later a:end");
  EXPECT_EQ(Wait(), -1);
}

TEST_F(OutboxTest, ClosesAClientThatIsGoneAtOnce) {
  Post(a_, "1");
  Post(b_, "2");
  outbox_.Retire(&a_, false);
  EXPECT_EQ(TakeAll(), "a:end b:2");
}

TEST_F(OutboxTest, ClosesARetiredClientThatTurnsMute) {
  Post(a_, "1");
  Post(a_, "2", 100);
  outbox_.Retire(&a_, true);
  EXPECT_EQ(TakeAll(), "a:1");
  outbox_.Mute(&a_, heard_);
  EXPECT_EQ(TakeAll(), "a:end");
}

TEST_F(OutboxTest, KnowsNothingOfAClosedClient) {
  outbox_.Retire(&a_, true);
  EXPECT_EQ(TakeAll(), "a:end");
  EXPECT_TRUE(Post(a_, "the same place in memory"));
  EXPECT_EQ(TakeAll(), "a:the same place in memory");
}

TEST_F(OutboxTest, HoldsNoMoreThanItsLimitForAClient) {
  const std::string half(kMaxWaitingBytes / 2 - kMessageCost, 'x');
  EXPECT_TRUE(Post(a_, half));
  EXPECT_TRUE(Post(a_, half));
  EXPECT_FALSE(Post(a_, "x"));
  EXPECT_TRUE(Post(b_, "x"));
  outbox_.TakeDue(now_);
  EXPECT_TRUE(Post(a_, "x"));
}

TEST_F(OutboxTest, WhatIsTakenOutMakesRoomForAsMuch) {
  const std::string half(kMaxWaitingBytes / 2 - kMessageCost, 'x');
  for (int i = 0; i < 10; ++i) {
    EXPECT_TRUE(Post(a_, half)) << i;
    EXPECT_TRUE(Post(a_, half)) << i;
    outbox_.TakeDue(now_);
    outbox_.TakeDue(now_);
  }
}

TEST_F(OutboxTest, ClosesClientsInTheOrderInWhichTheyBecameKnown) {
  Post(b_, "1");
  Post(a_, "2");
  outbox_.Retire(&a_, false);
  outbox_.Retire(&b_, false);
  EXPECT_EQ(TakeAll(), "b:end a:end");
}

TEST_F(OutboxTest, TellsHowManyAMuteClientLoses) {
  Post(a_, "1");
  EXPECT_EQ(TakeAll(), "a:1");
  Post(a_, "2");
  Post(a_, "3", 1000);
  Post(b_, "4");
  EXPECT_EQ(outbox_.Mute(&a_, heard_ + 1), 0u);
  EXPECT_EQ(outbox_.Mute(&a_, heard_), 2u);
}

TEST_F(OutboxTest, EmptyMessagesHaveTheirLimitToo) {
  std::size_t posted = 0;
  while (posted <= kMaxWaitingBytes / kMessageCost && Post(a_, "")) ++posted;
  EXPECT_EQ(posted, kMaxWaitingBytes / kMessageCost);
}

TEST_F(OutboxTest, ClearTellsWhatIsStillToBeClosed) {
  Post(a_, "1");
  Post(b_, "2");
  outbox_.Retire(&b_, true);
  EXPECT_EQ(outbox_.Clear(), std::vector<IpcPeer*>{&b_});
  EXPECT_EQ(TakeAll(), "");
}

}  // namespace
}  // namespace ventrik::bench
