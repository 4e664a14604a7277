// SPDX-License-Identifier: Apache-2.0
#include "replay/extraction.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace ventrik {

bool operator==(const CorruptLine& left, const CorruptLine& right) {
  return left.position == right.position && left.kept == right.kept;
}

std::ostream& operator<<(std::ostream& out, const CorruptLine& line) {
  return out << "line closed at " << line.position << (line.kept ? ", kept" : ", left out");
}

namespace {

using CorruptLines = std::vector<CorruptLine>;

const std::string kFirst = "0000001F000000042E010000\n";
const std::string kSecond = "00000020000000042F010000\n";
const std::string kBad = "0000002000000004\n";

// "@" stands for the mark E5, "#" for E6, "~" for a NUL.
std::string Raw(std::string log) {
  std::replace(log.begin(), log.end(), '@', '\xE5');
  std::replace(log.begin(), log.end(), '#', '\xE6');
  std::replace(log.begin(), log.end(), '~', '\0');
  return log;
}

// What was extracted, with the marks that are in it written in the same way.
std::string Shown(std::string extracted) {
  std::replace(extracted.begin(), extracted.end(), '\xE5', '@');
  std::replace(extracted.begin(), extracted.end(), '\xE6', '#');
  std::replace(extracted.begin(), extracted.end(), '\0', '~');
  return extracted;
}

std::string Batch(const std::string& log) {
  const BatchChannel channel = ExtractBatchChannel(Raw(log), false);
  EXPECT_EQ(channel.corruptLines, CorruptLines{}) << log;
  return Shown(channel.log);
}

CorruptLines CorruptIn(const std::string& log, bool keep = false) {
  return ExtractBatchChannel(Raw(log), keep).corruptLines;
}

std::string Text(const std::string& log) {
  return Shown(ExtractTextChannel(Raw(log)));
}

std::string Both(const std::string& log) {
  return Shown(ExtractBothChannels(Raw(log)));
}

bool IsRecord(const std::string& line) {
  return IsRecordLine(Raw(line));
}

std::string LongRecord(std::size_t length, const char* field) {
  return "00000000" + std::string(field) + std::string(2 * length, 'A') + "\n";
}

TEST(IsRecordLine, TakesTwoFieldsAndAsManyPairsAsTheSecondSays) {
  EXPECT_TRUE(IsRecord("0000001F000000042E010000\n"));
  EXPECT_TRUE(IsRecord("FEDCBA98000000010A\n"));
  EXPECT_TRUE(IsRecord("0123456700000000\n"));
  EXPECT_TRUE(IsRecord(LongRecord(0x2001, "00002001")));
}

TEST(IsRecordLine, TakesBlanksAndNulsBehindTheDigitsOfAField) {
  EXPECT_TRUE(IsRecord("1F      4       2E010000\n"));
  EXPECT_TRUE(IsRecord("1F~~~~~~4~~~~~~~2E010000\n"));
  EXPECT_TRUE(IsRecord("1F ~  ~ 000004~ 2E010000\n"));
}

TEST(IsRecordLine, TakesAFieldWithoutDigitsAsZero) {
  EXPECT_TRUE(IsRecord("        00000001AA\n"));
  EXPECT_TRUE(IsRecord("0000001F~~~~~~~~\n"));
  EXPECT_FALSE(IsRecord("0000001F        AA\n"));
}

TEST(IsRecordLine, RefusesAnythingElseInAField) {
  EXPECT_FALSE(IsRecord("0000001f000000042E010000\n"));
  EXPECT_FALSE(IsRecord("0000001F0000000c2E0100002E0100002E010000\n"));
  EXPECT_FALSE(IsRecord("1F 0    000000042E010000\n"));
  EXPECT_FALSE(IsRecord("0000001F4      02E010000\n"));
  EXPECT_FALSE(IsRecord("1F\t     000000042E010000\n"));
  EXPECT_FALSE(IsRecord("0x00001F000000042E010000\n"));
  EXPECT_FALSE(IsRecord("0000001F\n00000042E010000\n"));
}

TEST(IsRecordLine, RefusesAPayloadOfAnotherLength) {
  EXPECT_FALSE(IsRecord("0000001F000000032E010000\n"));
  EXPECT_FALSE(IsRecord("0000001F000000052E010000\n"));
  EXPECT_FALSE(IsRecord("0000001F000000042E01000\n"));
  EXPECT_FALSE(IsRecord("0000001F000000042E0100000\n"));
}

TEST(IsRecordLine, RefusesAPayloadWithOtherCharacters) {
  EXPECT_FALSE(IsRecord("0000001F000000042e010000\n"));
  EXPECT_FALSE(IsRecord("0000001F000000042E01 000\n"));
  EXPECT_FALSE(IsRecord("0000001F000000042E010000 \n"));
  EXPECT_FALSE(IsRecord("0000001F000000042E010000\r\n"));
}

TEST(IsRecordLine, NeedsTheLineFeedAtTheEndAndNothingBehind) {
  EXPECT_FALSE(IsRecord("0000001F000000042E010000"));
  EXPECT_FALSE(IsRecord("0000001F000000042E010000\n\n"));
  EXPECT_FALSE(IsRecord("0000001F000000042E010000\n00"));
  EXPECT_FALSE(IsRecord("0000001F00000000"));
}

TEST(IsRecordLine, RefusesLinesShorterThanTheFields) {
  for (const char* line :
       {"", "\n", "0000001F", "0000001F\n", "0000001F0000000", "000000000000000\n"}) {
    EXPECT_FALSE(IsRecord(line)) << line;
  }
}

TEST(IsRecordLine, ComparesLengthsExactly) {
  EXPECT_FALSE(IsRecord("0000001F80000000\n"));
  EXPECT_FALSE(IsRecord("0000001F80000001AA\n"));
  EXPECT_FALSE(IsRecord("0000001FFFFFFFFF\n"));
}

TEST(ExtractBatchChannel, TakesTheLinesOfChannelFour) {
  EXPECT_EQ(Batch("@4" + kFirst + kSecond), kFirst + kSecond);
  EXPECT_EQ(Batch(kSecond + "@4" + kFirst), kFirst);
  EXPECT_EQ(Batch("@3" + kSecond + "@4" + kFirst + "@5" + kSecond), kFirst);
  EXPECT_EQ(Batch("@4" + kFirst + "@@" + kFirst + "@4" + kSecond), kFirst + kSecond);
}

TEST(ExtractBatchChannel, FindsNothingWithoutASwitch) {
  EXPECT_EQ(Batch(kFirst + "4" + kSecond), "");
  EXPECT_EQ(Batch(""), "");
}

TEST(ExtractBatchChannel, SwitchIsAlwaysTwoBytes) {
  EXPECT_EQ(Batch("@@4" + kFirst), "");
  EXPECT_EQ(Batch("@#@4" + kFirst), kFirst);
}

TEST(ExtractBatchChannel, LineGoesOnOverAChannelSwitch) {
  EXPECT_EQ(Batch("@40000001F0000@3text\n\n@400042E01@40000\n"), kFirst);
}

TEST(ExtractBatchChannel, WritesNulsAsBlanks) {
  EXPECT_EQ(Batch("@41F~~~~~~4~~~~~~~2E010000\n"), "1F      4       2E010000\n");
}

TEST(ExtractBatchChannel, DropsCarriageReturns) {
  EXPECT_EQ(Batch("@40000001F000000042E010000\r\n\r000000\r20000000042F010000\r\r\n"),
            kFirst + kSecond);
}

TEST(ExtractBatchChannel, DropsALineThatTheLogDoesntClose) {
  EXPECT_EQ(Batch("@4" + kFirst + "00000020000000042F010000"), kFirst);
  EXPECT_EQ(Batch("@4nothing of a record"), "");
}

TEST(ExtractBatchChannel, EmptyLineEndsTheChannelUntilTheNextSwitch) {
  EXPECT_EQ(Batch("@4" + kFirst + "\n" + kSecond), kFirst);
  EXPECT_EQ(Batch("@4" + kFirst + "\n" + kFirst + "@4" + kSecond), kFirst + kSecond);
}

TEST(ExtractBatchChannel, EmptyLineBehindACorruptOneEndsTheChannelToo) {
  const std::string log = "@4" + kBad + "\n" + kFirst;
  EXPECT_EQ(ExtractBatchChannel(Raw(log), false).log, "");
  EXPECT_EQ(CorruptIn(log), (CorruptLines{{18, false}}));
}

TEST(ExtractBatchChannel, CarriageReturnOnAnEmptyLineMakesItACorruptOne) {
  const std::string log = "@4" + kFirst + "\r\n" + kSecond;
  EXPECT_EQ(ExtractBatchChannel(Raw(log), false).log, kFirst + kSecond);
  EXPECT_EQ(CorruptIn(log), (CorruptLines{{28, false}}));
}

TEST(ExtractBatchChannel, LineFeedDirectlyBehindTheSwitchIsACorruptLine) {
  EXPECT_EQ(CorruptIn("@4\n" + kFirst), (CorruptLines{{2, false}}));
  EXPECT_EQ(ExtractBatchChannel(Raw("@4\n" + kFirst), false).log, kFirst);
  EXPECT_EQ(ExtractBatchChannel(Raw("@4\n\n" + kFirst), false).log, "");
}

TEST(ExtractBatchChannel, LeavesCorruptLinesOutUnlessTheyAreKept) {
  const std::string log = "@4" + kFirst + kBad + "x\r~y\n" + kSecond;
  EXPECT_EQ(ExtractBatchChannel(Raw(log), false).log, kFirst + kSecond);
  EXPECT_EQ(CorruptIn(log), (CorruptLines{{43, false}, {48, false}}));
  EXPECT_EQ(ExtractBatchChannel(Raw(log), true).log, kFirst + kBad + "x y\n" + kSecond);
  EXPECT_EQ(CorruptIn(log, true), (CorruptLines{{43, true}, {48, true}}));
}

TEST(ExtractBatchChannel, CorruptLineIsToldByThePlaceInTheLog) {
  EXPECT_EQ(CorruptIn("text@4x#1yy#0z\n"), (CorruptLines{{14, false}}));
}

TEST(ExtractBatchChannel, LongestLineIsARecord) {
  const std::string record = LongRecord(8183, "00001FF7");
  ASSERT_EQ(record.size(), kLongestLogLine - 1);
  EXPECT_EQ(Batch("@4" + record + kFirst), record + kFirst);
  std::string withReturn = record;
  withReturn.insert(withReturn.size() - 1, "\r\r\r");
  EXPECT_EQ(Batch("@4" + withReturn + kFirst), record + kFirst);
}

TEST(ExtractBatchChannel, LongerLineIsClosedAndItsRestIsALine) {
  const std::string record = LongRecord(8184, "00001FF8");
  ASSERT_EQ(record.size(), kLongestLogLine + 1);
  EXPECT_EQ(CorruptIn("@4" + record + kFirst), (CorruptLines{{16385, false}, {16386, false}}));
  EXPECT_EQ(ExtractBatchChannel(Raw("@4" + record + kFirst), false).log, kFirst);
  EXPECT_EQ(ExtractBatchChannel(Raw("@4" + record + kFirst), true).log, record + kFirst);
  const std::string padded = std::string(kLongestLogLine, '0') + kFirst;
  EXPECT_EQ(CorruptIn("@4" + padded), (CorruptLines{{16385, false}}));
  EXPECT_EQ(ExtractBatchChannel(Raw("@4" + padded), false).log, kFirst);
}

TEST(ExtractBatchChannel, LineFeedAsTheLastByteThatFitsClosesOneLine) {
  const std::string line = std::string(kLongestLogLine - 1, '0') + "\n";
  EXPECT_EQ(CorruptIn("@4" + line + kFirst), (CorruptLines{{16385, false}}));
  EXPECT_EQ(ExtractBatchChannel(Raw("@4" + line + "\n" + kFirst), false).log, "");
}

TEST(ExtractBatchChannel, LeavesOutStretches) {
  EXPECT_EQ(Batch("@40000#1left out\n\n#0001F000000042E010000\n"), kFirst);
  EXPECT_EQ(Batch("@40000#3left out#0001F0000#5x#000042E0100#1#000\n"), kFirst);
  EXPECT_EQ(Batch("@4#1" + kSecond + "#0" + kFirst), kFirst);
}

TEST(ExtractBatchChannel, OddityAnEndOfAStretchOpensOneWhereNoneIsOpen) {
  EXPECT_EQ(Batch("@4" + kFirst + "#0" + kSecond), kFirst);
  EXPECT_EQ(Batch("@4" + kFirst + "#0" + kFirst + "#0" + kSecond), kFirst + kSecond);
}

TEST(ExtractBatchChannel, OtherMarksInAStretchDontEndIt) {
  EXPECT_EQ(Batch("@40000#1a#1b#3c##d@3e@4f#0001F000000042E010000\n"), kFirst);
  EXPECT_EQ(Batch("@40000#1a##0001F000000042E010000\n"), kFirst);
}

TEST(ExtractBatchChannel, StretchMarkBeforeASwitchToTheBatchEndsTheStretch) {
  EXPECT_EQ(Batch("@40000#1a#@4001F000000042E010000\n"), kFirst);
  EXPECT_EQ(Batch("@40000#@4001F000000042E010000\n"), kFirst);
  EXPECT_EQ(Batch("@4" + kFirst + "#@3" + kSecond), kFirst);
  EXPECT_EQ(Batch("@4#@3a#0" + kFirst), kFirst);
}

TEST(ExtractBatchChannel, OtherChannelsHaveNoStretches) {
  EXPECT_EQ(Batch("#1@4" + kFirst), kFirst);
  EXPECT_EQ(Batch("@3#3text@4" + kFirst), kFirst);
}

TEST(ExtractBatchChannel, StretchWithoutAnEndLeavesOutTheRest) {
  EXPECT_EQ(Batch("@4" + kFirst + "#1" + kSecond + "@4" + kSecond), kFirst);
}

TEST(ExtractBatchChannel, MarksMayBeCutOffByTheEnd) {
  for (const char* rest : {"@", "#", "#@", "#1#", "#1#@", "#1@", "@4"}) {
    EXPECT_EQ(Batch("@4" + kFirst + rest), kFirst) << rest;
  }
}

TEST(ExtractTextChannel, TakesTheBytesOfChannelThree) {
  EXPECT_EQ(Text("@3abc"), "abc");
  EXPECT_EQ(Text("xy@3abc@4def@3ghi@0jkl"), "abcghi");
  EXPECT_EQ(Text("@3abc@3def"), "abcdef");
  EXPECT_EQ(Text("3abc@4def"), "");
  EXPECT_EQ(Text(""), "");
}

TEST(ExtractTextChannel, ConvertsNothing) {
  EXPECT_EQ(Text("@3a\r\n\n~b\xFF\x80\n\n"), "a\r\n\n~b\xFF\x80\n\n");
}

TEST(ExtractTextChannel, OtherSwitchIsOneByte) {
  EXPECT_EQ(Text("@@3ab"), "ab");
  EXPECT_EQ(Text("@3ab@@3cd"), "abcd");
}

TEST(ExtractTextChannel, LeavesOutStretchesOfTheFirstKind) {
  EXPECT_EQ(Text("@3ab#3xx#0cd"), "abcd");
  EXPECT_EQ(Text("@3ab#3x@4y#1z##5#0cd"), "abcd");
  EXPECT_EQ(Text("#3@3xx#0ab@3cd"), "cd");
}

TEST(ExtractTextChannel, LeavesOutStretchesOfTheSecondKind) {
  EXPECT_EQ(Text("@3ab#1xx#0cd"), "abcd");
  EXPECT_EQ(Text("@3ab#1x@4y#7cd"), "abcd");
  EXPECT_EQ(Text("@3ab#1x#@3cd"), "ab3cd");
}

TEST(ExtractTextChannel, LooksForTheEndThreeBytesFurther) {
  EXPECT_EQ(Text("@3ab#3#0cd#0ef"), "abef");
  EXPECT_EQ(Text("@3ab#3x#0cd"), "abcd");
  EXPECT_EQ(Text("@3ab#1#0cd#0ef"), "abef");
  EXPECT_EQ(Text("@3ab#1x#0cd"), "abcd");
}

TEST(ExtractTextChannel, StretchWithoutAnEndLeavesOutTheRest) {
  for (const char* rest :
       {"#3cd@3ef", "#3cd#", "#3cd#1ef", "#3", "#1cd@3ef", "#1cd#", "#1", "#1x"}) {
    EXPECT_EQ(Text(std::string("@3ab") + rest), "ab") << rest;
  }
}

TEST(ExtractTextChannel, SecondKindFollowsDirectlyBehindTheFirst) {
  EXPECT_EQ(Text("@3ab#3x#0#1y#0cd"), "abcd");
  EXPECT_EQ(Text("@3ab#3x#0#1y#0#1z#0cd"), "ab#1z#0cd");
}

TEST(ExtractTextChannel, FirstKindDirectlyBehindTheFirstIsAStretchOfItsOwn) {
  EXPECT_EQ(Text("@3ab#3x#0#3y#0cd"), "abcd");
  EXPECT_EQ(Text("@3ab#3w#0#3x#0#3y#0#1z#0cd"), "abcd");
  EXPECT_EQ(Text("@3ab#3x#0#3y#0@3cd"), "ab3cd");
}

TEST(ExtractTextChannel, OddityAMarkDirectlyBehindTheSecondKindIsContent) {
  EXPECT_EQ(Text("@3ab#1x#0#3y#0cd"), "ab#3y#0cd");
  EXPECT_EQ(Text("@3ab#1x#0#1y#0cd"), "ab#1y#0cd");
  EXPECT_EQ(Text("#1x#0#3y@3ab"), "ab");
  EXPECT_EQ(Text("@3ab#1x#0c#3y#0d"), "abcd");
}

TEST(ExtractTextChannel, MarkOfNoKnownKindIsContent) {
  EXPECT_EQ(Text("@3ab#5cd#0ef#@3gh#~i"), "ab#5cd#0ef#gh#~i");
  EXPECT_EQ(Text("@3ab#3x#0#5cd"), "ab#5cd");
  EXPECT_EQ(Text("@3ab##3x#0cd"), "ab#cd");
  EXPECT_EQ(Text("@4#5ab@3cd"), "cd");
}

TEST(ExtractTextChannel, OdditySwitchDirectlyBehindAStretchLeavesItsDigit) {
  EXPECT_EQ(Text("@3ab#3x#0@3cd"), "ab3cd");
  EXPECT_EQ(Text("@3ab#1x#0@3cd"), "ab3cd");
  EXPECT_EQ(Text("#3x#0@3cd"), "3cd");
  EXPECT_EQ(Text("@3ab#3x#0@4cd"), "ab");
  EXPECT_EQ(Text("@3ab#3x#0c@3d"), "abcd");
}

TEST(ExtractTextChannel, MarksMayBeCutOffByTheEnd) {
  EXPECT_EQ(Text("@3ab@"), "ab");
  EXPECT_EQ(Text("@3ab#"), "ab#");
  EXPECT_EQ(Text("@3ab#3x#0#"), "ab#");
  EXPECT_EQ(Text("@3ab#3x#0@"), "ab");
}

TEST(ExtractBothChannels, WritesBothInTheOrderOfTheLog) {
  EXPECT_EQ(Both("xy@4ab@3cd@5ef@4gh@0"), "abcdgh");
  EXPECT_EQ(Both("@3ab@3cd@4ef@4gh"), "abcdefgh");
}

TEST(ExtractBothChannels, ConvertsAndChecksNothing) {
  EXPECT_EQ(Both("@4no record\r\n\n~more@3a\r~b\n\n"), "no record\r\n\n~morea\r~b\n\n");
}

TEST(ExtractBothChannels, WritesNothingBeforeASwitch) {
  EXPECT_EQ(Both("ab#0cd43"), "");
  EXPECT_EQ(Both("#3@4ab"), "ab");
  EXPECT_EQ(Both(""), "");
}

TEST(ExtractBothChannels, OtherSwitchIsOneByte) {
  EXPECT_EQ(Both("@@4ab@@3cd@5ef"), "abcd");
}

TEST(ExtractBothChannels, BatchStretchOfNoLengthIsTwoMarks) {
  EXPECT_EQ(Both("@4ab#1#0cd"), "abcd");
  EXPECT_EQ(Both("@4ab#1#@3cd"), "ab3cd");
}

TEST(ExtractBothChannels, BatchStretchEndsAtAZeroOrBehindAMarkAndOneByte) {
  EXPECT_EQ(Both("@4ab#1xyz0cd"), "abcd");
  EXPECT_EQ(Both("@4ab#1xyz#0cd"), "abcd");
  EXPECT_EQ(Both("@4ab#1xyz#5cd"), "abcd");
  EXPECT_EQ(Both("@4ab#1x@3y0cd"), "abcd");
  EXPECT_EQ(Both("@4ab#1x#0#1y#0cd"), "abcd");
  EXPECT_EQ(Both("@4ab##x0cd"), "abcd");
}

TEST(ExtractBothChannels, BatchStretchLooksForItsEndThreeBytesFurther) {
  EXPECT_EQ(Both("@4ab#10x0cd"), "abcd");
  EXPECT_EQ(Both("@4ab#000cd"), "abcd");
}

TEST(ExtractBothChannels, LeavesOutTextStretchesOfEitherKindUpToTheSameEnd) {
  EXPECT_EQ(Both("@3ab#3x#1y#0cd"), "abcd");
  EXPECT_EQ(Both("@3ab#1x#5y@4z#0cd"), "abcd");
  EXPECT_EQ(Both("@3ab#3#0cd#0ef"), "abef");
  EXPECT_EQ(Both("@3ab#1#0cd#0ef"), "abef");
}

TEST(ExtractBothChannels, TextMarkOfNoKnownKindIsContent) {
  EXPECT_EQ(Both("@3ab#5cd#0ef##3x#0gh"), "ab#5cd#0ef#gh");
}

TEST(ExtractBothChannels, SwitchBehindAStretchIsASwitch) {
  EXPECT_EQ(Both("@3ab#3x#0@3cd#1x#0@4ef#1x#0@3gh"), "abcdefgh");
}

TEST(ExtractBothChannels, StretchesAndMarksMayBeCutOffByTheEnd) {
  for (const char* rest : {"@", "@3", "@4", "#1xyz", "#", "#1", "#1#", "#1x#", "#1x"}) {
    EXPECT_EQ(Both(std::string("@4ab") + rest), "ab") << rest;
  }
  for (const char* rest : {"@", "#3", "#3x", "#3xy#", "#1x#5y", "#1"}) {
    EXPECT_EQ(Both(std::string("@3ab") + rest), "ab") << rest;
  }
  EXPECT_EQ(Both("@3ab#"), "ab#");
}

}  // namespace
}  // namespace ventrik
