// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "tests/replay/raw_log_notation.h"

namespace ventrik::tests {
namespace {

TEST(CopyBothChannels, WritesBothInTheOrderOfTheLog) {
  EXPECT_EQ(BothOf("xy@4ab@3cd@5ef@4gh@0"), "abcdgh");
  EXPECT_EQ(BothOf("@3ab@3cd@4ef@4gh"), "abcdefgh");
}

TEST(CopyBothChannels, ConvertsAndChecksNothing) {
  EXPECT_EQ(BothOf("@4no record\r\n\n~more@3a\r~b\n\n"), "no record\r\n\n~morea\r~b\n\n");
}

TEST(CopyBothChannels, WritesNothingBeforeASwitch) {
  EXPECT_EQ(BothOf("ab#0cd43"), "");
  EXPECT_EQ(BothOf("#3@4ab"), "ab");
  EXPECT_EQ(BothOf(""), "");
}

TEST(CopyBothChannels, OtherSwitchIsOneByte) {
  EXPECT_EQ(BothOf("@@4ab@@3cd@5ef"), "abcd");
}

TEST(CopyBothChannels, BatchStretchOfNoLengthIsTwoMarks) {
  EXPECT_EQ(BothOf("@4ab#1#0cd"), "abcd");
  EXPECT_EQ(BothOf("@4ab#1#@3cd"), "ab3cd");
}

TEST(CopyBothChannels, BatchStretchEndsAtAZeroOrBehindAMarkAndOneByte) {
  EXPECT_EQ(BothOf("@4ab#1xyz0cd"), "abcd");
  EXPECT_EQ(BothOf("@4ab#1xyz#0cd"), "abcd");
  EXPECT_EQ(BothOf("@4ab#1xyz#5cd"), "abcd");
  EXPECT_EQ(BothOf("@4ab#1x@3y0cd"), "abcd");
  EXPECT_EQ(BothOf("@4ab#1x#0#1y#0cd"), "abcd");
  EXPECT_EQ(BothOf("@4ab##x0cd"), "abcd");
}

TEST(CopyBothChannels, BatchStretchLooksForItsEndThreeBytesFurther) {
  EXPECT_EQ(BothOf("@4ab#10x0cd"), "abcd");
  EXPECT_EQ(BothOf("@4ab#000cd"), "abcd");
}

TEST(CopyBothChannels, LeavesOutTextStretchesOfEitherKindUpToTheSameEnd) {
  EXPECT_EQ(BothOf("@3ab#3x#1y#0cd"), "abcd");
  EXPECT_EQ(BothOf("@3ab#1x#5y@4z#0cd"), "abcd");
  EXPECT_EQ(BothOf("@3ab#3#0cd#0ef"), "abef");
  EXPECT_EQ(BothOf("@3ab#1#0cd#0ef"), "abef");
}

TEST(CopyBothChannels, TextMarkOfNoKnownKindIsContent) {
  EXPECT_EQ(BothOf("@3ab#5cd#0ef##3x#0gh"), "ab#5cd#0ef#gh");
}

TEST(CopyBothChannels, SwitchBehindAStretchIsASwitch) {
  EXPECT_EQ(BothOf("@3ab#3x#0@3cd#1x#0@4ef#1x#0@3gh"), "abcdefgh");
}

TEST(CopyBothChannels, StretchesAndMarksMayBeCutOffByTheEnd) {
  for (const char* rest : {"@", "@3", "@4", "#1xyz", "#", "#1", "#1#", "#1x#", "#1x"}) {
    EXPECT_EQ(BothOf(std::string("@4ab") + rest), "ab") << rest;
  }
  for (const char* rest : {"@", "#3", "#3x", "#3xy#", "#1x#5y", "#1"}) {
    EXPECT_EQ(BothOf(std::string("@3ab") + rest), "ab") << rest;
  }
  EXPECT_EQ(BothOf("@3ab#"), "ab#");
}

}  // namespace
}  // namespace ventrik::tests
