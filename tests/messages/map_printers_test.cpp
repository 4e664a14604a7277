// SPDX-License-Identifier: Apache-2.0
// The texts of the map, what is picked on it, and its overlays.
#include <gtest/gtest.h>

#include <string>

#include "tests/messages/printed_text.h"

namespace ventrik::tests {
namespace {

std::string WorldProperties(const std::string& input, const std::string& valid,
                            const std::string& properties, const std::string& items) {
  return "RESP_SET_WORLD_PROPERTIES> inputEIS: \"" + input +
         "\"\nRESP_SET_WORLD_PROPERTIES> validState: " + valid +
         "\nRESP_SET_WORLD_PROPERTIES> worldElements: " + properties +
         "\nRESP_SET_WORLD_PROPERTIES> itemList: " + items + "\n";
}

TEST(RespSetWorldProperties, ShowsAllItsFields) {
  EXPECT_EQ(TextOf(Hex("75000000 02000000 01000000 06000000 02000000 'in' 0000 'a' 000000 "
                       "'b' 000000")),
            WorldProperties("in", "valid", "highlight visible ", "\"a\" \"b\" "));
}

TEST(RespSetWorldProperties, WithoutItemsTheLabelStandsAlone) {
  EXPECT_EQ(TextOf(Hex("75000000 00000000 00000000 00000000 00000000")),
            WorldProperties("", "invalid", "", ""));
}

TEST(RespSetWorldProperties, OnlyThreeOfThePropertiesAreShown) {
  EXPECT_EQ(TextOf(Hex("75000000 00000000 02000000 01000000 00000000")),
            WorldProperties("", "invalid", "zoom ", ""));
  EXPECT_EQ(TextOf(Hex("75000000 00000000 02000000 18010000 00000000")),
            WorldProperties("", "invalid", "", ""));
  EXPECT_EQ(TextOf(Hex("75000000 00000000 02000000 FFFFFFFF 00000000")),
            WorldProperties("", "invalid", "zoom highlight visible ", ""));
}

TEST(RespSetWorldProperties, CountThatLiesEndsWithTheBlock) {
  EXPECT_EQ(TextOf(Hex("75000000 00000000 01000000 00000000 FFFFFF7F 'a' 000000 'b'")),
            WorldProperties("", "valid", "", "\"a\" \"b\" "));
  EXPECT_EQ(TextOf(Hex("75000000 00000000 01000000 00000000 FFFFFFFF 'a' 000000")),
            WorldProperties("", "valid", "", ""));
}

TEST(RespScreenShot, IsOneLine) {
  EXPECT_EQ(TextOf(Hex("77000000 03000000 01000000 04000000 'map' 00 'file' 00000000")),
            "RESP_SCREEN_SHOT> validState: valid, map: map, filename: file\n");
}

TEST(RespScreenShot, TextsAreThereWhateverTheWordsBesideTheStateSay) {
  EXPECT_EQ(TextOf(Hex("77000000 00000000 02000000 00000000 'map' 00 'file' 00000000")),
            "RESP_SCREEN_SHOT> validState: invalid, map: map, filename: file\n");
  EXPECT_EQ(TextOf(Hex("77000000 FFFFFFFF FFFFFFFF FFFFFFFF 00000000 'file' 00000000")),
            "RESP_SCREEN_SHOT> validState: invalid, map: , filename: file\n");
}

TEST(RespScreenShot, CutMessageHasEmptyTexts) {
  EXPECT_EQ(TextOf(Hex("77000000 00000000 01000000 00000000 'ma'")),
            "RESP_SCREEN_SHOT> validState: valid, map: ma, filename: \n");
  EXPECT_EQ(TextOf(Hex("77000000")), "RESP_SCREEN_SHOT> validState: invalid, map: , filename: \n");
}

// `items` as they stand behind their label.
std::string Picked(const std::string& map, const std::string& elements, const std::string& items) {
  return "RESP_PICK_INFO> mapEIS: " + map +
         "\n"
         "RESP_PICK_INFO> xCoordinate: 10\n"
         "RESP_PICK_INFO> yCoordinate: -20\n"
         "RESP_PICK_INFO> xWorldCoordinate: 1.500000\n"
         "RESP_PICK_INFO> yWorldCoordinate: -2.250000\n"
         "RESP_PICK_INFO> worldElements: " +
         elements +
         "\n"
         "RESP_PICK_INFO> radius: 40\n"
         "RESP_PICK_INFO> pickInfo:" +
         items + "\n";
}

// A message without its texts. The words are Hex().
Bytes PickHeader(const std::string& mapLength, const std::string& elements,
                 const std::string& count) {
  return Hex("BD020000" + mapLength + "0A000000 ECFFFFFF 00000000 0000F83F 00000000 000002C0" +
             elements + "28000000" + count + "09000000");
}

TEST(RespPickInfo, ShowsAllItsFields) {
  EXPECT_EQ(
      TextOf(PickHeader("03000000", "03000000", "02000000") + Hex("'map' 00 'p0' 0000 'p1' 0000")),
      Picked("map", "3 geoCoordinate locationDetails ", "   0. (p0)\n   1. (p1)\n"));
}

TEST(RespPickInfo, WithoutTextsTheLabelsStandAlone) {
  EXPECT_EQ(TextOf(PickHeader("00000000", "00000000", "00000000")), Picked("", "0 ", ""));
}

TEST(RespPickInfo, LastElementHasNoBlankBehindIt) {
  EXPECT_EQ(TextOf(PickHeader("00000000", "1C000000", "00000000")),
            Picked("", "28 poiData tmcData weatherData", ""));
}

TEST(RespPickInfo, UnknownElementsShowInTheNumberOnly) {
  EXPECT_EQ(TextOf(PickHeader("00000000", "20000000", "00000000")), Picked("", "32 ", ""));
  EXPECT_EQ(TextOf(PickHeader("00000000", "FFFFFFFF", "00000000")),
            Picked("", "-1 geoCoordinate locationDetails poiData tmcData weatherData", ""));
}

TEST(RespPickInfo, CountThatLiesEndsWithTheBlock) {
  EXPECT_EQ(TextOf(PickHeader("03000000", "00000000", "FFFFFF7F") + Hex("'map' 00 'p0'")),
            Picked("map", "0 ", "   0. (p0)\n"));
  EXPECT_EQ(TextOf(PickHeader("03000000", "00000000", "FFFFFFFF") + Hex("'map' 00 'p0' 0000")),
            Picked("map", "0 ", ""));
}

TEST(RespPickInfo, TextThatIsTooLongIsReplacedAndLosesItsLineEnd) {
  const std::string longest(16383, 'p');
  const Bytes header = PickHeader("00000000", "00000000", "04000000");
  EXPECT_TRUE(
      TextOf(header + Packed(longest) + Packed(longest + 'p') + Packed(std::string(40000, 'q')) +
             Packed("last")) ==
      Picked("", "0 ",
             "   0. (" + longest + ")\n   1. BUFFER OVERFLOW   2. BUFFER OVERFLOW   3. (last)\n"));
}

TEST(RespPickInfo, LongTextWithoutATerminatorIsReplacedToo) {
  EXPECT_EQ(TextOf(PickHeader("00000000", "00000000", "01000000") + Raw(std::string(16384, 'p'))),
            Picked("", "0 ", "   0. BUFFER OVERFLOW"));
}

TEST(RespPickInfo, LongMapTextIsShown) {
  const std::string map(40000, 'm');
  EXPECT_TRUE(TextOf(PickHeader("01000000", "00000000", "00000000") + Packed(map)) ==
              Picked(map, "0 ", ""));
}

TEST(RespPickInfo, CoordinatesMayBeAnyNumber) {
  const std::string text =
      TextOf(Hex("BD020000 00000000 00000080 FFFFFF7F 00000000 0000F07F 00000000 000000C0 00000000 "
                 "FFFFFFFF 00000000 00000000"));
  EXPECT_EQ(text,
            "RESP_PICK_INFO> mapEIS: \n"
            "RESP_PICK_INFO> xCoordinate: -2147483648\n"
            "RESP_PICK_INFO> yCoordinate: 2147483647\n"
            "RESP_PICK_INFO> xWorldCoordinate: inf\n"
            "RESP_PICK_INFO> yWorldCoordinate: -2.000000\n"
            "RESP_PICK_INFO> worldElements: 0 \n"
            "RESP_PICK_INFO> radius: -1\n"
            "RESP_PICK_INFO> pickInfo:\n");
}

TEST(RespMapControls, ShowsBothItsFields) {
  EXPECT_EQ(TextOf(Hex("BF020000 04000000 01000000 'ctrl' 00000000")),
            "RESP_MAP_CONTROLS> mapControls: \"ctrl\"\nRESP_MAP_CONTROLS> validState: valid\n");
  EXPECT_EQ(TextOf(Hex("BF020000 00000000 00000000")),
            "RESP_MAP_CONTROLS> mapControls: \"\"\nRESP_MAP_CONTROLS> validState: invalid\n");
}

TEST(InfoVehLocInfoDetails, ShowsItsText) {
  EXPECT_EQ(TextOf(Hex("CB000000 03000000 'pos' 00")),
            "INFO_VEH_LOC_INFO_DETAILS> posInfo: \"pos\"\n");
  EXPECT_EQ(TextOf(Hex("CB000000 00000000 'none' 00000000")),
            "INFO_VEH_LOC_INFO_DETAILS> posInfo: \"\"\n");
}

TEST(InfoMapOverlayArea, ShowsItsTextWithoutAName) {
  EXPECT_EQ(TextOf(Hex("7C000000 0D000000 '<GLL>1 2<*>' 00")),
            "INFO_MAP_OVERLAY_AREA> \"<GLL>1 2<*>\"\n");
  EXPECT_EQ(TextOf(Hex("7C000000 00000000")), "INFO_MAP_OVERLAY_AREA> \"\"\n");
}

TEST(InfoMapOverlaySurfaceInvalid, ShowsItsTextWithoutAName) {
  EXPECT_EQ(TextOf(Hex("7E000000 09000000 '<SID>7<*>' 000000")),
            "INFO_MAP_OVERLAY_SURFACE_INVALID> \"<SID>7<*>\"\n");
  EXPECT_EQ(TextOf(Hex("7E000000 00000000")), "INFO_MAP_OVERLAY_SURFACE_INVALID> \"\"\n");
}

}  // namespace
}  // namespace ventrik::tests
