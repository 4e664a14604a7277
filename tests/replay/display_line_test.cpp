// SPDX-License-Identifier: Apache-2.0
#include "replay/display_line.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/messages/bytes.h"

namespace ventrik {
namespace {

const std::string kGreen = "\033[1;32m";
const std::string kEnd = "\") ... \033[0;37mpos: 0x10  ";

const std::map<std::int32_t, std::string> kNames = {
    {16, "demo"}, {302, "spell"}, {777, ""}, {9001, "GPS_DATA"}, {9002, "TMC_DATA"}};

Payload WithBytes(const Bytes& bytes) {
  Payload payload;
  std::copy(bytes.value.begin(), bytes.value.end(), payload.bytes.begin());
  return payload;
}

std::string Line(const std::string& notation, std::uint32_t sinceFirst = 0,
                 std::uint32_t position = 0x10) {
  const Bytes bytes = Hex(notation);
  return DisplayLine({WithBytes(bytes), bytes.value.size(), sinceFirst, position}, kNames);
}

// What stands between the quotes.
std::string Quoted(const std::string& notation) {
  const std::string line = Line(notation);
  const std::size_t begin = line.find("(\"") + 2;
  return line.substr(begin, line.rfind("\")") - begin);
}

TEST(DisplayLine, ShowsTimeNameContentAndPosition) {
  EXPECT_EQ(Line("2E010000 'abc'", 3'723'999, 0xBEEF),
            "Cmd>01 : 02 : 03 " + kGreen + " spell(\".abc\") ... \033[0;37mpos: 0xbeef  ");
}

TEST(DisplayLine, ShowsWholeSeconds) {
  const auto time = [](std::uint32_t sinceFirst) {
    return Line("2E010000", sinceFirst).substr(4, 12);
  };
  EXPECT_EQ(time(0), "00 : 00 : 00");
  EXPECT_EQ(time(999), "00 : 00 : 00");
  EXPECT_EQ(time(1000), "00 : 00 : 01");
  EXPECT_EQ(time(59'999), "00 : 00 : 59");
  EXPECT_EQ(time(60'000), "00 : 01 : 00");
  EXPECT_EQ(time(3'600'000), "01 : 00 : 00");
  EXPECT_EQ(Line("2E010000", 360'000'000).substr(4, 13), "100 : 00 : 00");
}

TEST(DisplayLine, OddityTheTimeBeforeTheFirstRecordIsUnsigned) {
  const auto before = [](std::uint32_t milliseconds) {
    return Line("2E010000", 0 - milliseconds).substr(4, 14);
  };
  EXPECT_EQ(before(1), "1193 : 02 : 47");
  EXPECT_EQ(before(1000), "1193 : 02 : 46");
  EXPECT_EQ(before(10'000), "1193 : 02 : 37");
}

TEST(DisplayLine, ShowsTheNumberOfAMessageWithoutAName) {
  EXPECT_EQ(Line("84030000", 5000), "Cmd>" + kGreen + " command id is: 900(\"" + kEnd);
  EXPECT_EQ(Line("09030000 'a'"), "Cmd>" + kGreen + " command id is: 777(\"\ta" + kEnd);
  EXPECT_EQ(Line("FFFFFFFF 'a'"), "Cmd>" + kGreen + " command id is: -1(\"a" + kEnd);
}

TEST(DisplayLine, ShowsThePrintableCharactersAndSpacesOfAMessage) {
  std::string expected = "\t\n\v\f\r";
  Bytes bytes = Hex("2E010000");
  for (int byte = 0; byte < 256; ++byte) bytes.value.push_back(static_cast<std::uint8_t>(byte));
  for (char character = ' '; character <= '~'; ++character) expected += character;
  const std::string line = DisplayLine({WithBytes(bytes), bytes.value.size(), 0, 0x10}, kNames);
  EXPECT_EQ(line, "Cmd>00 : 00 : 00 " + kGreen + " spell(\"." + expected + kEnd);
}

TEST(DisplayLine, ShowsNoMoreThanTheRecordsLength) {
  const Payload payload = WithBytes(Hex("2E010000 'abc'"));
  EXPECT_EQ(DisplayLine({payload, 5, 0, 0x10}, kNames),
            "Cmd>00 : 00 : 00 " + kGreen + " spell(\".a" + kEnd);
  EXPECT_EQ(DisplayLine({payload, 0, 0, 0x10}, kNames),
            "Cmd>00 : 00 : 00 " + kGreen + " spell(\"" + kEnd);
}

TEST(DisplayLine, ShowsADemosWords) {
  EXPECT_EQ(Line("10000000 01000000 000000000000F83F 00000000000010C0"),
            "Cmd>00 : 00 : 00 " + kGreen + " demo(\"on\",\"1.500000\",\"-4.000000" + kEnd);
  EXPECT_EQ(Quoted("10000000 00000000"), "off\",\"0.000000\",\"0.000000");
  EXPECT_EQ(Quoted("10000000 02000000"), "off\",\"0.000000\",\"0.000000");
  EXPECT_EQ(Quoted("10000000 01000001"), "off\",\"0.000000\",\"0.000000");
}

TEST(DisplayLine, ShowsAPositionWithTheSecondWordFirst) {
  // 1137890 and 4813720 hundred-thousandths
  EXPECT_EQ(Line("29230000 00000000 00000000 00000000 E25C1100 98734900"),
            "Cmd>00 : 00 : 00 " + kGreen + " GPS_DATA(\"<GEO>+48.13720 +11.37890<*>" + kEnd);
  EXPECT_EQ(Quoted("29230000 00000000 00000000 00000000 FFFFFFFF 00000000"),
            "<GEO>+0.00000 -0.00001<*>");
}

TEST(DisplayLine, ShowsAPositionWithTheDigitsOfA32BitFloat) {
  EXPECT_EQ(Quoted("29230000 00000000 00000000 00000000 7FA81201 8157EDFE"),  // +-17999999
            "<GEO>-179.99998 +179.99998<*>");
}

TEST(DisplayLine, ShowsNothingOfOtherRecordsOfItsOwn) {
  EXPECT_EQ(Quoted("27230000 'abc'"), "'#abc");         // 8999
  EXPECT_EQ(Quoted("28230000 'abc'"), "");              // 9000
  EXPECT_EQ(Quoted("2A230000 'abc' 01020304 00"), "");  // TMC_DATA
}

}  // namespace
}  // namespace ventrik
