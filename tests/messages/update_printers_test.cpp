// SPDX-License-Identifier: Apache-2.0
// The texts of versions, software updates and packages.
#include <gtest/gtest.h>

#include <string>

#include "tests/messages/printed_text.h"

namespace ventrik::tests {
namespace {

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

TEST(RespCheckForUpdate, ShowsAllItsFields) {
  EXPECT_EQ(TextOf(Hex("E9030000 04000000 28000000 01000000 01000000 02000000 'path' 00000000 "
                       "'del' 00 'c1' 0000 'c2' 0000")),
            "RESP_CHECK_FOR_UPDATE> Path: \"path\" r: updOlderPackage|updSamePackage(40), u: on\n"
            "delete: \"del\"\n"
            "copy: \"c1\"\n"
            "copy: \"c2\"\n");
}

TEST(RespCheckForUpdate, WithoutFlagsIsSuccess) {
  EXPECT_EQ(TextOf(Hex("E9030000 00000000 00000000 02000000 00000000 00000000 00000000")),
            "RESP_CHECK_FOR_UPDATE> Path: \"\" r: updSuccess(0), u: off\n");
}

TEST(RespCheckForUpdate, UnknownFlagsShowInTheNumber) {
  EXPECT_EQ(TextOf(Hex("E9030000 00000000 02000000 FFFFFFFF 00000000 00000000 'p' 000000")),
            "RESP_CHECK_FOR_UPDATE> Path: \"p\" r: (2), u: off\n");
  EXPECT_EQ(TextOf(Hex("E9030000 00000000 81000000 00000000 00000000 00000000 'p' 000000")),
            "RESP_CHECK_FOR_UPDATE> Path: \"p\" r: updInvalidPackage|unknown(129), u: off\n");
  EXPECT_EQ(TextOf(Hex("E9030000 00000000 00000080 00000000 00000000 00000000 'p' 000000")),
            "RESP_CHECK_FOR_UPDATE> Path: \"p\" r: (-2147483648), u: off\n");
}

TEST(RespCheckForUpdate, PathIsThereWhateverTheFirstWordSays) {
  for (const char* first : {"00000000", "01000000", "FFFFFFFF"}) {
    EXPECT_EQ(TextOf(Hex("E9030000" + std::string(first) +
                         "10000000 01000000 01000000 00000000 'p' 000000 'del' 00")),
              "RESP_CHECK_FOR_UPDATE> Path: \"p\" r: updNoPackage(16), u: on\ndelete: \"del\"\n");
  }
}

TEST(RespCheckForUpdate, CountsThatLieEndWithTheBlock) {
  const std::string first = "RESP_CHECK_FOR_UPDATE> Path: \"p\" r: updSuccess(0), u: on\n";
  EXPECT_EQ(TextOf(Hex("E9030000 00000000 00000000 01000000 FFFFFF7F 01000000 'p' 000000 "
                       "'a' 000000 'b'")),
            first + "delete: \"a\"\ndelete: \"b\"\n");
  EXPECT_EQ(TextOf(Hex("E9030000 00000000 00000000 01000000 FFFFFFFF FFFFFF7F 'p' 000000 "
                       "'a' 000000 'b'")),
            first + "copy: \"a\"\ncopy: \"b\"\n");
  EXPECT_EQ(TextOf(Hex("E9030000 00000000 00000000 01000000 00000080 FFFFFFFF 'p' 000000 "
                       "'a' 000000")),
            first);
}

TEST(RespCheckForUpdate, ManyPathsAreAllShown) {
  Bytes paths;
  std::string deleted;
  std::string copied;
  for (int i = 0; i < 2000; ++i) {
    const std::string path = "/maps/part" + std::to_string(i);
    paths = std::move(paths) + Packed(path);
    deleted += "delete: \"" + path + "\"\n";
    copied += "copy: \"" + path + "\"\n";
  }
  EXPECT_TRUE(TextOf(Hex("E9030000 01000000 00000000 01000000 D0070000 D0070000 'p' 000000") +
                     paths + paths) ==
              "RESP_CHECK_FOR_UPDATE> Path: \"p\" r: updSuccess(0), u: on\n" + deleted + copied);
}

TEST(InfoUpdateProgress, ShowsBothItsFields) {
  EXPECT_EQ(TextOf(Hex("EA030000 04000000 4B000000 'path' 00000000")),
            "INFO_UPDATE_PROGRESS> updatePath: \"path\"\nINFO_UPDATE_PROGRESS> percent: 75\n");
  EXPECT_EQ(TextOf(Hex("EA030000 00000000 FFFFFFFF 'path' 00000000")),
            "INFO_UPDATE_PROGRESS> updatePath: \"\"\nINFO_UPDATE_PROGRESS> percent: -1\n");
}

TEST(RespStoreDeviceStatus, OddityIsOneLineUnderAShorterName) {
  EXPECT_EQ(TextOf(Hex("EC030000 04000000 01000000 'path' 00000000")),
            "RESP_DEVICE_STATUS> Path: \"path\", result: valid\n");
  EXPECT_EQ(TextOf(Hex("EC030000 04000000 02000000 'path' 00000000")),
            "RESP_DEVICE_STATUS> Path: \"path\", result: invalid\n");
}

TEST(RespStoreDeviceStatus, AnyOtherResultIsUnknown) {
  for (const std::int32_t result : {0, 3, -1, -0x7FFFFFFF - 1, 0x7FFFFFFF}) {
    EXPECT_EQ(TextOf(Hex("EC030000 04000000") + Word(result) + Packed("p")),
              "RESP_DEVICE_STATUS> Path: \"p\", result: unknown\n");
  }
}

TEST(RespStoreDeviceStatus, PathIsThereWhateverTheFirstWordSays) {
  EXPECT_EQ(TextOf(Hex("EC030000 00000000 01000000 'path' 00000000")),
            "RESP_DEVICE_STATUS> Path: \"path\", result: valid\n");
  EXPECT_EQ(TextOf(Hex("EC030000 FFFFFFFF 01000000 00000000")),
            "RESP_DEVICE_STATUS> Path: \"\", result: valid\n");
}

TEST(CmdPackageLoaded, IsOneLineWithoutAName) {
  EXPECT_EQ(TextOf(Hex("36230000")), "Package loaded!\n");
  EXPECT_EQ(TextOf(Hex("36230000 01000000 'abc'")), "Package loaded!\n");
}

}  // namespace
}  // namespace ventrik::tests
