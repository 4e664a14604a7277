// SPDX-License-Identifier: Apache-2.0
// COMMUNICATION_LAYER with one server: sending, receiving, connecting, and what failures leave.
#include "ipc/client_communication_layer_posix.h"

#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <thread>

#include "console/utf8.h"
#include "tests/ipc/layer_fixture.h"

namespace ventrik::tests {
namespace {

using testing::internal::CaptureStderr;
using testing::internal::GetCapturedStderr;

std::wstring SendError(int error) {
  return L"IPC MsgSendv error(" + std::to_wstring(error) + L"): " +
         Utf8ToWide(std::strerror(error)) + L"\n";
}

TEST_F(LayerTest, SendConnectsAndTheMessageArrivesWithNobodyListening) {
  const auto server = StartListeningServer();
  EXPECT_EQ(Send("first"), 0);
  EXPECT_EQ(fromChild_.Take(), "first");
  EXPECT_EQ(Send("second"), 0);
  EXPECT_EQ(fromChild_.Take(), "second");
}

TEST_F(LayerTest, EmptyMessageArrives) {
  const auto server = StartListeningServer();
  EXPECT_EQ(Send(""), 0);
  EXPECT_EQ(Send("behind it"), 0);
  EXPECT_EQ(fromChild_.Take(), "");
  EXPECT_EQ(fromChild_.Take(), "behind it");
}

TEST_F(LayerTest, MissingServerIsReportedAndTheNextSendConnects) {
  CaptureStderr();
  EXPECT_EQ(Send("nobody hears this"), -1);
  EXPECT_EQ(Send("nor this"), -1);
  EXPECT_EQ(GetCapturedStderr(), "ipc_connect() failed\nipc_connect() failed\n");
  const auto server = StartListeningServer();
  EXPECT_EQ(Send("heard"), 0);
  EXPECT_EQ(fromChild_.Take(), "heard");
}

TEST_F(LayerTest, ConnectTellsWhetherThereIsAConnection) {
  EXPECT_FALSE(layer_.Connect());
  const auto server = StartListeningServer();
  EXPECT_TRUE(layer_.Connect());
  EXPECT_TRUE(layer_.Connect());
}

TEST_F(LayerTest, BegunMessageHoldsUpOtherSendersUntilItEnds) {
  const auto server = StartServer("navigation", [this](IpcServer* own) {
    ipc_finish(AcceptMessage(own), 0);
    fromChild_.Put("an end marker alone");
    fromChild_.Put(NextText(own));
    return 0;
  });
  ASSERT_EQ(layer_.BeginSend(), 1);
  std::thread other([this] { Send("other"); });
  usleep(50000);
  EXPECT_TRUE(fromChild_.IsEmpty());
  EXPECT_EQ(layer_.EndSend(), 0);
  other.join();
  EXPECT_EQ(fromChild_.Take(), "an end marker alone");
  EXPECT_EQ(fromChild_.Take(), "other");
}

TEST_F(LayerTest, SeveralThreadsSendWholeMessages) {
  const auto server = StartServer("navigation", [this](IpcServer* own) {
    std::size_t torn = 0;
    for (int i = 0; i < 300; ++i) {
      const std::string text = NextText(own);
      if (text != std::string(text.size(), text.empty() ? ' ' : text[0])) ++torn;
    }
    fromChild_.Put(std::to_string(torn));
    return 0;
  });
  std::vector<std::thread> threads;
  for (const char letter : {'a', 'b', 'c'}) {
    threads.emplace_back([this, letter] {
      for (std::size_t i = 0; i < 100; ++i) Send(std::string(1 + i * 50, letter));
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(fromChild_.Take(), "0");
}

TEST_F(LayerTest, ReceiveGivesLengthPlusOneAndAZeroBehindThePayload) {
  const auto server = StartSendingServer([](IpcPeer* client) {
    SendMessage(client, "hello");
    return 0;
  });
  Send("start");
  char buffer[8] = {'?', '?', '?', '?', '?', '?', '?', '?'};
  EXPECT_EQ(layer_.Receive(buffer, sizeof buffer), 6);
  EXPECT_EQ(std::string(buffer, 8), std::string("hello\0??", 8));
}

TEST_F(LayerTest, EmptyMessageIsReceivedWithResultOne) {
  const auto server = StartSendingServer([](IpcPeer* client) {
    SendMessage(client, "");
    SendMessage(client, "behind it");
    return 0;
  });
  Send("start");
  char byte = '?';
  EXPECT_EQ(layer_.Receive(&byte, 1), 1);
  EXPECT_EQ(byte, '\0');
  EXPECT_EQ(Receive(), "behind it");
}

TEST_F(LayerTest, ReceiveConnectsByItself) {
  const auto server = StartServer("navigation", [this](IpcServer* own) {
    own->onConnect = [](IpcPeer&, void* told) { static_cast<Mailbox*>(told)->Put("connected"); };
    own->context = &fromChild_;
    return NextText(own) == "" ? 1 : 0;
  });
  std::thread listener([this] { EXPECT_EQ(Receive(), "-1"); });
  EXPECT_EQ(fromChild_.Take(), "connected");
  layer_.SetChannelName("nobody");
  layer_.Disconnect();
  listener.join();
}

TEST_F(LayerTest, ReceiveWithoutAServerGivesMinusOne) {
  EXPECT_EQ(Receive(), "-1");
}

TEST_F(LayerTest, LongestMessageIsReceivedAndALongerOneIsLeftUntilItsSenderGivesUp) {
  const auto server = StartSendingServer([this](IpcPeer* client) {
    SendMessage(client, std::string(511999, 'x'));
    IpcMessage* tooLong = ipc_connect(client);
    const std::string text(512000, 'y');
    const long taken = ipc_write(tooLong, text.data(), text.size());
    fromChild_.Put(taken == -1 ? std::to_string(errno) : "taken");
    ipc_disconnect(tooLong);
    SendMessage(client, "later");
    return 0;
  });
  Send("start");
  std::vector<char> buffer(kReceiveSize);
  EXPECT_EQ(layer_.Receive(buffer.data(), buffer.size()), 512000);
  EXPECT_EQ(std::count(buffer.begin(), buffer.end(), 'x'), 511999);
  EXPECT_EQ(layer_.Receive(buffer.data(), buffer.size()), -2);
  EXPECT_TRUE(fromChild_.IsEmpty()) << "its sender still waits";
  EXPECT_EQ(Receive(), "later");
  EXPECT_EQ(fromChild_.Take(), std::to_string(ETIMEDOUT));
}

TEST_F(LayerTest, DisconnectLetsTheSenderOfAnUnreadMessageGo) {
  const auto server = StartSendingServer([this](IpcPeer* client) {
    SendMessage(client, "too long");
    fromChild_.Put("free");
    return 0;
  });
  Send("start");
  char buffer[8];
  EXPECT_EQ(layer_.Receive(buffer, sizeof buffer), -2);
  layer_.Disconnect();
  EXPECT_EQ(fromChild_.Take(), "free");
}

TEST_F(LayerTest, DataPartThatNobodyAnswersFailsAndTheNextMessageArrives) {
  const auto server = StartListeningServer();
  Send("first");
  EXPECT_EQ(fromChild_.Take(), "first");
  server->Stop();
  EXPECT_EQ(Send("slow"), 0);  // 15 seconds
  EXPECT_EQ(console_.TakeText(), SendError(ETIMEDOUT));
  server->Continue();
  EXPECT_EQ(Send("next"), 0);
  EXPECT_EQ(fromChild_.Take(), "next");
  EXPECT_EQ(console_.TakeText(), L"");
}

TEST_F(LayerTest, DeadServerFailsEverySendWithAnErrorLine) {
  const auto server = StartListeningServer();
  Send("alive");
  server->Kill();
  const int before = CountDescriptors();
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(Send("dead"), 0);
    EXPECT_EQ(console_.TakeText(), SendError(ESRCH));
  }
  EXPECT_LE(CountDescriptors(), before);
}

TEST_F(LayerTest, NewServerUnderTheSameNameIsReachedOnlyAfterDisconnect) {
  auto server = StartListeningServer();
  Send("first");
  EXPECT_EQ(fromChild_.Take(), "first");
  server->Kill();
  server = StartListeningServer();
  EXPECT_EQ(Send("lost"), 0);
  EXPECT_EQ(console_.TakeText(), SendError(ESRCH));
  EXPECT_EQ(layer_.Disconnect(), 0);
  EXPECT_EQ(Send("second"), 0);
  EXPECT_EQ(fromChild_.Take(), "second");
}

TEST_F(RawLayerTest, WrongCountIsToldToNobodyAndNoEndMarkerFollows) {
  const auto server = StartRawServer([this](RawServer& raw) {
    ShakeHands(raw);
    MsgReply(TakeRaw(raw.channel0).id, 3, nullptr, 0);
    fromChild_.Put(ServeMessage(raw));
    return 0;
  });
  EXPECT_EQ(Send("hello"), 0);
  EXPECT_EQ(Send("next"), 0);
  EXPECT_EQ(fromChild_.Take(), "next") << "with its own end marker";
  EXPECT_EQ(console_.TakeText(), L"");
}

TEST_F(RawLayerTest, MessageOnTheWireIsOneDataPartAndOneEndMarker) {
  const auto server = StartRawServer([this](RawServer& raw) {
    ShakeHands(raw);
    const RawMessage data = TakeRaw(raw.channel0);
    fromChild_.Put(data.bytes);
    MsgReply(data.id, 5, nullptr, 0);
    const RawMessage marker = TakeRaw(raw.channel1);
    fromChild_.Put(marker.bytes);
    MsgReply(marker.id, 0, nullptr, 0);
    return 0;
  });
  EXPECT_EQ(Send("hello"), 0);
  EXPECT_EQ(fromChild_.Take(), Record(513, getpid(), 5, 0) + "hello");
  EXPECT_EQ(fromChild_.Take(), Record(513, getpid(), 0, 0));
}

TEST_F(LayerTest, DisconnectWithoutAConnectionEmptiesThePool) {
  ipc_message_release(ipc_message_acquire());
  EXPECT_GT(ipc_message_pool_size(), 0);
  EXPECT_EQ(layer_.Disconnect(), 0);
  EXPECT_EQ(ipc_message_pool_size(), 0);
}

TEST_F(LayerTest, DisconnectGivesAllDescriptorsBack) {
  const auto server = StartListeningServer();
  const int before = CountDescriptors();
  for (int i = 0; i < 20; ++i) {
    Send("hello");
    layer_.Disconnect();
  }
  EXPECT_EQ(CountDescriptors(), before);
}

TEST_F(LayerTest, HundredsOfMessagesBothWaysLeaveNoDescriptorBehind) {
  const auto server = StartEchoingServer("navigation");
  Send("warm");
  EXPECT_EQ(Receive(), "navigation: warm");
  const int before = CountDescriptors();
  for (int i = 0; i < 300; ++i) {
    Send("hello");
    ASSERT_EQ(Receive(), "navigation: hello");
  }
  EXPECT_EQ(CountDescriptors(), before);
}

TEST_F(LayerTest, SenderAndListenerThatBothConnectEndUpOnOneConnection) {
  const auto server = StartServer("navigation", [](IpcServer* own) {
    rlimit limit = {};  // every round leaves the server two connections
    getrlimit(RLIMIT_NOFILE, &limit);
    limit.rlim_cur = limit.rlim_max;
    setrlimit(RLIMIT_NOFILE, &limit);
    for (;;) {
      IpcMessage* message = AcceptMessage(own);
      int handshakes = 0;
      for (const IpcPeer* client = own->clients; client != nullptr; client = client->next) {
        ++handshakes;
      }
      IpcPeer* client = message->clientRecord;
      TakeText(message);
      SendMessage(client, std::to_string(handshakes));
    }
    return 0;
  });
  for (int round = 1; round <= 1000; ++round) {
    std::string heard;
    std::thread listener([this, &heard] { heard = Receive(); });
    Send("how many handshakes?");
    listener.join();
    ASSERT_EQ(heard, std::to_string(round));
    layer_.Disconnect();
  }
}

TEST_F(LayerTest, SendersThatAllConnectEndUpOnOneConnection) {
  const auto server = StartListeningServer();
  const int before = CountDescriptors();
  for (int round = 0; round < 50; ++round) {
    std::vector<std::thread> senders;
    for (int i = 0; i < 4; ++i) {
      senders.emplace_back([this] { Send("x"); });
    }
    for (std::thread& sender : senders) {
      sender.join();
      EXPECT_EQ(fromChild_.Take(), "x");
    }
    layer_.Disconnect();
    ASSERT_EQ(CountDescriptors(), before) << "no connection was forgotten";
  }
}

using LayerDeathTest = LayerTest;

TEST_F(LayerDeathTest, DestroyedWithAMessageOpenItPrintsAndAborts) {
  const auto server = StartListeningServer();
  EXPECT_DEATH(
      {
        console_.onPrint = [](const std::wstring& text) {
          std::fputs(std::string(text.begin(), text.end()).c_str(), stderr);
        };
        COMMUNICATION_LAYER layer;
        layer.SetChannelName("navigation");
        layer.BeginSend();
      },
      "ASSERT "
      "FAILED!\nfile:client_communication_layer_posix\nline:18\nfunc:~COMMUNICATION_LAYER\n");
}

}  // namespace
}  // namespace ventrik::tests
