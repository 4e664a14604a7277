// SPDX-License-Identifier: Apache-2.0
#include "monkey/driver.h"

#include <pthread.h>

#include <array>
#include <cstdlib>
#include <ctime>
#include <iterator>
#include <memory>
#include <mutex>

#include "command/executor.h"
#include "command/parameters.h"
#include "console/press_c.h"
#include "console/utf8.h"
#include "messages/milli_clock.h"
#include "monkey/command_generation.h"
#include "monkey/draw.h"
#include "monkey/feedback.h"
#include "monkey/monkey.h"
#include "monkey/monkey_config.h"
#include "monkey/pace.h"
#include "monkey/weights.h"
#include "platform/thread_start.h"
#include "state/logger.h"
#include "state/out_of_memory.h"

namespace ventrik {
namespace {

constexpr unsigned kMicrosecondsPerSecond = 1'000'000;
constexpr int kItemRounds = 50;                      // of item definitions at start
constexpr std::uint32_t kStartReleased = 1'200'000;  // milliseconds after the start
constexpr int kLeastResetInterval = 900'000;         // milliseconds
constexpr int kResetIntervals = 1'800'001;           // possible ones
constexpr std::int32_t kMostRepeats = 20;            // of one list

// One monkey at a time: a new thread waits until the one that was cancelled is gone.
std::mutex monkeyTurn;

struct StartBlock {
  ClientApp& app;
  std::int32_t count;
};

std::uint32_t DrawResetInterval() {
  return static_cast<std::uint32_t>(DrawBelow(kResetIntervals) + kLeastResetInterval);
}

// What the cycles keep between them.
struct Run {
  std::uint32_t startTime;
  std::uint32_t resetTime;
  std::uint32_t resetInterval;
};

void DefineItems(ClientApp& app, Monkey& monkey) {
  std::vector<std::int32_t> unused;
  for (int round = 0; round < kItemRounds; ++round) {
    for (const wchar_t* type :
         {L"ListSStringArray", L"DetSStringArray", L"WepGeo", L"WepTempIcon"}) {
      SendItemCommand(app, monkey, type, L"", unused);
    }
  }
}

std::wstring NextLine(ClientApp& app, Monkey& monkey) {
  if (monkey.queuedCommands.empty()) return GenerateCommand(app, monkey);
  std::wstring line = std::move(monkey.queuedCommands.front());
  monkey.queuedCommands.pop_front();
  return line;
}

void ResetWeightsInTime(Monkey& monkey, Run& run) {
  if (MilliClock() - run.resetTime < run.resetInterval) return;
  RestoreDefaultWeights(monkey);
  run.resetTime = MilliClock();
  run.resetInterval = DrawResetInterval();
}

void SendLine(ClientApp& app, Monkey& monkey, const std::wstring& line, Run& run) {
  logger->print(L"%sCmd> %sMONKEY:%ls%s\n", ColourRed, ColourGreen, line.c_str(), ColourReset);
  ExecuteCommand(app, line, true);
  if (!monkey.activeRoute) ApplyInfluences(monkey, line);
  ResetWeightsInTime(monkey, run);
}

// Returns false if the monkey is to end.
bool ObeyStopRequest(Monkey& monkey) {
  const std::int32_t request = monkey.stopRequest;
  if (request == 0) return true;
  if (request > 0) {
    logger->print(L"Monkey stopped for %d seconds.\n", request);
    Pause(static_cast<unsigned>(request) * kMicrosecondsPerSecond);
  }
  SetStopRequest(monkey, 0);
  return request > 0;
}

// Returns false if the monkey is to end.
bool RunCycle(ClientApp& app, Monkey& monkey, Run& run) {
  if (!monkey.monkeyRunning) return false;
  Pause(kMicrosecondsPerSecond);
  std::srand(MilliClock());
  if (MilliClock() > run.startTime + kStartReleased) UnblockCommand(monkey, L"start");
  const std::wstring line = NextLine(app, monkey);
  if (monkey.commandValid) {
    SendLine(app, monkey, line, run);
  } else {
    logger->print(L"%scmd> %sINVALID:%ls%s\n", ColourRed, ColourGreen, line.c_str(), ColourReset);
  }
  return ObeyStopRequest(monkey);
}

void RunCycles(ClientApp& app, Monkey& monkey, std::int32_t count, Run& run) {
  for (std::int32_t counter = 0; count < 0 || counter < count;) {
    bool goesOn = true;
    RunIfMemoryLasts([&] { goesOn = RunCycle(app, monkey, run); });
    if (!goesOn) return;
    if (count >= 0) ++counter;
  }
}

void LiveAsMonkey(ClientApp& app, Monkey& monkey, std::int32_t count) {
  std::srand(MilliClock());
  Run run;
  run.startTime = run.resetTime = MilliClock();
  run.resetInterval = DrawResetInterval();
  std::srand(static_cast<unsigned>(std::time(nullptr)));
  LoadMonkeyConfig(monkey);
  DefineItems(app, monkey);
  if (stopRequested) {
    logger->print(L"Monkey can not start\n");
    return;
  }
  BlockCommand(monkey, L"start");
  BlockCommand(monkey, L"rkill");
  RunCycles(app, monkey, count, run);
}

void* MonkeyThread(void* parameters) {
  const std::unique_ptr<StartBlock> start(static_cast<StartBlock*>(parameters));
  const std::lock_guard<std::mutex> turn(monkeyTurn);
  pthread_testcancel();  // another one may have been started while this one waited
  RunIfMemoryLasts([&] { LiveAsMonkey(start->app, Monkey::Instance(), start->count); });
  logger->print(L"Monkey finished.\n");
  return nullptr;
}

void PrintStart(std::int32_t count) {
  if (count != -1) {
    logger->print(L"Monkey started for %d rounds.\n", count);
    return;
  }
  const std::time_t now = std::time(nullptr);
  std::tm local = {};
  localtime_r(&now, &local);
  std::array<char, 32> text = {};
  std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S", &local);
  logger->print(L"Infinite monkey started at %ls.\n", Utf8ToWide(text.data()).c_str());
}

// The first parameter as a number; -1 without one.
std::int32_t FirstNumber(const CommandLine& line) {
  return line.parameters.empty() ? -1 : ParamInt(line.parameters[0]);
}

void RunMonkey(ClientApp& app, CommandLine& line) {
  StartMonkey(app, FirstNumber(line));
}

void RunStopmonkey(ClientApp&, CommandLine& line) {
  SetStopRequest(Monkey::Instance(), FirstNumber(line));
}

constexpr CommandRow kMonkeyCommands[] = {
    {L"monkey", 0, RunMonkey, {"count"}},
    {L"stopmonkey", 0, RunStopmonkey, {"seconds"}},
};

}  // namespace

CommandRows MonkeyCommands() {
  return {std::begin(kMonkeyCommands), std::end(kMonkeyCommands)};
}

void StartMonkey(ClientApp& app, std::int32_t count) {
  platform::CancelAndForget(app.monkeyThread);
  auto start = std::make_unique<StartBlock>(StartBlock{app, count});
  if (platform::StartThread(app.monkeyThread, MonkeyThread, start.get())) {
    static_cast<void>(start.release());  // the thread's now
  }
  PrintStart(count);
}

void FollowMessage(ClientApp& app, const ReceivedBlock& block) {
  Monkey& monkey = Monkey::Instance();
  if (monkey.monkeyRunning) HandleMonkeyInfo(app, monkey, block);
}

void BreakStall(ClientApp& app) {
  Monkey& monkey = Monkey::Instance();
  if (!monkey.monkeyRunning || app.listRepeatCount <= kMostRepeats) return;
  AskForC();
  app.listRepeatCount = 1;
  monkey.search.With([](MonkeySearch& search) {
    search.spellTerm.clear();
    search.searchPath.clear();
    search.lastSelection.clear();
  });
}

}  // namespace ventrik
