// SPDX-License-Identifier: Apache-2.0
#include "replay/record_reader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>
#include <string>
#include <vector>

namespace ventrik {

bool operator==(const HexField& left, const HexField& right) {
  return left.result == right.result && left.value == right.value &&
         left.endsInNul == right.endsInNul;
}

std::ostream& operator<<(std::ostream& out, const HexField& field) {
  return out << "result " << field.result << ", value " << field.value
             << (field.endsInNul ? ", ends in a NUL" : "");
}

namespace {

using Decoded = std::vector<int>;

// "~" stands for a NUL.
HexField Field(std::string text) {
  std::replace(text.begin(), text.end(), '~', '\0');
  return ParseHexField(text);
}

HexField Whole(std::uint32_t value, bool endsInNul = false) {
  return {8, value, endsInNul};
}

// A payload of FF bytes, so that what isn't decoded is seen.
Payload Filled() {
  Payload payload;
  payload.bytes.fill(0xFF);
  return payload;
}

Decoded Begin(const Payload& payload, std::size_t count) {
  return {payload.bytes.begin(), payload.bytes.begin() + static_cast<std::ptrdiff_t>(count)};
}

TEST(ParseHexField, ReadsEightDigitsHighestFirst) {
  EXPECT_EQ(Field("0000001F"), Whole(31));
  EXPECT_EQ(Field("01234567"), Whole(0x01234567));
  EXPECT_EQ(Field("89ABCDEF"), Whole(0x89ABCDEF));
  EXPECT_EQ(Field("FFFFFFFF"), Whole(0xFFFFFFFF));
}

TEST(ParseHexField, EndsAtTheFirstBlankOrNul) {
  EXPECT_EQ(Field("1F      "), Whole(31));
  EXPECT_EQ(Field("1F 23   "), Whole(31));
  EXPECT_EQ(Field("1F~x\ny3 "), Whole(31));
  EXPECT_EQ(Field("        "), Whole(0));
  EXPECT_EQ(Field(" 1F     "), Whole(0));
}

TEST(ParseHexField, TellsOfANulAsTheEighthByte) {
  EXPECT_EQ(Field("1F~~~~~~"), Whole(31, true));
  EXPECT_EQ(Field("1F     ~"), Whole(31, true));
  EXPECT_EQ(Field("1F~~~~~ "), Whole(31));
  EXPECT_EQ(Field("1F~"), (HexField{3, 31, false}));
}

TEST(ParseHexField, FailsAtAnyOtherCharacterWithMinusItsIndex) {
  EXPECT_EQ(Field("1f000000"), (HexField{-1, 1, false}));
  EXPECT_EQ(Field("0000001g"), (HexField{-7, 1, false}));
  EXPECT_EQ(Field("x0000000"), (HexField{0, 0, false}));
  for (const char wrong : {'/', ':', '@', 'G', '`', 'a', 'f', '\n', '\r', '\t', '-', '\xE5'}) {
    EXPECT_EQ(Field(std::string("12") + wrong + "45678"), (HexField{-2, 0x12, false})) << wrong;
  }
}

TEST(ParseHexField, ReturnsHowManyCharactersThereWere) {
  EXPECT_EQ(Field("1F"), (HexField{2, 31, false}));
  EXPECT_EQ(Field("0000001"), (HexField{7, 1, false}));
  EXPECT_EQ(Field(""), (HexField{0, 0, false}));
}

TEST(ParseHexBytes, DecodesPairsHighHalfFirst) {
  Payload payload = Filled();
  EXPECT_EQ(ParseHexBytes("0123456789ABCDEF", payload), 16);
  EXPECT_EQ(Begin(payload, 9), (Decoded{0x01, 0x23, 0x45, 0x67, 0x89, 0xAB, 0xCD, 0xEF, 0xFF}));
}

TEST(ParseHexBytes, ReturnsHowManyCharactersThereWere) {
  Payload payload = Filled();
  EXPECT_EQ(ParseHexBytes("0102", payload), 4);
  EXPECT_EQ(Begin(payload, 3), (Decoded{1, 2, 0xFF}));
  EXPECT_EQ(ParseHexBytes("", payload), 0);
}

TEST(ParseHexBytes, DecodesNoHalfPair) {
  Payload payload = Filled();
  EXPECT_EQ(ParseHexBytes("01020", payload), 5);
  EXPECT_EQ(Begin(payload, 3), (Decoded{1, 2, 0xFF}));
  EXPECT_EQ(ParseHexBytes("0", payload), 1);
}

TEST(ParseHexBytes, FailsIfTheFirstPairIsNone) {
  for (const char* text : {"g1020304", "0g020304", "a1020304", " 1020304", "\n1020304"}) {
    Payload payload = Filled();
    EXPECT_EQ(ParseHexBytes(text, payload), 0) << text;
    EXPECT_EQ(Begin(payload, 1), Decoded{0xFF}) << text;
  }
}

TEST(ParseHexBytes, StopsAtALaterCharacterThatIsNoDigit) {
  Payload payload = Filled();
  EXPECT_EQ(ParseHexBytes("01g20304", payload), -2);
  EXPECT_EQ(Begin(payload, 2), (Decoded{1, 0xFF}));
  EXPECT_EQ(ParseHexBytes("02030~04", payload), -4);
  EXPECT_EQ(Begin(payload, 3), (Decoded{2, 3, 0xFF}));
  EXPECT_EQ(ParseHexBytes("0405060a", payload), -6);
  EXPECT_EQ(Begin(payload, 4), (Decoded{4, 5, 6, 0xFF}));
}

TEST(ParseHexBytes, TakesTheLargestPayload) {
  Payload payload = Filled();
  EXPECT_EQ(ParseHexBytes(std::string(kMostHexCharacters, '7'), payload), 16384);
  EXPECT_EQ(std::count(payload.bytes.begin(), payload.bytes.end(), 0x77), 8192);
}

TEST(Payload, IsZeroAtFirst) {
  const Payload payload;
  EXPECT_EQ(std::count(payload.bytes.begin(), payload.bytes.end(), 0), 8192);
}

}  // namespace
}  // namespace ventrik
