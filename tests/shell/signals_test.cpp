// SPDX-License-Identifier: Apache-2.0
#include "shell/signals.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

#include "shell/history.h"
#include "state/process_state.h"
#include "tests/support/child_process.h"
#include "tests/support/temporary_directory.h"

namespace ventrik::tests {
namespace {

class SignalsTest : public testing::Test {
 protected:
  // A process with the handlers installed and one line in its history; returns how it ended.
  int EndOf(const std::function<int()>& body) {
    ChildProcess child([&] {
      if (chdir(directory_.path().c_str()) != 0) return 99;
      unlink("qhistory.txt");  // of an earlier child
      static ClientApp app;
      LoadHistory(app);
      AppendToHistory(app, L"typed");
      InstallSignalHandlers(app);
      return body();
    });
    return child.Wait();
  }

  std::string History() const {
    std::stringstream text;
    text << std::ifstream(directory_.path() + "/qhistory.txt").rdbuf();
    return text.str();
  }

  TemporaryDirectory directory_;
};

TEST_F(SignalsTest, RealFaultSavesTheHistoryAndIsDiedOf) {
  const int end = EndOf([] {
    void* page = mmap(nullptr, 4096, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    *static_cast<volatile char*>(page) = 1;
    return 0;
  });
  EXPECT_EQ(end, -SIGSEGV);
  EXPECT_EQ(History(), "typed\n");
}

TEST_F(SignalsTest, AbortSavesTheHistoryAndIsDiedOf) {
  EXPECT_EQ(EndOf([]() -> int { std::abort(); }), -SIGABRT);
  EXPECT_EQ(History(), "typed\n");
}

TEST_F(SignalsTest, EachFatalSignalSavesOnceAndKillsTheSecondTime) {
  for (const int number : {SIGILL, SIGSEGV, SIGABRT, SIGBUS, SIGFPE}) {
    const int end = EndOf([number] {
      raise(number);
      const bool loopGoesOn = mainLoopRunning;
      if (!loopGoesOn || unlink("qhistory.txt") != 0) return 1;
      raise(number);
      return 2;
    });
    EXPECT_EQ(end, -number);
    EXPECT_EQ(History(), "") << "saved once, and removed since";
  }
}

TEST_F(SignalsTest, EndingSignalsStopTheLoopAndInterruptWaitsThatBeginLater) {
  for (const int number : {SIGINT, SIGTERM}) {
    const int end = EndOf([number] {
      raise(number);
      pause();  // without anything more to come this would never return
      return mainLoopRunning == 0 && listenerErrorsOn == 0 ? 0 : 1;
    });
    EXPECT_EQ(end, 0);
    EXPECT_EQ(History(), "typed\n");
  }
}

TEST_F(SignalsTest, SecondEndingSignalKills) {
  EXPECT_EQ(EndOf([] {
              raise(SIGINT);
              raise(SIGINT);
              return 0;
            }),
            -SIGINT);
}

}  // namespace
}  // namespace ventrik::tests
