// SPDX-License-Identifier: Apache-2.0
// The server half: the name, handshakes, what is answered on the way, and sending to a client.
#include <unistd.h>

#include <cerrno>
#include <filesystem>

#include "tests/ipc/ipc_fixture.h"

namespace ventrik::tests {
namespace {

class IpcServerTest : public IpcTest {
 protected:
  void TearDown() override {
    if (server_ != nullptr) ipc_server_close(server_);
  }

  // Serves under "navigation", with `client` running in a process of its own.
  void Serve(const std::function<int()>& client) {
    client_ = StartClient(client);
    server_ = ipc_server_create("navigation");
    ASSERT_NE(server_, nullptr);
    toChild_.Put("go");
  }

  // The same with a client of kernel calls, after its handshake.
  void ServeRaw(const std::function<int(RawConnection&)>& client) {
    Serve([client] {
      RawConnection connection = ConnectRaw("navigation");
      return client(connection);
    });
  }

  static std::string Message(const std::string& payload) {
    return Record(513, getpid(), static_cast<int>(payload.size()), 0) + payload;
  }

  std::uint32_t ClientProcess() const { return static_cast<std::uint32_t>(client_->pid()); }

  std::unique_ptr<ChildProcess> client_;
  IpcServer* server_ = nullptr;
};

TEST_F(IpcServerTest, CreatedServerIsFilledIn) {
  char name[] = "navigation";
  server_ = ipc_server_create(name);
  ASSERT_NE(server_, nullptr);
  name[0] = '?';
  EXPECT_STREQ(server_->name, "navigation") << "its own copy";
  EXPECT_EQ(server_->channel0, server_->attach->chid);
  EXPECT_GT(server_->channel1, 0);
  EXPECT_NE(server_->channel0, server_->channel1);
  EXPECT_EQ(server_->clients, nullptr);
  EXPECT_EQ(server_->processId, static_cast<std::uint32_t>(getpid()));
}

TEST_F(IpcServerTest, TakenNameGivesNoServerAndLeavesNothingOpen) {
  server_ = ipc_server_create("navigation");
  ASSERT_NE(server_, nullptr);
  const int before = CountDescriptors();
  EXPECT_EQ(ipc_server_create("navigation"), nullptr);
  EXPECT_EQ(CountDescriptors(), before);
}

TEST_F(IpcServerTest, WhatCannotBeANameGivesNoServer) {
  for (const char* name : {"", "a/b", ".."}) EXPECT_EQ(ipc_server_create(name), nullptr) << name;
}

TEST_F(IpcServerTest, ClosedServerLeavesNothingBehind) {
  const int before = CountDescriptors();
  IpcServer* server = ipc_server_create("navigation");
  ASSERT_NE(server, nullptr);
  EXPECT_EQ(ipc_server_close(server), 0);
  EXPECT_EQ(CountDescriptors(), before);
  EXPECT_TRUE(std::filesystem::is_empty(directory_.path()));
}

TEST_F(IpcServerTest, ClosingLetsClientsGoAndFreesTheName) {
  const int before = CountDescriptors();
  {
    const auto client = StartClient([] {
      IpcPeer* peer = ipc_open("navigation");
      SendMessage(peer, "hello");
      IpcMessage* message = ipc_connect(peer);
      const bool gone = ipc_write(message, "anyone?", 7) == -1 && errno == ESRCH;
      ipc_disconnect(message);
      return gone ? 0 : 1;
    });
    IpcServer* server = ipc_server_create("navigation");
    toChild_.Put("go");
    EXPECT_EQ(NextText(server), "hello");
    ipc_server_close(server);
    EXPECT_EQ(client->Wait(), 0);
  }
  EXPECT_EQ(CountDescriptors(), before);
  server_ = ipc_server_create("navigation");
  EXPECT_NE(server_, nullptr);
}

TEST_F(IpcServerTest, HandshakeIsAnsweredWithTheServersChannelsAndProcess) {
  ServeRaw([this](RawConnection& connection) {
    fromChild_.Put(connection.reply);
    SendRaw(connection.toChannel0, Message("x"));
    return 0;
  });
  IpcMessage* message = AcceptMessage(server_);
  EXPECT_EQ(fromChild_.Take(), Record(512, server_->channel0, server_->channel1, getpid()));
  ipc_finish(message, 0);
}

TEST_F(IpcServerTest, ProbeIsAnsweredWithZero) {
  ServeRaw([this](RawConnection& connection) {
    fromChild_.Put(SendRaw(connection.toChannel0, Record(256, 11, 22, 33)));
    SendRaw(connection.toChannel0, Message("x"));
    return 0;
  });
  IpcMessage* message = AcceptMessage(server_);
  EXPECT_EQ(fromChild_.Take(), "0");
  ipc_finish(message, 0);
}

TEST_F(IpcServerTest, OtherKindsAreRefusedWithError89) {
  ServeRaw([this](RawConnection& connection) {
    for (const std::uint32_t kind : {0u, 511u, 514u, 0x00020100u, 0xFFFFFFFFu}) {
      fromChild_.Put(SendRaw(connection.toChannel0, Record(kind, 1u, 5u, 0u)));
    }
    fromChild_.Put(SendRaw(connection.toChannel0, "short"));
    SendRaw(connection.toChannel0, Message("x"));
    return 0;
  });
  IpcMessage* message = AcceptMessage(server_);
  for (int i = 0; i < 6; ++i) EXPECT_EQ(fromChild_.Take(), "error 89");
  ipc_finish(message, 0);
}

TEST_F(IpcServerTest, AcceptedMessageKnowsItsClientAndWhereToRead) {
  ServeRaw([](RawConnection& connection) {
    SendRaw(connection.toChannel0, Message("hello"));
    return 0;
  });
  IpcMessage* message = AcceptMessage(server_);
  EXPECT_EQ(ipc_length(message), 5u);
  ASSERT_NE(message->clientRecord, nullptr);
  EXPECT_EQ(message->clientRecord, server_->clients);
  EXPECT_EQ(message->clientRecord->processId, ClientProcess());
  EXPECT_EQ(message->server, server_);
  EXPECT_EQ(message->channels[0], server_->channel0);
  EXPECT_EQ(message->channels[1], server_->channel1);
  EXPECT_EQ(message->partIndex, 1);
  EXPECT_EQ(message->offset, 16u);
  ipc_finish(message, 0);
}

TEST_F(IpcServerTest, RecordOfAClientHasNoChannelsOfItsOwn) {
  ServeRaw([](RawConnection& connection) {
    SendRaw(connection.toChannel0, Message("hello"));
    return 0;
  });
  ipc_finish(AcceptMessage(server_), 0);
  const IpcPeer* record = server_->clients;
  ASSERT_NE(record, nullptr);
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(record->receiving.channels[i], 0);
    EXPECT_EQ(record->receiving.connections[i], -1);
    EXPECT_EQ(record->spareChannels[i], -1);
    EXPECT_NE(record->connections[i], -1);
  }
}

TEST_F(IpcServerTest, EmptyDataPartIsAcknowledgedAndHasLengthZero) {
  ServeRaw([this](RawConnection& connection) {
    fromChild_.Put(SendRaw(connection.toChannel0, Message("")));
    return 0;
  });
  IpcMessage* message = AcceptMessage(server_);
  EXPECT_EQ(ipc_length(message), 0u);
  EXPECT_EQ(message->receiveId, -1);
  EXPECT_NE(message->clientRecord, nullptr);
  EXPECT_EQ(fromChild_.Take(), "0");
  ipc_finish(message, 0);
}

TEST_F(IpcServerTest, UnknownProcessHasNoClientRecord) {
  ServeRaw([](RawConnection& connection) {
    SendRaw(connection.toChannel0, Record(513, 31313, 5, 0) + "hello");
    return 0;
  });
  IpcMessage* message = AcceptMessage(server_);
  EXPECT_EQ(message->clientRecord, nullptr);
  EXPECT_EQ(ipc_length(message), 5u);
  ipc_finish(message, 0);
}

TEST_F(IpcServerTest, ClientThatCannotBeAttachedStillGetsTheReply) {
  Serve([this] {
    const int toServer = name_open("navigation", 0);
    const int real = ChannelCreate(3);
    for (const auto& [first, second] : {std::pair(31313, 31314), std::pair(real, 31314)}) {
      const std::string request = Record(512, first, second, getpid());
      std::string reply(16, '?');
      const long status = MsgSend(toServer, request.data(), 16, reply.data(), 16);
      fromChild_.Put(std::to_string(status) + reply);
    }
    SendRaw(toServer, Message("hello"));
    return 0;
  });
  IpcMessage* message = AcceptMessage(server_);
  const std::string reply = Record(512, server_->channel0, server_->channel1, getpid());
  EXPECT_EQ(fromChild_.Take(), "0" + reply);
  EXPECT_EQ(fromChild_.Take(), "0" + reply);
  EXPECT_EQ(server_->clients, nullptr);
  EXPECT_EQ(message->clientRecord, nullptr);
  ipc_finish(message, 0);
}

TEST_F(IpcServerTest, PulseOfAClientThatWentAwayEndsTheWait) {
  Serve([] {
    IpcPeer* peer = ipc_open("navigation");
    SendMessage(peer, "hello");
    ipc_close(peer);
    return 0;
  });
  EXPECT_EQ(NextText(server_), "hello");
  EXPECT_EQ(ipc_server_accept(server_), nullptr);
}

TEST_F(IpcServerTest, SeveralClientsAreToldApart) {
  const auto first = StartClient([] {
    SendMessage(ipc_open("navigation"), "first");
    pause();
    return 0;
  });
  const auto second = StartClient([] {
    SendMessage(ipc_open("navigation"), "second");
    pause();
    return 0;
  });
  server_ = ipc_server_create("navigation");
  toChild_.Put("go");
  toChild_.Put("go");
  for (int i = 0; i < 2; ++i) {
    IpcMessage* message = AcceptMessage(server_);
    ASSERT_NE(message->clientRecord, nullptr);
    const std::uint32_t sender = message->clientRecord->processId;
    const std::string text = TakeText(message);
    EXPECT_EQ(sender, static_cast<std::uint32_t>((text == "first" ? first : second)->pid()));
  }
  ASSERT_NE(server_->clients, nullptr);
  ASSERT_NE(server_->clients->next, nullptr);
  EXPECT_EQ(server_->clients->next->next, nullptr);
}

TEST_F(IpcServerTest, ClientThatConnectsAnewIsFoundByItsNewestRecord) {
  Serve([] {
    IpcPeer* old = ipc_open("navigation");
    SendMessage(old, "old");
    SendMessage(ipc_open("navigation"), "new");
    return 0;
  });
  EXPECT_EQ(NextText(server_), "old");
  const IpcPeer* old = server_->clients;
  IpcMessage* message = AcceptMessage(server_);
  EXPECT_NE(message->clientRecord, old);
  EXPECT_EQ(message->clientRecord, server_->clients);
  EXPECT_EQ(server_->clients->next, old);
  EXPECT_EQ(TakeText(message), "new");
}

TEST_F(IpcServerTest, MessageToAClientGoesToItsTwoChannelsUnderItsOwnProcessId) {
  ServeRaw([this](RawConnection& connection) {
    SendRaw(connection.toChannel0, Message("x"));
    const RawMessage data = TakeRaw(connection.channels[0]);
    fromChild_.Put(data.bytes);
    MsgReply(data.id, 5, nullptr, 0);
    const RawMessage marker = TakeRaw(connection.channels[1]);
    fromChild_.Put(marker.bytes);
    MsgReply(marker.id, 0, nullptr, 0);
    return 0;
  });
  IpcMessage* received = AcceptMessage(server_);
  IpcPeer* client = received->clientRecord;
  ASSERT_NE(client, nullptr);
  ipc_finish(received, 0);
  IpcMessage* message = ipc_connect(client);
  EXPECT_EQ(ipc_write(message, "hello", 5), 5);
  EXPECT_EQ(ipc_disconnect(message), 0);
  const int pid = static_cast<int>(ClientProcess());
  EXPECT_EQ(fromChild_.Take(), Record(513, pid, 5, 0) + "hello");
  EXPECT_EQ(fromChild_.Take(), Record(513, pid, 0, 0));
}

TEST_F(IpcServerTest, MessageToADeadClientFails) {
  Serve([] {
    SendMessage(ipc_open("navigation"), "bye");
    pause();
    return 0;
  });
  IpcMessage* received = AcceptMessage(server_);
  IpcPeer* client = received->clientRecord;
  EXPECT_EQ(TakeText(received), "bye");
  client_->Kill();
  IpcMessage* message = ipc_connect(client);
  EXPECT_EQ(ipc_write(message, "hello", 5), -1);
  EXPECT_EQ(errno, ESRCH);
  EXPECT_EQ(ipc_disconnect(message), -1);
}

}  // namespace
}  // namespace ventrik::tests
