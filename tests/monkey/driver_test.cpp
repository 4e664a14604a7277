// SPDX-License-Identifier: Apache-2.0
// The commands that start and stop the monkey, and its cycles.
#include "monkey/driver.h"

#include "state/process_state.h"
#include "tests/monkey/driver_fixture.h"

namespace ventrik::tests {
namespace {

constexpr unsigned kSecond = 1000000;  // microseconds
const std::wstring kNotFound = L"\033[1;31mError: Monkey_config.txt not found!\n\033[0;37m";

TEST_F(DriverTest, CountedMonkeySendsSoManyLines) {
  Configure("[verd]\ndefault=1\n");
  EXPECT_EQ(RunToEnd(L"monkey(\"3\")"),
            (Texts{Sent(L"verd"), Sent(L"verd"), Sent(L"verd"), kFinished}));
  EXPECT_EQ(started_, Texts{L"Monkey started for 3 rounds.\n"});
  EXPECT_EQ(server_.TakeEvents(), (Events{"send 901", "send 901", "send 901"}));
  EXPECT_EQ(Content("monkeylog.txt"), "verd\nverd\nverd\n");
}

TEST_F(DriverTest, EachCycleBeginsWithASecondsSleep) {
  Configure("[verd]\ndefault=1\n");
  std::vector<std::size_t> sent;
  AtPause([&](int) { sent.push_back(server_.TakeEvents().size()); });
  RunToEnd(L"monkey(\"3\")");
  EXPECT_EQ(pauses_.Take(), (Pauses{kSecond, kSecond, kSecond}));
  EXPECT_EQ(sent, (std::vector<std::size_t>{0, 1, 1}));
}

TEST_F(DriverTest, CountOfZeroDefinesTheItemsAndEnds) {
  Configure("[verd]\ndefault=1\n");
  EXPECT_EQ(RunToEnd(L"monkey(\"0\")"), Texts{kFinished});
  EXPECT_EQ(started_, Texts{L"Monkey started for 0 rounds.\n"});
  EXPECT_EQ(itemCount_, 200u);
  EXPECT_EQ(pauses_.Take(), Pauses{});
  EXPECT_EQ(server_.TakeEvents(), Events{});
}

TEST_F(DriverTest, ItemsOfFourTypesAreDefinedInTurn) {
  RunToEnd(L"monkey(\"0\")");
  const Texts kTypes = {L"ListSStringArray", L"DetSStringArray", L"WepGeo", L"WepTempIcon"};
  const Texts kNames = {L"aaa", L"aaa", L"aaa", L"temp"};
  ASSERT_EQ(monkey_.itemRecords.size(), 200u);
  for (std::size_t i = 0; i < 200; ++i) {
    EXPECT_EQ(monkey_.itemRecords[i].type, kTypes[i % 4]);
    EXPECT_EQ(monkey_.itemRecords[i].name, kNames[i % 4]);
  }
  const Events& items = app_.stringArrayLists.at("aaa")->items;
  ASSERT_EQ(items.size(), 150u);
  EXPECT_EQ(Events(items.begin(), items.begin() + 4),
            (Events{"Default", "", "<GEO>0000000 0000000<*>", "Default"}));
  EXPECT_EQ(app_.stringArrayLists.at("aaatemp")->items.size(), 50u);
}

TEST_F(DriverTest, CountIsReadAsANumberWithABase) {
  Configure("[verd]\ndefault=1\n");
  EXPECT_EQ(RunToEnd(L"monkey(\"0x2\")").size(), 3u);
  EXPECT_EQ(RunToEnd(L"monkey(\"many\")"), Texts{kFinished});
  EXPECT_EQ(started_,
            (Texts{L"Monkey started for 2 rounds.\n", L"Monkey started for 0 rounds.\n"}));
}

TEST_F(DriverTest, WithoutACountTheMonkeyIsInfinite) {
  Configure("[verd]\ndefault=1\n");
  for (const wchar_t* line : {L"monkey", L"monkey()", L"monkey(\"-1\")"}) {
    AtPause([&](int number) { monkey_.stopRequest = number == 7 ? -1 : 0; });
    EXPECT_EQ(RunToEnd(line).size(), 8u) << line;
  }
  ASSERT_EQ(started_.size(), 3u);
  for (std::wstring text : started_) {
    for (wchar_t& letter : text) letter = letter >= L'0' && letter <= L'9' ? L'9' : letter;
    EXPECT_EQ(text, L"Infinite monkey started at 9999-99-99 99:99:99.\n");
  }
}

TEST_F(DriverTest, AnyNegativeCountIsWithoutEnd) {
  Configure("[verd]\ndefault=1\n");
  AtPause([&](int number) { monkey_.stopRequest = number == 9 ? -1 : 0; });
  EXPECT_EQ(RunToEnd(L"monkey(\"-5\")").size(), 10u);
  EXPECT_EQ(started_, Texts{L"Monkey started for -5 rounds.\n"});
}

TEST_F(DriverTest, LinesRunUnderTheLock) {
  Configure("[verd]\ndefault=1\n");
  bool free = true;
  server_.onSend = [&free] { free = LockIsFree(); };
  RunToEnd(L"monkey(\"1\")");
  EXPECT_FALSE(free);
  EXPECT_TRUE(LockIsFree());
}

TEST_F(DriverTest, StartAndRkillAreBlockedAtFirst) {
  RunToEnd(L"monkey(\"0\")");
  EXPECT_EQ(BlockedCommands(monkey_), (Texts{L"start", L"rkill"}));
  RunToEnd(L"monkey(\"0\")");
  EXPECT_EQ(BlockedCommands(monkey_), (Texts{L"start", L"rkill"}));
}

TEST_F(DriverTest, StopRequestedKeepsItFromStarting) {
  Configure("[verd]\ndefault=1\n");
  stopRequested = 1;
  EXPECT_EQ(RunToEnd(L"monkey(\"3\")"), (Texts{L"Monkey can not start\n", kFinished}));
  EXPECT_EQ(itemCount_, 200u);
  EXPECT_EQ(BlockedCommands(monkey_), Texts{});
  EXPECT_EQ(server_.TakeEvents(), Events{});
}

TEST_F(DriverTest, WithoutAConfigurationAFreshMonkeyEnds) {
  EXPECT_EQ(RunToEnd(L"monkey"), (Texts{kNotFound, kFinished}));
  EXPECT_EQ(itemCount_, 200u);
  EXPECT_EQ(pauses_.Take(), Pauses{});
}

TEST_F(DriverTest, WithoutAConfigurationOneThatRanGoesOnWithNothing) {
  monkey_.monkeyRunning = 1;
  const std::wstring empty = L"monkey_config.txt not found or empty\n";
  EXPECT_EQ(RunToEnd(L"monkey(\"2\")"),
            (Texts{kNotFound, empty, Sent(L""), empty, Sent(L""), kFinished}));
  EXPECT_EQ(server_.TakeEvents(), Events{});
}

TEST_F(DriverTest, StopmonkeyLeavesARequest) {
  const std::pair<const wchar_t*, std::int32_t> kLines[] = {
      {L"stopmonkey(\"5\")", 5},       {L"stopmonkey", -1},       {L"stopmonkey()", -1},
      {L"stopmonkey(\"-3\")", -3},     {L"stopmonkey(\"0\")", 0}, {L"stopmonkey(\"x\")", 0},
      {L"stopmonkey(\"7\",\"8\")", 7},
  };
  for (const auto& [line, request] : kLines) {
    monkey_.stopRequest = 99;
    Run(line);
    EXPECT_EQ(monkey_.stopRequest, request) << line;
  }
  EXPECT_EQ(Printed(), L"");
}

TEST_F(DriverTest, StopForSecondsPausesAfterTheCycle) {
  Configure("[verd]\ndefault=1\n");
  AtPause([&](int number) {
    if (number == 1) Run(L"stopmonkey(\"5\")");
  });
  EXPECT_EQ(RunToEnd(L"monkey(\"2\")"),
            (Texts{Sent(L"verd"), L"Monkey stopped for 5 seconds.\n", Sent(L"verd"), kFinished}));
  EXPECT_EQ(pauses_.Take(), (Pauses{kSecond, 5 * kSecond, kSecond}));
  EXPECT_EQ(monkey_.stopRequest, 0);
}

TEST_F(DriverTest, RequestDuringAStopIsLost) {
  Configure("[verd]\ndefault=1\n");
  AtPause([&](int number) {
    if (number == 1) Run(L"stopmonkey(\"5\")");
    if (number == 2) Run(L"stopmonkey");
  });
  EXPECT_EQ(RunToEnd(L"monkey(\"2\")").back(), kFinished);
  EXPECT_EQ(pauses_.Take(), (Pauses{kSecond, 5 * kSecond, kSecond}));
}

TEST_F(DriverTest, SecondsWrapAsAWordDoes) {
  Configure("[verd]\ndefault=1\n");
  monkey_.stopRequest = 5000;
  EXPECT_EQ(RunToEnd(L"monkey(\"1\")"),
            (Texts{Sent(L"verd"), L"Monkey stopped for 5000 seconds.\n", kFinished}));
  EXPECT_EQ(pauses_.Take(), (Pauses{kSecond, 705032704u}));
}

TEST_F(DriverTest, StopWithoutSecondsEndsAfterTheCycle) {
  Configure("[verd]\ndefault=1\n");
  for (const wchar_t* line : {L"stopmonkey", L"stopmonkey()", L"stopmonkey(\"-3\")"}) {
    AtPause([&](int number) {
      if (number == 2) Run(line);
    });
    EXPECT_EQ(RunToEnd(L"monkey(\"9\")"), (Texts{Sent(L"verd"), Sent(L"verd"), kFinished}));
    EXPECT_EQ(monkey_.stopRequest, 0);
  }
}

TEST_F(DriverTest, StopForNoSecondsDoesNothing) {
  Configure("[verd]\ndefault=1\n");
  AtPause([&](int) { Run(L"stopmonkey(\"0\")"); });
  EXPECT_EQ(RunToEnd(L"monkey(\"2\")"), (Texts{Sent(L"verd"), Sent(L"verd"), kFinished}));
}

TEST_F(DriverTest, OddityRequestWithoutAMonkeyIsObeyedByTheNextOne) {
  Configure("[verd]\ndefault=1\n");
  Run(L"stopmonkey");
  EXPECT_EQ(RunToEnd(L"monkey(\"3\")"), (Texts{Sent(L"verd"), kFinished}));
  EXPECT_EQ(RunToEnd(L"monkey(\"2\")"), (Texts{Sent(L"verd"), Sent(L"verd"), kFinished}));
}

TEST_F(DriverTest, QueuedLinesComeBeforeGeneratedOnesAndAreNotLogged) {
  Configure("[adas]\ndefault=1\n");
  monkey_.queuedCommands = {L"vers", L"", L"verd"};
  EXPECT_EQ(RunToEnd(L"monkey(\"4\")"),
            (Texts{Sent(L"vers"), Sent(L""), Sent(L"verd"), Sent(L"adas(\"off\")"), kFinished}));
  EXPECT_EQ(server_.TakeEvents(), (Events{"send 900", "send 901", "send 502"}));
  EXPECT_EQ(Content("monkeylog.txt"), "adas(\"off\")\n");
}

TEST_F(DriverTest, QueuedLineIsAsValidAsTheLatestGeneratedOne) {
  Configure("[verd]\ndefault=1\n");
  monkey_.commandValid = false;
  monkey_.queuedCommands = {L"vers"};
  EXPECT_EQ(RunToEnd(L"monkey(\"2\")"), (Texts{Invalid(L"vers"), Sent(L"verd"), kFinished}));
  EXPECT_EQ(server_.TakeEvents(), Events{"send 901"});
}

TEST_F(DriverTest, LinesOfABatchFollowTheBatch) {
  Configure("[batch(\"a.txt\")]\ndefault=1\n");
  WriteFile("a.txt", std::string("\xFF\xFEv\0e\0r\0s\0\n\0", 12));
  const std::wstring batch = L"batch(\"a.txt\")";
  const std::wstring running = L"Batch file a.txt is running...\n";
  EXPECT_EQ(RunToEnd(L"monkey(\"4\")"), (Texts{Sent(batch), running, Sent(L"vers"), Sent(L""),
                                               Sent(batch), running, kFinished}));
}

TEST_F(DriverTest, InvalidLineIsShownAndNotSent) {
  Configure("[list]\ndefault=1\nlist=3\n");
  SetSearch(monkey_, L"", L"", -5);
  const std::wstring line = L"list(\"\", \"\", \"\", \"ascending\", \"aaa\", \"off\")";
  EXPECT_EQ(RunToEnd(L"monkey(\"2\")"), (Texts{Invalid(line), Invalid(line), kFinished}));
  EXPECT_EQ(server_.TakeEvents(), Events{});
  EXPECT_EQ(CurrentWeights(monkey_), std::vector<std::int32_t>{1});
}

TEST_F(DriverTest, RequestsAreObeyedAfterAnInvalidLineToo) {
  Configure("[list]\ndefault=1\n");
  SetSearch(monkey_, L"", L"", -5);
  monkey_.stopRequest = -1;
  EXPECT_EQ(RunToEnd(L"monkey(\"5\")").size(), 2u);
}

TEST_F(DriverTest, SentLineHasItsInfluence) {
  Configure("[verd]\ndefault=1\nvers=5\n\n[vers]\ndefault=1\n");
  RunToEnd(L"monkey(\"1\")");
  EXPECT_EQ(CurrentWeights(monkey_), (std::vector<std::int32_t>{1, 5}));
  EXPECT_EQ(WeightTotal(monkey_), 6);
}

TEST_F(DriverTest, QueuedLineHasItsInfluence) {
  Configure("[verd]\ndefault=1\nvers=5\n\n[vers]\ndefault=1\n");
  monkey_.queuedCommands = {L"verd"};
  RunToEnd(L"monkey(\"1\")");
  EXPECT_EQ(CurrentWeights(monkey_), (std::vector<std::int32_t>{1, 5}));
}

TEST_F(DriverTest, LineThatFailsHasItsInfluence) {
  Configure("[nosuch]\ndefault=1\nnosuch=5\n");
  EXPECT_EQ(RunToEnd(L"monkey(\"1\")"), (Texts{Sent(L"nosuch"), kUnknownCommand, kFinished}));
  EXPECT_EQ(CurrentWeights(monkey_), std::vector<std::int32_t>{5});
}

TEST_F(DriverTest, WhileARouteIsActiveLinesHaveNoInfluence) {
  Configure("[verd]\ndefault=1\nvers=5\n\n[vers]\ndefault=1\n");
  monkey_.activeRoute = 1;
  RunToEnd(L"monkey(\"1\")");
  EXPECT_EQ(CurrentWeights(monkey_), (std::vector<std::int32_t>{1, 1}));
}

TEST_F(DriverTest, ConfigurationIsReadAndTheLogEmptiedAtEachStart) {
  Configure("[verd]\ndefault=1\n");
  RunToEnd(L"monkey(\"2\")");
  Configure("[vers]\ndefault=1\n");
  EXPECT_EQ(RunToEnd(L"monkey(\"1\")"), (Texts{Sent(L"vers"), kFinished}));
  EXPECT_EQ(Content("monkeylog.txt"), "vers\n");
}

TEST_F(DriverTest, WhatTheSearchLearnedIsThereAtTheNextStart) {
  Configure("[verd]\ndefault=1\n");
  RunToEnd(L"monkey(\"1\")");
  SetSearch(monkey_, L"path", L"term");
  monkey_.weights.With([](MonkeyWeights& weights) { weights.blockedCommands = {L"rnew"}; });
  EXPECT_EQ(monkey_.monkeyRunning, 1);
  RunToEnd(L"monkey(\"1\")");
  EXPECT_EQ(monkey_.search.Copy().searchPath, L"path");
  EXPECT_EQ(monkey_.search.Copy().spellTerm, L"term");
  EXPECT_EQ(BlockedCommands(monkey_), (Texts{L"rnew", L"start", L"rkill"}));
}

TEST_F(DriverTest, GeneratedQuitEndsTheProgram) {
  Configure("[quit]\ndefault=1\n");
  const Texts texts = RunToEnd(L"monkey");
  ASSERT_FALSE(texts.empty());
  EXPECT_EQ(texts.front(), Sent(L"quit"));
  EXPECT_EQ(mainLoopRunning, 0);
  EXPECT_EQ(monkey_.monkeyRunning, 0);
}

TEST_F(DriverTest, MessagesAreFollowedWhileTheMonkeyRuns) {
  const Bytes calculated = Hex("9D010000 4D000000 04000000 64000000");
  FollowMessage(app_, calculated.Block());
  EXPECT_TRUE(monkey_.routeHandles.Copy().empty());
  monkey_.monkeyRunning = 1;
  FollowMessage(app_, calculated.Block());
  EXPECT_EQ(monkey_.routeHandles.Copy(), std::vector<std::int32_t>{77});
}

// It blocks itself; the third pause is that between two rounds of refused draws.
TEST_F(DriverTest, RouteIsAskedForAgainOnceTheFirstIsCalculated) {
  Configure("[rnew]\ndefault=1\n\n[verd]\ndefault=1\n");
  Events sentBefore;
  Texts blockedBefore;
  AtPause([&](int number) {
    if (number != 3) return;
    sentBefore = server_.TakeEvents();
    blockedBefore = BlockedCommands(monkey_);
    FollowMessage(app_, Hex("9D010000 4D000000 04000000 64000000").Block());
  });
  RunToEnd(L"monkey(\"2\")");
  EXPECT_EQ(sentBefore, Events{"send 404"});
  EXPECT_EQ(blockedBefore, (Texts{L"start", L"rkill", L"demo", L"rnew"}));
  EXPECT_EQ(server_.TakeEvents(), Events{"send 404"});
  EXPECT_EQ(BlockedCommands(monkey_), (Texts{L"demo", L"rnew"}));
}

// With no route, nothing reports a calculated one.
TEST_F(DriverTest, StopAloneFreesRnewOfATripThatFailed) {
  Configure("[rnew]\ndefault=1\n\n[verd]\ndefault=1\n");
  AtPause([&](int number) {
    if (number != 2) return;
    FollowMessage(app_, Hex("9D010000 4D000000 06000000 64000000").Block());
    monkey_.queuedCommands = {L"verd"};
  });
  RunToEnd(L"monkey(\"2\")");
  EXPECT_EQ(BlockedCommands(monkey_), (Texts{L"start", L"rkill", L"demo", L"rnew"}));
  Configure("[stop]\ndefault=1\n");
  RunToEnd(L"monkey(\"1\")");
  EXPECT_EQ(BlockedCommands(monkey_), (Texts{L"start", L"rkill", L"demo"}));
}

}  // namespace
}  // namespace ventrik::tests
