// SPDX-License-Identifier: Apache-2.0
#include "command/executor.h"

#include <algorithm>
#include <thread>

#include "state/process_state.h"
#include "tests/command/command_fixture.h"

namespace ventrik::tests {
namespace {

class ExecutorTest : public CommandTest {
 protected:
  std::size_t PendingCount() const {
    return app_.pendingListAssignments.With([](const auto& queue) { return queue.size(); });
  }

  // Notes with each print whether commandLock was free and which thread printed.
  void WatchPrints() {
    console_.onPrint = [this](const std::wstring&) {
      lockWasFree_ = LockIsFree();
      printedBy_ = std::this_thread::get_id();
    };
  }

  bool lockWasFree_ = false;
  std::thread::id printedBy_;
};

TEST_F(ExecutorTest, EmptyLineDoesNothingAtAll) {
  Run(L"row=1,waitresp(\"0\")");
  Run(L"");
  EXPECT_EQ(PendingCount(), 1u);
  EXPECT_EQ(app_.currentLine.Copy(), L"waitresp(\"0\")");
  EXPECT_EQ(Printed(), L"");
}

TEST_F(ExecutorTest, LineOfBlanksIsBadSyntax) {
  Run(L"   ");
  EXPECT_EQ(console_.TakeTexts(), Texts{kBadSyntax});
  Run(L"\t");
  EXPECT_EQ(Printed(), kBadSyntax);
}

TEST_F(ExecutorTest, LinesThatTheParserRefusesAreBadSyntax) {
  for (const wchar_t* line : {L"#verd", L"  # text", L"verd(", L"verd)", L"spell(\"a)",
                              L"spell(\"1\",\"2\",\"3\",\"4\",\"5\",\"6\",\"7\")"}) {
    Run(line);
    EXPECT_EQ(console_.TakeTexts(), Texts{kBadSyntax}) << line;
  }
  EXPECT_EQ(server_.TakeEvents(), Events{});
}

TEST_F(ExecutorTest, BlanksAndTabsOfALineDontMatter) {
  Run(L" \t v e r d ( ) ");
  EXPECT_EQ(server_.TakeEvents(), Events{"send 901"});
}

TEST_F(ExecutorTest, CurrentLineIsTheLineAsFarAsItCame) {
  Set(L"v", L"x y");
  Run(L" spell ( \"$$v$$\" ) ");
  EXPECT_EQ(app_.currentLine.Copy(), L"spell(\"x y\")");
  Run(L" spell ( \"$$nosuch$$\" ) ");
  EXPECT_EQ(app_.currentLine.Copy(), L"spell(\"$$nosuch$$\")");
  Run(L" a = \"b\" ");
  EXPECT_EQ(app_.currentLine.Copy(), L"a=\"b\"");
  Run(L" # ");
  EXPECT_EQ(app_.currentLine.Copy(), L"#");
}

TEST_F(ExecutorTest, ParsedLineIsTheLatestThatParsed) {
  Run(L"spell(\"a\",\"b\")");
  const auto parsed = app_.parsedLine.Copy();
  ASSERT_TRUE(parsed);
  EXPECT_EQ(parsed->name, L"spell");
  EXPECT_EQ(parsed->parameterCount, 2u);
  EXPECT_EQ(parsed->matchFailed, 1);
}

TEST_F(ExecutorTest, AssignmentIsTheWholeOfItsLine) {
  Run(L"verd=\"x\"");
  EXPECT_EQ(ValueOf(L"verd"), L"x");
  EXPECT_EQ(server_.TakeEvents(), Events{});
  EXPECT_EQ(console_.TakeTexts(), Texts{L"VARIABLE> Variable 'verd' has new value 'x'.\n"});
}

TEST_F(ExecutorTest, ListAssignmentRunsTheRestAsACommand) {
  Run(L"row = 2, verd()");
  EXPECT_EQ(server_.TakeEvents(), Events{"send 901"});
  EXPECT_EQ(PendingCount(), 1u);
  Run(L"foo=bar(1,2)");
  EXPECT_EQ(Printed(), kBadSyntax);
  Run(L"a=1,b(");
  EXPECT_EQ(Printed(), kBadSyntax);
  Run(L"a=1,b");
  EXPECT_EQ(Printed(), kUnknownCommand);
}

TEST_F(ExecutorTest, EveryLineDropsTheListAssignmentOfTheLineBefore) {
  for (const wchar_t* next : {L"verd", L"#", L"nosuch", L"a=\"b\"", L"a=b", L"$$a", L"   "}) {
    Run(L"row=1,waitresp(\"0\")");
    ASSERT_EQ(PendingCount(), 1u);
    Run(next);
    EXPECT_EQ(PendingCount(), 0u) << next;
  }
}

TEST_F(ExecutorTest, VariablesAreReplacedBeforeTheLineIsParsed) {
  Set(L"command", L"verd(\"");
  Set(L"rest", L"\")");
  Run(L"$$command$$$$rest$$");
  EXPECT_EQ(server_.TakeEvents(), Events{"send 901"});
}

TEST_F(ExecutorTest, LineWithABadReferenceRunsNoCommand) {
  Run(L"spell(\"$$a\")");
  EXPECT_EQ(console_.TakeTexts(), Texts{ErrorText(L"Bad syntax! Check variables input.")});
  Run(L"spell(\"$$a$$\")");
  EXPECT_EQ(console_.TakeTexts(), Texts{ErrorText(L"Variable 'a' doesn't exist!")});
  EXPECT_EQ(server_.TakeEvents(), Events{});
}

TEST_F(ExecutorTest, WordsWithoutACommandAreUnknown) {
  for (const wchar_t* line :
       {L"zoom", L"fly", L"jump", L"kill", L"nope", L"xyz", L"yes", L"helpme", L"hel", L"a", L"w",
        L"`", L"{", L"\u00E9t\u00E9", L"5", L"()", L"(\"x\")", L")help(", L"waitresponse(\"1\")"}) {
    Run(line);
    EXPECT_EQ(console_.TakeTexts(), Texts{kUnknownCommand}) << line;
  }
}

TEST_F(ExecutorTest, CommandsAreLowerCase) {
  for (const wchar_t* line : {L"Help", L"HELP", L"hElp", L"Verd", L"Wait(\"1\")"}) {
    Run(line);
    EXPECT_EQ(console_.TakeTexts(), Texts{kUnknownCommand}) << line;
  }
  EXPECT_EQ(server_.TakeEvents(), Events{});
}

TEST_F(ExecutorTest, WrongCountIsReportedOnce) {
  Run(L"wait");
  EXPECT_EQ(console_.TakeTexts(), Texts{CountError(L'w', 1)});
  Run(L"spell(abc)");
  EXPECT_EQ(console_.TakeTexts(), Texts{CountError(L's', 1)});
  Run(L"list(\"a\",\"1\")");
  EXPECT_EQ(console_.TakeTexts(), Texts{CountError(L'l', 6)});
  EXPECT_EQ(server_.TakeEvents(), Events{});
}

TEST_F(ExecutorTest, UnknownCommandAfterAWrongCountIsReportedAsSuch) {
  Run(L"wait");
  Printed();
  Run(L"zoom");
  EXPECT_EQ(Printed(), kUnknownCommand);
}

TEST_F(ExecutorTest, FailedLineDoesntKeepTheNextFromRunning) {
  Run(L"spell(\"a)");
  Run(L"nosuch");
  Run(L"wait");
  Run(L"verd");
  EXPECT_EQ(server_.TakeEvents(), Events{"send 901"});
}

TEST_F(ExecutorTest, CommandRunsUnderTheLock) {
  WatchPrints();
  Run(L"help");
  EXPECT_FALSE(lockWasFree_);
  EXPECT_TRUE(LockIsFree());
  bool sendingWasFree = true;
  server_.onSend = [&sendingWasFree] { sendingWasFree = LockIsFree(); };
  Run(L"verd");
  EXPECT_FALSE(sendingWasFree);
  EXPECT_TRUE(LockIsFree());
}

TEST_F(ExecutorTest, ErrorsArePrintedUnderTheLockAndLeaveItFree) {
  WatchPrints();
  for (const wchar_t* line : {L"#", L"nosuch", L"wait"}) {
    lockWasFree_ = true;
    Run(line);
    EXPECT_FALSE(lockWasFree_) << line;
    EXPECT_TRUE(LockIsFree()) << line;
  }
}

TEST_F(ExecutorTest, VariablesAreHandledBeforeTheLockIsTaken) {
  WatchPrints();
  for (const wchar_t* line : {L"a=\"b\"", L"a=nosuch", L"$$a", L"$$nosuch$$"}) {
    lockWasFree_ = false;
    Run(line);
    EXPECT_TRUE(lockWasFree_) << line;
  }
}

TEST_F(ExecutorTest, WithoutTheLockArgumentTheLockIsLeftAlone) {
  WatchPrints();
  ExecuteCommand(app_, L"help", false);
  EXPECT_TRUE(lockWasFree_);
  ExecuteCommand(app_, L"#", false);
  EXPECT_TRUE(lockWasFree_);
}

TEST_F(ExecutorTest, HolderOfTheLockMayRunACommand) {
  const CommandLockHolder hold;
  Run(L"verd");
  EXPECT_EQ(server_.TakeEvents(), Events{"send 901"});
  EXPECT_FALSE(LockIsFree());
}

TEST_F(ExecutorTest, CommandsOfTwoThreadsRunOneAtATime) {
  int running = 0;
  int most = 0;
  server_.onSend = [&] {
    most = std::max(most, ++running);
    std::this_thread::yield();
    --running;
  };
  const auto many = [this] {
    for (int i = 0; i < 200; ++i) Run(L"verd");
  };
  std::thread other(many);
  many();
  other.join();
  EXPECT_EQ(server_.TakeEvents().size(), 400u);
  EXPECT_EQ(most, 1);
}

TEST_F(ExecutorTest, ReplayWithoutTheLockArgumentStaysOnItsThread) {
  WatchPrints();
  ExecuteCommand(app_, L"batchlog(", false);
  EXPECT_EQ(app_.batchlogThread, 0u);
  EXPECT_EQ(Printed(), kBadSyntax);
  EXPECT_EQ(printedBy_, std::this_thread::get_id());
  EXPECT_TRUE(lockWasFree_);
}

TEST_F(ExecutorTest, OddityBlankBeforeTheNameKeepsAReplayOnItsThread) {
  WatchPrints();
  for (const wchar_t* line : {L" batchlog(", L"batchlog (", L"\tbatchlog("}) {
    printedBy_ = {};
    Run(line);
    EXPECT_EQ(app_.batchlogThread, 0u) << line;
    EXPECT_EQ(Printed(), kBadSyntax) << line;
    EXPECT_EQ(printedBy_, std::this_thread::get_id()) << line;
    EXPECT_FALSE(lockWasFree_) << line;
  }
}

TEST_F(ExecutorTest, OnlyTheExactNineCharactersStartAThread) {
  for (const wchar_t* line : {L"batchlog", L"Batchlog(", L"batch(", L"batchlog)", L"batchlogs("}) {
    Run(line);
    EXPECT_EQ(app_.batchlogThread, 0u) << line;
  }
}

TEST_F(ExecutorTest, VariableThatGivesTheNineCharactersStartsNoThread) {
  Set(L"b", L"batchlog(");
  Run(L"$$b$$");
  EXPECT_EQ(app_.batchlogThread, 0u);
  EXPECT_EQ(Printed(), kBadSyntax);
}

}  // namespace
}  // namespace ventrik::tests
