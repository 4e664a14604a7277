// SPDX-License-Identifier: Apache-2.0
// Recordings without a package: what is played and shown, and what is said of files that are wrong.
#include "replay/batchlog.h"

#include <sys/stat.h>

#include <algorithm>

#include "state/process_state.h"
#include "tests/replay/replay_fixture.h"

namespace ventrik::tests {
namespace {

using Blocks = std::vector<Bytes>;

constexpr double kAtOnce = 1e9;  // a speed

const std::wstring kMissed = L"GnLog to batchlog converter has missed something";

class BatchlogTest : public ReplayTest {};

std::string WithNuls(std::string text) {
  std::replace(text.begin(), text.end(), '~', '\0');
  return text;
}

TEST_F(BatchlogTest, SaysThatAFileIsMissing) {
  packagePhase = 1;
  RunBatchlog(app_, "nosuch.log", 1.0, 0);
  EXPECT_EQ(PrintedTexts(), Texts{kCanNotOpen});
  EXPECT_EQ(packagePhase, 1);
}

TEST_F(BatchlogTest, FolderCantBeOpened) {
  RunBatchlog(app_, ".", 1.0, 0);
  EXPECT_EQ(PrintedTexts(), Texts{kCanNotOpen});
}

TEST_F(BatchlogTest, PipeThatNobodyWritesToIsAnEmptyFile) {
  ASSERT_EQ(mkfifo("pipe", 0600), 0);
  RunBatchlog(app_, "pipe", 1.0, 0);
  EXPECT_EQ(PrintedTexts(), Texts{kFinished});
}

TEST_F(BatchlogTest, PlaysEachRecordOnceByteForByte) {
  Play(Record(9, "84030000") + Record(9, "2E010000 'abc' 00") + Record(9, "85030000 FF80"));
  EXPECT_EQ(server_.TakeSent(),
            (Blocks{Hex("84030000"), Hex("2E010000 'abc' 00"), Hex("85030000 FF80")}));
  EXPECT_EQ(PrintedTexts().back(), kFinished);
}

TEST_F(BatchlogTest, ShowsEachRecordWithThePositionCountedThroughBothPasses) {
  app_.commandIdNames = {{900, "vers"}};
  Play(Record(9, "84030000") + Record(9, "85030000"));
  EXPECT_EQ(PrintedTexts(),
            (Texts{Named(L"00 : 00 : 00", L"vers", L"0x42"), Unnamed(901, L"0x5b"), kFinished}));
}

TEST_F(BatchlogTest, ShowsTheTimeSinceTheFirstRecord) {
  app_.commandIdNames = {{900, "vers"}};
  Play(Record(500, "84030000") + Record(3'661'499, "84030000") + Record(3'661'500, "84030000"),
       kAtOnce);
  EXPECT_EQ(PrintedTexts(), (Texts{Named(L"00 : 00 : 00", L"vers", L"0x5b"),
                                   Named(L"01 : 01 : 00", L"vers", L"0x74"),
                                   Named(L"01 : 01 : 01", L"vers", L"0x8d"), kFinished}));
}

TEST_F(BatchlogTest, SendsUnderTheLockWithResponsesHeldBack) {
  bool lockWasFree = true;
  bool finishedUnderLock = true;
  console_.onPrint = [&](const std::wstring& text) {
    if (text == kFinished) {
      finishedUnderLock = !LockIsFree();
    } else {
      lockWasFree = LockIsFree();
      EXPECT_EQ(holdOutput, 1);
    }
  };
  server_.onSend = [] {
    EXPECT_FALSE(LockIsFree());
    EXPECT_EQ(holdOutput, 1);
  };
  Play(Record(9, "84030000"));
  EXPECT_FALSE(lockWasFree);
  EXPECT_FALSE(finishedUnderLock);
  EXPECT_EQ(holdOutput, 0);
  EXPECT_EQ(server_.TakeSent().size(), 1u);
}

TEST_F(BatchlogTest, ShowsARecordBeforeItIsSent) {
  bool shown = false;
  console_.onPrint = [&shown](const std::wstring&) { shown = true; };
  server_.onSend = [&shown] { EXPECT_TRUE(shown); };
  Play(Record(9, "84030000"));
  EXPECT_EQ(server_.TakeSent().size(), 1u);
}

TEST_F(BatchlogTest, PackageRecordsWithoutAPackageAreNotPlayed) {
  Play(Record(9, "34230000") + Record(9, "84030000") + Record(9, "35230000") +
       Record(9, "85030000"));
  EXPECT_EQ(server_.TakeSent(), (Blocks{Hex("84030000"), Hex("85030000")}));
}

TEST_F(BatchlogTest, OddityAnEmptyRecordIsSentAndShownAsTheOneBefore) {
  Play(Record(9, "84030000") + Record(9, ""));
  EXPECT_EQ(server_.TakeSent(), (Blocks{Hex("84030000"), Hex("")}));
  EXPECT_EQ(PrintedTexts(), (Texts{Unnamed(900, L"0x3a"), Unnamed(900, L"0x53"), kFinished}));
}

TEST_F(BatchlogTest, LastLineWithoutItsLineFeedIsPlayed) {
  const std::string last = Record(9, "85030000");
  Play(Record(9, "84030000") + last.substr(0, last.size() - 1));
  EXPECT_EQ(server_.TakeSent(), (Blocks{Hex("84030000"), Hex("85030000")}));
  EXPECT_EQ(PrintedTexts().back(), kFinished);
}

TEST_F(BatchlogTest, LineFeedsMayBeMissing) {
  const std::string record = Record(9, "84030000");
  const std::string bare = record.substr(0, record.size() - 1);
  Play(bare + bare + record + bare);
  EXPECT_EQ(server_.TakeSent(), Blocks(4, Hex("84030000")));
  EXPECT_EQ(PrintedTexts(), (Texts{Unnamed(900, L"0x71"), Unnamed(900, L"0x89"),
                                   Unnamed(900, L"0xa1"), Unnamed(900, L"0xba"), kFinished}));
}

TEST_F(BatchlogTest, OnlyOneLineFeedIsSkipped) {
  Play(Record(9, "84030000") + "\n" + Record(9, "85030000"));
  EXPECT_EQ(server_.TakeSent(), Blocks{Hex("84030000")});
}

TEST_F(BatchlogTest, LargestPayloadPasses) {
  Play("0000000000002000" + std::string(16384, '1') + "\n");
  EXPECT_EQ(server_.TakeSent(), (Blocks{{std::vector<std::uint8_t>(8192, 0x11)}}));
}

TEST_F(BatchlogTest, LargerPayloadIsAnError) {
  Play("0000000000002001" + std::string(16386, '1') + "\n");
  EXPECT_EQ(PrintedTexts(),
            (Texts{L"Error, can't read 2*8193 bytes, file must be corrupt or ventrik needs upgrade "
                   L"(at pos 0x10)",
                   kFinished}));
  Play("0000000080000000\n");
  EXPECT_EQ(PrintedTexts(), (Texts{L"Error, can't read 2*2147483648 bytes, file must be corrupt or "
                                   L"ventrik needs upgrade (at pos 0x10)",
                                   kFinished}));
  EXPECT_EQ(server_.TakeSent(), Blocks{});
}

TEST_F(BatchlogTest, PayloadThatCantBeReadIsAnError) {
  Play(Record(0, "84030000") + kUnreadableRecord);
  EXPECT_EQ(PrintedTexts(), (Texts{kUnreadable + L"0x2b)", kFinished}));
  Play("0000000000000008" + std::string(7, '1'));
  EXPECT_EQ(PrintedTexts(),
            (Texts{L"Error, can't read 2*8 bytes, file must be corrupt (at pos 0x17)", kFinished}));
  EXPECT_EQ(server_.TakeSent(), Blocks{});
}

TEST_F(BatchlogTest, OddityHalfAPayloadPasses) {
  Play("000000000000000884030000");
  EXPECT_EQ(server_.TakeSent(), Blocks{Hex("84030000 00000000")});
}

TEST_F(BatchlogTest, OddityAWrongDigitInAPayloadPassesWithWhatTheRecordBeforeLeft) {
  Play("000000000000000884030000g1111111\n" + Record(0, "85030000 'wxyz'") +
       "0000000000000008860300007172g374\n");
  EXPECT_EQ(server_.TakeSent(),
            (Blocks{Hex("84030000 'qryz'"), Hex("85030000 'wxyz'"), Hex("86030000 'qryz'")}));
}

TEST_F(BatchlogTest, OddityBytesThatWereNeverDecodedAreZero) {
  Play("000000000000000884030000g1111111\n");
  EXPECT_EQ(server_.TakeSent(), Blocks{Hex("84030000 00000000")});
}

TEST_F(BatchlogTest, LowerCaseInALengthIsAnErrorAndInATimestampTheEnd) {
  Play("000000000000000a" + std::string(20, '0') + "\n");
  EXPECT_EQ(PrintedTexts(), (Texts{kMissed, kFinished}));
  Play(Record(9, "84030000") + "0000000a00000004" + "85030000\n");
  EXPECT_EQ(PrintedTexts(), (Texts{Unnamed(900, L"0x29"), kFinished}));
}

TEST_F(BatchlogTest, LengthThatCantBeReadIsAnError) {
  for (const char* log : {"00000000", "000000000000004", "000000000000000c84030000\n"}) {
    Play(log);
    EXPECT_EQ(PrintedTexts(), (Texts{kMissed, kFinished})) << log;
  }
  Play(Record(0, "84030000") + "00000000x");
  EXPECT_EQ(PrintedTexts(), (Texts{kMissed, kFinished}));
  EXPECT_EQ(server_.TakeSent(), Blocks{});
}

TEST_F(BatchlogTest, EmptyFileIsFinishedAtOnce) {
  Play("");
  EXPECT_EQ(PrintedTexts(), Texts{kFinished});
  EXPECT_EQ(livePhase, 0);
}

TEST_F(BatchlogTest, FileWithoutATimestampIsFinishedAtOnce) {
  Play("0000000");
  EXPECT_EQ(PrintedTexts(), Texts{kFinished});
}

TEST_F(BatchlogTest, TimestampThatCantBeReadEndsThePass) {
  for (const char* rest : {"0000000a000000048503000\n", "0000000", "x"}) {
    Play(Record(9, "84030000") + rest);
    EXPECT_EQ(server_.TakeSent(), Blocks{Hex("84030000")}) << rest;
    EXPECT_EQ(PrintedTexts(), (Texts{Unnamed(900, L"0x29"), kFinished})) << rest;
  }
}

TEST_F(BatchlogTest, OddityTheFirstTimestampMayBeAnything) {
  Play("9g99999900000004840300000\n");
  EXPECT_EQ(server_.TakeSent(), Blocks{Hex("84030000")});
}

TEST_F(BatchlogTest, ReadsFieldsFilledWithBlanks) {
  Play(
      "9       4       84030000\n00000009"
      "4 000000"
      "85030000\n");
  EXPECT_EQ(server_.TakeSent(), (Blocks{Hex("84030000"), Hex("85030000")}));
  EXPECT_EQ(PrintedTexts().size(), 3u);
}

TEST_F(BatchlogTest, ObsoleteRecordsHaveAFieldMore) {
  const std::string one = "9~~~~~~~4~~~~~~~84030000\nanything\n";
  const std::string other = "9~~~~~~~4~~~~~~~85030000\n00000000\n";
  Play(WithNuls(one + other));
  EXPECT_EQ(server_.TakeSent(), (Blocks{Hex("84030000"), Hex("85030000")}));
  EXPECT_EQ(PrintedTexts(), (Texts{L"The log is obsoleted", Unnamed(900, L"0x54"),
                                   Unnamed(901, L"0x76"), kFinished}));
}

TEST_F(BatchlogTest, ObsoleteRecordsNeedNoLineFeeds) {
  Play(WithNuls("9~~~~~~~4~~~~~~~84030000000000009~~~~~~~4~~~~~~~85030000\n00000000"));
  EXPECT_EQ(server_.TakeSent(), (Blocks{Hex("84030000"), Hex("85030000")}));
  EXPECT_EQ(PrintedTexts(), (Texts{L"The log is obsoleted", Unnamed(900, L"0x51"),
                                   Unnamed(901, L"0x71"), kFinished}));
}

TEST_F(BatchlogTest, OddityAFileFoundObsoleteIsSoFromTheTopInTheLivePass) {
  Play(
      WithNuls("00000003000000048403000000000003"
               "4~~~~~~~85030000\n00000000\n"));
  EXPECT_EQ(PrintedTexts(),
            (Texts{L"The log is obsoleted", Unnamed(900, L"0x4a"),
                   L"Error, can't read 2*2231566336 bytes, file must be corrupt or ventrik needs "
                   L"upgrade (at pos 0x30)",
                   kFinished}));
}

TEST_F(BatchlogTest, NulsElsewhereDontMakeAFileObsolete) {
  Play(WithNuls("9~~~~~~~4~~~~~~ 84030000\n"));
  EXPECT_EQ(server_.TakeSent(), Blocks{Hex("84030000")});
  EXPECT_EQ(PrintedTexts(), (Texts{Unnamed(900, L"0x29"), kFinished}));
}

}  // namespace
}  // namespace ventrik::tests
