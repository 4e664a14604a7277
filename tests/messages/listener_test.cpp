// SPDX-License-Identifier: Apache-2.0
// The listener on real channels, with a server in a process of its own.
#include "messages/listener.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "console/response_printer.h"
#include "ipc/client_communication_layer_posix.h"
#include "messages/builders.h"
#include "messages/function_ids.h"
#include "platform/thread_start.h"
#include "state/process_state.h"
#include "tests/messages/bytes.h"
#include "tests/support/child_process.h"
#include "tests/support/recorded_console.h"
#include "tests/support/temporary_directory.h"

namespace ventrik::tests {
namespace {

constexpr const char* kServer = "listened";
constexpr int kHang = 60'000;  // milliseconds

// Sends one block to a client.
void SendBlock(IpcPeer* client, const Bytes& block) {
  IpcMessage* message = ipc_connect(client);
  ipc_write(message, block.value.data(), block.value.size());
  ipc_disconnect(message);
}

// A version's response with a number in it.
Bytes NumberedVersion(int number) {
  const std::string digits = std::to_string(10000 + number).substr(1);
  Bytes block = Hex("86030000 04000000");
  block.value.insert(block.value.end(), digits.begin(), digits.end());
  block.value.insert(block.value.end(), 4, 0);
  return block;
}

// A database version of so many bytes in all.
Bytes LongVersion(std::size_t size) {
  Bytes block = Hex("87030000 01000000");
  block.value.resize(size, 'x');
  return block;
}

class ListenerTest : public testing::Test {
 protected:
  // The server is forked before this process has threads; it serves once it is told to. A request
  // for the program's version is answered with "0001", the next with "0002" and so on; one for the
  // data's version with a block of `longAnswer` bytes.
  explicit ListenerTest(std::size_t longAnswer = 0)
      : server_([this, longAnswer] { return Serve(longAnswer); }) {
    communicationLayer = &layer_.emplace();
    layer_->SetChannelName(kServer);
    responsePrinter = &printer_;
  }

  ~ListenerTest() override {
    listenerErrorsOn = 0;
    platform::CancelAndForget(app_.listenerThread);
    EXPECT_TRUE(platform::WaitForThreads(kHang));
    listenerErrorsOn = 1;
    communicationLayer = nullptr;
    responsePrinter = nullptr;
  }

  void StartServer() {
    start_.Notify();
    ASSERT_EQ(ready_.Await(), 1);
  }

  int Serve(std::size_t longAnswer) {
    start_.Await();
    IpcServer* server = ipc_server_create(kServer);
    ready_.Notify(server != nullptr);
    if (server == nullptr) return 1;
    for (int number = 1;;) {
      IpcMessage* message = ipc_server_accept(server);
      if (message == nullptr) continue;
      std::int32_t id = -1;
      char rest[64];
      ipc_read(message, &id, sizeof id);
      ipc_read(message, rest, sizeof rest);
      ipc_finish(message, 0);
      if (id == REQU_GET_SW_VERSION) SendBlock(server->clients, NumberedVersion(number++));
      if (id == REQU_GET_DB_VERSION) SendBlock(server->clients, LongVersion(longAnswer));
    }
  }

  static std::wstring VersionText(const std::wstring& digits) {
    return L"RESP_GET_SW_VERSION> swVersion: " + digits + L"\n";
  }

