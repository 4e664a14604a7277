// SPDX-License-Identifier: Apache-2.0
// A listener cancelled in Receive leaves the channel to the next one, wherever it was.
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

#include "tests/ipc/cancellable_thread.h"
#include "tests/ipc/layer_fixture.h"

namespace ventrik::tests {
namespace {

// The sockets of this process take less at once than the longest message has.
void LeaveSocketsLittleRoom() {
  const int room = 65536;  // bytes
  for (int descriptor = 0; descriptor < 256; ++descriptor) {
    setsockopt(descriptor, SOL_SOCKET, SO_SNDBUF, &room, sizeof room);
  }
}

class CancelledListenerTest : public RawLayerTest {
 protected:
  std::string Data(const std::string& payload) const {
    return Record(513, 1, static_cast<int>(payload.size()), 0) + payload;
  }
};

TEST_F(CancelledListenerTest, WaitingForAMessageItLeavesTheNextOneToTheNextListener) {
  const auto server = StartRawServer([this](RawServer& raw) {
    const RawClient client = ShakeHands(raw);
    toChild_.Take();
    fromChild_.Put(SendRaw(client.toChannel0, Data("hello")));
    fromChild_.Put(SendRaw(client.toChannel1, Record(513, 1, 0, 0)));
    return 0;
  });
  ASSERT_TRUE(layer_.Connect());
  CancellableThread listener([this] { Receive(); });
  usleep(50000);  // so that it waits
  EXPECT_TRUE(listener.CancelAndJoin());
  toChild_.Put("go");
  EXPECT_EQ(Receive(), "hello");
  EXPECT_EQ(fromChild_.Take(), "5");
  EXPECT_EQ(fromChild_.Take(), "0");
}

TEST_F(CancelledListenerTest, BeforeTheEndMarkerItLeavesThatToTheNextListener) {
  const auto server = StartRawServer([this](RawServer& raw) {
    const RawClient client = ShakeHands(raw);
    for (const char* text : {"first", "again"}) {
      fromChild_.Put(SendRaw(client.toChannel0, Data(text)));
      toChild_.Take();
      fromChild_.Put(SendRaw(client.toChannel1, Record(513, 1, 0, 0)));
    }
    return 0;
  });
  ASSERT_TRUE(layer_.Connect());
  CancellableThread listener([this] { Receive(); });
  EXPECT_EQ(fromChild_.Take(), "5");
  usleep(50000);  // so that it waits for the end marker
  EXPECT_TRUE(listener.CancelAndJoin());
  toChild_.Put("the first end marker");
  toChild_.Put("the second");
  EXPECT_EQ(Receive(), "again");
  EXPECT_EQ(fromChild_.Take(), "0");
  EXPECT_EQ(fromChild_.Take(), "5");
  EXPECT_EQ(fromChild_.Take(), "0");
}

TEST_F(CancelledListenerTest,
       ListenersCancelledOneAfterTheOtherBeforeTheEndMarkerLeaveItToTheLast) {
  const auto server = StartRawServer([this](RawServer& raw) {
    const RawClient client = ShakeHands(raw);
    fromChild_.Put(SendRaw(client.toChannel0, Data("first")));
    toChild_.Take();
    SendRaw(client.toChannel1, Record(513, 1, 0, 0));
    SendRaw(client.toChannel0, Data("again"));
    SendRaw(client.toChannel1, Record(513, 1, 0, 0));
    return 0;
  });
  ASSERT_TRUE(layer_.Connect());
  for (int i = 0; i < 3; ++i) {
    CancellableThread listener([this] { Receive(); });
    if (i == 0) {
      EXPECT_EQ(fromChild_.Take(), "5");
    }
    usleep(50000);  // so that it waits for the end marker
    EXPECT_TRUE(listener.CancelAndJoin());
  }
  toChild_.Put("go");
  EXPECT_EQ(Receive(), "again");
}

TEST_F(CancelledListenerTest, InThePayloadItRefusesTheMessageAndTheNextOneArrives) {
  const auto server = StartServer("raw", [this](IpcServer* own) {
    IpcMessage* start = AcceptMessage(own);
    IpcPeer* client = start->clientRecord;
    TakeText(start);
    IpcMessage* message = ipc_connect(client);
    const std::string payload(511000, 'x');
    LeaveSocketsLittleRoom();
    fromChild_.Put("sends");
    const long taken = ipc_write(message, payload.data(), payload.size());
    fromChild_.Put(taken == -1 ? "error " + std::to_string(errno) : "taken");
    ipc_disconnect(message);
    SendMessage(client, "later");
    return 0;
  });
  Send("start");
  EXPECT_EQ(fromChild_.Take(), "sends");
  usleep(50000);  // so that the socket is full
  server->Stop();
  CancellableThread listener([this] { Receive(); });
  usleep(50000);  // so that it waits for the rest
  EXPECT_TRUE(listener.CancelAndJoin());
  server->Continue();
  EXPECT_EQ(Receive(), "later");
  EXPECT_EQ(fromChild_.Take(), "error " + std::to_string(EINTR));
}

TEST_F(CancelledListenerTest, InTheHandshakeItLeavesTheConnectingToOthers) {
  const auto server = StartRawServer([this](RawServer& raw) {
    TakeRaw(raw.channel0);
    fromChild_.Put("asked");
    ShakeHands(raw);
    fromChild_.Put(ServeMessage(raw));
    return 0;
  });
  CancellableThread listener([this] { Receive(); });
  EXPECT_EQ(fromChild_.Take(), "asked");
  EXPECT_TRUE(listener.CancelAndJoin());
  EXPECT_EQ(Send("next"), 0);
  EXPECT_EQ(fromChild_.Take(), "next");
}

TEST_F(CancelledListenerTest, AtAnyMomentItLeavesNoMessageStuck) {
  constexpr int kMessages = 3000;
  const auto server = StartServer("raw", [this](IpcServer* own) {
    IpcMessage* start = AcceptMessage(own);
    IpcPeer* client = start->clientRecord;
    TakeText(start);
    SendMessage(client, "begin");
    for (int i = 0; i < kMessages; ++i) {
      SendMessage(client, std::to_string(i) + std::string(static_cast<std::size_t>(i % 5000), '.'));
    }
    fromChild_.Put("all sent");
    for (;;) SendMessage(client, "end");  // a message that a cancelled listener had in hand is lost
    return 0;
  });
  Send("start");
  EXPECT_EQ(Receive(), "begin");
  const int before = CountDescriptors();
  std::vector<std::string> heard;
  RandomPause pause(2000);
  bool ended = false;
  while (!ended) {
    CancellableThread listener([this, &heard, &ended] {
      while (!ended) {
        std::string text = Receive();
        ended = text == "end";
        heard.push_back(std::move(text));
      }
    });
    pause.Take();
    listener.CancelAndJoin();
  }
  EXPECT_EQ(fromChild_.Take(), "all sent");
  int last = -1;
  for (std::size_t i = 0; i + 1 < heard.size(); ++i) {
    const std::string& text = heard[i];
    const int number = std::atoi(text.c_str());
    ASSERT_GT(number, last) << "in order, none twice";
    ASSERT_EQ(text.size() - std::to_string(number).size(), static_cast<std::size_t>(number % 5000));
    last = number;
  }
  EXPECT_GT(heard.size(), 100u) << "most arrive";
  EXPECT_LE(CountDescriptors(), before);
}

}  // namespace
}  // namespace ventrik::tests
