// SPDX-License-Identifier: Apache-2.0
// The program-wide pair that opens and closes one message.
#include "ipc/ipc_global_message.h"

#include "tests/ipc/ipc_fixture.h"

namespace ventrik::tests {
namespace {

using testing::internal::CaptureStderr;
using testing::internal::GetCapturedStderr;

class GlobalMessageTest : public IpcTest {
 protected:
  void TearDown() override {
    if (global_.client != nullptr) ipc_close(global_.client);
  }

  std::unique_ptr<ChildProcess> StartListeningServer() {
    return StartServer("navigation", [this](IpcServer* server) {
      for (;;) fromChild_.Put(NextText(server));
      return 0;
    });
  }

  GlobalMessage global_;
};

TEST_F(GlobalMessageTest, NothingIsOpenedWithoutAChannelName) {
  CaptureStderr();
  EXPECT_EQ(OpenGlobalMessage(global_), -1);
  EXPECT_EQ(GetCapturedStderr(), "");
}

TEST_F(GlobalMessageTest, MissingServerIsReportedAndTriedAgain) {
  global_.channelName = "navigation";
  CaptureStderr();
  EXPECT_EQ(OpenGlobalMessage(global_), -1);
  EXPECT_EQ(GetCapturedStderr(), "ERROR: No IPC connection to server!!!\n");
  EXPECT_FALSE(global_.connected);
  EXPECT_FALSE(global_.messageOpen);
  const auto server = StartListeningServer();
  EXPECT_EQ(OpenGlobalMessage(global_), 0);
  EXPECT_EQ(CloseGlobalMessage(global_), 0);
}

TEST_F(GlobalMessageTest, OpenedMessageGoesOutAndClosingEndsIt) {
  const auto server = StartListeningServer();
  global_.channelName = "navigation";
  for (const char* text : {"first", "later"}) {
    ASSERT_EQ(OpenGlobalMessage(global_), 0);
    EXPECT_TRUE(global_.messageOpen);
    EXPECT_EQ(ipc_write(global_.message, text, 5), 5);
    EXPECT_EQ(CloseGlobalMessage(global_), 0);
    EXPECT_FALSE(global_.messageOpen);
    EXPECT_EQ(fromChild_.Take(), text);
  }
}

TEST_F(GlobalMessageTest, ConnectionIsOpenedOnce) {
  const auto server = StartListeningServer();
  global_.channelName = "navigation";
  ASSERT_EQ(OpenGlobalMessage(global_), 0);
  ipc_message_release(global_.message);
  const IpcPeer* client = global_.client;
  ASSERT_EQ(OpenGlobalMessage(global_), 0);
  EXPECT_EQ(global_.client, client);
  ipc_message_release(global_.message);
}

TEST_F(GlobalMessageTest, ConnectionThatIsGoneIsReportedAndNotOpenedAnew) {
  const auto server = StartListeningServer();
  global_.channelName = "navigation";
  global_.connected = true;
  CaptureStderr();
  EXPECT_EQ(OpenGlobalMessage(global_), -1);
  EXPECT_EQ(GetCapturedStderr(), "ERROR: No IPC connection to server!!!\n");
}

TEST_F(GlobalMessageTest, ClosingWithoutAMessageDoesNothing) {
  EXPECT_EQ(CloseGlobalMessage(global_), 0);
}

}  // namespace
}  // namespace ventrik::tests
