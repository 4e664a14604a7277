// SPDX-License-Identifier: Apache-2.0
#include "messages/block_cursor.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "tests/messages/bytes.h"
#include "tests/messages/guarded_block.h"

namespace ventrik {
namespace {

TEST(ReceivedBlock, WordsByIndex) {
  const Bytes bytes = Hex("2F010000 FEFFFFFF 0102");
  EXPECT_EQ(bytes.Block().Word(0), 303);
  EXPECT_EQ(bytes.Block().Word(1), -2);
}

TEST(ReceivedBlock, BeyondTheEndIsZero) {
  const Bytes bytes = Hex("FFFFFFFF FFFFFF");
  const GuardedBlock guarded(bytes.value.data(), bytes.value.size());
  const ReceivedBlock block = guarded.Block();
  EXPECT_EQ(block.Word(1), 0) << "a word that is cut short";
  EXPECT_EQ(block.Word(2), 0);
  EXPECT_EQ(block.Word(std::numeric_limits<std::size_t>::max()), 0);
  EXPECT_EQ(block.Byte(6), 0xFF);
  EXPECT_EQ(block.Byte(7), 0);
  EXPECT_EQ(block.Double(0), 0.0) << "a double that is cut short";
  EXPECT_EQ(block.Double(std::numeric_limits<std::size_t>::max()), 0.0);
}

// An index whose byte offset wraps round to the block's start must not read there.
TEST(ReceivedBlock, AnIndexDoesNotWrapRound) {
  const Bytes bytes = Hex("FFFFFFFF");
  EXPECT_EQ(bytes.Block().Word(std::numeric_limits<std::size_t>::max() / 4 + 1), 0);
}

TEST(ReceivedBlock, AnEmptyBlockReadsAsZero) {
  const ReceivedBlock empty{nullptr, 0};
  EXPECT_EQ(empty.Word(0), 0);
  EXPECT_EQ(empty.Byte(0), 0);
  EXPECT_EQ(empty.Double(0), 0.0);
  BlockCursor cursor(empty, 0);
  EXPECT_TRUE(cursor.AtEnd());
  EXPECT_EQ(cursor.NextString(), "");
  EXPECT_EQ(cursor.NextWord(), 0);
}

TEST(ReceivedBlock, DoublesByByteOffset) {
  const Bytes bytes = Hex("00000000 00000000 00000000 0000F83F");
  EXPECT_EQ(bytes.Block().Double(8), 1.5);
  EXPECT_EQ(bytes.Block().Double(9), 0.0) << "its last byte is beyond the end";
}

TEST(ReceivedBlock, BytesNeedNoAlignment) {
  const Bytes bytes = Hex("00 2F010000 00000000 0000F83F");
  const ReceivedBlock block{bytes.value.data() + 1, bytes.value.size() - 1};
  EXPECT_EQ(block.Word(0), 303);
  EXPECT_EQ(block.Double(4), 1.5);
}

class Cursor : public testing::Test {
 protected:
  // A cursor at the start of the bytes.
  BlockCursor At(std::string_view notation, std::size_t firstWord = 0) {
    bytes = Hex(notation);
    return {bytes.Block(), firstWord};
  }

