// SPDX-License-Identifier: Apache-2.0
// The texts of trips and of the guidance along them.
#include <gtest/gtest.h>

#include <string>

#include "tests/messages/printed_text.h"

namespace ventrik::tests {
namespace {

std::string Blocked(const std::string& valid, const std::string& items) {
  return "RESP_BLOCK_ROUTE> validState: " + valid + "\nRESP_BLOCK_ROUTE> blockedItems: " + items +
         "\n";
}

TEST(RespBlockRoute, ShowsAllItsFields) {
  EXPECT_EQ(TextOf(Hex("93010000 08000000 02000000 01000000 'road' 00000000 'b' 000000")),
            Blocked("valid", "\"road\" \"b\" "));
}

TEST(RespBlockRoute, WithoutItemsTheLabelStandsAlone) {
  EXPECT_EQ(TextOf(Hex("93010000 00000000 00000000 02000000")), Blocked("invalid", ""));
  EXPECT_EQ(TextOf(Hex("93010000 01000000 FFFFFFFF FFFFFFFF 'road' 00000000")),
            Blocked("invalid", ""));
}

TEST(RespBlockRoute, CountThatLiesEndsWithTheBlock) {
  EXPECT_EQ(TextOf(Hex("93010000 00000000 FFFFFF7F 01000000 'road' 00000000 'b'")),
            Blocked("valid", "\"road\" \"b\" "));
}

// `destinations`, `modes` and `handles` as they stand between their label and the line end.
std::string Trip(const std::string& destinations, const std::string& modes,
                 const std::string& valid, const std::string& handles) {
  return "RESP_NEW_TRIP> destinations: " + destinations + "\nRESP_NEW_TRIP> routeModes: " + modes +
         "\nRESP_NEW_TRIP> validState: " + valid + "\nRESP_NEW_TRIP> handles: " + handles + "\n";
}

TEST(RespNewTrip, ShowsAllItsFields) {
  EXPECT_EQ(TextOf(Hex("95010000 04000000 02000000 01000000 02000000 'home' 00000000 02000000 "
                       "'x' 000000 'yy' 0000 'work' 00000000 00000000 01000000 00020000 1F000000 "
                       "20000000")),
            Trip("1. (\"home\",(\"x\",\"yy\"))\n2. (\"work\")\n", "\"fastest\" \"ecoRoute\" ",
                 "valid", "31 32 "));
}

TEST(RespNewTrip, WithoutAnythingTheLabelsStandAlone) {
  EXPECT_EQ(TextOf(Hex("95010000 00000000 00000000 00000000 00000000")),
            Trip("", "", "invalid", ""));
}

TEST(RespNewTrip, EmptyTextsAreTexts) {
  EXPECT_EQ(TextOf(Hex("95010000 02000000 00000000 01000000 00000000 00000000 01000000 00000000")),
            Trip("1. (\"\",(\"\"))\n", "", "valid", ""));
}

TEST(RespNewTrip, ModesWithoutANameAreNumbers) {
  EXPECT_EQ(TextOf(Hex("95010000 00000000 04000000 FFFFFFFF 02000000 00000000 00004000 03002000 "
                       "00000080 FFFFFFFF 00000080")),
            Trip("", "\"0\" \"4194304\" \"fastest|shortest|trailGuidanceFromEnd\" \"-2147483648\" ",
                 "invalid", "-1 -2147483648 "));
}

// The count of destinations counts their items too, so items can use it up.
TEST(RespNewTrip, OddityCountIsUsedUpByDestinationsAndItemsTogether) {
  const std::string tail = "'a' 000000 01000000 'x' 000000 'b' 000000 00000000";
  EXPECT_EQ(TextOf(Hex("95010000 03000000 00000000 01000000 01000000" + tail + "07000000")),
            Trip("1. (\"a\",(\"x\"))\n2. (\"b\")\n", "", "valid", "7 "));
  EXPECT_EQ(TextOf(Hex("95010000 02000000 00000000 01000000 01000000" + tail)),
            Trip("1. (\"a\",(\"x\"))\n", "", "valid", "98 "))
      << "what is left is the handles";
}

TEST(RespNewTrip, OddityItemsMayGoBeyondTheCount) {
  EXPECT_EQ(TextOf(Hex("95010000 01000000 00000000 01000000 01000000 'a' 000000 03000000 "
                       "'x' 000000 'y' 000000 'z' 000000 07000000")),
            Trip("1. (\"a\",(\"x\",\"y\",\"z\"))\n", "", "valid", "7 "));
}

TEST(RespNewTrip, CountsThatLieEndWithTheBlock) {
  EXPECT_EQ(TextOf(Hex("95010000 FFFFFF7F 01000000 01000000 01000000 'a' 000000 00000000 'b'")),
            Trip("1. (\"a\")\n2. (\"b\")\n", "", "valid", ""));
  EXPECT_EQ(TextOf(Hex("95010000 FFFFFF7F 01000000 01000000 01000000 'a' 000000 FFFFFF7F "
                       "'x' 000000 'y'")),
            Trip("1. (\"a\",(\"x\",\"y\"))\n", "", "valid", ""));
  EXPECT_EQ(TextOf(Hex("95010000 00000000 FFFFFF7F 01000000 01000000 02000000 04000000")),
            Trip("", "\"shortest\" \"eScenicRoute\" ", "valid", ""));
  EXPECT_EQ(TextOf(Hex("95010000 00000000 00000000 01000000 FFFFFF7F 02000000 04000000")),
            Trip("", "", "valid", "2 4 "));
}

TEST(RespNewTrip, NegativeCountsAreNone) {
  EXPECT_EQ(TextOf(Hex("95010000 FFFFFFFF FFFFFFFF 01000000 FFFFFFFF 'a' 000000 00000000")),
            Trip("", "", "valid", ""));
}

// An item count of -1 takes back what its destination added to the sum.
TEST(RespNewTrip, NegativeCountOfItemsIsNoneAndGoesIntoTheSum) {
  EXPECT_EQ(TextOf(Hex("95010000 01000000 00000000 01000000 01000000 'a' 000000 FFFFFFFF "
                       "'b' 000000 00000000 1F000000")),
            Trip("1. (\"a\")\n2. (\"b\")\n", "", "valid", "31 "));
}

TEST(RespNewTrip, ManyDestinationsAreAllShown) {
  Bytes destinations;
  std::string text;
  for (int i = 1; i <= 2000; ++i) {
    const std::string name = "place" + std::to_string(i);
    destinations = std::move(destinations) + Packed(name) + Word(2) + Packed("via") + Packed("by");
    text += std::to_string(i) + ". (\"" + name + "\",(\"via\",\"by\"))\n";
  }
  EXPECT_TRUE(TextOf(Hex("95010000 70170000 01000000 01000000 01000000") + destinations + Word(8) +
                     Word(31)) == Trip(text, "\"avoidMotorways\" ", "valid", "31 "));
}

std::string TripFile(const std::string& path, const std::string& modes, const std::string& valid,
                     const std::string& handles) {
  return "RESP_NEW_TRIP_FILE> pathEIS: \"" + path + "\"\nRESP_NEW_TRIP_FILE> routeModes: " + modes +
         "\nRESP_NEW_TRIP_FILE> validState: " + valid +
         "\nRESP_NEW_TRIP_FILE> handles: " + handles + "\n";
}

TEST(RespNewTripFile, ShowsAllItsFields) {
  EXPECT_EQ(TextOf(Hex("9F010000 04000000 02000000 01000000 02000000 'path' 00000000 03000000 "
                       "00000000 1F000000 20000000")),
            TripFile("path", "\"fastest|shortest\" \"0\" ", "valid", "31 32 "));
}

TEST(RespNewTripFile, EmptyPathIsAPath) {
  EXPECT_EQ(TextOf(Hex("9F010000 01000000 00000000 02000000 01000000 00000000 1F000000")),
            TripFile("", "", "invalid", "31 "));
}

TEST(RespNewTripFile, CountsThatLieEndWithTheBlock) {
  EXPECT_EQ(TextOf(Hex("9F010000 04000000 FFFFFF7F 01000000 FFFFFF7F 'path' 00000000 01000000")),
            TripFile("path", "\"fastest\" ", "valid", ""));
  EXPECT_EQ(TextOf(Hex("9F010000 04000000 FFFFFFFF 01000000 FFFFFF7F 'path' 00000000 01000000")),
            TripFile("path", "", "valid", "1 "));
  EXPECT_EQ(TextOf(Hex("9F010000 04000000 FFFFFFFF 01000000 FFFFFFFF 'path' 00000000 01000000")),
            TripFile("path", "", "valid", ""));
}

TEST(RespKillTrip, PartOfAWordIsNoHandle) {
  EXPECT_EQ(TextOf(Hex("97010000 02000000 1F000000 FFFFFF")), "RESP_KILL_TRIP> handles: 31 \n");
}

TEST(RespKillTrip, ShowsItsHandles) {
  EXPECT_EQ(TextOf(Hex("97010000 02000000 1F000000 FFFFFFFF")),
            "RESP_KILL_TRIP> handles: 31 -1 \n");
  EXPECT_EQ(TextOf(Hex("97010000 00000000")), "RESP_KILL_TRIP> handles: \n");
}

TEST(RespKillTrip, CountThatLiesEndsWithTheBlock) {
  EXPECT_EQ(TextOf(Hex("97010000 FFFFFF7F 1F000000 20000000")),
            "RESP_KILL_TRIP> handles: 31 32 \n");
  EXPECT_EQ(TextOf(Hex("97010000 FFFFFFFF 1F000000")), "RESP_KILL_TRIP> handles: \n");
}

TEST(InfoDemoModeState, IsEnabledOrDisabled) {
  EXPECT_EQ(TextOf(Hex("11000000 01000000")), "INFO_DEMO_MODE_STATE> Enabled\n");
  EXPECT_EQ(TextOf(Hex("11000000 02000000")), "INFO_DEMO_MODE_STATE> Disabled\n");
}

TEST(InfoDemoModeState, AnyOtherStateIsInvalid) {
  EXPECT_EQ(TextOf(Hex("11000000 00000000")), "INFO_DEMO_MODE_STATE> Invalid (0)\n");
  EXPECT_EQ(TextOf(Hex("11000000 03000000")), "INFO_DEMO_MODE_STATE> Invalid (3)\n");
  EXPECT_EQ(TextOf(Hex("11000000 FFFFFFFF")), "INFO_DEMO_MODE_STATE> Invalid (-1)\n");
}

TEST(InfoGetIncidentsOnRoute, IsNotRead) {
  const std::string text = "INFO_GET_INCIDENTS_ON_ROUTE> \033[1;31mNot implemented.\n\033[0;37m";
  EXPECT_EQ(TextOf(Hex("91010000")), text);
  EXPECT_EQ(TextOf(Hex("91010000 01000000 'abc'")), text);
}

TEST(InfoActiveRouteDesc, ShowsItsNumbers) {
  EXPECT_EQ(TextOf(Hex("9A010000 01000000 02000000 03000000")),
            "INFO_ACTIVE_ROUTE_DESC> routeDesc: (1,2,3)\n");
  EXPECT_EQ(TextOf(Hex("9A010000 FFFFFFFF 00000080 FFFFFF7F")),
            "INFO_ACTIVE_ROUTE_DESC> routeDesc: (-1,-2147483648,2147483647)\n");
}

TEST(InfoNextManInfo, ShowsAllItsFields) {
  EXPECT_EQ(TextOf(Hex("9B010000 3C000000 B0040000 01000000 05000000 06000000")),
            "INFO_NEXT_MAN_INFO> timeDist: (60, 1200)\n"
            "INFO_NEXT_MAN_INFO> nextManInfo: (true, 5, 6)\n");
  EXPECT_EQ(TextOf(Hex("9B010000 FFFFFFFF FEFFFFFF 00000000 FDFFFFFF FCFFFFFF")),
            "INFO_NEXT_MAN_INFO> timeDist: (-1, -2)\n"
            "INFO_NEXT_MAN_INFO> nextManInfo: (false, -3, -4)\n");
}

TEST(InfoNextManInfo, BooleanIsAByteAndTrueFor1Only) {
  const std::string times = "INFO_NEXT_MAN_INFO> timeDist: (0, 0)\n";
  for (const char* word : {"01FFFFFF", "01000001"}) {
    EXPECT_EQ(TextOf(Hex("9B010000 00000000 00000000" + std::string(word) + "00000000 00000000")),
              times + "INFO_NEXT_MAN_INFO> nextManInfo: (true, 0, 0)\n");
  }
  for (const char* word : {"00010101", "02000000", "81000000", "FFFFFFFF"}) {
    EXPECT_EQ(TextOf(Hex("9B010000 00000000 00000000" + std::string(word) + "00000000 00000000")),
              times + "INFO_NEXT_MAN_INFO> nextManInfo: (false, 0, 0)\n");
  }
}

TEST(InfoNextDestInfo, ShowsItsNumbers) {
  EXPECT_EQ(TextOf(Hex("9C010000 07000000 FFFFFFFF")),
            "INFO_NEXT_DEST_INFO> nextDestInfo: (7, -1)\n");
}

std::string Calculation(const std::string& handle, const std::string& state,
                        const std::string& percent) {
  return "INFO_CALC_STATE> routeHandle: " + handle + "\nINFO_CALC_STATE> calcState: " + state +
         "\nINFO_CALC_STATE> calcPercent: " + percent + "\n";
}

TEST(InfoCalcState, ShowsAllItsFields) {
  EXPECT_EQ(TextOf(Hex("9D010000 1F000000 03000000 63000000")),
            Calculation("31", "Calculating", "99"));
  EXPECT_EQ(TextOf(Hex("9D010000 FFFFFFFF 00000000 FFFFFFFF")), Calculation("-1", "Idle", "-1"));
}

TEST(InfoCalcState, StateWithoutANameIsEmpty) {
  EXPECT_EQ(TextOf(Hex("9D010000 01000000 08000000 00000000")), Calculation("1", "", "0"));
  EXPECT_EQ(TextOf(Hex("9D010000 01000000 FFFFFFFF 00000000")), Calculation("1", "", "0"));
}

TEST(RespRouteStartRecording, Only1IsValid) {
  EXPECT_EQ(TextOf(Hex("A2010000 01000000")), "RESP_ROUTE_START_RECORDING> validState: valid\n");
  for (const char* message : {"A2010000 00000000", "A2010000 02000000", "A2010000 FFFFFFFF"}) {
    EXPECT_EQ(TextOf(Hex(message)), "RESP_ROUTE_START_RECORDING> validState: invalid\n");
  }
}

TEST(InfoRouteRecordingActive, Only1IsTrue) {
  EXPECT_EQ(TextOf(Hex("A3010000 01000000")),
            "INFO_ROUTE_RECORDING_ACTIVE> routeRecordingActive: true\n");
  for (const char* message : {"A3010000 00000000", "A3010000 02000000", "A3010000 FFFFFFFF"}) {
    EXPECT_EQ(TextOf(Hex(message)), "INFO_ROUTE_RECORDING_ACTIVE> routeRecordingActive: false\n");
  }
}

TEST(InfoRouteRecordingComplete, ShowsItsText) {
  EXPECT_EQ(TextOf(Hex("A4010000 03000000 'det' 00")),
            "INFO_ROUTE_RECORDING_COMPLETE> detailsEIS: \"det\"\n");
  EXPECT_EQ(TextOf(Hex("A4010000 00000000 'det' 00")),
            "INFO_ROUTE_RECORDING_COMPLETE> detailsEIS: \"\"\n");
}

TEST(InfoDestinationReached, ShowsAllItsFields) {
  EXPECT_EQ(TextOf(Hex("A5010000 04000000 01000000 02000000 'dest' 00000000")),
            "INFO_DESTINATION_REACHED> Dest: dest\n"
            "INFO_DESTINATION_REACHED> Element: 1   Total: 2\n");
  EXPECT_EQ(TextOf(Hex("A5010000 00000000 FFFFFFFF FEFFFFFF")),
            "INFO_DESTINATION_REACHED> Dest: \n"
            "INFO_DESTINATION_REACHED> Element: -1   Total: -2\n");
}

TEST(InfoLaneInformation, ShowsItsText) {
  EXPECT_EQ(TextOf(Hex("AF010000 05000000 'lanes' 000000")),
            "INFO_LANE_INFORMATION> detailsEIS: \"lanes\"\n");
  EXPECT_EQ(TextOf(Hex("AF010000 00000000")), "INFO_LANE_INFORMATION> detailsEIS: \"\"\n");
}

}  // namespace
}  // namespace ventrik::tests
