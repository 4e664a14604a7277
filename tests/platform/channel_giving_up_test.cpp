// SPDX-License-Identifier: Apache-2.0
// Senders and receivers that stop waiting: time-outs, signals, cancellation.
#include <pthread.h>
#include <signal.h>
#include <unistd.h>

#include "tests/platform/channel_fixture.h"

namespace ventrik::tests {
namespace {

TEST_F(ChannelTest, SendTimesOutAndTheNextMessageGoesThrough) {
  const int coid = ConnectToReceiver(0, [this](int chid) {
    const int id = MsgReceive(chid, nullptr, 0, nullptr);
    step_.Await();
    const bool nobodyWaits = MsgReply(id, 1, nullptr, 0) == -1 && errno == ESRCH;
    MsgReply(MsgReceive(chid, nullptr, 0, nullptr), nobodyWaits ? 2 : -2, nullptr, 0);
    return 0;
  });
  LimitNextCall(50 * kMillisecond);
  EXPECT_EQ(SendText(coid, "slow"), -1);
  EXPECT_EQ(errno, ETIMEDOUT);
  step_.Notify();
  EXPECT_EQ(SendText(coid, "next"), 2);
}

TEST_F(ChannelTest, SendTimesOutWhileNobodyReceives) {
  const int coid = ConnectToReceiver(0, [this](int) { return step_.Await(); });
  LimitNextCall(50 * kMillisecond);
  EXPECT_EQ(SendText(coid, std::string(1000000, 'x')), -1);
  EXPECT_EQ(errno, ETIMEDOUT);
}

TEST_F(ChannelTest, LimitCoversOneCallOnly) {
  const int chid = ChannelCreate(0);
  LimitNextCall(20 * kMillisecond);
  EXPECT_EQ(MsgReceive(chid, nullptr, 0, nullptr), -1);
  EXPECT_EQ(errno, ETIMEDOUT);
  pthread_t sender = 0;
  pthread_create(
      &sender, nullptr,
      [](void* channel) -> void* {
        usleep(60000);
        const int coid = ConnectAttach(0, 0, *static_cast<int*>(channel), 0, 0);
        MsgSend(coid, "x", 1, nullptr, 0);
        return nullptr;
      },
      const_cast<int*>(&chid));
  const int id = MsgReceive(chid, nullptr, 0, nullptr);  // waits as long as it takes
  EXPECT_GT(id, 0);
  MsgReply(id, 0, nullptr, 0);
  pthread_join(sender, nullptr);
  ChannelDestroy(chid);
}

TEST_F(ChannelTest, LimitForReceivingDoesNotTouchASend) {
  const int coid = ConnectToReceiver(0, [](int chid) {
    const int id = MsgReceive(chid, nullptr, 0, nullptr);
    usleep(50000);
    return MsgReply(id, 3, nullptr, 0);
  });
  const std::uint64_t limit = kMillisecond;
  TimerTimeout(CLOCK_MONOTONIC, _NTO_TIMEOUT_RECEIVE, nullptr, &limit, nullptr);
  EXPECT_EQ(SendText(coid, "x"), 3);
}

TEST_F(ChannelTest, UnblockPulseTellsThatASenderGaveUp) {
  const int coid = ConnectToReceiver(_NTO_CHF_UNBLOCK, [](int chid) {
    const int id = MsgReceive(chid, nullptr, 0, nullptr);
    _pulse pulse = {};
    const int result = MsgReceive(chid, &pulse, sizeof pulse, nullptr);
    return result == 0 && pulse.code == _PULSE_CODE_UNBLOCK && pulse.value == id ? 0 : 1;
  });
  LimitNextCall(50 * kMillisecond);
  EXPECT_EQ(SendText(coid, "x"), -1);
  EXPECT_EQ(receiver_->Wait(), 0);
}

TEST_F(ChannelTest, SignalHandlerInterruptsASend) {
  struct sigaction action = {};
  action.sa_handler = [](int) {};
  sigaction(SIGUSR1, &action, nullptr);
  const pid_t sender = getpid();
  const int coid = ConnectToReceiver(0, [sender](int chid) {
    MsgReceive(chid, nullptr, 0, nullptr);
    // Again and again: one signal can come a moment before the sender waits.
    while (getppid() == sender) {
      kill(sender, SIGUSR1);
      usleep(20'000);
    }
    return 0;
  });
  EXPECT_EQ(SendText(coid, "x"), -1);
  EXPECT_EQ(errno, EINTR);
}

struct SendingThread {
  int coid;
  bool answered = false;
};

void* SendAndNoteHowItEnded(void* argument) {
  auto* self = static_cast<SendingThread*>(argument);
  struct Noting {
    SendingThread* self;
    ~Noting() { self->answered = platform::CancelledSendWasAnswered(); }
  };
  const Noting noting{self};
  MsgSend(self->coid, "from a thread", 13, nullptr, 0);
  return nullptr;
}

TEST_F(ChannelTest, CancelledSenderLeavesNoHalfMessage) {
  const int coid = ConnectToReceiver(0, [this](int chid) {
    const int id = MsgReceive(chid, nullptr, 0, nullptr);
    done_.Notify();
    step_.Await();
    const bool nobodyWaits = MsgReply(id, 1, nullptr, 0) == -1;
    char text[16] = {};
    const int next = MsgReceive(chid, text, sizeof text, nullptr);
    MsgReply(next, nobodyWaits && std::string(text) == "next" ? 2 : -2, nullptr, 0);
    return 0;
  });
  SendingThread sending{coid};
  pthread_t thread = 0;
  pthread_create(&thread, nullptr, SendAndNoteHowItEnded, &sending);
  done_.Await();
  pthread_cancel(thread);
  void* result = nullptr;
  pthread_join(thread, &result);
  EXPECT_EQ(result, PTHREAD_CANCELED);
  EXPECT_FALSE(sending.answered);
  step_.Notify();
  EXPECT_EQ(SendText(coid, "next"), 2);
}

TEST_F(ChannelTest, CancelledReceiverLosesNoMessage) {
  // The receiver is cancelled over and over while messages come in; each one must be answered by
  // one receiver or the next.
  const int chid = ChannelCreate(0);
  struct Receiving {
    int chid;
    pthread_t thread;
  } receiving{chid, 0};
  const auto receive = [](void* argument) -> void* {
    const int channel = static_cast<Receiving*>(argument)->chid;
    for (;;) {
      const int id = MsgReceive(channel, nullptr, 0, nullptr);
      if (id < 0) return nullptr;
      MsgReply(id, 1, nullptr, 0);
    }
  };
  int coid = ConnectAttach(0, 0, chid, 0, 0);
  pthread_t sender = 0;
  pthread_create(
      &sender, nullptr,
      [](void* connection) -> void* {
        for (int i = 0; i < 400; ++i) {
          LimitNextCall(5000 * kMillisecond);
          if (MsgSend(*static_cast<int*>(connection), "x", 1, nullptr, 0) != 1) return nullptr;
        }
        return connection;
      },
      &coid);
  void* everythingAnswered = nullptr;
  bool ended = false;
  // Each receiver has a little more time than the one before, or a slow machine would never let one
  // get as far as to a message.
  for (unsigned i = 0; !ended; ++i) {
    pthread_create(&receiving.thread, nullptr, receive, &receiving);
    usleep(500 + i);
    pthread_cancel(receiving.thread);
    pthread_join(receiving.thread, nullptr);
    ended = pthread_tryjoin_np(sender, &everythingAnswered) == 0;
  }
  EXPECT_NE(everythingAnswered, nullptr);
  ChannelDestroy(chid);
}

TEST_F(ChannelTest, DestroyingAChannelWakesReceiversAndSenders) {
  int chid = ChannelCreate(0);
  struct Result {
    int id = 0;
    int error = 0;
  };
  pthread_t receiver = 0;
  const auto receive = [](void* channel) -> void* {
    auto* result = new Result;
    // The first message is taken and left unanswered, so that its sender waits for the answer.
    MsgReceive(*static_cast<int*>(channel), nullptr, 0, nullptr);
    result->id = MsgReceive(*static_cast<int*>(channel), nullptr, 0, nullptr);
    result->error = errno;
    return result;
  };
  pthread_create(&receiver, nullptr, receive, &chid);
  int coid = ConnectAttach(0, 0, chid, 0, 0);
  pthread_t sender = 0;
  pthread_create(
      &sender, nullptr,
      [](void* connection) -> void* {
        auto* result = new Result;
        result->id = static_cast<int>(MsgSend(*static_cast<int*>(connection), "x", 1, nullptr, 0));
        result->error = errno;
        return result;
      },
      &coid);
  usleep(50000);
  EXPECT_EQ(ChannelDestroy(chid), 0);
  for (const pthread_t thread : {receiver, sender}) {
    void* joined = nullptr;
    pthread_join(thread, &joined);
    const std::unique_ptr<Result> result(static_cast<Result*>(joined));
    EXPECT_EQ(result->id, -1);
    EXPECT_EQ(result->error, ESRCH);
  }
  ConnectDetach(coid);
}

}  // namespace
}  // namespace ventrik::tests
