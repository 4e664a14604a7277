// SPDX-License-Identifier: Apache-2.0
#include "state/process_state.h"

#include <gtest/gtest.h>

#include <thread>

namespace ventrik {
namespace {

bool OthersMayLock() {
  bool taken = false;
  std::thread other([&taken] {
    taken = commandLock.try_lock();
    if (taken) UnlockCommands();
  });
  other.join();
  return taken;
}

TEST(CommandLock, HolderKeepsOtherThreadsOutForItsScope) {
  {
    const CommandLockHolder holder;
    EXPECT_FALSE(OthersMayLock());
    const CommandLockHolder again;  // by the same thread
    EXPECT_FALSE(OthersMayLock());
  }
  EXPECT_TRUE(OthersMayLock());
}

TEST(CommandLock, HolderThatIsNotWantedHoldsNothing) {
  const CommandLockHolder holder(false);
  EXPECT_TRUE(OthersMayLock());
}

}  // namespace
}  // namespace ventrik
