// SPDX-License-Identifier: Apache-2.0
#include <pthread.h>
#include <unistd.h>

#include "state/process_state.h"
#include "tests/command/command_fixture.h"

namespace ventrik::tests {
namespace {

using LocalCommands = CommandTest;
using LocalCommandFiles = CommandFileTest;

TEST_F(LocalCommands, WaitSetsSecondsAsMilliseconds) {
  Run(L"wait(\"1\")");
  EXPECT_EQ(waitMilliseconds, 1000u);
  Run(L"wait(\"0x10\")");
  EXPECT_EQ(waitMilliseconds, 16000u);
  Run(L"wait(\"0\")");
  EXPECT_EQ(waitMilliseconds, 0u);
  EXPECT_EQ(Printed(), L"");
}

TEST_F(LocalCommands, WaitMultipliesModulo2To32) {
  Run(L"wait(\"-1\")");
  EXPECT_EQ(waitMilliseconds, 4294966296u);
  Run(L"wait(\"4294968\")");
  EXPECT_EQ(waitMilliseconds, 704u);
  Run(L"wait(\"99999999999\")");
  EXPECT_EQ(waitMilliseconds, 4294966296u);  // 2147483647 * 1000
}

TEST_F(LocalCommands, WaitForNoNumberIsNoWait) {
  waitMilliseconds = 500;
  Run(L"wait(\"a while\")");
  EXPECT_EQ(waitMilliseconds, 0u);
}

TEST_F(LocalCommands, WaitrespTakesANumberInAnyBase) {
  Run(L"waitresp(\"307\")");
  EXPECT_EQ(waitResponseId, 307);
  Run(L"waitresp(\"0x133\")");
  EXPECT_EQ(waitResponseId, 307);
  Run(L"waitresp(\"-1\")");
  EXPECT_EQ(waitResponseId, -1);
  EXPECT_EQ(Printed(), L"");
}

TEST_F(LocalCommands, WaitrespWithANameClearsTheWait) {
  waitResponseId = 303;
  Run(L"waitresp(\"RESP_GET_LIST\")");
  EXPECT_EQ(waitResponseId, 0);
  waitResponseId = 303;
  Run(L"waitresp(\"0\")");
  EXPECT_EQ(waitResponseId, 0);
}

TEST_F(LocalCommands, PromptIsSetByTheExactWords) {
  Run(L"prompt(\"off\")");
  EXPECT_EQ(autoPromptReady, 0);
  Run(L"prompt(\"on\")");
  EXPECT_EQ(autoPromptReady, 1);
  EXPECT_EQ(Printed(), L"");
}

TEST_F(LocalCommands, PromptStaysWithAnyOtherWord) {
  for (const std::uint8_t state : {std::uint8_t{0}, std::uint8_t{1}}) {
    for (const std::wstring word : {L"ON", L"OFF", L"On", L"onward", L"offside", L"", L"1"}) {
      autoPromptReady = state;
      Run(L"prompt(\"" + word + L"\")");
      EXPECT_EQ(autoPromptReady, state) << word;
    }
  }
  EXPECT_EQ(Printed(), L"");
}

TEST_F(LocalCommands, WeatherIsSetByTheExactWords) {
  Run(L"weather(\"on\")");
  EXPECT_EQ(weatherOn, 1);
  Run(L"weather(\"OFF\")");
  EXPECT_EQ(weatherOn, 1);
  Run(L"weather(\"off\")");
  EXPECT_EQ(weatherOn, 0);
  Run(L"weather(\"onward\")");
  EXPECT_EQ(weatherOn, 0);
  EXPECT_EQ(Printed(), L"");
}

TEST_F(LocalCommands, ScrollTellsItsState) {
  Run(L"scroll(\"on\")");
  EXPECT_EQ(app_.scrollOn, 1);
  EXPECT_EQ(console_.TakeTexts(), Texts{L"Scrolling : ON\n"});
  Run(L"scroll(\"off\")");
  EXPECT_EQ(app_.scrollOn, 0);
  EXPECT_EQ(console_.TakeTexts(), Texts{L"Scrolling : OFF\n"});
}

TEST_F(LocalCommands, ScrollIsOffWithAnyWordThatDoesntBeginWithOn) {
  for (const std::wstring word : {L"On", L"ON", L"", L"x", L"o"}) {
    app_.scrollOn = 1;
    Run(L"scroll(\"" + word + L"\")");
    EXPECT_EQ(app_.scrollOn, 0) << word;
    EXPECT_EQ(Printed(), L"Scrolling : OFF\n");
  }
}

TEST_F(LocalCommands, OddityScrollOnwardIsOn) {
  Run(L"scroll(\"onward\")");
  EXPECT_EQ(app_.scrollOn, 1);
}

TEST_F(LocalCommands, ServerSwitchesTheChannelAndSaysSo) {
  Run(L"server(\"synctool\")");
  EXPECT_EQ(console_.TakeTexts(), Texts{L"The server is changed to synctool.\n"});
  // The name before the disconnection: a listener that connects in between must not go back.
  EXPECT_EQ(server_.TakeEvents(), (Events{"name synctool", "disconnect"}));
}

TEST_F(LocalCommands, ServerNameIsNarrowAndAlwaysPrintedWhole) {
  Run(L"server(\"a\u00E9\u20ACb\")");
  EXPECT_EQ(server_.TakeEvents().at(0), "name a\xE9?b");
  EXPECT_EQ(Printed(), L"The server is changed to a??b.\n");
}

// A thread that reads from a pipe until something is there, and what became of it.
class WaitingThread {
 public:
  WaitingThread() {
    EXPECT_EQ(pipe(ends_), 0);
    EXPECT_EQ(pthread_create(&handle, nullptr, Wait, &ends_[0]), 0);
  }
  ~WaitingThread() {
    close(ends_[0]);
    close(ends_[1]);
  }
  WaitingThread(const WaitingThread&) = delete;
  WaitingThread& operator=(const WaitingThread&) = delete;

