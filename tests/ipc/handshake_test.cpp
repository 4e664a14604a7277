// SPDX-License-Identifier: Apache-2.0
// ipc_open and ipc_close: what goes to the server, and what the client makes of its reply.
#include <unistd.h>

#include <cerrno>
#include <filesystem>

#include "tests/ipc/ipc_fixture.h"

namespace ventrik::tests {
namespace {

class HandshakeTest : public IpcTest {
 protected:
  // A server that answers the request with the three words given and then says which of its
  // channels a message came in on.
  std::unique_ptr<ChildProcess> StartServerThatReplies(
      const std::function<std::string(const RawServer&)>& reply) {
    return StartRawServer([this, &reply](RawServer& server) {
      const RawMessage request = TakeRaw(server.channel0);
      const std::string answer = reply(server);
      MsgReply(request.id, 0, answer.data(), answer.size());
      for (const int channel : {server.channel0, server.channel1}) {
        const RawMessage message = TakeRaw(channel);
        fromChild_.Put((channel == server.channel0 ? "0 " : "1 ") + message.bytes);
        MsgReply(message.id, 7, nullptr, 0);
      }
      return 0;
    });
  }
};

TEST_F(HandshakeTest, RequestNamesBothChannelsAndTheProcess) {
  const auto server = StartRawServer([this](RawServer& raw) {
    const RawClient client = ShakeHands(raw);
    fromChild_.Put(client.request);
    fromChild_.Put(std::to_string(client.answerRoom));
    return 0;
  });
  IpcPeer* peer = ipc_open("raw");
  ASSERT_NE(peer, nullptr);
  EXPECT_NE(peer->receiving.channels[0], peer->receiving.channels[1]);
  EXPECT_EQ(fromChild_.Take(),
            Record(512, peer->receiving.channels[0], peer->receiving.channels[1], getpid()));
  EXPECT_EQ(fromChild_.Take(), "16");
  ipc_close(peer);
}

TEST_F(HandshakeTest, ConnectionsLeadToTheNamedChannelAndToTheChannelOfTheReply) {
  const auto server = StartServerThatReplies(
      [](const RawServer& raw) { return Record(512, 31313, raw.channel1, getpid()); });
  IpcPeer* peer = ipc_open("raw");
  ASSERT_NE(peer, nullptr);
  EXPECT_EQ(SendRaw(peer->connections[0], "first"), "7");
  EXPECT_EQ(fromChild_.Take(), "0 first");
  EXPECT_EQ(SendRaw(peer->connections[1], "second"), "7");
  EXPECT_EQ(fromChild_.Take(), "1 second");
  EXPECT_NE(static_cast<unsigned>(peer->connections[1]) & _NTO_SIDE_CHANNEL, 0u);
  ipc_close(peer);
}

TEST_F(HandshakeTest, ReplyThatNamesNoChannelLeavesTheSecondConnectionUnset) {
  const auto server = StartServerThatReplies(
      [](const RawServer& raw) { return Record(512, raw.channel0, 31313, getpid()); });
  IpcPeer* peer = ipc_open("raw");
  ASSERT_NE(peer, nullptr);
  EXPECT_EQ(peer->connections[1], -1);
  EXPECT_EQ(SendRaw(peer->connections[0], "works"), "7");
  ipc_close(peer);
}

TEST_F(HandshakeTest, PeerOfAClientIsFilledIn) {
  const auto server = StartRawServer([](RawServer& raw) {
    ShakeHands(raw);
    return 0;
  });
  IpcPeer* peer = ipc_open("raw");
  ASSERT_NE(peer, nullptr);
  EXPECT_EQ(peer->next, nullptr);
  EXPECT_EQ(peer->processId, static_cast<std::uint32_t>(getpid()));
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(peer->receiving.connections[i], -1);
    EXPECT_EQ(peer->spareChannels[i], -1);
  }
  ipc_close(peer);
}

TEST_F(HandshakeTest, RefusedRequestGivesNoPeerAndLeavesNothingOpen) {
  const auto server = StartRawServer([](RawServer& raw) {
    MsgError(TakeRaw(raw.channel0).id, EPERM);
    TakeRaw(raw.channel0);
    return 0;
  });
  const int before = CountDescriptors();
  EXPECT_EQ(ipc_open("raw"), nullptr);
  EXPECT_EQ(CountDescriptors(), before);
}

TEST_F(HandshakeTest, MissingServerGivesNoPeerAndLeavesNothingOpen) {
  const int before = CountDescriptors();
  EXPECT_EQ(ipc_open("nobody"), nullptr);
  EXPECT_EQ(ipc_open("not/a/name"), nullptr);
  EXPECT_EQ(ipc_open(""), nullptr);
  EXPECT_EQ(CountDescriptors(), before);
  EXPECT_TRUE(std::filesystem::is_empty(directory_.path()));
}

TEST_F(HandshakeTest, ServerThatDiesInTheHandshakeGivesNoPeer) {
  const auto server = StartRawServer([](RawServer& raw) {
    TakeRaw(raw.channel0);
    return 0;
  });
  EXPECT_EQ(ipc_open("raw"), nullptr);
}

TEST_F(HandshakeTest, ClosingGivesChannelsAndConnectionsBack) {
  const auto server = StartRawServer([](RawServer& raw) {
    ShakeHands(raw);
    TakeRaw(raw.channel0);
    return 0;
  });
  const int before = CountDescriptors();
  IpcPeer* peer = ipc_open("raw");
  ASSERT_NE(peer, nullptr);
  const int channel = peer->receiving.channels[0];
  const int connection = peer->connections[0];
  EXPECT_EQ(ipc_close(peer), 0);
  EXPECT_EQ(ChannelDestroy(channel), -1);
  EXPECT_EQ(ConnectDetach(connection), -1);
  EXPECT_EQ(CountDescriptors(), before);
}

TEST_F(HandshakeTest, InitDoesNothing) {
  EXPECT_EQ(ipc_init(), 0);
}

}  // namespace
}  // namespace ventrik::tests
