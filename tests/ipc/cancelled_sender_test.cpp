// SPDX-License-Identifier: Apache-2.0
// A thread cancelled in Send leaves the layer free and the server in step, wherever it was.
#include <unistd.h>

#include <cerrno>

#include "tests/ipc/cancellable_thread.h"
#include "tests/ipc/layer_fixture.h"

namespace ventrik::tests {
namespace {

class CancelledSenderTest : public RawLayerTest {
 protected:
  static std::string Answer(const RawMessage& message, long status) {
    return MsgReply(message.id, status, nullptr, 0) == 0 ? "answered" : "nobody waits";
  }
};

TEST_F(CancelledSenderTest, InTheDataPartItSendsNoEndMarker) {
  const auto server = StartRawServer([this](RawServer& raw) {
    ShakeHands(raw);
    const RawMessage data = TakeRaw(raw.channel0);
    fromChild_.Put("taken");
    toChild_.Take();
    fromChild_.Put(Answer(data, 9));
    fromChild_.Put(ServeMessage(raw));
    return 0;
  });
  CancellableThread sender([this] { Send("cancelled"); });
  EXPECT_EQ(fromChild_.Take(), "taken");
  EXPECT_TRUE(sender.CancelAndJoin());
  toChild_.Put("go");
  EXPECT_EQ(fromChild_.Take(), "nobody waits");
  EXPECT_EQ(Send("next"), 0);
  EXPECT_EQ(fromChild_.Take(), "next");
}

TEST_F(CancelledSenderTest, InTheEndMarkerItSendsItOnceMoreOnItsWayOut) {
  const auto server = StartRawServer([this](RawServer& raw) {
    ShakeHands(raw);
    Answer(TakeRaw(raw.channel0), 9);
    const RawMessage first = TakeRaw(raw.channel1);
    fromChild_.Put("taken");
    const RawMessage again = TakeRaw(raw.channel1);
    fromChild_.Put(again.bytes == first.bytes ? "the same" : "another");
    fromChild_.Put(Answer(first, 0));
    fromChild_.Put(Answer(again, 0));
    fromChild_.Put(ServeMessage(raw));
    return 0;
  });
  CancellableThread sender([this] { Send("cancelled"); });
  EXPECT_EQ(fromChild_.Take(), "taken");
  EXPECT_TRUE(sender.CancelAndJoin());
  EXPECT_EQ(fromChild_.Take(), "the same");
  EXPECT_EQ(fromChild_.Take(), "nobody waits");
  EXPECT_EQ(fromChild_.Take(), "answered");
  EXPECT_EQ(Send("next"), 0);
  EXPECT_EQ(fromChild_.Take(), "next");
}

TEST_F(CancelledSenderTest, InAnEndMarkerThatNobodyTakesItStillLeaves) {
  const auto server = StartRawServer([this](RawServer& raw) {
    ShakeHands(raw);
    Answer(TakeRaw(raw.channel0), 9);
    TakeRaw(raw.channel1);
    fromChild_.Put("taken");
    toChild_.Take();
    fromChild_.Put(ServeMessage(raw));
    return 0;
  });
  CancellableThread sender([this] { Send("cancelled"); });
  EXPECT_EQ(fromChild_.Take(), "taken");
  EXPECT_TRUE(sender.CancelAndJoin());
  toChild_.Put("go");
  EXPECT_EQ(Send("next"), 0);
  EXPECT_EQ(fromChild_.Take(), "next");
}

TEST_F(CancelledSenderTest, InTheHandshakeItLeavesNothingOpenAndTheNextOneConnects) {
  const auto server = StartRawServer([this](RawServer& raw) {
    TakeRaw(raw.channel0);
    fromChild_.Put("asked");
    ShakeHands(raw);
    fromChild_.Put(ServeMessage(raw));
    return 0;
  });
  const int before = CountDescriptors();
  {
    CancellableThread sender([this] { Send("cancelled"); });
    EXPECT_EQ(fromChild_.Take(), "asked");
    EXPECT_TRUE(sender.CancelAndJoin());
  }
  EXPECT_EQ(CountDescriptors(), before);
  EXPECT_EQ(Send("next"), 0);
  EXPECT_EQ(fromChild_.Take(), "next");
}

TEST_F(CancelledSenderTest, AtAnyMomentItLeavesTheServerInStep) {
  const auto server = StartServer("raw", [this](IpcServer* own) {
    for (;;) {
      const std::string text = NextText(own);
      if (text != std::string(3000, 'c') && text != "(given up)") fromChild_.Put(text);
    }
    return 0;
  });
  Send("warm");
  EXPECT_EQ(fromChild_.Take(), "warm");
  const int before = CountDescriptors();
  RandomPause pause(300);
  for (int i = 0; i < 400; ++i) {
    CancellableThread sender([this] {
      for (;;) Send(std::string(3000, 'c'));
    });
    pause.Take();
    ASSERT_TRUE(sender.CancelAndJoin());
    if (i % 4 != 0) continue;
    ASSERT_EQ(Send(std::to_string(i)), 0);
    ASSERT_EQ(fromChild_.Take(), std::to_string(i));
  }
  EXPECT_LE(CountDescriptors(), before);
  EXPECT_EQ(console_.TakeText(), L"");
}

}  // namespace
}  // namespace ventrik::tests
