// SPDX-License-Identifier: Apache-2.0
// The pool that message objects come from.
#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <thread>
#include <vector>

#include "ipc/ipc.h"

namespace ventrik::tests {
namespace {

class MessagePoolTest : public testing::Test {
 protected:
  void SetUp() override { ipc_cleanup(); }
  void TearDown() override { ipc_cleanup(); }

  static void TakeAndReleaseAtOnce(int count) {
    std::vector<IpcMessage*> taken;
    for (int i = 0; i < count; ++i) taken.push_back(ipc_message_acquire());
    for (IpcMessage* message : taken) ipc_message_release(message);
  }
};

TEST_F(MessagePoolTest, FiveReleasesKeepFour) {
  TakeAndReleaseAtOnce(4);
  EXPECT_EQ(ipc_message_pool_size(), 4);
  TakeAndReleaseAtOnce(5);
  EXPECT_EQ(ipc_message_pool_size(), 4);
}

TEST_F(MessagePoolTest, ReleasedObjectIsTakenAgainNewestFirst) {
  IpcMessage* first = ipc_message_acquire();
  IpcMessage* second = ipc_message_acquire();
  ipc_message_release(first);
  ipc_message_release(second);
  EXPECT_EQ(ipc_message_acquire(), second);
  EXPECT_EQ(ipc_message_acquire(), first);
  EXPECT_EQ(ipc_message_pool_size(), 0);
  ipc_message_release(first);
  ipc_message_release(second);
}

void ExpectCleared(const IpcMessage& message) {
  EXPECT_EQ(message.peer, nullptr);
  EXPECT_EQ(message.server, nullptr);
  EXPECT_EQ(message.clientRecord, nullptr);
  EXPECT_EQ(message.remaining, 0u);
  EXPECT_EQ(message.offset, 0u);
  EXPECT_EQ(message.receiveId, -1);
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(message.connections[i], -1);
    EXPECT_EQ(message.channels[i], -1);
  }
}

TEST_F(MessagePoolTest, NewObjectIsCleared) {
  IpcMessage* message = ipc_message_acquire();
  ExpectCleared(*message);
  ipc_message_release(message);
}

TEST_F(MessagePoolTest, ReusedObjectIsCleared) {
  IpcPeer peer = {};
  IpcServer server = {};
  IpcMessage* message = ipc_message_acquire();
  *message = {nullptr, &peer, &server, 1, 2, 3, {4, 5}, {6, 7}, 1, &peer, 8};
  ipc_message_release(message);
  ASSERT_EQ(ipc_message_acquire(), message);
  ExpectCleared(*message);
  ipc_message_release(message);
}

TEST_F(MessagePoolTest, TakingAnObjectSetsErrnoToZero) {
  errno = EPERM;
  IpcMessage* message = ipc_message_acquire();
  EXPECT_EQ(errno, 0);
  ipc_message_release(message);
}

TEST_F(MessagePoolTest, FinishGivesTheObjectBack) {
  IpcMessage* message = ipc_message_acquire();
  EXPECT_EQ(ipc_finish(message, 0), 0);
  EXPECT_EQ(ipc_message_pool_size(), 1);
}

TEST_F(MessagePoolTest, CleanupEmptiesThePoolAndTheNextObjectIsNew) {
  TakeAndReleaseAtOnce(3);
  EXPECT_EQ(ipc_cleanup(), 0);
  EXPECT_EQ(ipc_message_pool_size(), 0);
  IpcMessage* message = ipc_message_acquire();
  ExpectCleared(*message);
  ipc_message_release(message);
  EXPECT_EQ(ipc_message_pool_size(), 1);
}

TEST_F(MessagePoolTest, ThreadsNeverShareAnObject) {
  std::array<int, 3> shared = {};
  std::vector<std::thread> threads;
  for (std::size_t t = 0; t < shared.size(); ++t) {
    threads.emplace_back([&shared, t] {
      for (int i = 0; i < 5000; ++i) {
        IpcMessage* message = ipc_message_acquire();
        message->partIndex = static_cast<int>(t);
        std::this_thread::yield();
        if (message->partIndex != static_cast<int>(t)) ++shared[t];
        ipc_message_release(message);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(shared[0] + shared[1] + shared[2], 0);
  EXPECT_LE(ipc_message_pool_size(), 4);
}

}  // namespace
}  // namespace ventrik::tests
