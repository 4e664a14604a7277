// SPDX-License-Identifier: Apache-2.0
// The text file that says where a weather image belongs.
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "overlay/weather_images.h"
#include "tests/overlay/overlay_place.h"
#include "tests/overlay/recording_device.h"

namespace ventrik::tests {
namespace {

class PlaceText : public OverlayPlace {
 protected:
  static std::string Read(const std::string& content) {
    WriteFile("a.logfile", content);
    return TextOf(ReadGeoRect("a.logfile"));
  }
};

const std::string kTop = "\tUpper latitude:";
const std::string kLeft = "\tLeft longitude:";
const std::string kBottom = "\tLower latitude:";
const std::string kRight = "\tRight longitude:";

TEST_F(PlaceText, FourLinesInAnyOrder) {
  EXPECT_EQ(Read(kTop + " 4\n" + kLeft + " 1\n" + kBottom + " 2\n" + kRight + " 3\n"),
            "72000,222222,216000,444444");
  EXPECT_EQ(Read(kRight + " 3\n" + kBottom + " 2\n" + kTop + " 4\n" + kLeft + " 1\n"),
            "72000,222222,216000,444444");
}

TEST_F(PlaceText, DegreesAreReadInDoublePrecisionAndCutOff) {
  EXPECT_EQ(Read(kLeft + " -0.00001389\n" + kRight + " 13.00001388\n"), "-1,0,936000,0");
  EXPECT_EQ(Read(kTop + " -5e1\n" + kBottom + "  +.5\n"), "0,55555,0,-5555555");
  EXPECT_EQ(Read(kTop + " 1e99\n" + kBottom + " -inf\n" + kLeft + " nan\n" + kRight + " 0x10\n"),
            "0,-2147483648,1152000,2147483647");
}

TEST_F(PlaceText, RepeatedLineOverwrites) {
  EXPECT_EQ(Read(kLeft + " 1\n" + kLeft + " 2\n"), "144000,0,0,0");
  EXPECT_EQ(Read(kLeft + " 1\n" + kLeft + " none\n"), "0,0,0,0");
}

TEST_F(PlaceText, MissingLinesLeaveZero) {
  EXPECT_EQ(Read(""), "0,0,0,0");
  EXPECT_EQ(Read(kTop + " 50\n" + kBottom + " 40\n"), "0,4444444,0,5555555");
}

TEST_F(PlaceText, OtherLinesAreSkipped) {
  EXPECT_EQ(Read("Upper latitude: 1\n"      // no tab
                 "\t\tUpper latitude: 1\n"  // two
                 " \tUpper latitude: 1\n"   // not at the line's beginning
                 "\tupper latitude: 1\n"    // another case
                 "\tUpper latitude : 1\n"   // no colon there
                 "\tUpper longitude: 1\n"   // no such edge
                 "x\n\n\t\n"),
            "0,0,0,0");
}

TEST_F(PlaceText, ValueStartsOneCharacterBehindTheColon) {
  EXPECT_EQ(Read(kLeft + "x2\n"), "144000,0,0,0") << "whatever that character is";
  EXPECT_EQ(Read(kLeft + "\t2\n"), "144000,0,0,0");
  EXPECT_EQ(Read(kLeft + "12\n"), "144000,0,0,0") << "a digit too";
  EXPECT_EQ(Read(kLeft + "   2 degrees\n"), "144000,0,0,0");
}

TEST_F(PlaceText, LineThatEndsAtTheColonIsZero) {
  EXPECT_EQ(Read(kLeft + " 3\n" + kLeft + "\n"), "0,0,0,0");
  EXPECT_EQ(Read(kLeft + " 3\n" + kLeft), "0,0,0,0") << "and at the file's end";
  EXPECT_EQ(Read(kLeft + " 3\n" + kLeft + " "), "0,0,0,0");
  // The buffer still holds the longer line before.
  EXPECT_EQ(Read("\tLeft longitude: 12345\n" + kLeft), "0,0,0,0");
}

TEST_F(PlaceText, LastLineNeedsNoLineEnd) {
  EXPECT_EQ(Read(kLeft + " 1\n" + kRight + " 3"), "72000,0,216000,0");
}

TEST_F(PlaceText, LinesOfOtherSystems) {
  EXPECT_EQ(Read(kLeft + " 1\r\n" + kRight + " 3\r\n"), "72000,0,216000,0");
  EXPECT_EQ(Read(kLeft + " 1\r" + kRight + " 3\r"), "72000,0,0,0") << "one line";
}

TEST_F(PlaceText, OddityLongLineIsReadInPiecesOf511) {
  EXPECT_EQ(Read(std::string(511, 'x') + kLeft + " 1\n"), "72000,0,0,0");
  EXPECT_EQ(Read(std::string(510, 'x') + kLeft + " 1\n"), "0,0,0,0");
  EXPECT_EQ(Read(std::string(1022, 'x') + kLeft + " 1\n"), "72000,0,0,0");
  EXPECT_EQ(Read(kLeft + std::string(490, ' ') + "1234567\n"), "888840000,0,0,0")
      << "12345 is what fits";
}

TEST_F(PlaceText, NulsEndTheLineForItsReader) {
  EXPECT_EQ(Read(std::string("\0", 1) + kLeft + " 1\n" + kRight + " 3\n"), "0,0,216000,0");
  EXPECT_EQ(Read(kLeft + std::string("\0 1\n", 4)), "0,0,0,0");
  EXPECT_EQ(Read(kLeft + " 1" + std::string("\0", 1) + "2\n"), "72000,0,0,0");
  EXPECT_EQ(Read(std::string(2000, '\0')), "0,0,0,0");
}

TEST_F(PlaceText, WhatCanNotBeReadIsAllZero) {
  EXPECT_EQ(TextOf(ReadGeoRect("missing.logfile")), "0,0,0,0");
  EXPECT_EQ(TextOf(ReadGeoRect("")), "0,0,0,0");
  std::filesystem::create_directory("d.logfile");
  EXPECT_EQ(TextOf(ReadGeoRect("d.logfile")), "0,0,0,0");
  EXPECT_EQ(TextOf(ReadGeoRect(std::string(5000, 'a'))), "0,0,0,0");
}

TEST_F(PlaceText, NobodyIsWaitedFor) {
  ASSERT_EQ(mkfifo("pipe.logfile", 0600), 0);
  EXPECT_EQ(TextOf(ReadGeoRect("pipe.logfile")), "0,0,0,0");
  EXPECT_EQ(TextOf(ReadGeoRect("/dev/zero")), "0,0,0,0") << "nor is what has no end read";
}

TEST_F(PlaceText, NoDescriptorIsLeftOpen) {
  const int before = CountDescriptors();
  Read(kLeft + " 1\n");
  std::filesystem::create_directory("d.logfile");
  ReadGeoRect("d.logfile");
  ReadGeoRect("missing.logfile");
  EXPECT_EQ(CountDescriptors(), before);
}

}  // namespace
}  // namespace ventrik::tests
