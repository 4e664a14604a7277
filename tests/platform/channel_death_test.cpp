// SPDX-License-Identifier: Apache-2.0
// Processes that die in the middle of an exchange, and names that they leave behind.
#include <unistd.h>

#include <filesystem>
#include <thread>

#include "tests/platform/channel_fixture.h"

namespace ventrik::tests {
namespace {

using Body = std::function<int(int chid)>;

TEST_F(ChannelTest, ReceiverThatDiesBeforeItReceivesFailsTheSend) {
  const int coid = ConnectToReceiver(0, [this](int) { return step_.Await(); });
  std::thread killer([this] {
    usleep(50000);
    receiver_->Kill();
  });
  EXPECT_EQ(SendText(coid, "x"), -1);
  EXPECT_EQ(errno, ESRCH);
  killer.join();
}

TEST_F(ChannelTest, ReceiverThatDiesWithTheMessageInHandFailsTheSend) {
  const int coid = ConnectToReceiver(0, [](int chid) {
    MsgReceive(chid, nullptr, 0, nullptr);
    return 0;  // and gone
  });
  EXPECT_EQ(SendText(coid, "x"), -1);
  EXPECT_EQ(errno, ESRCH);
}

TEST_F(ChannelTest, ReceiverThatDiesInTheMiddleOfThePayloadFailsTheSend) {
  const int coid = ConnectToReceiver(0, [](int chid) {
    std::string some(100000, '\0');
    const int id = MsgReceive(chid, nullptr, 0, nullptr);
    MsgRead(id, some.data(), some.size(), 0);
    return 0;
  });
  EXPECT_EQ(SendText(coid, std::string(5000000, 'x')), -1);
  EXPECT_EQ(errno, ESRCH);
}

TEST_F(ChannelTest, EverySendToADeadProcessFailsAtOnce) {
  const int coid = ConnectToReceiver(0, AnswerLengths);
  EXPECT_EQ(SendText(coid, "alive"), 5);
  receiver_->Kill();
  const int before = CountDescriptors();
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(SendText(coid, "dead"), -1);
    EXPECT_EQ(errno, ESRCH);
  }
  EXPECT_LE(CountDescriptors(), before);
}

TEST_F(ChannelTest, ConnectingToADeadProcessFails) {
  ConnectToReceiver(0, AnswerLengths);
  const pid_t pid = receiver_->pid();
  receiver_->Kill();
  EXPECT_EQ(ConnectAttach(0, pid, receiverChannel_, 0, 0), -1);
  EXPECT_EQ(errno, ESRCH);
  EXPECT_EQ(ConnectAttach(0, getpid(), 9999, 0, 0), -1);
  EXPECT_EQ(errno, ESRCH);
}

// The sender is a child here: it dies while this process receives.
class DyingSenderTest : public ChannelTest {
 protected:
  // A process that connects to this one's channel, sends `text` and is then at our mercy.
  void StartSender(const std::string& text) {
    sender_ = std::make_unique<ChildProcess>([this, text] {
      const int chid = step_.Await();
      const int coid = ConnectAttach(0, getppid(), chid, 0, 0);
      return static_cast<int>(SendText(coid, text));
    });
  }

  int MakeChannel(unsigned flags) {
    const int chid = ChannelCreate(flags);
    step_.Notify(chid);
    return chid;
  }

  std::unique_ptr<ChildProcess> sender_;
};

TEST_F(DyingSenderTest, AnswerToADeadSenderFails) {
  StartSender("x");
  const int chid = MakeChannel(0);
  const int id = MsgReceive(chid, nullptr, 0, nullptr);
  sender_->Kill();
  EXPECT_EQ(MsgReply(id, 0, nullptr, 0), -1);
  EXPECT_EQ(errno, ESRCH);
  ChannelDestroy(chid);
}

TEST_F(DyingSenderTest, ReadingFromASenderThatDiesEnds) {
  StartSender(std::string(5000000, 'x'));
  const int chid = MakeChannel(0);
  const int id = MsgReceive(chid, nullptr, 0, nullptr);
  sender_->Stop();
  std::thread killer([this] {
    usleep(50000);
    sender_->Kill();
  });
  std::string all(5000000, '\0');
  EXPECT_EQ(MsgRead(id, all.data(), all.size(), 0), -1);
  EXPECT_EQ(errno, ESRCH);
  killer.join();
  ChannelDestroy(chid);
}

TEST_F(DyingSenderTest, DisconnectPulseTellsThatAClientIsGone) {
  StartSender("x");
  const int chid = MakeChannel(_NTO_CHF_DISCONNECT);
  const int id = MsgReceive(chid, nullptr, 0, nullptr);
  MsgReply(id, 0, nullptr, 0);  // and the sender ends
  _pulse pulse = {};
  EXPECT_EQ(MsgReceive(chid, &pulse, sizeof pulse, nullptr), 0);
  EXPECT_EQ(pulse.code, _PULSE_CODE_DISCONNECT);
  ChannelDestroy(chid);
}

TEST_F(DyingSenderTest, WithoutTheFlagThereIsNoPulse) {
  StartSender("x");
  const int chid = MakeChannel(_NTO_CHF_FIXED_PRIORITY);
  MsgReply(MsgReceive(chid, nullptr, 0, nullptr), 0, nullptr, 0);
  EXPECT_EQ(sender_->Wait(), 0);
  LimitNextCall(50 * kMillisecond);
  EXPECT_EQ(MsgReceive(chid, nullptr, 0, nullptr), -1);
  EXPECT_EQ(errno, ETIMEDOUT);
  ChannelDestroy(chid);
}

TEST_F(DyingSenderTest, DeadSendersLeaveNoDescriptorBehind) {
  const int before = CountDescriptors();
  StartSender("x");
  const int chid = MakeChannel(0);
  MsgReceive(chid, nullptr, 0, nullptr);
  sender_->Kill();
  LimitNextCall(50 * kMillisecond);
  MsgReceive(chid, nullptr, 0, nullptr);  // sees the end of the connection
  ChannelDestroy(chid);
  EXPECT_EQ(CountDescriptors(), before);
}

TEST_F(ChannelTest, FilesOfDeadProcessesAreRemovedByTheNextOne) {
  ConnectToReceiver(0, AnswerLengths);
  receiver_->Kill();
  ChildProcess next([this] {
    const int chid = ChannelCreate(0);
    int files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(directory_.path())) {
      static_cast<void>(entry);
      ++files;
    }
    ChannelDestroy(chid);
    return files;
  });
  EXPECT_EQ(next.Wait(), 1) << "only its own channel";
}

}  // namespace
}  // namespace ventrik::tests
