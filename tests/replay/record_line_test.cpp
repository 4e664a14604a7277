// SPDX-License-Identifier: Apache-2.0
#include "replay/extraction.h"

#include <gtest/gtest.h>

#include "tests/replay/raw_log_notation.h"

namespace ventrik::tests {
namespace {

bool IsRecord(const std::string& line) {
  return IsRecordLine(Raw(line));
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

}  // namespace
}  // namespace ventrik::tests
