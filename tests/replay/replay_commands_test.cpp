// SPDX-License-Identifier: Apache-2.0
#include "replay/replay_commands.h"

#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <future>
#include <vector>

#include "state/process_state.h"
#include "tests/replay/replay_fixture.h"

namespace ventrik::tests {
namespace {

const std::wstring kExtracted = L"Extraction finished\n";
const std::string kRecord = Record(9, "84030000");
const std::string kOther = Record(9, "85030000");
const std::string kRawLog =
    "\xE5\x33head\r\n\xE5\x34" + kRecord + "bad\n\xE5\x33tail\xE5\x34" + kOther;
const std::wstring kSkipped = L"Warning: corrupt line at 0x26, skipped\n";

class ReplayCommandsTest : public ReplayTest {
 protected:
  static void SetUpTestSuite() {
    static bool isConnected = false;  // a repeated run would connect them once more
    if (!isConnected) ConnectCommands(ReplayCommands());
    isConnected = true;
  }

  Texts PrintedBy(const std::wstring& line) {
    Run(line);
    return PrintedTexts();
  }

  // The same without the two texts that end a replay at a record that can't be read.
  Texts WaitsOf(const std::wstring& line) {
    Texts texts = PrintedBy(line);
    EXPECT_GE(texts.size(), 2u) << line;
    texts.resize(texts.size() - std::min<std::size_t>(texts.size(), 2));
    return texts;
  }
};

// The blank keeps a replay on the test's thread.

TEST_F(ReplayCommandsTest, OddityBatchlogReadsItsParametersByTheirNumber) {
  WriteFile("f", Record(0, "84030000") + Record(120'000, "84030000") + kUnreadableRecord);
  const std::wstring ownPace = L"delay 120000 ms  tick ";
  const std::wstring twice = L"delay 60000 ms  tick ";
  Type("cccccc");
  EXPECT_EQ(WaitsOf(L" batchlog(\"f\")"), Texts{ownPace});
  EXPECT_EQ(WaitsOf(L" batchlog(\"f\",\"2\")"), Texts{twice});
  EXPECT_EQ(WaitsOf(L" batchlog(\"f\",\"2\",\"1\")"), (Texts{twice, kPressC}));
  EXPECT_EQ(WaitsOf(L" batchlog(\"f\",\"2\",\"time\",\"1\")"), Texts{ownPace});
  EXPECT_EQ(WaitsOf(L" batchlog(\"f\",\"2\",\"1\",\"x\",\"x\")"), (Texts{twice, kPressC}));
  EXPECT_EQ(WaitsOf(L" batchlog(\"f\",\"2\",\"1\",\"x\",\"x\",\"x\")"), Texts{ownPace});
  EXPECT_EQ(LeftInInput(), "cccc");
}

TEST_F(ReplayCommandsTest, BatchlogReadsNumbersAsOtherCommandsDo) {
  WriteFile("f", Record(0, "84030000") + Record(120'000, "84030000") + kUnreadableRecord);
  Type("c");
  EXPECT_EQ(WaitsOf(L" batchlog(\"f\",\"0.5\",\"time\")"), Texts{L"delay 240000 ms  tick "});
  EXPECT_EQ(WaitsOf(L" batchlog(\"f\",\"2.5\",\"0x1\")"),
            (Texts{L"delay 48000 ms  tick ", kPressC}));
}

TEST_F(ReplayCommandsTest, BatchlogWithoutAFileFailsToOpenIt) {
  EXPECT_EQ(PrintedBy(L"batchlog"), Texts{kCanNotOpen});
  EXPECT_EQ(PrintedBy(L" batchlog()"), Texts{kCanNotOpen});
  EXPECT_EQ(PrintedBy(L" batchlog(\"nosuch\",\"1\")"), Texts{kCanNotOpen});
}

TEST_F(ReplayCommandsTest, BatchlogPlaysOnAThreadOfItsOwn) {
  WriteFile("f", kRecord);
  const CommandLockHolder hold;  // the first send waits for it
  Run(L"batchlog(\"f\",\"1000\")");
  EXPECT_TRUE(console_.TakeTexts().empty());
  EXPECT_EQ(server_.TakeEvents(), Events{});
  UnlockCommands();
  pthread_join(app_.batchlogThread, nullptr);
  LockCommands();
  EXPECT_EQ(PrintedTexts(), (Texts{Unnamed(900, L"0x29"), kFinished}));
  EXPECT_EQ(server_.TakeEvents(), Events{"send 900"});
}

TEST_F(ReplayCommandsTest, BatchlogBehindABlankHoldsTheLockToItsEndAndTakesItAgainForASend) {
  std::vector<bool> lockWasFree;
  console_.onPrint = [&](const std::wstring&) { lockWasFree.push_back(LockIsFree()); };
  WriteFile("f", kRecord);
  Run(L" batchlog(\"f\")");
  EXPECT_EQ(lockWasFree, std::vector<bool>(2, false));
  EXPECT_EQ(app_.batchlogThread, 0u);
  EXPECT_TRUE(LockIsFree());
  EXPECT_EQ(server_.TakeEvents(), Events{"send 900"});
}

TEST_F(ReplayCommandsTest, SecondBatchlogTakesThePlaceOfTheFirstWhoseLivePhaseStays) {
  WriteFile("f", Record(0, "84030000") + Record(3'600'000, "84030000"));
  WriteFile("g", kOther);
  std::promise<void> waits;
  int delays = 0;
  console_.onPrint = [&](const std::wstring& text) {
    if (text.rfind(L"delay ", 0) == 0 && ++delays == 2) waits.set_value();
  };
  Run(L"batchlog(\"f\")");
  waits.get_future().wait();
  const pthread_t first = app_.batchlogThread;
  Run(L"batchlog(\"g\")");
  EXPECT_NE(app_.batchlogThread, first);
  pthread_join(app_.batchlogThread, nullptr);
  app_.batchlogThread = 0;
  EXPECT_EQ(server_.TakeEvents(), (Events{"send 900", "send 901"}));
  // No silent pass went before: the position is that of the first one.
  const Texts texts = PrintedTexts();
  EXPECT_EQ(std::count(texts.begin(), texts.end(), Unnamed(901, L"0x10")), 1);
  EXPECT_EQ(livePhase, 0);
  EXPECT_TRUE(LockIsFree());
}

TEST_F(ReplayCommandsTest, StopbatchlogSetsTheFlag) {
  EXPECT_EQ(PrintedBy(L"stopbatchlog"), Texts{});
  EXPECT_EQ(stopBatchlog, 1);
  stopBatchlog = 0;
  Run(L"stopbatchlog(\"now\")");
  EXPECT_EQ(stopBatchlog, 1);
}

TEST_F(ReplayCommandsTest, GnextWritesTheRecords) {
  WriteFile("raw", kRawLog);
  EXPECT_EQ(PrintedBy(L"gnext(\"raw\",\"out\")"), (Texts{kSkipped, kExtracted}));
  EXPECT_EQ(Content("out"), kRecord + kOther);
}

TEST_F(ReplayCommandsTest, GnextKeepsCorruptLinesIfAsked) {
  WriteFile("raw", kRawLog);
  for (const wchar_t* flag : {L"1", L"-1", L"0x10", L"1\",\"0"}) {
    EXPECT_EQ(PrintedBy(std::wstring(L"gnext(\"raw\",\"out\",\"") + flag + L"\")"),
              (Texts{L"Warning: corrupt line at 0x26\n", kExtracted}))
        << flag;
    EXPECT_EQ(Content("out"), kRecord + "bad\n" + kOther) << flag;
  }
  for (const wchar_t* flag : {L"0", L"", L"yes"}) {
    EXPECT_EQ(PrintedBy(std::wstring(L"gnext(\"raw\",\"out\",\"") + flag + L"\")"),
              (Texts{kSkipped, kExtracted}))
        << flag;
    EXPECT_EQ(Content("out"), kRecord + kOther) << flag;
  }
}

TEST_F(ReplayCommandsTest, GnextWithFewerParametersIsUnknown) {
  EXPECT_EQ(PrintedBy(L"gnext"), Texts{kUnknownCommand});
  EXPECT_EQ(PrintedBy(L"gnext()"), Texts{kUnknownCommand});
  EXPECT_EQ(PrintedBy(L"gnext(\"raw\")"), Texts{kUnknownCommand});
}

TEST_F(ReplayCommandsTest, GntologWritesTheText) {
  WriteFile("raw", kRawLog);
  EXPECT_EQ(PrintedBy(L"gntolog(\"raw\",\"out\")"), Texts{kExtracted});
  EXPECT_EQ(Content("out"), "head\r\ntail");
}

TEST_F(ReplayCommandsTest, GneWritesEachChannelAndBoth) {
  WriteFile("raw", kRawLog);
  EXPECT_EQ(PrintedBy(L"gne(\"raw\",\"out\")"),
            (Texts{kSkipped, kExtracted, kExtracted, kExtracted}));
  EXPECT_EQ(Content("extracted_batch.log"), kRecord + kOther);
  EXPECT_EQ(Content("extracted_dullog.txt"), "head\r\ntail");
  EXPECT_EQ(Content("out"), "head\r\n" + kRecord + "bad\ntail" + kOther);
}

TEST_F(ReplayCommandsTest, GnlogWritesEachChannelAndPlaysTheRecordsUnderTheLock) {
  bool lockWasFree = true;
  console_.onPrint = [&lockWasFree](const std::wstring&) { lockWasFree = LockIsFree(); };
  WriteFile("raw", kRawLog);
  EXPECT_EQ(PrintedBy(L"gnlog(\"raw\")"),
            (Texts{kSkipped, kExtracted, kExtracted, Unnamed(900, L"0x42"), Unnamed(901, L"0x5b"),
                   kFinished}));
  EXPECT_FALSE(lockWasFree);
  EXPECT_EQ(Content("ext_batch.log"), kRecord + kOther);
  EXPECT_EQ(Content("ext_dullog.txt"), "head\r\ntail");
  EXPECT_EQ(server_.TakeEvents(), (Events{"send 900", "send 901"}));
}

TEST_F(ReplayCommandsTest, LogWithoutASwitchGivesEmptyFiles) {
  WriteFile("raw", kRecord + "text");
  WriteFile("out", "before");
  EXPECT_EQ(PrintedBy(L"gnext(\"raw\",\"out\")"), Texts{kExtracted});
  EXPECT_EQ(Content("out"), "");
  WriteFile("out", "before");
  EXPECT_EQ(PrintedBy(L"gntolog(\"raw\",\"out\")"), Texts{kExtracted});
  EXPECT_EQ(Content("out"), "");
  WriteFile("out", "before");
  EXPECT_EQ(PrintedBy(L"gne(\"raw\",\"out\")"), Texts(3, kExtracted));
  EXPECT_EQ(Content("out"), "");
  EXPECT_EQ(PrintedBy(L"gnlog(\"raw\")"), (Texts{kExtracted, kExtracted, kFinished}));
}

TEST_F(ReplayCommandsTest, InputsThatCantBeOpenedAreErrors) {
  std::filesystem::create_directory("folder");
  const std::wstring inputs[] = {L"nosuch", L"folder"};
  for (const std::wstring& input : inputs) {
    const Texts one = {kCanNotOpen, kExtracted};
    EXPECT_EQ(PrintedBy(L"gnext(\"" + input + L"\",\"out\")"), one);
    EXPECT_EQ(PrintedBy(L"gntolog(\"" + input + L"\",\"out\")"), one);
    EXPECT_EQ(PrintedBy(L"gne(\"" + input + L"\",\"out\")"),
              (Texts{kCanNotOpen, kExtracted, kCanNotOpen, kExtracted, kCanNotOpen, kExtracted}));
    EXPECT_EQ(PrintedBy(L"gnlog(\"" + input + L"\")"), Texts{kCanNotOpen});
  }
}

TEST_F(ReplayCommandsTest, OutputsThatCantBeWrittenAreNotMentioned) {
  WriteFile("raw", kRawLog);
  EXPECT_EQ(PrintedBy(L"gnext(\"raw\",\"nosuch/out\")"), (Texts{kSkipped, kExtracted}));
  EXPECT_EQ(PrintedBy(L"gntolog(\"raw\",\"nosuch/out\")"), Texts{kExtracted});
}

TEST_F(ReplayCommandsTest, FoldersAndFullDisksAreOutputsThatCantBeWritten) {
  std::filesystem::create_directory("folder");
  WriteFile("raw", kRawLog);
  EXPECT_EQ(PrintedBy(L"gntolog(\"raw\",\"folder\")"), Texts{kExtracted});
  EXPECT_EQ(PrintedBy(L"gntolog(\"raw\",\"/dev/full\")"), Texts{kExtracted});
  EXPECT_EQ(PrintedBy(L"gntolog(\"raw\",\"\")"), Texts{kExtracted});
  EXPECT_TRUE(std::filesystem::is_empty("folder"));
}

TEST_F(ReplayCommandsTest, MissingInputLeavesTheOutputAsItWas) {
  WriteFile("out", "before");
  Run(L"gnext(\"nosuch\",\"out\")");
  Run(L"gntolog(\"nosuch\",\"out\")");
  EXPECT_EQ(Content("out"), "before");
}

TEST_F(ReplayCommandsTest, OutputMayBeTheInputWhateverItsSize) {
  const std::string text(1'000'000, 'x');
  WriteFile("raw", "\xE5\x33" + text + kRawLog);
  Run(L"gnext(\"raw\",\"raw\")");
  EXPECT_EQ(Content("raw"), kRecord + kOther);
  WriteFile("raw", "\xE5\x33" + text + kRawLog);
  std::filesystem::create_symlink("raw", "link");
  Run(L"gntolog(\"raw\",\"link\")");
  EXPECT_EQ(Content("raw"), text + "head\r\ntail");
}

TEST_F(ReplayCommandsTest, OutputIsEmptiedFirst) {
  WriteFile("raw", kRawLog);
  WriteFile("out", std::string(1000, 'x'));
  Run(L"gntolog(\"raw\",\"out\")");
  EXPECT_EQ(Content("out"), "head\r\ntail");
}

TEST_F(ReplayCommandsTest, PipesAndDevicesHaveASizeOfNothing) {
  ASSERT_EQ(mkfifo("pipe", 0600), 0);
  const std::wstring inputs[] = {L"pipe", L"/dev/zero", L"/dev/null"};
  for (const std::wstring& input : inputs) {
    WriteFile("out", "before");
    EXPECT_EQ(PrintedBy(L"gntolog(\"" + input + L"\",\"out\")"), Texts{kExtracted});
    EXPECT_EQ(Content("out"), "");
  }
  EXPECT_EQ(PrintedBy(L"gntolog(\"raw\",\"pipe\")"), (Texts{kCanNotOpen, kExtracted}));
  WriteFile("raw", kRawLog);
  EXPECT_EQ(PrintedBy(L"gntolog(\"raw\",\"pipe\")"), Texts{kExtracted});
}

TEST_F(ReplayCommandsTest, WrongNumbersOfParametersAreReported) {
  EXPECT_EQ(PrintedBy(L"gne(\"raw\")"), Texts{CountError(L'g', 2)});
  EXPECT_EQ(PrintedBy(L"gntolog(\"raw\")"), Texts{CountError(L'g', 2)});
  EXPECT_EQ(PrintedBy(L"gnlog(\"raw\",\"out\")"), Texts{CountError(L'g', 1)});
  EXPECT_EQ(PrintedBy(L"gnlog"), Texts{CountError(L'g', 1)});
}

}  // namespace
}  // namespace ventrik::tests