  void LetGo() { EXPECT_EQ(write(ends_[1], "x", 1), 1); }
  bool WasCancelled() {
    void* end = nullptr;
    pthread_join(handle, &end);
    return end == PTHREAD_CANCELED;
  }

  pthread_t handle = 0;

 private:
  static void* Wait(void* end) {
    char byte = 0;
    return read(*static_cast<int*>(end), &byte, 1) == 1 ? nullptr : end;
  }

  int ends_[2];
};

TEST_F(LocalCommands, QuitEndsTheMainLoopAndSendsNothing) {
  Run(L"quit");
  EXPECT_EQ(mainLoopRunning, 0);
  EXPECT_EQ(server_.TakeEvents(), Events{});
  EXPECT_EQ(Printed(), L"");
}

TEST_F(LocalCommands, QuitTakesAnyNumberOfParameters) {
  Run(L"quit(\"x\",\"y\")");
  EXPECT_EQ(mainLoopRunning, 0);
}

TEST_F(LocalCommands, QuitCancelsListenerAndMonkeyAndLeavesTheReplay) {
  WaitingThread listener;
  WaitingThread monkey;
  WaitingThread replay;
  app_.listenerThread = listener.handle;
  app_.monkeyThread = monkey.handle;
  app_.batchlogThread = replay.handle;
  Run(L"quit");
  EXPECT_TRUE(listener.WasCancelled());
  EXPECT_TRUE(monkey.WasCancelled());
  replay.LetGo();
  EXPECT_FALSE(replay.WasCancelled());
}

TEST_F(LocalCommandFiles, RldrespReadsTheFilterFile) {
  WriteFile("response_filter.txt", "RESP_GET_LIST 0\n");
  Run(L"rldresp(\"on\")");
  EXPECT_EQ(app_.responseFilter.Copy(), std::vector<std::int32_t>{307});
  EXPECT_EQ(console_.TakeTexts(), Texts{L"Response Filter : ON\n"});
}

TEST_F(LocalCommandFiles, RldrespOffThenOnTakesChangesOfTheFile) {
  WriteFile("response_filter.txt", "RESP_GET_LIST 0\n");
  Run(L"rldresp(\"on\")");
  Run(L"rldresp(\"off\")");
  EXPECT_EQ(app_.responseFilter.Copy(), std::vector<std::int32_t>{});
  EXPECT_EQ(Printed(), L"Response Filter : ON\nResponse Filter : OFF\n");
  WriteFile("response_filter.txt", "RESP_GET_SPELL 0\n");
  EXPECT_EQ(app_.responseFilter.Copy(), std::vector<std::int32_t>{});
  Run(L"rldresp(\"on\")");
  EXPECT_EQ(app_.responseFilter.Copy(), std::vector<std::int32_t>{303});
}

TEST_F(LocalCommandFiles, RldrespWithAnyOtherWordIsOff) {
  app_.responseFilter.Store({307});
  Run(L"rldresp(\"ON\")");
  EXPECT_EQ(app_.responseFilter.Copy(), std::vector<std::int32_t>{});
  EXPECT_EQ(Printed(), L"Response Filter : OFF\n");
}

TEST_F(LocalCommandFiles, StartlogAndStoplogAreSilentAndLogResponsesOnly) {
  Run(L"startlog(\"a.txt\")");
  Run(L"help");
  Printed();
  QueueResponseText(printer_, "INFO_HEARTBEAT> Heartbeat\n");
  Run(L"startlog(\"b.txt\")");
  QueueResponseText(printer_, "INFO_HEARTBEAT> Heartbeat\n");
  Run(L"stoplog");
  Run(L"stoplog");
  EXPECT_EQ(Content("a.txt"), "INFO_HEARTBEAT> Heartbeat\nINFO_HEARTBEAT> Heartbeat\n");
  EXPECT_EQ(Content("b.txt"), "(none)");
  EXPECT_EQ(Printed(), L"INFO_HEARTBEAT> Heartbeat\nINFO_HEARTBEAT> Heartbeat\n");
}

TEST_F(LocalCommandFiles, StartlogNarrowsItsPath) {
  Run(L"startlog(\"caf\u00E9\u0151\")");
  Run(L"stoplog");
  EXPECT_EQ(Content("caf\xE9?"), "");
}

TEST_F(LocalCommands, StartlogOfAPathThatCantBeOpenedSaysNothing) {
  Run(L"startlog(\"/no/such/place\")");
  EXPECT_FALSE(printer_.logFile.Copy());
  EXPECT_EQ(Printed(), L"");
}

TEST_F(LocalCommandFiles, BatchOpensAFileAndReadsNothingOfIt) {
  WriteFile("a.txt", std::string("\xFF\xFEq\0u\0i\0t\0", 10));
  Run(L"batch(\"a.txt\")");
  EXPECT_EQ(console_.TakeTexts(), Texts{L"Batch file a.txt is running...\n"});
  EXPECT_EQ(app_.batchFiles.With([](auto& stack) { return stack.size(); }), 1u);
  EXPECT_EQ(mainLoopRunning, 1);
}

TEST_F(LocalCommandFiles, BatchNarrowsItsPath) {
  WriteFile("caf\xE9?", "\xFF\xFE");
  Run(L"batch(\"caf\u00E9\u0151\")");
  EXPECT_EQ(console_.TakeTexts(), Texts{L"Batch file caf?? is running...\n"});
}

}  // namespace
}  // namespace ventrik::tests
