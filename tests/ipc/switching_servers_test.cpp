// SPDX-License-Identifier: Apache-2.0
// COMMUNICATION_LAYER with two servers, and a listener that goes along.
#include <unistd.h>

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>

#include "tests/ipc/layer_fixture.h"

namespace ventrik::tests {
namespace {

class SwitchingServersTest : public LayerTest {
 protected:
  ~SwitchingServersTest() override { StopListening(); }

  void SwitchTo(const char* name) {
    layer_.SetChannelName(name);
    layer_.Disconnect();
  }

  void StartListening() {
    listener_ = std::thread([this] {
      for (;;) {
        const std::string text = Receive();
        const std::lock_guard<std::mutex> hold(lock_);
        if (stop_) return;
        if (text[0] == '-') continue;
        heard_.push_back(text);
        grown_.notify_all();
      }
    });
  }

  void StopListening() {
    if (!listener_.joinable()) return;
    {
      const std::lock_guard<std::mutex> hold(lock_);
      stop_ = true;
    }
    SwitchTo("nobody");
    listener_.join();
  }

  std::string NextHeard() {
    std::unique_lock<std::mutex> hold(lock_);
    if (!grown_.wait_for(hold, std::chrono::seconds(60), [this] { return !heard_.empty(); })) {
      return "(nothing)";
    }
    std::string text = heard_.front();
    heard_.pop_front();
    return text;
  }

 private:
  std::thread listener_;
  std::mutex lock_;
  std::condition_variable grown_;
  std::deque<std::string> heard_;
  bool stop_ = false;
};

TEST_F(SwitchingServersTest, EachServerGetsWhatIsSentToIt) {
  const auto navigation = StartEchoingServer("navigation");
  const auto synctool = StartEchoingServer("synctool");
  for (int i = 0; i < 40; ++i) {
    const char* name = i % 2 == 0 ? "navigation" : "synctool";
    SwitchTo(name);
    EXPECT_EQ(Send("hello"), 0);
    ASSERT_EQ(Receive(), std::string(name) + ": hello");
  }
}

TEST_F(SwitchingServersTest, NothingIsConnectedUntilTheNextSend) {
  const auto navigation = StartEchoingServer("navigation");
  Send("hello");
  EXPECT_EQ(Receive(), "navigation: hello");
  const int connected = CountDescriptors();
  SwitchTo("synctool");
  EXPECT_LT(CountDescriptors(), connected);
  const auto synctool = StartEchoingServer("synctool");
  Send("hello");
  EXPECT_EQ(Receive(), "synctool: hello");
}

TEST_F(SwitchingServersTest, ListenerInItsReceiveGoesAlong) {
  const auto navigation = StartEchoingServer("navigation");
  const auto synctool = StartEchoingServer("synctool");
  StartListening();
  for (int i = 0; i < 40; ++i) {
    const char* name = i % 2 == 0 ? "navigation" : "synctool";
    SwitchTo(name);
    EXPECT_EQ(Send(std::to_string(i)), 0);
    ASSERT_EQ(NextHeard(), std::string(name) + ": " + std::to_string(i));
  }
}

TEST_F(SwitchingServersTest, SwitchingWithAListenerLeavesNoDescriptorBehind) {
  const auto navigation = StartEchoingServer("navigation");
  const auto synctool = StartEchoingServer("synctool");
  const int before = CountDescriptors();
  StartListening();
  for (int i = 0; i < 20; ++i) {
    SwitchTo(i % 2 == 0 ? "navigation" : "synctool");
    Send("hello");
    NextHeard();
  }
  StopListening();
  EXPECT_EQ(CountDescriptors(), before);
}

TEST_F(SwitchingServersTest, ListenerStaysInItsReceiveWhenTheServerDiesAndLeavesItOnDisconnect) {
  auto server = StartEchoingServer("navigation");
  StartListening();
  Send("one");
  EXPECT_EQ(NextHeard(), "navigation: one");
  server->Kill();
  Send("lost");
  server = StartEchoingServer("navigation");
  SwitchTo("navigation");
  Send("two");
  EXPECT_EQ(NextHeard(), "navigation: two");
}

TEST_F(SwitchingServersTest, ServerThatDiesInTheMiddleOfItsMessageIsLeftOnDisconnect) {
  const auto server = StartSendingServer([this](IpcPeer* client) {
    IpcMessage* message = ipc_connect(client);
    ipc_write(message, "no end", 6);
    fromChild_.Put("written");
    return 0;
  });
  std::string heard;
  std::thread listener([this, &heard] { heard = Receive(); });
  Send("start");
  EXPECT_EQ(fromChild_.Take(), "written");
  server->Wait();
  const auto other = StartEchoingServer("synctool");
  SwitchTo("synctool");
  listener.join();
  EXPECT_EQ(heard, "no end") << "the payload was there";
  Send("hello");
  EXPECT_EQ(Receive(), "synctool: hello");
}

TEST_F(SwitchingServersTest, DisconnectBeforeAnEndMarkerLetsTheServerGo) {
  const auto server = StartSendingServer([this](IpcPeer* client) {
    IpcMessage* message = ipc_connect(client);
    ipc_write(message, "hello", 5);
    toChild_.Take();
    fromChild_.Put(std::to_string(ipc_disconnect(message)));
    return 0;
  });
  std::thread listener([this] { EXPECT_EQ(Receive(), "hello"); });
  Send("start");
  usleep(50000);  // so that the listener waits for the end marker
  SwitchTo("synctool");
  listener.join();
  toChild_.Put("go");
  EXPECT_EQ(fromChild_.Take(), "-1");
}

}  // namespace
}  // namespace ventrik::tests
