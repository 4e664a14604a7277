// SPDX-License-Identifier: Apache-2.0
// One monkey in the place of another, and monkeys that are cancelled.
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <future>

#include "platform/cancellation.h"
#include "tests/monkey/driver_fixture.h"

namespace ventrik::tests {
namespace {

class MonkeyRestartTest : public DriverTest {
 protected:
  // Keeps the first who comes here waiting until it is cancelled.
  void HoldTheFirst() {
    if (held_.exchange(true)) return;
    entered_.set_value();
    for (;;) usleep(1000);
  }
  void AwaitTheFirst() { entered_.get_future().wait(); }

  std::atomic<bool> held_ = false;
  std::promise<void> entered_;
};

TEST_F(MonkeyRestartTest, SecondMonkeyTakesThePlaceOfTheFirst) {
  Configure("[verd]\ndefault=1\n");
  AtPause([this](int) { HoldTheFirst(); });
  Run(L"monkey");
  AwaitTheFirst();
  Run(L"monkey(\"2\")");
  EXPECT_EQ(AwaitTheEnd(), (Texts{Sent(L"verd"), Sent(L"verd"), kFinished}));
  EXPECT_EQ(itemCount_, 400u);
  EXPECT_EQ(started_.size(), 2u);
}

TEST_F(MonkeyRestartTest, ManyMonkeysLeaveOneThatRuns) {
  Configure("[verd]\ndefault=1\n");
  AtPause([this](int) { HoldTheFirst(); });
  Run(L"monkey");
  AwaitTheFirst();
  for (int i = 0; i < 20; ++i) Run(L"monkey");
  Run(L"monkey(\"1\")");
  const Texts texts = AwaitTheEnd();
  EXPECT_EQ(std::count(texts.begin(), texts.end(), kFinished), 1);
  EXPECT_EQ(texts.back(), kFinished);
}

// The first is in a stretch that can't be cancelled while the second one is started.
TEST_F(MonkeyRestartTest, SecondMonkeyWaitsUntilTheFirstIsGone) {
  Configure("[verd]\ndefault=1\n");
  std::size_t itemsOfTheFirst = 0;
  AtPause([&](int) {
    const platform::CancellationDisabled whole;
    Run(L"monkey(\"0\")");
    usleep(50000);
    itemsOfTheFirst = monkey_.itemRecords.size();
  });
  EXPECT_EQ(RunToEnd(L"monkey"), Texts{kFinished});
  EXPECT_EQ(itemsOfTheFirst, 200u);
  EXPECT_EQ(monkey_.itemRecords.size(), 400u);
}

// Those in between were cancelled before their turn came.
TEST_F(MonkeyRestartTest, MonkeysThatWaitedInVainDefineNothing) {
  Configure("[verd]\ndefault=1\n");
  AtPause([this](int) {
    const platform::CancellationDisabled whole;
    for (int i = 0; i < 5; ++i) Run(L"monkey");
    Run(L"monkey(\"0\")");
  });
  EXPECT_EQ(RunToEnd(L"monkey"), Texts{kFinished});
  EXPECT_EQ(itemCount_, 400u);
}

TEST_F(MonkeyRestartTest, MonkeyMayStartItsOwnFollower) {
  Configure("[monkey(\"0\")]\ndefault=1\n");
  EXPECT_EQ(RunToEnd(L"monkey"), (Texts{Sent(L"monkey(\"0\")"), kFinished}));
  EXPECT_EQ(itemCount_, 400u);
}

TEST_F(MonkeyRestartTest, CancelledMonkeySaysNothing) {
  Configure("[verd]\ndefault=1\n");
  AtPause([this](int) { HoldTheFirst(); });
  Run(L"monkey");
  AwaitTheFirst();
  CancelTheThread();
  EXPECT_EQ(AwaitTheEnd(), Texts{});
  EXPECT_EQ(app_.monkeyThread, 0u);
}

TEST_F(MonkeyRestartTest, MonkeyThatIsCancelledInACommandReleasesTheLock) {
  Configure("[verd]\ndefault=1\n");
  console_.onPrint = [this](const std::wstring& text) {
    if (text.compare(0, 8, L"New SStr") == 0) HoldTheFirst();
  };
  Run(L"monkey");
  AwaitTheFirst();
  EXPECT_FALSE(LockIsFree());
  CancelTheThread();
  EXPECT_TRUE(LockIsFree());
  EXPECT_EQ(RunToEnd(L"monkey(\"0\")").back(), kFinished);
}

TEST_F(MonkeyRestartTest, MonkeyThatIsCancelledInAStopLeavesTheRequest) {
  Configure("[verd]\ndefault=1\n");
  monkey_.stopRequest = 5;
  AtPause([this](int number) {
    if (number == 2) HoldTheFirst();
  });
  Run(L"monkey");
  AwaitTheFirst();
  CancelTheThread();
  EXPECT_EQ(monkey_.stopRequest, 5);
}

}  // namespace
}  // namespace ventrik::tests