  TemporaryRuntimeDirectory directory_;
  Signal start_;
  Signal ready_;
  ChildProcess server_;
  RecordedConsole console_;
  ResponsePrinter printer_;
  std::optional<COMMUNICATION_LAYER> layer_;
  ClientApp app_;
};

TEST_F(ListenerTest, PrintsWhatTheServerSends) {
  StartServer();
  StartListener(app_);
  EXPECT_NE(app_.listenerThread, 0u);
  send::REQU_GET_SW_VERSION();
  EXPECT_TRUE(console_.WaitFor(VersionText(L"0001")));
  send::REQU_GET_SW_VERSION();
  EXPECT_TRUE(console_.WaitFor(VersionText(L"0002")));
  EXPECT_EQ(console_.TakeText(), VersionText(L"0001") + VersionText(L"0002"));
}

TEST_F(ListenerTest, EndsTheWaitForAMessage) {
  StartServer();
  StartListener(app_);
  waitResponseId = RESP_GET_SW_VERSION;
  send::REQU_GET_SW_VERSION();
  EXPECT_TRUE(console_.WaitFor(VersionText(L"0001")));
  EXPECT_EQ(waitResponseId, 0);
}

TEST_F(ListenerTest, SaysOnStandardErrorThatAThreadIsMade) {
  StartServer();
  testing::internal::CaptureStderr();
  StartListener(app_);
  StartListener(app_);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "creating listener thread\ncreating listener thread\n");
}

TEST_F(ListenerTest, SecondListenerTakesOver) {
  StartServer();
  StartListener(app_);
  send::REQU_GET_SW_VERSION();
  EXPECT_TRUE(console_.WaitFor(VersionText(L"0001")));
  StartListener(app_);
  send::REQU_GET_SW_VERSION();
  EXPECT_TRUE(console_.WaitFor(VersionText(L"0002")));
  EXPECT_EQ(console_.TakeText(), VersionText(L"0001") + VersionText(L"0002"));
}

TEST_F(ListenerTest, EachMessageIsPrintedOnceHoweverOftenAListenerIsStarted) {
  StartServer();
  std::wstring expected;
  for (int i = 1; i <= 50; ++i) {
    StartListener(app_);
    StartListener(app_);
    send::REQU_GET_SW_VERSION();
    expected += VersionText(std::to_wstring(10000 + i).substr(1));
    ASSERT_TRUE(console_.WaitFor(VersionText(std::to_wstring(10000 + i).substr(1))));
  }
  EXPECT_EQ(console_.TakeText(), expected);
}

TEST_F(ListenerTest, WithoutAServerErrorsComeInAStream) {
  int lines = 0;
  console_.onPrint = [&lines](const std::wstring& text) {
    if (text == L"\n" && ++lines == 3) listenerErrorsOn = 0;
  };
  StartListener(app_);
  const std::wstring error = L"DDEMO:\tListen Error: -1\n\n";
  EXPECT_TRUE(console_.WaitFor(error + error + error));
  EXPECT_EQ(console_.TakeText(), error + error + error);
}

TEST_F(ListenerTest, WithErrorsOffAMissingServerIsSilent) {
  listenerErrorsOn = 0;
  StartListener(app_);
  StartServer();
  send::REQU_GET_SW_VERSION();
  EXPECT_TRUE(console_.WaitFor(VersionText(L"0001")));
  EXPECT_EQ(console_.TakeText(), VersionText(L"0001"));
}

TEST_F(ListenerTest, ServerThatComesLateIsFound) {
  console_.onPrint = [](const std::wstring& text) {
    if (text == L"\n") listenerErrorsOn = 0;
  };
  StartListener(app_);
  EXPECT_TRUE(console_.WaitFor(L"DDEMO:\tListen Error: -1\n\n"));
  StartServer();
  console_.TakeText();
  send::REQU_GET_SW_VERSION();
  EXPECT_TRUE(console_.WaitFor(VersionText(L"0001")));
  EXPECT_EQ(console_.TakeText(), VersionText(L"0001"));
}

class LongestMessageTest : public ListenerTest {
 protected:
  LongestMessageTest() : ListenerTest(511999) {}
};

TEST_F(LongestMessageTest, IsPrintedWhole) {
  StartServer();
  StartListener(app_);
  send::REQU_GET_DB_VERSION();
  EXPECT_TRUE(console_.WaitFor(L"x\n"));
  EXPECT_TRUE(console_.TakeText() ==
              L"RESP_GET_DB_VERSION> dbVersion: " + std::wstring(511999 - 8, L'x') + L"\n");
}

class TooLongMessageTest : public ListenerTest {
 protected:
  TooLongMessageTest() : ListenerTest(512000) {}
};

TEST_F(TooLongMessageTest, IsReportedAndTheListenerGoesOn) {
  StartServer();
  StartListener(app_);
  send::REQU_GET_DB_VERSION();
  const std::wstring error = L"DDEMO:\tListen Error: -2\n\n";
  EXPECT_TRUE(console_.WaitFor(error));
  EXPECT_EQ(console_.TakeText(), error);
}

}  // namespace
}  // namespace ventrik::tests
