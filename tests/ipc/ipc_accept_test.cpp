// SPDX-License-Identifier: Apache-2.0
// ipc_accept and ipc_finish: a client waits for its server.
#include <unistd.h>

#include <cerrno>
#include <thread>

#include "tests/ipc/ipc_fixture.h"

namespace ventrik::tests {
namespace {

class IpcAcceptTest : public IpcTest {
 protected:
  void TearDown() override {
    if (peer_ != nullptr) ipc_close(peer_);
  }

  // Connects to a server that runs `body` with its connections to this client.
  void ConnectToServer(const std::function<int(const RawClient&)>& body) {
    server_ = StartRawServer([&body](RawServer& raw) { return body(ShakeHands(raw)); });
    peer_ = ipc_open("raw");
    ASSERT_NE(peer_, nullptr);
  }

  std::unique_ptr<ChildProcess> server_;
  IpcPeer* peer_ = nullptr;
};

TEST_F(IpcAcceptTest, DataPartGivesAMessageReadyToBeRead) {
  ConnectToServer([](const RawClient& client) {
    SendRaw(client.toChannel0, Record(513, 1, 5, 0) + "hello");
    return 0;
  });
  IpcMessage* message = ipc_accept(peer_);
  ASSERT_NE(message, nullptr);
  EXPECT_EQ(ipc_length(message), 5u);
  EXPECT_EQ(message->peer, peer_);
  EXPECT_EQ(message->channels[0], peer_->receiving.channels[0]);
  EXPECT_EQ(message->channels[1], peer_->receiving.channels[1]);
  EXPECT_EQ(message->partIndex, 1);
  EXPECT_EQ(message->offset, 16u);
  EXPECT_GT(message->receiveId, 0);
  EXPECT_EQ(message->connections[0], -1);
  ipc_finish(message, 0);
}

TEST_F(IpcAcceptTest, EmptyDataPartIsAcknowledgedAndHasLengthZero) {
  ConnectToServer([this](const RawClient& client) {
    fromChild_.Put(SendRaw(client.toChannel0, Record(513, 1, 0, 0)));
    return 0;
  });
  IpcMessage* message = ipc_accept(peer_);
  ASSERT_NE(message, nullptr);
  EXPECT_EQ(ipc_length(message), 0u);
  EXPECT_EQ(message->receiveId, -1);
  EXPECT_EQ(fromChild_.Take(), "0");
  ipc_finish(message, 0);
}

TEST_F(IpcAcceptTest, OtherKindsAreRefusedWithError89AndTheWaitGoesOn) {
  ConnectToServer([this](const RawClient& client) {
    for (const std::uint32_t kind : {0u, 256u, 512u, 514u, 0x02010000u, 0xFFFFFFFFu}) {
      fromChild_.Put(SendRaw(client.toChannel0, Record(kind, 1u, 5u, 0u) + "hello"));
    }
    SendRaw(client.toChannel0, Record(513, 1, 3, 0) + "yes");
    return 0;
  });
  IpcMessage* message = ipc_accept(peer_);
  ASSERT_NE(message, nullptr);
  EXPECT_EQ(ipc_length(message), 3u);
  for (int i = 0; i < 6; ++i) EXPECT_EQ(fromChild_.Take(), "error 89");
  ipc_finish(message, 0);
}

TEST_F(IpcAcceptTest, RecordCutShortIsRefused) {
  ConnectToServer([this](const RawClient& client) {
    fromChild_.Put(SendRaw(client.toChannel0, ""));
    fromChild_.Put(SendRaw(client.toChannel0, "\x05"));
    SendRaw(client.toChannel0, Record(513, 1, 3, 0) + "yes");
    return 0;
  });
  IpcMessage* message = ipc_accept(peer_);
  ASSERT_NE(message, nullptr);
  EXPECT_EQ(ipc_length(message), 3u);
  EXPECT_EQ(fromChild_.Take(), "error 89");
  EXPECT_EQ(fromChild_.Take(), "error 89");
  ipc_finish(message, 0);
}

TEST_F(IpcAcceptTest, PulseOfASenderThatGaveUpIsDropped) {
  ConnectToServer([this](const RawClient& client) {
    fromChild_.Put(SendRawWithin(50, client.toChannel0, Record(513, 1, 5, 0) + "never"));
    toChild_.Take();
    SendRaw(client.toChannel0, Record(513, 1, 6, 0) + "second");
    return 0;
  });
  IpcMessage* first = ipc_accept(peer_);
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(fromChild_.Take(), "error " + std::to_string(ETIMEDOUT));
  _pulse pulse = {};
  const int chid = peer_->receiving.channels[0];
  EXPECT_EQ(MsgReceive(chid, &pulse, sizeof pulse, nullptr), 0) << "this is the pulse";
  ipc_finish(first, 0);
  toChild_.Put("go");
  IpcMessage* second = ipc_accept(peer_);
  ASSERT_NE(second, nullptr);
  EXPECT_EQ(ipc_length(second), 6u);
  ipc_finish(second, 0);
}

TEST_F(IpcAcceptTest, PulseBeforeAMessageDoesNotEndTheWait) {
  ConnectToServer([this](const RawClient& client) {
    fromChild_.Put(SendRawWithin(50, client.toChannel0, Record(513, 1, 5, 0) + "never"));
    SendRaw(client.toChannel0, Record(513, 1, 6, 0) + "second");
    return 0;
  });
  IpcMessage* first = ipc_accept(peer_);
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(fromChild_.Take(), "error " + std::to_string(ETIMEDOUT));
  IpcMessage* second = ipc_accept(peer_);
  ASSERT_NE(second, nullptr);
  EXPECT_EQ(ipc_length(second), 6u);
  ipc_finish(first, 0);
  ipc_finish(second, 0);
}

TEST_F(IpcAcceptTest, ShutPeerEndsTheWait) {
  ConnectToServer([this](const RawClient&) {
    toChild_.Take();
    return 0;
  });
  std::thread shutting([this] {
    usleep(30000);
    ipc_hang_up(peer_);
  });
  EXPECT_EQ(ipc_accept(peer_), nullptr);
  shutting.join();
  EXPECT_EQ(ipc_accept(peer_), nullptr);
}

TEST_F(IpcAcceptTest, FinishAnswersWhatWasNotReadWithZeroOrTheError) {
  ConnectToServer([this](const RawClient& client) {
    for (int i = 0; i < 2; ++i) {
      fromChild_.Put(SendRaw(client.toChannel0, Record(513, 1, 5, 0) + "hello"));
    }
    return 0;
  });
  EXPECT_EQ(ipc_finish(ipc_accept(peer_), 0), 0);
  EXPECT_EQ(fromChild_.Take(), "0");
  EXPECT_EQ(ipc_finish(ipc_accept(peer_), 42), 0);
  EXPECT_EQ(fromChild_.Take(), "error 42");
}

}  // namespace
}  // namespace ventrik::tests
