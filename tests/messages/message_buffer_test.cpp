// SPDX-License-Identifier: Apache-2.0
#include "messages/message_buffer.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "tests/messages/bytes.h"

namespace ventrik {
namespace {

using namespace std::string_view_literals;

TEST(MessageBuffer, StartsEmpty) {
  const MessageBuffer buffer(16);
  EXPECT_EQ(buffer.cursor, buffer.base.get());
  EXPECT_EQ(buffer.used, 0u);
  EXPECT_EQ(buffer.capacity, 16u);
}

TEST(MessageBuffer, PackedStringsOfEveryLengthRoundABoundary) {
  const std::string_view text = "123456789";
  const char* const expected[] = {"00000000",          "'1' 000000",      "'12' 0000",
                                  "'123' 00",          "'1234' 00000000", "'12345' 000000",
                                  "'123456' 0000",     "'1234567' 00",    "'12345678' 00000000",
                                  "'123456789' 000000"};
  for (std::size_t length = 0; length <= 9; ++length) {
    MessageBuffer buffer(64);
    buffer.AppendString(text.substr(0, length));
    EXPECT_EQ(Wire(buffer), Hex(expected[length])) << length;
    EXPECT_EQ(PackedSize(length), buffer.used) << length;
  }
}

TEST(MessageBuffer, ATextEndsAtItsFirstNul) {
  MessageBuffer buffer(64);
  buffer.AppendString("ab\0cdefgh"sv);
  EXPECT_EQ(Wire(buffer), Hex("'ab' 0000"));
  EXPECT_EQ(TextLength("ab\0cd"sv), 2);
  EXPECT_EQ(TextLength("\0ab"sv), 0);
}

TEST(MessageBuffer, WordsAreLittleEndian) {
  MessageBuffer buffer(64);
  buffer.AppendHeader({0x01020304, -2});
  buffer.AppendWord(7);
  EXPECT_EQ(Wire(buffer), Hex("04030201 FEFFFFFF 07000000"));
}

TEST(MessageBuffer, ReserveKeepsTheBlockWhileItFits) {
  MessageBuffer buffer(8);
  const std::uint8_t* const base = buffer.base.get();
  buffer.Reserve(8);
  EXPECT_EQ(buffer.base.get(), base);
  EXPECT_EQ(buffer.capacity, 8u);
}

TEST(MessageBuffer, ReserveDoublesWhenThatIsMore) {
  MessageBuffer buffer(8);
  buffer.AppendHeader({1, 2});
  buffer.Reserve(1);
  EXPECT_EQ(buffer.capacity, 16u);
  EXPECT_EQ(buffer.cursor, buffer.base.get() + 8);
  EXPECT_EQ(Wire(buffer), Hex("01000000 02000000"));
}

TEST(MessageBuffer, ReserveTakesTheNeedWhenThatIsMore) {
  MessageBuffer buffer(8);
  buffer.AppendHeader({1, 2});
  buffer.Reserve(9);
  EXPECT_EQ(buffer.capacity, 17u);
}

TEST(MessageBuffer, GrowsFromNothing) {
  MessageBuffer buffer(0);
  buffer.AppendWord(1);
  EXPECT_EQ(buffer.capacity, 4u);
  buffer.AppendWord(2);
  EXPECT_EQ(buffer.capacity, 8u);
  EXPECT_EQ(Wire(buffer), Hex("01000000 02000000"));
}

TEST(MessageBuffer, KeepsEverythingOverManyGrowths) {
  MessageBuffer buffer(1);
  std::string expected;
  for (int i = 0; i < 200; ++i) {
    buffer.AppendString("abcd");
    expected += "'abcd' 00000000";
  }
  EXPECT_EQ(Wire(buffer), Hex(expected));
}

TEST(MessageBuffer, MovesAreComplete) {
  MessageBuffer first(8);
  first.AppendHeader({1, 2});
  const std::uint8_t* const base = first.base.get();
  MessageBuffer second(std::move(first));
  EXPECT_EQ(second.base.get(), base);
  second.AppendWord(3);
  EXPECT_EQ(Wire(second), Hex("01000000 02000000 03000000"));

  MessageBuffer third(4);
  third.AppendWord(9);
  third = std::move(second);
  EXPECT_EQ(Wire(third), Hex("01000000 02000000 03000000"));
  third.AppendWord(4);
  EXPECT_EQ(third.used, 16u);
}

TEST(MessageBuffer, CanBeFilledAnewAfterAMove) {
  MessageBuffer first(8);
  first.AppendWord(1);
  const MessageBuffer second(std::move(first));
  first.AppendWord(5);  // NOLINT(bugprone-use-after-move): that this works is the claim
  EXPECT_EQ(Wire(first), Hex("05000000"));
  EXPECT_EQ(Wire(second), Hex("01000000"));
}

}  // namespace
}  // namespace ventrik
