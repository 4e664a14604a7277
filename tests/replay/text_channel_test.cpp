// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "tests/replay/raw_log_notation.h"

namespace ventrik::tests {
namespace {

TEST(CopyTextChannel, TakesTheBytesOfChannelThree) {
  EXPECT_EQ(TextOf("@3abc"), "abc");
  EXPECT_EQ(TextOf("xy@3abc@4def@3ghi@0jkl"), "abcghi");
  EXPECT_EQ(TextOf("@3abc@3def"), "abcdef");
  EXPECT_EQ(TextOf("3abc@4def"), "");
  EXPECT_EQ(TextOf(""), "");
}

TEST(CopyTextChannel, ConvertsNothing) {
  EXPECT_EQ(TextOf("@3a\r\n\n~b\xFF\x80\n\n"), "a\r\n\n~b\xFF\x80\n\n");
}

TEST(CopyTextChannel, OtherSwitchIsOneByte) {
  EXPECT_EQ(TextOf("@@3ab"), "ab");
  EXPECT_EQ(TextOf("@3ab@@3cd"), "abcd");
}

TEST(CopyTextChannel, LeavesOutStretchesOfTheFirstKind) {
  EXPECT_EQ(TextOf("@3ab#3xx#0cd"), "abcd");
  EXPECT_EQ(TextOf("@3ab#3x@4y#1z##5#0cd"), "abcd");
  EXPECT_EQ(TextOf("#3@3xx#0ab@3cd"), "cd");
}

TEST(CopyTextChannel, LeavesOutStretchesOfTheSecondKind) {
  EXPECT_EQ(TextOf("@3ab#1xx#0cd"), "abcd");
  EXPECT_EQ(TextOf("@3ab#1x@4y#7cd"), "abcd");
  EXPECT_EQ(TextOf("@3ab#1x#@3cd"), "ab3cd");
}

TEST(CopyTextChannel, LooksForTheEndThreeBytesFurther) {
  EXPECT_EQ(TextOf("@3ab#3#0cd#0ef"), "abef");
  EXPECT_EQ(TextOf("@3ab#3x#0cd"), "abcd");
  EXPECT_EQ(TextOf("@3ab#1#0cd#0ef"), "abef");
  EXPECT_EQ(TextOf("@3ab#1x#0cd"), "abcd");
}

TEST(CopyTextChannel, StretchWithoutAnEndLeavesOutTheRest) {
  for (const char* rest :
       {"#3cd@3ef", "#3cd#", "#3cd#1ef", "#3", "#1cd@3ef", "#1cd#", "#1", "#1x"}) {
    EXPECT_EQ(TextOf(std::string("@3ab") + rest), "ab") << rest;
  }
}

TEST(CopyTextChannel, SecondKindFollowsDirectlyBehindTheFirst) {
  EXPECT_EQ(TextOf("@3ab#3x#0#1y#0cd"), "abcd");
  EXPECT_EQ(TextOf("@3ab#3x#0#1y#0#1z#0cd"), "ab#1z#0cd");
}

TEST(CopyTextChannel, FirstKindDirectlyBehindTheFirstIsAStretchOfItsOwn) {
  EXPECT_EQ(TextOf("@3ab#3x#0#3y#0cd"), "abcd");
  EXPECT_EQ(TextOf("@3ab#3w#0#3x#0#3y#0#1z#0cd"), "abcd");
  EXPECT_EQ(TextOf("@3ab#3x#0#3y#0@3cd"), "ab3cd");
}

TEST(CopyTextChannel, OddityAMarkDirectlyBehindTheSecondKindIsContent) {
  EXPECT_EQ(TextOf("@3ab#1x#0#3y#0cd"), "ab#3y#0cd");
  EXPECT_EQ(TextOf("@3ab#1x#0#1y#0cd"), "ab#1y#0cd");
  EXPECT_EQ(TextOf("#1x#0#3y@3ab"), "ab");
  EXPECT_EQ(TextOf("@3ab#1x#0c#3y#0d"), "abcd");
}

TEST(CopyTextChannel, MarkOfNoKnownKindIsContent) {
  EXPECT_EQ(TextOf("@3ab#5cd#0ef#@3gh#~i"), "ab#5cd#0ef#gh#~i");
  EXPECT_EQ(TextOf("@3ab#3x#0#5cd"), "ab#5cd");
  EXPECT_EQ(TextOf("@3ab##3x#0cd"), "ab#cd");
  EXPECT_EQ(TextOf("@4#5ab@3cd"), "cd");
}

TEST(CopyTextChannel, OdditySwitchDirectlyBehindAStretchLeavesItsDigit) {
  EXPECT_EQ(TextOf("@3ab#3x#0@3cd"), "ab3cd");
  EXPECT_EQ(TextOf("@3ab#1x#0@3cd"), "ab3cd");
  EXPECT_EQ(TextOf("#3x#0@3cd"), "3cd");
  EXPECT_EQ(TextOf("@3ab#3x#0@4cd"), "ab");
  EXPECT_EQ(TextOf("@3ab#3x#0c@3d"), "abcd");
}

TEST(CopyTextChannel, MarksMayBeCutOffByTheEnd) {
  EXPECT_EQ(TextOf("@3ab@"), "ab");
  EXPECT_EQ(TextOf("@3ab#"), "ab#");
  EXPECT_EQ(TextOf("@3ab#3x#0#"), "ab#");
  EXPECT_EQ(TextOf("@3ab#3x#0@"), "ab");
}

}  // namespace
}  // namespace ventrik::tests
