// SPDX-License-Identifier: Apache-2.0
// ipc_connect, ipc_write, ipc_disconnect: the bytes of a message, and what failures leave behind.
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "console/utf8.h"
#include "tests/ipc/ipc_fixture.h"

namespace ventrik::tests {
namespace {

class IpcWriteTest : public IpcTest {
 protected:
  void TearDown() override {
    if (peer_ != nullptr) ipc_close(peer_);
  }

  // Connects to a server that answers the data parts and end markers to come with these, in order;
  // a negative number is an error. It tells what it got and where.
  void ConnectToServerThatAnswers(const std::vector<int>& dataAnswers,
                                  const std::vector<int>& markerAnswers = {}) {
    server_ = StartRawServer([&, this](RawServer& raw) {
      ShakeHands(raw);
      std::size_t marker = 0;
      for (const int answer : dataAnswers) {
        Answer(raw.channel0, "0 ", answer);
        if (marker < markerAnswers.size()) Answer(raw.channel1, "1 ", markerAnswers[marker++]);
      }
      toChild_.Take();
      return 0;
    });
    peer_ = ipc_open("raw");
    ASSERT_NE(peer_, nullptr);
  }

  void Answer(int channel, const std::string& where, int answer) {
    const RawMessage message = TakeRaw(channel);
    fromChild_.Put(where + message.bytes);
    if (answer < 0) {
      MsgError(message.id, -answer);
    } else {
      MsgReply(message.id, answer, nullptr, 0);
    }
  }

  long Write(IpcMessage* message, const std::string& text) {
    return ipc_write(message, text.data(), text.size());
  }

  std::unique_ptr<ChildProcess> server_;
  IpcPeer* peer_ = nullptr;
};

TEST_F(IpcWriteTest, MessageIsADataPartOnChannelZeroAndAnEndMarkerOnChannelOne) {
  ConnectToServerThatAnswers({5}, {0});
  IpcMessage* message = ipc_connect(peer_);
  EXPECT_EQ(Write(message, "hello"), 5);
  EXPECT_EQ(fromChild_.Take(), "0 " + Record(513, getpid(), 5, 0) + "hello");
  EXPECT_EQ(ipc_disconnect(message), 0);
  EXPECT_EQ(fromChild_.Take(), "1 " + Record(513, getpid(), 0, 0));
  EXPECT_EQ(console_.TakeText(), L"");
}

TEST_F(IpcWriteTest, EmptyDataPartIsAHeaderAlone) {
  ConnectToServerThatAnswers({0}, {0});
  IpcMessage* message = ipc_connect(peer_);
  EXPECT_EQ(ipc_write(message, nullptr, 0), 0);
  EXPECT_EQ(fromChild_.Take(), "0 " + Record(513, getpid(), 0, 0));
  EXPECT_EQ(ipc_disconnect(message), 0);
  EXPECT_EQ(fromChild_.Take(), "1 " + Record(513, getpid(), 0, 0));
}

TEST_F(IpcWriteTest, NewMessageTakesThePeersConnectionsAndStartsWithTheFirst) {
  ConnectToServerThatAnswers({});
  IpcMessage* message = ipc_connect(peer_);
  EXPECT_EQ(message->peer, peer_);
  EXPECT_EQ(message->connections[0], peer_->connections[0]);
  EXPECT_EQ(message->connections[1], peer_->connections[1]);
  EXPECT_EQ(message->partIndex, 0);
  ipc_message_release(message);
}

TEST_F(IpcWriteTest, WrongCountClearsTheMessagesConnectionsAndTheEndMarkerFailsAtOnce) {
  ConnectToServerThatAnswers({4});
  IpcMessage* message = ipc_connect(peer_);
  EXPECT_EQ(Write(message, "hello"), 4);
  EXPECT_EQ(message->connections[0], -1);
  EXPECT_EQ(message->connections[1], -1);
  EXPECT_EQ(ipc_disconnect(message), -1);
  EXPECT_EQ(errno, EBADF);
  EXPECT_EQ(console_.TakeText(), L"");
}

TEST_F(IpcWriteTest, WrongCountLeavesThePeerAsItWasAndTheNextMessageGoesThrough) {
  ConnectToServerThatAnswers({4, 4}, {});
  const int before[2] = {peer_->connections[0], peer_->connections[1]};
  IpcMessage* first = ipc_connect(peer_);
  Write(first, "hello");
  ipc_disconnect(first);
  EXPECT_EQ(peer_->connections[0], before[0]);
  EXPECT_EQ(peer_->connections[1], before[1]);
  IpcMessage* second = ipc_connect(peer_);
  EXPECT_EQ(Write(second, "next"), 4);
  EXPECT_EQ(second->connections[1], before[1]);
  ipc_message_release(second);
}

TEST_F(IpcWriteTest, ErrorIsPrintedWithItsTextAndClearsTheMessagesConnections) {
  ConnectToServerThatAnswers({-89});
  IpcMessage* message = ipc_connect(peer_);
  EXPECT_EQ(Write(message, "hello"), -1);
  EXPECT_EQ(console_.TakeText(),
            L"IPC MsgSendv error(89): " + Utf8ToWide(std::strerror(89)) + L"\n");
  EXPECT_EQ(message->connections[0], -1);
  EXPECT_EQ(message->connections[1], -1);
  EXPECT_EQ(ipc_disconnect(message), -1);
}

TEST_F(IpcWriteTest, DeadServerIsAnErrorEachTime) {
  ConnectToServerThatAnswers({});
  server_->Kill();
  for (int i = 0; i < 2; ++i) {
    IpcMessage* message = ipc_connect(peer_);
    EXPECT_EQ(Write(message, "hello"), -1);
    EXPECT_EQ(console_.TakeText(), L"IPC MsgSendv error(" + std::to_wstring(ESRCH) + L"): " +
                                       Utf8ToWide(std::strerror(ESRCH)) + L"\n");
    EXPECT_EQ(ipc_disconnect(message), -1);
  }
}

TEST_F(IpcWriteTest, EndMarkerAnsweredWithAnythingButZeroFails) {
  ConnectToServerThatAnswers({1, 1, 1}, {3, -EPERM, 0});
  const auto outcome = [this] {
    IpcMessage* message = ipc_connect(peer_);
    Write(message, "x");
    errno = 0;
    return ipc_disconnect(message);
  };
  EXPECT_EQ(outcome(), -1);
  EXPECT_EQ(outcome(), -1);
  EXPECT_EQ(errno, EPERM);
  EXPECT_EQ(outcome(), 0);
}

TEST_F(IpcWriteTest, LargePayloadArrivesWhole) {
  const std::string payload(3'000'000, 'p');
  server_ = StartRawServer([&](RawServer& raw) {
    ShakeHands(raw);
    const RawMessage message = TakeRaw(raw.channel0);
    const bool whole = message.bytes.compare(16, std::string::npos, payload) == 0;
    MsgReply(message.id, whole ? 3'000'000 : 1, nullptr, 0);
    return 0;
  });
  peer_ = ipc_open("raw");
  IpcMessage* message = ipc_connect(peer_);
  EXPECT_EQ(Write(message, payload), 3'000'000);
  ipc_message_release(message);
}

}  // namespace
}  // namespace ventrik::tests
