// SPDX-License-Identifier: Apache-2.0
// ipc_read: payload, further parts and the end marker, and the counts that the sender gets.
#include <unistd.h>

#include <cerrno>
#include <thread>

#include "tests/ipc/ipc_fixture.h"

namespace ventrik::tests {
namespace {

class IpcReadTest : public IpcTest {
 protected:
  struct Part {
    int channel;
    std::string bytes;
  };

  static Part Data(const std::string& payload, int channel = 0) {
    return {channel, Record(513, 1, static_cast<int>(payload.size()), 0) + payload};
  }
  static Part Marker() { return {1, Record(513, 1, 0, 0)}; }

  void TearDown() override {
    if (message_ != nullptr) ipc_finish(message_, 0);
    if (peer_ != nullptr) ipc_close(peer_);
  }

  // Connects to a server that sends these, one after the other was answered, and tells what each
  // was answered with. The first one is accepted here.
  void Accept(const std::vector<Part>& parts) {
    server_ = StartRawServer([this, &parts](RawServer& raw) {
      const RawClient client = ShakeHands(raw);
      for (const Part& part : parts) {
        const int coid = part.channel == 0 ? client.toChannel0 : client.toChannel1;
        fromChild_.Put(SendRaw(coid, part.bytes));
      }
      toChild_.Take();
      return 0;
    });
    peer_ = ipc_open("raw");
    ASSERT_NE(peer_, nullptr);
    message_ = ipc_accept(peer_);
    ASSERT_NE(message_, nullptr);
  }

  // What is in a buffer full of "?" after a read of `size` bytes, with the result in front.
  std::string Read(std::size_t size) {
    std::string buffer(size, '?');
    const int result = ipc_read(message_, buffer.data(), size);
    return std::to_string(result) + ":" + buffer;
  }

  static std::string Zeros(std::size_t count) { return std::string(count, '\0'); }

