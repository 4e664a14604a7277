// SPDX-License-Identifier: Apache-2.0
#include "replay/record_reader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
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

struct Close {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, Close>;

// "~" stands for a NUL.
File Opened(std::string text) {
  std::replace(text.begin(), text.end(), '~', '\0');
  File file(std::tmpfile());
  EXPECT_EQ(std::fwrite(text.data(), 1, text.size(), file.get()), text.size());
  std::rewind(file.get());
  return file;
}

HexField Field(const std::string& text) {
  return ReadHexField(Opened(text).get());
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

TEST(ReadHexField, ReadsEightDigitsHighestFirst) {
  EXPECT_EQ(Field("0000001F"), Whole(31));
  EXPECT_EQ(Field("01234567"), Whole(0x01234567));
  EXPECT_EQ(Field("89ABCDEF"), Whole(0x89ABCDEF));
  EXPECT_EQ(Field("FFFFFFFF"), Whole(0xFFFFFFFF));
}

TEST(ReadHexField, EndsAtTheFirstBlankOrNul) {
  EXPECT_EQ(Field("1F      "), Whole(31));
  EXPECT_EQ(Field("1F 23   "), Whole(31));
  EXPECT_EQ(Field("1F~x\ny3 "), Whole(31));
  EXPECT_EQ(Field("        "), Whole(0));
  EXPECT_EQ(Field(" 1F     "), Whole(0));
}

TEST(ReadHexField, TellsOfANulAsTheEighthByte) {
  EXPECT_EQ(Field("1F~~~~~~"), Whole(31, true));
  EXPECT_EQ(Field("1F     ~"), Whole(31, true));
  EXPECT_EQ(Field("1F~~~~~ "), Whole(31));
  EXPECT_EQ(Field("1F~"), (HexField{3, 31, false}));
}

TEST(ReadHexField, FailsAtAnyOtherCharacterWithMinusItsIndex) {
  EXPECT_EQ(Field("1f000000"), (HexField{-1, 1, false}));
  EXPECT_EQ(Field("0000001g"), (HexField{-7, 1, false}));
  EXPECT_EQ(Field("x0000000"), (HexField{0, 0, false}));
  for (const char wrong : {'/', ':', '@', 'G', '`', 'a', 'f', '\n', '\r', '\t', '-', '\xE5'}) {
    EXPECT_EQ(Field(std::string("12") + wrong + "45678"), (HexField{-2, 0x12, false})) << wrong;
  }
}

TEST(ReadHexField, ReturnsWhatAShortFileHas) {
  EXPECT_EQ(Field("1F"), (HexField{2, 31, false}));
  EXPECT_EQ(Field("0000001"), (HexField{7, 1, false}));
  EXPECT_EQ(Field(""), (HexField{0, 0, false}));
}

TEST(ReadHexField, ReadsItsEightCharactersWhateverTheyAre) {
  const File file = Opened("x 345678000000201~~~~~~~3");
  EXPECT_EQ(ReadHexField(file.get()).result, 0);
  EXPECT_EQ(ReadHexField(file.get()), Whole(0x20));
  EXPECT_EQ(ReadHexField(file.get()), Whole(1, true));
  EXPECT_EQ(std::fgetc(file.get()), '3');
}

TEST(ReadHexBytes, DecodesPairsHighHalfFirst) {
  Payload payload = Filled();
  EXPECT_EQ(ReadHexBytes(Opened("0123456789ABCDEF").get(), 16, payload), 16);
  EXPECT_EQ(Begin(payload, 9), (Decoded{0x01, 0x23, 0x45, 0x67, 0x89, 0xAB, 0xCD, 0xEF, 0xFF}));
}

TEST(ReadHexBytes, ReadsAsManyCharactersAsAsked) {
  Payload payload = Filled();
  const File file = Opened("0102030405");
  EXPECT_EQ(ReadHexBytes(file.get(), 4, payload), 4);
  EXPECT_EQ(Begin(payload, 3), (Decoded{1, 2, 0xFF}));
  EXPECT_EQ(ReadHexBytes(file.get(), 0, payload), 0);
  EXPECT_EQ(ReadHexBytes(file.get(), 6, payload), 6);
  EXPECT_EQ(Begin(payload, 4), (Decoded{3, 4, 5, 0xFF}));
}

TEST(ReadHexBytes, ReturnsWhatAShortFileHas) {
  Payload payload = Filled();
  EXPECT_EQ(ReadHexBytes(Opened("0102").get(), 8, payload), 4);
  EXPECT_EQ(Begin(payload, 3), (Decoded{1, 2, 0xFF}));
  EXPECT_EQ(ReadHexBytes(Opened("").get(), 8, payload), 0);
}

TEST(ReadHexBytes, DecodesNoHalfPair) {
  Payload payload = Filled();
  EXPECT_EQ(ReadHexBytes(Opened("01020").get(), 8, payload), 5);
  EXPECT_EQ(Begin(payload, 3), (Decoded{1, 2, 0xFF}));
  EXPECT_EQ(ReadHexBytes(Opened("0").get(), 8, payload), 1);
}

TEST(ReadHexBytes, FailsIfTheFirstPairIsNone) {
  for (const char* text : {"g1020304", "0g020304", "a1020304", " 1020304", "\n1020304"}) {
    Payload payload = Filled();
    EXPECT_EQ(ReadHexBytes(Opened(text).get(), 8, payload), 0) << text;
    EXPECT_EQ(Begin(payload, 1), Decoded{0xFF}) << text;
  }
}

TEST(ReadHexBytes, StopsAtALaterCharacterThatIsNoDigit) {
  Payload payload = Filled();
  EXPECT_EQ(ReadHexBytes(Opened("01g20304").get(), 8, payload), -2);
  EXPECT_EQ(Begin(payload, 2), (Decoded{1, 0xFF}));
  EXPECT_EQ(ReadHexBytes(Opened("02030~04").get(), 8, payload), -4);
  EXPECT_EQ(Begin(payload, 3), (Decoded{2, 3, 0xFF}));
  EXPECT_EQ(ReadHexBytes(Opened("0405060a").get(), 8, payload), -6);
  EXPECT_EQ(Begin(payload, 4), (Decoded{4, 5, 6, 0xFF}));
}

TEST(ReadHexBytes, TakesTheLargestPayload) {
  Payload payload = Filled();
  EXPECT_EQ(ReadHexBytes(Opened(std::string(16384, '7') + "8").get(), kMostHexCharacters, payload),
            16384);
  EXPECT_EQ(std::count(payload.bytes.begin(), payload.bytes.end(), 0x77), 8192);
}

TEST(Payload, IsZeroAtFirst) {
  const Payload payload;
  EXPECT_EQ(std::count(payload.bytes.begin(), payload.bytes.end(), 0), 8192);
}

}  // namespace
}  // namespace ventrik
