// SPDX-License-Identifier: Apache-2.0
// Strangers at the socket: other users, wrong bytes, pieces, and a process without descriptors.
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <thread>

#include "platform/linux/wire.h"
#include "tests/platform/channel_fixture.h"

namespace ventrik::tests {
namespace {

class RawSocketTest : public ChannelTest {
 protected:
  int Dial() const {
    const std::string path = directory_.path() + "/c." + std::to_string(receiver_->pid()) + "." +
                             std::to_string(receiverChannel_);
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
    const int socketDescriptor = socket(AF_UNIX, SOCK_STREAM, 0);
    if (connect(socketDescriptor, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) {
      return -1;
    }
    return socketDescriptor;
  }

  static std::string Message(const std::string& payload) {
    const platform::SendHeader header = {platform::kSendMagic,
                                         static_cast<std::uint32_t>(payload.size()), 0};
    return std::string(reinterpret_cast<const char*>(&header), sizeof header) + payload;
  }

  static bool HungUp(int descriptor) {
    char byte = 0;
    return recv(descriptor, &byte, 1, 0) <= 0;
  }
};

TEST_F(RawSocketTest, WrongBytesAreHungUpOnAndOthersAreServed) {
  const int coid = ConnectToReceiver(0, AnswerLengths);
  const int stranger = Dial();
  ASSERT_GE(stranger, 0);
  ASSERT_EQ(send(stranger, "GET / HTTP/1.0\r\n\r\n", 18, 0), 18);
  EXPECT_TRUE(HungUp(stranger));
  EXPECT_EQ(SendText(coid, "served"), 6);
  close(stranger);
}

TEST_F(RawSocketTest, MessageInPiecesArrivesWholeWhileOthersAreServed) {
  const int coid = ConnectToReceiver(0, AnswerLengths);
  const int slow = Dial();
  ASSERT_GE(slow, 0);
  const std::string bytes = Message("sixteen bytes...");
  for (const char byte : bytes) {
    ASSERT_EQ(send(slow, &byte, 1, 0), 1);
    ASSERT_EQ(SendText(coid, "between"), 7);
  }
  platform::ReplyHeader reply = {};
  ASSERT_EQ(recv(slow, &reply, sizeof reply, MSG_WAITALL), static_cast<ssize_t>(sizeof reply));
  EXPECT_EQ(reply.status, 16);
  close(slow);
}

TEST_F(RawSocketTest, SecondMessageBeforeTheAnswerIsHungUpOn) {
  ConnectToReceiver(0, AnswerLengths);
  const int pushy = Dial();
  const std::string twice = Message("one") + Message("two");
  ASSERT_EQ(send(pushy, twice.data(), twice.size(), 0), static_cast<ssize_t>(twice.size()));
  EXPECT_TRUE(HungUp(pushy));
  close(pushy);
}

TEST_F(RawSocketTest, LengthThatNeverComesDoesNotHoldUpOthers) {
  const int coid = ConnectToReceiver(0, AnswerLengths);
  const int liar = Dial();
  const platform::SendHeader header = {platform::kSendMagic, 0xFFFFFFFF, 0xFFFFFFFF};
  ASSERT_EQ(send(liar, &header, sizeof header, 0), static_cast<ssize_t>(sizeof header));
  EXPECT_EQ(SendText(coid, "served"), 6);
  close(liar);
  EXPECT_EQ(SendText(coid, "served"), 6);
}

TEST_F(RawSocketTest, SenderThatReadsNoAnswersHoldsUpNobody) {
  const int coid = ConnectToReceiver(0, AnswerLengths);
  const int rude = Dial();
  ASSERT_GE(rude, 0);
  const std::string message = Message("answer me");
  ssize_t sent = 0;
  for (int i = 0; i < 100000 && sent >= 0; ++i) {
    sent = send(rude, message.data(), message.size(), MSG_NOSIGNAL);
    if (i % 100 == 0) {
      ASSERT_EQ(SendText(coid, "served"), 6);
    }
  }
  EXPECT_LT(sent, 0) << "it is hung up on";
  EXPECT_EQ(SendText(coid, "served"), 6);
  close(rude);
}

TEST_F(RawSocketTest, OtherUsersAreHungUpOn) {
  if (geteuid() != 0) GTEST_SKIP() << "needs a second user id, so root";
  const int coid = ConnectToReceiver(0, AnswerLengths);
  // Open every door that the file system keeps shut, so that only the check at the socket is left.
  const std::filesystem::path directory = directory_.path();
  for (const auto& entry : std::filesystem::directory_iterator(directory)) {
    std::filesystem::permissions(entry.path(), std::filesystem::perms(0777));
  }
  std::filesystem::permissions(directory, std::filesystem::perms(0777));
  std::filesystem::permissions(directory.parent_path(), std::filesystem::perms(0777));
  ChildProcess stranger([this] {
    if (setresuid(65534, 65534, 65534) != 0) return 1;
    const int descriptor = Dial();
    if (descriptor < 0) return 2;
    const std::string message = Message("let me in");
    send(descriptor, message.data(), message.size(), MSG_NOSIGNAL);
    return HungUp(descriptor) ? 0 : 3;
  });
  EXPECT_EQ(stranger.Wait(), 0);
  EXPECT_EQ(SendText(coid, "served"), 6);
}

TEST_F(RawSocketTest, ListenerOfAnotherUserIsNotTalkedTo) {
  if (geteuid() != 0) GTEST_SKIP() << "needs a second user id, so root";
  const int chid = ChannelCreate(0);  // makes the directory
  ChannelDestroy(chid);
  const std::string path = directory_.path() + "/c.77777777.1";
  std::filesystem::permissions(directory_.path(), std::filesystem::perms(0777));
  std::filesystem::permissions(std::filesystem::path(directory_.path()).parent_path(),
                               std::filesystem::perms(0777));
  ChildProcess impostor([&] {
    if (setresuid(65534, 65534, 65534) != 0) return 1;
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
    const int listener = socket(AF_UNIX, SOCK_STREAM, 0);
    bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address);
    ready_.Notify(listen(listener, 5));
    return step_.Await();
  });
  ASSERT_EQ(ready_.Await(), 0);
  std::filesystem::permissions(directory_.path(), std::filesystem::perms(0700));
  EXPECT_EQ(ConnectAttach(0, 77777777, 1, 0, 0), -1);
  EXPECT_EQ(errno, EPERM);
}

TEST_F(RawSocketTest, ReceiverOutOfDescriptorsServesOnOnceThereAreSome) {
  const int coid = ConnectToReceiver(0, [this](int chid) {
    rlimit limit = {};
    getrlimit(RLIMIT_NOFILE, &limit);
    limit.rlim_cur = static_cast<rlim_t>(CountDescriptors()) + 2;
    setrlimit(RLIMIT_NOFILE, &limit);
    std::vector<int> hogs;
    std::thread release([this, &hogs] {
      step_.Await();
      for (const int hog : hogs) close(hog);
    });
    release.detach();
    for (int d = dup(0); d >= 0; d = dup(0)) hogs.push_back(d);
    done_.Notify();
    return AnswerLengths(chid);
  });
  static_cast<void>(coid);
  done_.Await();
  const int late = ConnectAttach(0, receiver_->pid(), receiverChannel_, 0, 0);
  ASSERT_NE(late, -1);
  LimitNextCall(200 * kMillisecond);
  EXPECT_EQ(SendText(late, "too early"), -1);
  step_.Notify();
  const int later = ConnectAttach(0, receiver_->pid(), receiverChannel_, 0, 0);
  EXPECT_EQ(SendText(later, "served"), 6);
}

}  // namespace
}  // namespace ventrik::tests