  std::unique_ptr<ChildProcess> server_;
  IpcPeer* peer_ = nullptr;
  IpcMessage* message_ = nullptr;
};

TEST_F(IpcReadTest, ExactSizeGivesThePayloadAndLeavesTheEndMarkerUnread) {
  Accept({Data("hello"), Marker()});
  EXPECT_EQ(Read(5), "0:hello");
  EXPECT_EQ(fromChild_.Take(), "5");
  EXPECT_EQ(message_->receiveId, -1);
  const RawMessage marker = TakeRaw(peer_->receiving.channels[1]);
  EXPECT_EQ(marker.bytes, Marker().bytes) << "still there";
  EXPECT_TRUE(fromChild_.IsEmpty()) << "and unanswered";
  MsgReply(marker.id, 0, nullptr, 0);
}

TEST_F(IpcReadTest, OneByteMoreTakesTheEndMarkerAndGivesTheCount) {
  Accept({Data("hello"), Marker()});
  EXPECT_EQ(Read(6), "5:hello" + Zeros(1));
  EXPECT_EQ(fromChild_.Take(), "5");
  EXPECT_EQ(fromChild_.Take(), "0");
  EXPECT_EQ(message_->receiveId, -1);
}

TEST_F(IpcReadTest, BufferIsFilledWithZerosBehindThePayload) {
  Accept({Data("hello"), Marker()});
  EXPECT_EQ(Read(300), "5:hello" + Zeros(295));
}

TEST_F(IpcReadTest, SizeZeroReadsNothing) {
  Accept({Data("hello"), Marker()});
  char byte = '?';
  EXPECT_EQ(ipc_read(message_, &byte, 0), 0);
  EXPECT_EQ(byte, '?');
  EXPECT_EQ(ipc_length(message_), 5u);
  EXPECT_EQ(Read(6), "5:hello" + Zeros(1));
}

TEST_F(IpcReadTest, SmallerSizeLeavesTheRestAndTheSenderWaiting) {
  Accept({Data("hello"), Marker()});
  EXPECT_EQ(Read(2), "0:he");
  EXPECT_EQ(ipc_length(message_), 3u);
  EXPECT_GT(message_->receiveId, 0);
  EXPECT_TRUE(fromChild_.IsEmpty());
}

TEST_F(IpcReadTest, OddityPayloadReadInTwoGoesIsAnsweredWithTheCountOfTheSecond) {
  Accept({Data("hello"), Marker()});
  EXPECT_EQ(Read(2), "0:he");
  EXPECT_EQ(Read(10), "3:llo" + Zeros(7));
  EXPECT_EQ(fromChild_.Take(), "3");
  EXPECT_EQ(fromChild_.Take(), "0");
}

TEST_F(IpcReadTest, OddityFurtherPartsAreAnsweredWithTheRunningTotal) {
  Accept({Data("abc"), Data("defg", 1), Data("h", 1), Marker()});
  EXPECT_EQ(Read(20), "8:abcdefgh" + Zeros(12));
  EXPECT_EQ(fromChild_.Take(), "3");
  EXPECT_EQ(fromChild_.Take(), "7");
  EXPECT_EQ(fromChild_.Take(), "8");
  EXPECT_EQ(fromChild_.Take(), "0");
}

TEST_F(IpcReadTest, FurtherPartThatIsNotWholeWantedStaysOpen) {
  Accept({Data("abc"), Data("defg", 1), Marker()});
  EXPECT_EQ(Read(5), "0:abcde");
  EXPECT_EQ(ipc_length(message_), 2u);
  EXPECT_EQ(Read(5), "2:fg" + Zeros(3));
  EXPECT_EQ(fromChild_.Take(), "3");
  EXPECT_EQ(fromChild_.Take(), "2");
}

TEST_F(IpcReadTest, OtherKindsOnChannelOneAreAnsweredWithTheTotalAndCountNothing) {
  Accept({Data("hello"),
          {1, Record(999, 1, 7, 0) + "ignored"},
          {1, Record(256, 0, 0, 0)},
          {1, "cut"},
          Marker()});
  EXPECT_EQ(Read(20), "5:hello" + Zeros(15));
  EXPECT_EQ(fromChild_.Take(), "5");
  for (int i = 0; i < 3; ++i) EXPECT_EQ(fromChild_.Take(), "5");
  EXPECT_EQ(fromChild_.Take(), "0");
}

TEST_F(IpcReadTest, EmptyMessageNeedsOnlyItsEndMarker) {
  Accept({Data(""), Marker()});
  EXPECT_EQ(Read(1), "0:" + Zeros(1));
  EXPECT_EQ(fromChild_.Take(), "0");
  EXPECT_EQ(fromChild_.Take(), "0");
}

TEST_F(IpcReadTest, LargePayloadArrivesWhole) {
  std::string payload(2'000'000, '\0');
  for (std::size_t i = 0; i < payload.size(); ++i) payload[i] = static_cast<char>(i * 7 + i / 255);
  Accept({Data(payload), Marker()});
  EXPECT_TRUE(Read(payload.size() + 1) == "2000000:" + payload + Zeros(1));
  EXPECT_EQ(fromChild_.Take(), "2000000");
}

TEST_F(IpcReadTest, HeaderThatClaimsMoreThanCameGivesZerosForTheRest) {
  Accept({{0, Record(513, 1, 10, 0) + "hello"}, Marker()});
  EXPECT_EQ(Read(11), "10:hello" + Zeros(6));
  EXPECT_EQ(fromChild_.Take(), "10");
}

TEST_F(IpcReadTest, HeaderThatClaimsLessThanCameHidesTheRest) {
  Accept({{0, Record(513, 1, 3, 0) + "hello"}, Marker()});
  EXPECT_EQ(Read(4), "3:hel" + Zeros(1));
  EXPECT_EQ(fromChild_.Take(), "3");
  EXPECT_EQ(fromChild_.Take(), "0");
}

TEST_F(IpcReadTest, ShutPeerEndsTheWaitForTheEndMarker) {
  Accept({Data("hello")});
  std::thread shutting([this] {
    fromChild_.Take();  // the payload was answered, so the read waits for what comes next
    usleep(30000);
    ipc_hang_up(peer_);
  });
  EXPECT_EQ(Read(6), "-1:hello" + Zeros(1));
  shutting.join();
}

TEST_F(IpcReadTest, SenderThatGaveUpOnItsDataPartIsNotWaitedFor) {
  server_ = StartRawServer([this](RawServer& raw) {
    const RawClient client = ShakeHands(raw);
    fromChild_.Put(SendRawWithin(50, client.toChannel0, Data("hello").bytes));
    SendRaw(client.toChannel0, Data("next one").bytes);
    return 0;
  });
  peer_ = ipc_open("raw");
  message_ = ipc_accept(peer_);
  ASSERT_NE(message_, nullptr);
  EXPECT_EQ(fromChild_.Take(), "error " + std::to_string(ETIMEDOUT));
  EXPECT_EQ(Read(6).substr(0, 3), "-1:");
  ipc_finish(message_, 0);
  message_ = ipc_accept(peer_);
  ASSERT_NE(message_, nullptr);
  EXPECT_EQ(ipc_length(message_), 8u);
}

}  // namespace
}  // namespace ventrik::tests
