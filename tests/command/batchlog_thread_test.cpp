// SPDX-License-Identifier: Apache-2.0
// The thread that a line beginning with "batchlog(" starts. The lines here are refused by the
// parser, so that all that happens is the thread and what it prints.
#include <unistd.h>

#include <atomic>
#include <future>
#include <thread>

#include "state/process_state.h"
#include "tests/command/command_fixture.h"

namespace ventrik::tests {
namespace {

class BatchlogThreadTest : public CommandTest {
 protected:
  BatchlogThreadTest() { EXPECT_EQ(pipe(pipe_), 0); }
  ~BatchlogThreadTest() override {
    close(pipe_[0]);
    close(pipe_[1]);
  }

  void AwaitTheThread() {
    ASSERT_NE(app_.batchlogThread, 0u);
    pthread_join(app_.batchlogThread, nullptr);
    app_.batchlogThread = 0;
  }

  // Keeps the first that prints waiting, and tells of it when it is gone.
  void HoldFirstPrint() {
    console_.onPrint = [this](const std::wstring&) {
      if (held_.exchange(true)) return;
      struct Leaving {
        std::promise<void>& left;
        ~Leaving() { left.set_value(); }
      };
      const Leaving leaving{left_};
      entered_.set_value();
      char byte = 0;
      EXPECT_EQ(read(pipe_[0], &byte, 1), 1);
    };
  }

  int pipe_[2];
  std::atomic<bool> held_ = false;
  std::promise<void> entered_;
  std::promise<void> left_;
};

TEST_F(BatchlogThreadTest, LineRunsOnAThreadOfItsOwn) {
  std::thread::id printedBy = std::this_thread::get_id();
  console_.onPrint = [&printedBy](const std::wstring&) { printedBy = std::this_thread::get_id(); };
  Run(L"batchlog(");
  AwaitTheThread();
  EXPECT_EQ(console_.TakeTexts(), Texts{kBadSyntax});
  EXPECT_NE(printedBy, std::this_thread::get_id());
}

TEST_F(BatchlogThreadTest, ThreadNeedsNoCommandLock) {
  const CommandLockHolder hold;
  Run(L"batchlog(");
  AwaitTheThread();
  EXPECT_EQ(Printed(), kBadSyntax);
}

TEST_F(BatchlogThreadTest, CallerReturnsWhileTheThreadWorksAndTheLockIsFree) {
  HoldFirstPrint();
  Run(L"batchlog(");
  entered_.get_future().wait();
  EXPECT_TRUE(LockIsFree());
  Run(L"verd");
  EXPECT_EQ(server_.TakeEvents(), Events{"send 901"});
  EXPECT_EQ(write(pipe_[1], "x", 1), 1);
  AwaitTheThread();
}

TEST_F(BatchlogThreadTest, NextReplayCancelsTheOneThatRuns) {
  HoldFirstPrint();
  Run(L"batchlog(");
  entered_.get_future().wait();
  Run(L"batchlog(");
  left_.get_future().wait();  // unwound: nothing was written for it to read
  AwaitTheThread();
  EXPECT_EQ(console_.TakeTexts(), Texts{kBadSyntax});
}

TEST_F(BatchlogThreadTest, ThreadGetsTheLineWithItsVariablesReplaced) {
  Set(L"file", L"a b");
  Run(L"batchlog( \"$$file$$\"");
  AwaitTheThread();
  EXPECT_EQ(app_.currentLine.Copy(), L"batchlog(\"a b\"");
}

TEST_F(BatchlogThreadTest, LineWithABadReferenceStartsNoThread) {
  Run(L"batchlog(\"$$nosuch$$\")");
  EXPECT_EQ(app_.batchlogThread, 0u);
  EXPECT_EQ(Printed(), ErrorText(L"Variable 'nosuch' doesn't exist!"));
}

}  // namespace
}  // namespace ventrik::tests