  Bytes bytes;
};

TEST_F(Cursor, StringsOfEveryLengthRoundABoundary) {
  const std::string text = "12345678";
  for (std::size_t length = 0; length <= text.size(); ++length) {
    const std::string expected = text.substr(0, length);
    std::string notation = "'" + expected + "'";
    for (std::size_t i = 0; i < 4 - length % 4; ++i) notation += " 00";
    BlockCursor cursor = At(notation + "'next' 00000000");
    EXPECT_EQ(cursor.NextString(), expected);
    EXPECT_EQ(cursor.NextString(), "next");
    EXPECT_TRUE(cursor.AtEnd());
  }
}

TEST_F(Cursor, PaddingIsNotLookedAt) {
  BlockCursor cursor = At("'a' 00FFEE 'b' 000000");
  EXPECT_EQ(cursor.NextString(), "a");
  EXPECT_EQ(cursor.NextString(), "b");
}

TEST_F(Cursor, StartsAtAWordOrAtTheEnd) {
  EXPECT_EQ(At("01000000 'ab' 0000", 1).NextString(), "ab");
  EXPECT_TRUE(At("01000000", 1).AtEnd());
  EXPECT_TRUE(At("01000000", 2).AtEnd());
  EXPECT_TRUE(At("01000000 02", 2).AtEnd());
  EXPECT_EQ(At("01000000 02", 1).Remaining(), 1u);
  EXPECT_TRUE(At("01000000", std::numeric_limits<std::size_t>::max()).AtEnd());
}

TEST_F(Cursor, AStringWithoutTerminatorEndsWithTheBlock) {
  for (const std::string text : {"1", "12", "123", "1234", "12345"}) {
    const GuardedBlock guarded(reinterpret_cast<const std::uint8_t*>(text.data()), text.size());
    BlockCursor cursor(guarded.Block(), 0);
    EXPECT_EQ(cursor.NextString(), text);
    EXPECT_TRUE(cursor.AtEnd());
  }
}

TEST_F(Cursor, MissingPaddingEndsWithTheBlock) {
  BlockCursor cursor = At("'a' 00");
  EXPECT_EQ(cursor.NextString(), "a");
  EXPECT_TRUE(cursor.AtEnd());
}

TEST_F(Cursor, StaysAtTheEnd) {
  BlockCursor cursor = At("'a' 000000");
  cursor.NextString();
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(cursor.NextString(), "");
    EXPECT_EQ(cursor.NextWord(), 0);
    EXPECT_TRUE(cursor.AtEnd());
    EXPECT_EQ(cursor.Remaining(), 0u);
  }
}

TEST_F(Cursor, AnAbsentStringTakesNoRoom) {
  BlockCursor cursor = At("'a' 000000 'b' 000000");
  EXPECT_EQ(cursor.OptionalString(0), "");
  EXPECT_EQ(cursor.OptionalString(1), "a");
  EXPECT_EQ(cursor.OptionalString(-9), "b") << "any flag but 0 means present";
}

TEST_F(Cursor, WordsMoveOnByFourBytes) {
  BlockCursor cursor = At("01000000 FFFFFFFF 0203");
  EXPECT_EQ(cursor.NextWord(), 1);
  EXPECT_EQ(cursor.NextWord(), -1);
  EXPECT_EQ(cursor.Remaining(), 2u);
  EXPECT_EQ(cursor.NextWord(), 0) << "cut short";
  EXPECT_TRUE(cursor.AtEnd());
}

TEST_F(Cursor, CopiesWithTerminator) {
  char buffer[8] = "#######";
  BlockCursor cursor = At("'abcd' 00000000 'e' 000000");
  EXPECT_EQ(cursor.CopyString(buffer, sizeof buffer), 4u);
  EXPECT_STREQ(buffer, "abcd");
  EXPECT_EQ(buffer[5], '#') << "nothing behind the terminator is touched";
  EXPECT_EQ(cursor.CopyString(buffer, sizeof buffer), 1u);
  EXPECT_STREQ(buffer, "e");
  EXPECT_EQ(cursor.CopyString(buffer, sizeof buffer), 0u);
  EXPECT_STREQ(buffer, "");
}

TEST_F(Cursor, ACopyIsCutToItsBufferAndStillMovesOnByTheWholeString) {
  char buffer[4] = "###";
  BlockCursor cursor = At("'abcd' 00000000 'e' 000000");
  EXPECT_EQ(cursor.CopyString(buffer, 3), 2u);
  EXPECT_STREQ(buffer, "ab");
  EXPECT_EQ(cursor.NextString(), "e");
}

TEST_F(Cursor, ACopyIntoNothingWritesNothing) {
  char untouched = '#';
  BlockCursor cursor = At("'abcd' 00000000 'e' 000000");
  EXPECT_EQ(cursor.CopyString(&untouched, 0), 0u);
  EXPECT_EQ(untouched, '#');
  EXPECT_EQ(cursor.NextString(), "e");
  cursor = At("'abcd' 00000000");
  EXPECT_EQ(cursor.CopyString(&untouched, 1), 0u);
  EXPECT_EQ(untouched, '\0');
}

}  // namespace
}  // namespace ventrik
