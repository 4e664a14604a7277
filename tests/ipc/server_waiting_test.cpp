// SPDX-License-Identifier: Apache-2.0
// What never holds up a server that waits for the rest of a message: senders that die or give up.
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <thread>

#include "tests/ipc/ipc_fixture.h"

namespace ventrik::tests {
namespace {

class ServerWaitingTest : public IpcTest {
 protected:
  void TearDown() override {
    if (server_ != nullptr) ipc_server_close(server_);
  }

  // Serves with one process that runs `first` and another that sends "served" when it is told to.
  void Serve(const std::function<int()>& first) {
    first_ = StartClient(first);
    second_ = std::make_unique<ChildProcess>([this] {
      secondGoes_.Take();
      SendMessage(ipc_open("navigation"), "served");
      return 0;
    });
    server_ = ipc_server_create("navigation");
    ASSERT_NE(server_, nullptr);
    toChild_.Put("go");
  }

  // The next message is taken whole, so nothing of the last one is in its way.
  void ExpectTheOtherClientServed() {
    secondGoes_.Put("go");
    EXPECT_EQ(NextText(server_), "served");
  }

  static void SendDataPart(std::uint32_t processId) {
    const int toServer = ConnectRaw("navigation").toChannel0;
    SendRaw(toServer, Record(513u, processId, 5u, 0u) + "hello");
  }

  // Reads a message whose end marker never comes.
  int ReadToTheEnd(IpcMessage* message) {
    char buffer[100];
    const int result = ipc_read(message, buffer, sizeof buffer);
    ipc_finish(message, 0);
    return result;
  }

  Mailbox secondGoes_;
  std::unique_ptr<ChildProcess> first_;
  std::unique_ptr<ChildProcess> second_;
  IpcServer* server_ = nullptr;
};

TEST_F(ServerWaitingTest, ClientThatDiesBetweenDataPartAndEndMarkerIsNotWaitedFor) {
  Serve([] {
    SendDataPart(static_cast<std::uint32_t>(getpid()));
    return 0;
  });
  std::thread reaping([this] { first_->Wait(); });
  EXPECT_EQ(ReadToTheEnd(AcceptMessage(server_)), -1);
  reaping.join();
  ExpectTheOtherClientServed();
}

TEST_F(ServerWaitingTest, DeadClientThatNobodyReapsIsNotWaitedFor) {
  Serve([] {
    SendDataPart(static_cast<std::uint32_t>(getpid()));
    return 0;
  });
  EXPECT_EQ(ReadToTheEnd(AcceptMessage(server_)), -1);
  ExpectTheOtherClientServed();
}

TEST_F(ServerWaitingTest, DeadClientThatGaveAFalseProcessIdIsNotWaitedFor) {
  Serve([] {
    SendDataPart(1);
    return 0;
  });
  std::thread reaping([this] { first_->Wait(); });
  EXPECT_EQ(ReadToTheEnd(AcceptMessage(server_)), -1);
  reaping.join();
  ExpectTheOtherClientServed();
}

TEST_F(ServerWaitingTest, LiveClientWithAFalseProcessIdIsWaitedFor) {
  Serve([] {
    const RawConnection connection = ConnectRaw("navigation");
    SendRaw(connection.toChannel0, Record(513, 0x7ffffff0, 5, 0) + "hello");
    usleep(1'500'000);  // longer than the server takes to look after its sender
    SendRaw(connection.toChannel1, Record(513, 0x7ffffff0, 0, 0));
    return 0;
  });
  EXPECT_EQ(NextText(server_), "hello");
}

TEST_F(ServerWaitingTest, ClientThatDiesWithItsDataPartInHandIsNotWaitedFor) {
  Serve([] {
    SendDataPart(static_cast<std::uint32_t>(getpid()));
    return 0;
  });
  IpcMessage* message = AcceptMessage(server_);
  first_->Kill();
  EXPECT_EQ(ReadToTheEnd(message), -1);
  ExpectTheOtherClientServed();
}

TEST_F(ServerWaitingTest, SenderThatGaveUpBeforeItWasAnsweredIsNotWaitedFor) {
  Serve([this] {
    const int toServer = ConnectRaw("navigation").toChannel0;
    fromChild_.Put(SendRawWithin(50, toServer, Record(513, getpid(), 5, 0) + "hello"));
    pause();
    return 0;
  });
  IpcMessage* message = AcceptMessage(server_);
  EXPECT_EQ(fromChild_.Take(), "error " + std::to_string(ETIMEDOUT));
  EXPECT_EQ(ReadToTheEnd(message), -1);
  ExpectTheOtherClientServed();
}

TEST_F(ServerWaitingTest, SlowEndMarkerIsWaitedFor) {
  Serve([] {
    IpcPeer* peer = ipc_open("navigation");
    IpcMessage* message = ipc_connect(peer);
    ipc_write(message, "slow", 4);
    usleep(1'500'000);  // longer than the server takes to look after its sender
    ipc_disconnect(message);
    return 0;
  });
  EXPECT_EQ(NextText(server_), "slow");
  ExpectTheOtherClientServed();
}

TEST_F(ServerWaitingTest, ServerThatWasStoppedAndContinuedStillTakesTheEndMarker) {
  const auto server = StartServer("navigation", [this](IpcServer* own) {
    for (;;) fromChild_.Put(NextText(own));
    return 0;
  });
  IpcPeer* peer = ipc_open("navigation");
  ASSERT_NE(peer, nullptr);
  for (const char* text : {"first", "later"}) {
    IpcMessage* message = ipc_connect(peer);
    ASSERT_EQ(ipc_write(message, text, 5), 5);
    usleep(50000);  // so that it waits for the end marker
    server->Stop();
    server->Continue();
    usleep(50000);
    EXPECT_EQ(ipc_disconnect(message), 0);
    EXPECT_EQ(fromChild_.Take(), text);
  }
  ipc_close(peer);
}

}  // namespace
}  // namespace ventrik::tests
