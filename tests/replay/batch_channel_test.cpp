// SPDX-License-Identifier: Apache-2.0
#include "replay/extraction.h"

#include <gtest/gtest.h>

#include "tests/replay/raw_log_notation.h"

namespace ventrik::tests {
namespace {

TEST(CopyBatchChannel, TakesTheLinesOfChannelFour) {
  EXPECT_EQ(SoundBatchOf("@4" + kFirstRecord + kSecondRecord), kFirstRecord + kSecondRecord);
  EXPECT_EQ(SoundBatchOf(kSecondRecord + "@4" + kFirstRecord), kFirstRecord);
  EXPECT_EQ(SoundBatchOf("@3" + kSecondRecord + "@4" + kFirstRecord + "@5" + kSecondRecord),
            kFirstRecord);
  EXPECT_EQ(SoundBatchOf("@4" + kFirstRecord + "@@" + kFirstRecord + "@4" + kSecondRecord),
            kFirstRecord + kSecondRecord);
}

TEST(CopyBatchChannel, FindsNothingWithoutASwitch) {
  EXPECT_EQ(SoundBatchOf(kFirstRecord + "4" + kSecondRecord), "");
  EXPECT_EQ(SoundBatchOf(""), "");
}

TEST(CopyBatchChannel, SwitchIsAlwaysTwoBytes) {
  EXPECT_EQ(SoundBatchOf("@@4" + kFirstRecord), "");
  EXPECT_EQ(SoundBatchOf("@#@4" + kFirstRecord), kFirstRecord);
}

TEST(CopyBatchChannel, LineGoesOnOverAChannelSwitch) {
  EXPECT_EQ(SoundBatchOf("@40000001F0000@3text\n\n@400042E01@40000\n"), kFirstRecord);
}

TEST(CopyBatchChannel, WritesNulsAsBlanks) {
  EXPECT_EQ(SoundBatchOf("@41F~~~~~~4~~~~~~~2E010000\n"), "1F      4       2E010000\n");
}

TEST(CopyBatchChannel, DropsCarriageReturns) {
  EXPECT_EQ(SoundBatchOf("@40000001F000000042E010000\r\n\r000000\r20000000042F010000\r\r\n"),
            kFirstRecord + kSecondRecord);
}

TEST(CopyBatchChannel, DropsALineThatTheLogDoesntClose) {
  EXPECT_EQ(SoundBatchOf("@4" + kFirstRecord + "00000020000000042F010000"), kFirstRecord);
  EXPECT_EQ(SoundBatchOf("@4nothing of a record"), "");
}

TEST(CopyBatchChannel, EmptyLineEndsTheChannelUntilTheNextSwitch) {
  EXPECT_EQ(SoundBatchOf("@4" + kFirstRecord + "\n" + kSecondRecord), kFirstRecord);
  EXPECT_EQ(SoundBatchOf("@4" + kFirstRecord + "\n" + kFirstRecord + "@4" + kSecondRecord),
            kFirstRecord + kSecondRecord);
}

TEST(CopyBatchChannel, EmptyLineBehindACorruptOneEndsTheChannelToo) {
  const std::string log = "@4" + kBadLine + "\n" + kFirstRecord;
  EXPECT_EQ(BatchOf(log).log, "");
  EXPECT_EQ(BatchOf(log).corruptLines, (Positions{18}));
}

TEST(CopyBatchChannel, CarriageReturnOnAnEmptyLineMakesItACorruptOne) {
  const std::string log = "@4" + kFirstRecord + "\r\n" + kSecondRecord;
  EXPECT_EQ(BatchOf(log).log, kFirstRecord + kSecondRecord);
  EXPECT_EQ(BatchOf(log).corruptLines, (Positions{28}));
}

TEST(CopyBatchChannel, LineFeedDirectlyBehindTheSwitchIsACorruptLine) {
  EXPECT_EQ(BatchOf("@4\n" + kFirstRecord).corruptLines, (Positions{2}));
  EXPECT_EQ(BatchOf("@4\n" + kFirstRecord).log, kFirstRecord);
  EXPECT_EQ(BatchOf("@4\n\n" + kFirstRecord).log, "");
}

TEST(CopyBatchChannel, LeavesCorruptLinesOutUnlessTheyAreKept) {
  const std::string log = "@4" + kFirstRecord + kBadLine + "x\r~y\n" + kSecondRecord;
  EXPECT_EQ(BatchOf(log).log, kFirstRecord + kSecondRecord);
  EXPECT_EQ(BatchOf(log).corruptLines, (Positions{43, 48}));
  EXPECT_EQ(BatchOf(log, true).log, kFirstRecord + kBadLine + "x y\n" + kSecondRecord);
  EXPECT_EQ(BatchOf(log, true).corruptLines, (Positions{43, 48}));
}

TEST(CopyBatchChannel, CorruptLineIsToldByThePlaceInTheLog) {
  EXPECT_EQ(BatchOf("text@4x#1yy#0z\n").corruptLines, (Positions{14}));
}

TEST(CopyBatchChannel, LongestLineIsARecord) {
  const std::string record = LongRecord(8183, "00001FF7");
  ASSERT_EQ(record.size(), kLongestLogLine - 1);
  EXPECT_EQ(SoundBatchOf("@4" + record + kFirstRecord), record + kFirstRecord);
  std::string withReturn = record;
  withReturn.insert(withReturn.size() - 1, "\r\r\r");
  EXPECT_EQ(SoundBatchOf("@4" + withReturn + kFirstRecord), record + kFirstRecord);
}

TEST(CopyBatchChannel, LongerLineIsClosedAndItsRestIsALine) {
  const std::string record = LongRecord(8184, "00001FF8");
  ASSERT_EQ(record.size(), kLongestLogLine + 1);
  EXPECT_EQ(BatchOf("@4" + record + kFirstRecord).corruptLines, (Positions{16385, 16386}));
  EXPECT_EQ(BatchOf("@4" + record + kFirstRecord).log, kFirstRecord);
  EXPECT_EQ(BatchOf("@4" + record + kFirstRecord, true).log, record + kFirstRecord);
  const std::string padded = std::string(kLongestLogLine, '0') + kFirstRecord;
  EXPECT_EQ(BatchOf("@4" + padded).corruptLines, (Positions{16385}));
  EXPECT_EQ(BatchOf("@4" + padded).log, kFirstRecord);
}

TEST(CopyBatchChannel, LineFeedAsTheLastByteThatFitsClosesOneLine) {
  const std::string line = std::string(kLongestLogLine - 1, '0') + "\n";
  EXPECT_EQ(BatchOf("@4" + line + kFirstRecord).corruptLines, (Positions{16385}));
  EXPECT_EQ(BatchOf("@4" + line + "\n" + kFirstRecord).log, "");
}

TEST(CopyBatchChannel, LeavesOutStretches) {
  EXPECT_EQ(SoundBatchOf("@40000#1left out\n\n#0001F000000042E010000\n"), kFirstRecord);
  EXPECT_EQ(SoundBatchOf("@40000#3left out#0001F0000#5x#000042E0100#1#000\n"), kFirstRecord);
  EXPECT_EQ(SoundBatchOf("@4#1" + kSecondRecord + "#0" + kFirstRecord), kFirstRecord);
}

TEST(CopyBatchChannel, OddityAnEndOfAStretchOpensOneWhereNoneIsOpen) {
  EXPECT_EQ(SoundBatchOf("@4" + kFirstRecord + "#0" + kSecondRecord), kFirstRecord);
  EXPECT_EQ(SoundBatchOf("@4" + kFirstRecord + "#0" + kFirstRecord + "#0" + kSecondRecord),
            kFirstRecord + kSecondRecord);
}

TEST(CopyBatchChannel, OtherMarksInAStretchDontEndIt) {
  EXPECT_EQ(SoundBatchOf("@40000#1a#1b#3c##d@3e@4f#0001F000000042E010000\n"), kFirstRecord);
  EXPECT_EQ(SoundBatchOf("@40000#1a##0001F000000042E010000\n"), kFirstRecord);
}

TEST(CopyBatchChannel, StretchMarkBeforeASwitchToTheBatchEndsTheStretch) {
  EXPECT_EQ(SoundBatchOf("@40000#1a#@4001F000000042E010000\n"), kFirstRecord);
  EXPECT_EQ(SoundBatchOf("@40000#@4001F000000042E010000\n"), kFirstRecord);
  EXPECT_EQ(SoundBatchOf("@4" + kFirstRecord + "#@3" + kSecondRecord), kFirstRecord);
  EXPECT_EQ(SoundBatchOf("@4#@3a#0" + kFirstRecord), kFirstRecord);
}

TEST(CopyBatchChannel, OtherChannelsHaveNoStretches) {
  EXPECT_EQ(SoundBatchOf("#1@4" + kFirstRecord), kFirstRecord);
  EXPECT_EQ(SoundBatchOf("@3#3text@4" + kFirstRecord), kFirstRecord);
}

TEST(CopyBatchChannel, StretchWithoutAnEndLeavesOutTheRest) {
  EXPECT_EQ(SoundBatchOf("@4" + kFirstRecord + "#1" + kSecondRecord + "@4" + kSecondRecord),
            kFirstRecord);
}

TEST(CopyBatchChannel, MarksMayBeCutOffByTheEnd) {
  for (const char* rest : {"@", "#", "#@", "#1#", "#1#@", "#1@", "@4"}) {
    EXPECT_EQ(SoundBatchOf("@4" + kFirstRecord + rest), kFirstRecord) << rest;
  }
}

}  // namespace
}  // namespace ventrik::tests
