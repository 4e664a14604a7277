// SPDX-License-Identifier: Apache-2.0
// Messages that arrive: lengths, statuses, data both ways, several threads.
#include <cstring>
#include <numeric>
#include <thread>

#include "tests/platform/channel_fixture.h"

namespace ventrik::tests {
namespace {

std::string Pattern(std::size_t length) {
  std::string bytes(length, '\0');
  for (std::size_t i = 0; i < length; ++i) bytes[i] = static_cast<char>(i * 31 + i / 251);
  return bytes;
}

TEST_F(ChannelTest, StatusOfTheReplyIsTheResultOfTheSend) {
  const int coid = ConnectToReceiver(0, AnswerLengths);
  EXPECT_EQ(SendText(coid, "twelve bytes"), 12);
  EXPECT_EQ(SendText(coid, ""), 0);
  EXPECT_EQ(SendText(coid, std::string(500000, 'x')), 500000);
}

TEST_F(ChannelTest, SideChannelIndexMarksTheConnectionId) {
  const int coid = ConnectToReceiver(0, AnswerLengths);
  EXPECT_NE(static_cast<unsigned>(coid) & _NTO_SIDE_CHANNEL, 0u);
  const int plain = ConnectAttach(0, receiver_->pid(), receiverChannel_, 0, 0);
  EXPECT_EQ(static_cast<unsigned>(plain) & _NTO_SIDE_CHANNEL, 0u);
}

TEST_F(ChannelTest, GatheredPiecesArriveAsOneMessageAndTheRestIsReadInPlace) {
  const std::string payload = Pattern(3000000);  // more than any socket holds
  const int coid = ConnectToReceiver(0, [&](int chid) {
    char head[16] = {};
    _msg_info info = {};
    const int id = MsgReceive(chid, head, sizeof head, &info);
    std::string rest(payload.size(), '\0');
    const ssize_t first = MsgRead(id, rest.data(), 1000, 16);
    const ssize_t second = MsgRead(id, rest.data() + 1000, payload.size(), 1016);
    const bool right = std::string(head, 16) == "sixteen bytes..." && rest == payload &&
                       first == 1000 && second == 2999000 && info.srcmsglen == 3000016 &&
                       info.pid == getppid();
    MsgReply(id, right ? 7 : -7, nullptr, 0);
    return 0;
  });
  char head[] = "sixteen bytes...";
  const iov_t parts[2] = {{head, 16}, {const_cast<char*>(payload.data()), payload.size()}};
  EXPECT_EQ(MsgSendv(coid, parts, 2, nullptr, 0), 7);
  EXPECT_EQ(receiver_->Wait(), 0);
}

TEST_F(ChannelTest, ReplyDataIsScatteredAndCutToWhatTheSenderTakes) {
  const int coid = ConnectToReceiver(0, [](int chid) {
    for (int i = 0; i < 2; ++i) {
      const int id = MsgReceive(chid, nullptr, 0, nullptr);
      MsgReply(id, 5, "abcdefgh", 8);
    }
    return 0;
  });
  char left[3] = {};
  char right[10] = {};
  const iov_t reply[2] = {{left, sizeof left}, {right, sizeof right}};
  EXPECT_EQ(MsgSendv(coid, nullptr, 0, reply, 2), 5);
  EXPECT_EQ(std::string(left, 3) + std::string(right, 5), "abcdefgh");
  char few[4] = {};
  EXPECT_EQ(MsgSend(coid, "", 0, few, sizeof few), 5);
  EXPECT_EQ(std::string(few, 4), "abcd");
}

TEST_F(ChannelTest, LargeReplyComesWhole) {
  const std::string data = Pattern(2000000);
  const int coid = ConnectToReceiver(0, [&](int chid) {
    const int id = MsgReceive(chid, nullptr, 0, nullptr);
    return MsgReply(id, 1, data.data(), data.size());
  });
  std::string reply(data.size(), '\0');
  EXPECT_EQ(MsgSend(coid, "x", 1, reply.data(), reply.size()), 1);
  EXPECT_TRUE(reply == data);
}

TEST_F(ChannelTest, ErrorReplySetsErrnoAtTheSender) {
  const int coid = ConnectToReceiver(0, [](int chid) {
    MsgError(MsgReceive(chid, nullptr, 0, nullptr), 89);
    MsgError(MsgReceive(chid, nullptr, 0, nullptr), 0);
    return 0;
  });
  errno = 0;
  EXPECT_EQ(SendText(coid, "no"), -1);
  EXPECT_EQ(errno, 89);
  EXPECT_EQ(SendText(coid, "an error of 0 is none"), 0);
}

TEST_F(ChannelTest, AnswerBeforeThePayloadIsReadReachesTheSenderAndTheNextMessageIsWhole) {
  const int coid = ConnectToReceiver(0, [](int chid) {
    char head[4];
    MsgReply(MsgReceive(chid, head, sizeof head, nullptr), 1, nullptr, 0);
    MsgReply(MsgReceive(chid, head, sizeof head, nullptr), 2, nullptr, 0);
    const int id = MsgReceive(chid, head, sizeof head, nullptr);
    MsgReply(id, std::string(head, 4) == "next" ? 3 : -3, nullptr, 0);
    return 0;
  });
  EXPECT_EQ(SendText(coid, std::string(3000000, 'a')), 1);  // more than any socket holds
  EXPECT_EQ(SendText(coid, std::string(30000, 'b')), 2);    // in the socket when it is answered
  EXPECT_EQ(SendText(coid, "next"), 3);
}

TEST_F(ChannelTest, ReadingGoesForwardOnlyAndEndsWithTheMessage) {
  const int coid = ConnectToReceiver(0, [](int chid) {
    char head[4];
    char part[8] = {};
    const int id = MsgReceive(chid, head, sizeof head, nullptr);
    const bool skipped = MsgRead(id, part, 3, 6) == 3 && std::string(part, 3) == "ghi";
    const bool refused = MsgRead(id, part, 1, 2) == -1 && errno == EINVAL;
    const bool cut = MsgRead(id, part, 8, 9) == 1 && part[0] == 'j';
    const bool behind = MsgRead(id, part, 8, 10) == 0 && MsgRead(id, part, 8, 1000) == 0;
    MsgReply(id, skipped && refused && cut && behind, nullptr, 0);
    return 0;
  });
  EXPECT_EQ(SendText(coid, "abcdefghij"), 1);
}

TEST_F(ChannelTest, UnknownIdsAreRefused) {
  EXPECT_EQ(SendText(12345, "x"), -1);
  EXPECT_EQ(errno, EBADF);
  EXPECT_EQ(SendText(-1, "x"), -1);
  EXPECT_EQ(errno, EBADF);
  EXPECT_EQ(ConnectDetach(12345), -1);
  EXPECT_EQ(errno, EBADF);
  EXPECT_EQ(MsgReceive(12345, nullptr, 0, nullptr), -1);
  EXPECT_EQ(errno, ESRCH);
  EXPECT_EQ(MsgReply(12345, 0, nullptr, 0), -1);
  EXPECT_EQ(errno, ESRCH);
  EXPECT_EQ(MsgRead(12345, nullptr, 0, 0), -1);
  EXPECT_EQ(errno, ESRCH);
  EXPECT_EQ(ChannelDestroy(12345), -1);
  EXPECT_EQ(errno, EINVAL);
}

TEST_F(ChannelTest, AnsweredMessageCannotBeAnsweredAgain) {
  const int coid = ConnectToReceiver(0, [](int chid) {
    const int id = MsgReceive(chid, nullptr, 0, nullptr);
    MsgReply(id, 4, nullptr, 0);
    return MsgReply(id, 5, nullptr, 0) == -1 && errno == ESRCH ? 0 : 1;
  });
  EXPECT_EQ(SendText(coid, "once"), 4);
  EXPECT_EQ(receiver_->Wait(), 0);
}

TEST_F(ChannelTest, ManyThreadsSendOverOneConnectionAndEachGetsItsOwnAnswer) {
  const int coid = ConnectToReceiver(0, [](int chid) {
    std::vector<std::thread> receivers;
    for (int i = 0; i < 3; ++i) {
      receivers.emplace_back([chid] {
        for (;;) {
          std::uint32_t number = 0;
          const int id = MsgReceive(chid, &number, sizeof number, nullptr);
          if (id < 0) return;
          MsgReply(id, static_cast<long>(number) + 1, nullptr, 0);
        }
      });
    }
    for (std::thread& receiver : receivers) receiver.join();
    return 0;
  });
  std::vector<int> wrong(4, 0);
  std::vector<std::thread> senders;
  for (std::size_t t = 0; t < wrong.size(); ++t) {
    senders.emplace_back([&wrong, t, coid] {
      for (std::uint32_t i = 0; i < 500; ++i) {
        const std::uint32_t number = static_cast<std::uint32_t>(t) * 1000 + i;
        if (MsgSend(coid, &number, sizeof number, nullptr, 0) != static_cast<long>(number) + 1) {
          ++wrong[t];
        }
      }
    });
  }
  for (std::thread& sender : senders) sender.join();
  EXPECT_EQ(std::accumulate(wrong.begin(), wrong.end(), 0), 0);
}

TEST_F(ChannelTest, ThousandsOfExchangesLeaveNoDescriptorBehind) {
  const int coid = ConnectToReceiver(0, AnswerLengths);
  SendText(coid, "first");
  const int before = CountDescriptors();
  for (int i = 0; i < 5000; ++i) ASSERT_EQ(SendText(coid, "again"), 5);
  EXPECT_EQ(CountDescriptors(), before);
}

TEST_F(ChannelTest, DetachedConnectionGivesItsDescriptorBack) {
  const int coid = ConnectToReceiver(0, AnswerLengths);
  const int before = CountDescriptors();
  EXPECT_EQ(ConnectDetach(coid), 0);
  EXPECT_EQ(CountDescriptors(), before - 1);
  EXPECT_EQ(SendText(coid, "x"), -1);
  EXPECT_EQ(errno, EBADF);
}

}  // namespace
}  // namespace ventrik::tests
