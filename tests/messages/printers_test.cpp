// SPDX-License-Identifier: Apache-2.0
// The text of each message that is printed.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "messages/dispatch.h"
#include "tests/messages/bytes.h"
#include "tests/messages/guarded_block.h"

namespace ventrik::tests {
namespace {

std::string TextOf(const Bytes& message) {
  return MessageText(GuardedBlock(message.value.data(), message.value.size()).Block());
}

TEST(RespInit, ResultOf0IsSuccess) {
  EXPECT_EQ(TextOf(Hex("01000000 00000000")),
            "RESP_INIT> Navigation component is initialized successfully!\n");
}

TEST(RespInit, AnyOtherResultIsShown) {
  EXPECT_EQ(TextOf(Hex("01000000 07000000")), "RESP_INIT> Initialization error! (7)\n");
  EXPECT_EQ(TextOf(Hex("01000000 FDFFFFFF")), "RESP_INIT> Initialization error! (-3)\n");
}

TEST(RespShutdown, IsOneLine) {
  EXPECT_EQ(TextOf(Hex("65000000")), "RESP_SHUTDOWN> Shutdown process is finished.\n");
}

TEST(InfoHeartbeat, IsOneLine) {
  EXPECT_EQ(TextOf(Hex("6D020000")), "INFO_HEARTBEAT> Heartbeat\n");
}

TEST(RespGetSwVersion, ShowsItsText) {
  EXPECT_EQ(TextOf(Hex("86030000 05000000 '1.2.3' 000000")),
            "RESP_GET_SW_VERSION> swVersion: 1.2.3\n");
}

TEST(RespGetSwVersion, LengthOf0MeansNoText) {
  EXPECT_EQ(TextOf(Hex("86030000 00000000 'none' 00000000")), "RESP_GET_SW_VERSION> swVersion: \n");
}

TEST(RespGetDbVersion, ShowsItsText) {
  EXPECT_EQ(TextOf(Hex("87030000 03000000 '%d' C3A9 00")),
            "RESP_GET_DB_VERSION> dbVersion: %d\xC3\xA9\n");
}

TEST(RespGetDbVersion, LengthOf0MeansNoText) {
  EXPECT_EQ(TextOf(Hex("87030000 00000000")), "RESP_GET_DB_VERSION> dbVersion: \n");
}

TEST(Versions, MeasuredLengthCountsAndNotTheLengthWord) {
  EXPECT_EQ(TextOf(Hex("86030000 01000000 'long text' 000000")),
            "RESP_GET_SW_VERSION> swVersion: long text\n");
  EXPECT_EQ(TextOf(Hex("86030000 FFFFFFFF 'a' 000000")), "RESP_GET_SW_VERSION> swVersion: a\n");
}

std::string Spell(const std::string& input, const std::string& valid, const std::string& next,
                  const std::string& offered, const std::string& count,
                  const std::string& fullMatch) {
  return "RESP_GET_SPELL> inputEIS: \"" + input + "\"\nRESP_GET_SPELL> validState: " + valid +
         "\nRESP_GET_SPELL> nextAvailableCharacters: \"" + next +
         "\"\nRESP_GET_SPELL> offeredCharacters: \"" + offered +
         "\"\nRESP_GET_SPELL> count: " + count + "\nRESP_GET_SPELL> isFullMatch: " + fullMatch +
         "\n";
}

TEST(RespGetSpell, ShowsAllItsFields) {
  EXPECT_EQ(TextOf(Hex("2F010000 02000000 01000000 03000000 01000000 0C000000 01000000 'in' 0000 "
                       "'ABC' 00 'D' 000000")),
            Spell("in", "valid", "ABC", "D", "12", "on"));
}

TEST(RespGetSpell, AbsentStringsTakeNoRoom) {
  EXPECT_EQ(TextOf(Hex("2F010000 00000000 01000000 00000000 01000000 00000000 00000000 "
                       "'D' 000000")),
            Spell("", "valid", "", "D", "0", "off"));
  EXPECT_EQ(TextOf(Hex("2F010000 00000000 01000000 03000000 00000000 00000000 00000000 "
                       "'ABC' 00")),
            Spell("", "valid", "ABC", "", "0", "off"));
  EXPECT_EQ(TextOf(Hex("2F010000 00000000 00000000 00000000 00000000 00000000 00000000")),
            Spell("", "invalid", "", "", "0", "off"));
}

TEST(RespGetSpell, OnlyOneIsValidAndOnlyOneIsOn) {
  EXPECT_EQ(TextOf(Hex("2F010000 00000000 02000000 00000000 00000000 FFFFFFFF 02000000")),
            Spell("", "invalid", "", "", "-1", "off"));
  EXPECT_EQ(TextOf(Hex("2F010000 00000000 FFFFFFFF 00000000 00000000 00000000 FFFFFFFF")),
            Spell("", "invalid", "", "", "0", "off"));
}

// `options` and `items` as they stand between their label and the next.
std::string List(const std::string& input, const std::string& valid, const std::string& start,
                 const std::string& count, const std::string& options, const std::string& items,
                 const std::string& output, const std::string& complete) {
  return "RESP_GET_LIST> inputEIS: \"" + input + "\"\nRESP_GET_LIST> validState: " + valid +
         "\nRESP_GET_LIST> startIndex: " + start + "\nRESP_GET_LIST> resultCount: " + count +
         "\nRESP_GET_LIST> fieldOptions: " + options + "\nRESP_GET_LIST> itemList:\n" + items +
         "\nRESP_GET_LIST> outputEIS: \"" + output +
         "\"\nRESP_GET_LIST> completeState: " + complete + "\n";
}

TEST(RespGetList, ShowsAllItsFields) {
  EXPECT_EQ(TextOf(Hex("33010000 02000000 01000000 01000000 32000000 4D000000 02000000 02000000 "
                       "03000000 01000000 'in' 0000 'opt' 00 'more' 00000000 'row1' 00000000 "
                       "'r2' 0000 'out' 00")),
            List("in", "valid", "1", "50", "\"opt\" \"more\" ", "   1. (row1)\n   2. (r2)\n", "out",
                 "on"));
}

TEST(RespGetList, WithoutItemsShowsTheLabelAndAnEmptyLine) {
  EXPECT_EQ(TextOf(Hex("33010000 00000000 02000000 01000000 00000000 00000000 00000000 00000000 "
                       "00000000 02000000")),
            List("", "invalid", "1", "0", "", "", "", "off"));
}

TEST(RespGetList, NumbersGoOnFromTheStartIndex) {
  EXPECT_EQ(TextOf(Hex("33010000 00000000 01000000 33000000 02000000 00000000 00000000 02000000 "
                       "00000000 01000000 'a' 000000 'b' 000000")),
            List("", "valid", "51", "2", "", "   51. (a)\n   52. (b)\n", "", "on"));
}

TEST(RespGetList, NumbersWrapRoundAsAWordDoes) {
  EXPECT_EQ(TextOf(Hex("33010000 00000000 01000000 FFFFFF7F 02000000 00000000 00000000 02000000 "
                       "00000000 01000000 'a' 000000 'b' 000000")),
            List("", "valid", "2147483647", "2", "", "   2147483647. (a)\n   -2147483648. (b)\n",
                 "", "on"));
}

TEST(RespGetList, EmptyItemsAreItems) {
  EXPECT_EQ(TextOf(Hex("33010000 00000000 01000000 01000000 02000000 00000000 01000000 02000000 "
                       "01000000 01000000 00000000 00000000 00000000 'x' 000000")),
            List("", "valid", "1", "2", "\"\" ", "   1. ()\n   2. ()\n", "x", "on"));
}

TEST(RespGetList, ManyLongItemsAreAllShown) {
  Bytes message =
      Hex("33010000 00000000 01000000 01000000 E8030000 00000000 00000000 E8030000 "
          "00000000 01000000");
  std::string items;
  for (int i = 1; i <= 1000; ++i) {
    const std::string item(static_cast<std::size_t>(i * 4 - 1), 'x');
    message.value.insert(message.value.end(), item.begin(), item.end());
    message.value.push_back(0);
    items += "   " + std::to_string(i) + ". (" + item + ")\n";
  }
  EXPECT_TRUE(TextOf(message) == List("", "valid", "1", "1000", "", items, "", "on"));
}

TEST(RespGetList, CountThatLiesEndsWithTheBlock) {
  EXPECT_EQ(TextOf(Hex("33010000 00000000 01000000 01000000 02000000 00000000 00000000 FFFFFF7F "
                       "01000000 01000000 'a' 000000 'b' 000000")),
            List("", "valid", "1", "2", "", "   1. (a)\n   2. (b)\n", "", "on"));
  EXPECT_EQ(TextOf(Hex("33010000 00000000 01000000 01000000 02000000 00000000 FFFFFFFF FFFFFFFF "
                       "01000000 01000000 'a' 000000")),
            List("", "valid", "1", "2", "", "", "a", "on"));
}

TEST(RespGetList, LastTextMayLackItsTerminator) {
  EXPECT_EQ(TextOf(Hex("33010000 00000000 01000000 01000000 02000000 00000000 00000000 01000000 "
                       "00000000 01000000 'abcde'")),
            List("", "valid", "1", "2", "", "   1. (abcde)\n", "", "on"));
}

const Bytes kSamples[] = {
    Hex("01000000 07000000"),
    Hex("65000000"),
    Hex("6D020000"),
    Hex("86030000 05000000 '1.2.3' 000000"),
    Hex("87030000 04000000 '2024' 00000000"),
    Hex("2F010000 02000000 01000000 03000000 01000000 0C000000 01000000 'in' 0000 'ABC' 00 "
        "'D' 000000"),
    Hex("33010000 02000000 01000000 01000000 32000000 4D000000 02000000 02000000 03000000 "
        "01000000 'in' 0000 'opt' 00 'more' 00000000 'row1' 00000000 'r2' 0000 'out' 00"),
};

// Blocks lie against unreadable memory, so a printer that leaves one ends the program. Nor may it
// print more than there is: no text of a sample is longer than a kilobyte.
void PrintInsideOf(const Bytes& bytes, std::size_t size) {
  const GuardedBlock guarded(bytes.value.data(), size);
  const std::string text = MessageText(guarded.Block());
  ASSERT_FALSE(text.empty());
  ASSERT_LT(text.size(), 1024u);
}

TEST(Printers, EveryPrefixOfEveryMessageIsPrintedWithinTheBlock) {
  for (const Bytes& sample : kSamples) {
    for (std::size_t size = 0; size <= sample.value.size(); ++size) PrintInsideOf(sample, size);
  }
}

TEST(Printers, NoWordLeadsOutOfTheBlock) {
  for (const Bytes& sample : kSamples) {
    for (std::size_t offset = 4; offset + 4 <= sample.value.size(); offset += 4) {
      for (const std::int32_t lie : {-1, 0, 1, 1000, 0x7FFFFFFF, -0x7FFFFFFF - 1}) {
        Bytes lying = sample;
        std::memcpy(lying.value.data() + offset, &lie, sizeof lie);
        PrintInsideOf(lying, lying.value.size());
      }
    }
  }
}

TEST(Printers, TextsWithoutATerminatorEndWithTheBlock) {
  for (const Bytes& sample : kSamples) {
    Bytes endless = sample;
    std::fill(endless.value.begin() + 4, endless.value.end(), std::uint8_t{'x'});
    for (std::size_t size = 4; size <= endless.value.size(); ++size) PrintInsideOf(endless, size);
  }
}

TEST(Printers, CutMessageShowsWhatIsLeftOfIt) {
  EXPECT_EQ(TextOf(Hex("01000000")),
            "RESP_INIT> Navigation component is initialized successfully!\n");
  EXPECT_EQ(TextOf(Hex("86030000 05000000 '1.'")), "RESP_GET_SW_VERSION> swVersion: 1.\n");
  EXPECT_EQ(TextOf(Hex("2F010000 02000000 01000000")), Spell("", "valid", "", "", "0", "off"));
  EXPECT_EQ(TextOf(Hex("33010000")), List("", "invalid", "0", "0", "", "", "", "off"));
}

}  // namespace
}  // namespace ventrik::tests
