// SPDX-License-Identifier: Apache-2.0
#include "messages/message_layout.h"

#include <gtest/gtest.h>

#include <set>

#include "messages/catalogue.h"
#include "messages/described_fields.h"
#include "messages/layout_table.h"
#include "tests/messages/message_samples.h"

namespace ventrik {
namespace {

// The fields of a block as text, or "nothing".
std::string Decoded(const Bytes& bytes) {
  const std::optional<MessageFields> fields = DecodeMessage(bytes.Block());
  return fields ? Describe(*fields) : "nothing";
}

Bytes Encoded(std::int32_t id, const MessageFields& fields) {
  Bytes bytes;
  std::string error;
  EXPECT_TRUE(EncodeMessage(static_cast<FunctionId>(id), fields, bytes.value, error)) << error;
  return bytes;
}

// The reason why the fields can't be encoded.
std::string Refused(FunctionId id, const MessageFields& fields) {
  std::vector<std::uint8_t> out{1, 2, 3};
  std::string error;
  EXPECT_FALSE(EncodeMessage(id, fields, out, error));
  EXPECT_EQ(out, (std::vector<std::uint8_t>{1, 2, 3})) << "a failure leaves the output alone";
  return error;
}

TEST(MessageLayout, EverySampleDecodesToItsFields) {
  for (const MessageSample& sample : AllSamples()) {
    EXPECT_EQ(Decoded(sample.golden), sample.fields) << FunctionName(sample.golden.Block().Word(0));
  }
}

TEST(MessageLayout, EverySampleIsEncodedBackToItsBytes) {
  for (const MessageSample& sample : AllSamples()) {
    const std::optional<MessageFields> fields = DecodeMessage(sample.golden.Block());
    ASSERT_TRUE(fields);
    EXPECT_EQ(Encoded(sample.golden.Block().Word(0), *fields), sample.golden);
  }
}

TEST(MessageLayout, OnlyMessagesThatNobodyBuildsOrPrintsHaveNoSample) {
  std::set<std::string> names;
  for (const CatalogueRow& row : kCatalogue) names.insert(row.name);
  for (const MessageSample& sample : AllSamples()) {
    names.erase(FunctionName(sample.golden.Block().Word(0)));
  }
  EXPECT_EQ(names, (std::set<std::string>{"REQU_SET_APPEARANCE_STYLE", "REQU_START_ROUTE",
                                          "REQU_STOP_ROUTE", "REQU_GET_INCIDENTS_ON_ROUTE",
                                          "GPS_DATA", "RDSTMC_DATA", "CMD_STATE_PACKAGE",
                                          "CMD_PACKAGE_PIECE", "CMD_PACKAGE_END"}));
}

FieldValue SampleValue(FieldKind kind) {
  switch (kind) {
    case FieldKind::Byte:
      return 200;
    case FieldKind::Double:
      return -0.125;
    case FieldKind::Text:
    case FieldKind::String:
    case FieldKind::BareText:
      return "text";
    case FieldKind::Bytes:
      return std::string("\0\1\2", 3);
    case FieldKind::Strings:
      return std::vector<std::string>{"", "one", "four"};
    case FieldKind::Words:
      return std::vector<std::int32_t>{-1, 0, 1};
    case FieldKind::Destinations:
    case FieldKind::DestinationSum:
      return DestinationValues{{"", {}}, {"home", {"x", ""}}, {"work", {"yyyy"}}};
    default:
      return -77;
  }
}

TEST(MessageLayout, EveryRowRoundTrips) {
  for (const CatalogueRow& row : kCatalogue) {
    MessageFields fields;
    for (const LayoutField& field : *FindLayout(row.id)) {
      fields.push_back({std::string(field.name), SampleValue(field.kind)});
    }
    const Bytes encoded = Encoded(row.id, fields);
    const std::optional<MessageFields> decoded = DecodeMessage(encoded.Block());
    ASSERT_TRUE(decoded) << row.name;
    EXPECT_EQ(*decoded, fields) << row.name << ": " << Describe(*decoded);
  }
}

TEST(MessageLayout, MissingFieldsAreZeroOrEmpty) {
  EXPECT_EQ(Encoded(RESP_PICK_INFO, {}),
            Hex("BD020000 00000000 00000000 00000000 00000000 00000000 00000000 00000000 00000000 "
                "00000000 00000000 00000000"));
  EXPECT_EQ(Encoded(REQU_SCREEN_SHOT, {}), Hex("76000000 00000000 00000000 00000000 00000000"));
  EXPECT_EQ(Encoded(RESP_NEW_TRIP, {}), Hex("95010000 00000000 00000000 00000000 00000000"));
}

TEST(MessageLayout, FieldsComeInAnyOrder) {
  EXPECT_EQ(Encoded(RESP_ADD_DATA_SRC, {{"validState", 1}, {"inputEIS", "usb"}}),
            Hex("39010000 03000000 01000000 'usb' 00"));
}

TEST(MessageLayout, AnEmptyResponseTextIsAbsentAndAnEmptyRequestTextIsNot) {
  EXPECT_EQ(Encoded(RESP_ADD_DATA_SRC, {}), Hex("39010000 00000000 00000000"));
  EXPECT_EQ(Encoded(REQU_ADD_DATA_SRC, {}), Hex("38010000 00000000 00000000"));
}

TEST(MessageLayout, TextsEndAtTheirFirstNul) {
  EXPECT_EQ(Encoded(RESP_ADD_DATA_SRC, {{"inputEIS", std::string("ab\0c", 4)}}),
            Hex("39010000 02000000 00000000 'ab' 0000"));
  EXPECT_EQ(Encoded(RESP_ADD_DATA_SRC, {{"inputEIS", std::string("\0c", 2)}}),
            Hex("39010000 00000000 00000000"));
  EXPECT_EQ(Encoded(TMC_DATA, {{"text", std::string("ab\0c", 4)}}),
            Hex("2A230000 02000000 'ab' 00"));
}

TEST(MessageLayout, ATripsCountMeansElementsInTheRequestAndAllStringsInTheResponse) {
  const DestinationValues trip{{"a", {"x", "y"}}, {"b", {}}};
  EXPECT_EQ(Encoded(REQU_NEW_TRIP, {{"destinations", trip}}),
            Hex("94010000 02000000 00000000 'a' 000000 02000000 'x' 000000 'y' 000000 'b' 000000 "
                "00000000"));
  EXPECT_EQ(Encoded(RESP_NEW_TRIP, {{"destinations", trip}}),
            Hex("95010000 04000000 00000000 00000000 00000000 'a' 000000 02000000 'x' 000000 'y' "
                "000000 'b' 000000 00000000"));
}

TEST(MessageLayout, AByteFieldIgnoresTheRestOfItsWord) {
  EXPECT_EQ(Decoded(Hex("9B010000 01000000 02000000 01EEEEEE 04000000 05000000")),
            "time=1 distance=2 nextManInfo1=1 nextManInfo2=4 nextManInfo3=5");
  EXPECT_EQ(Encoded(INFO_NEXT_MAN_INFO, {{"nextManInfo1", 0x1FF}}),
            Hex("9B010000 00000000 00000000 FF000000 00000000 00000000"));
}

TEST(MessageLayout, ALengthWordIsNeverUsedToMoveOn) {
  EXPECT_EQ(Decoded(Hex("2D010000 F4010000 FFFFFFFF 'ab' 0000 'cd' 0000")),
            "inputEIS='ab' availableTypesEIS='cd'");
}

TEST(MessageLayout, BytesBehindTheLastFieldAreIgnored) {
  EXPECT_EQ(Decoded(Hex("01000000 01000000 FFFF")), "result=1");
}

TEST(MessageLayout, ALyingCountGivesWhatTheBlockHolds) {
  EXPECT_EQ(Decoded(Hex("2C030000 FFFFFF7F 'e1' 0000 'e2' 0000")), "tmcEvents=['e1', 'e2']");
  EXPECT_EQ(Decoded(Hex("2C030000 FFFFFFFF 'e1' 0000")), "tmcEvents=[]");
  EXPECT_EQ(Decoded(Hex("97010000 FFFFFF7F 05000000 0102")), "handles=[5]");
  EXPECT_EQ(
      Decoded(Hex("95010000 FFFFFF7F 01000000 01000000 00000000 'a' 000000 FFFFFF7F 'x' 000000")),
      "destinations=['a'('x')] routeModes=[] validState=1 handles=[]");
  EXPECT_EQ(Decoded(Hex("94010000 01000000 01000000 'a' 000000 FBFFFFFF 00020000")),
            "destinations=['a'()] routeModes=[512]");
  EXPECT_EQ(
      Decoded(Hex("95010000 01000000 01000000 01000000 00000000 'a' 000000 FFFFFFFF 00020000")),
      "destinations=['a'()] routeModes=[512] validState=1 handles=[]");
}

// The response's count runs over 1 for each destination and its items, and stops once it is
// reached.
TEST(MessageLayout, ATripResponseEndsWhenTheRunningSumReachesItsCount) {
  EXPECT_EQ(Decoded(Hex("95010000 02000000 01000000 01000000 00000000 'a' 000000 02000000 'x' "
                        "000000 'y' 000000 00020000")),
            "destinations=['a'('x', 'y')] routeModes=[512] validState=1 handles=[]");
}

TEST(MessageLayout, ATextWithoutTerminatorEndsWithTheBlock) {
  EXPECT_EQ(Decoded(Hex("86030000 09000000 'version'")), "swVersion='version'");
}

TEST(MessageLayout, ABlockCutShortReadsAsZeroAndEmpty) {
  EXPECT_EQ(Decoded(Hex("2F010000 02000000 01000000 0300")),
            "inputEIS='' validState=1 nextAvailableCharacters='' offeredCharacters='' count=0 "
            "isFullMatch=0");
}

TEST(MessageLayout, UnknownBlocksDecodeToNothing) {
  EXPECT_EQ(Decoded(Hex("")), "nothing");
  EXPECT_EQ(Decoded(Hex("010000")), "nothing");
  EXPECT_EQ(Decoded(Hex("02000000 00000000")), "nothing");
  EXPECT_EQ(Decoded(Hex("FFFFFFFF")), "nothing");
}

TEST(MessageLayout, AnUnknownFieldIsNamedAndTheKnownOnesListed) {
  EXPECT_EQ(Refused(RESP_ADD_DATA_SRC, {{"inputEIS", "x"}, {"state", 1}}),
            "RESP_ADD_DATA_SRC has no field 'state'; it has inputEIS:string validState:word");
  EXPECT_EQ(Refused(INFO_HEARTBEAT, {{"beat", 1}}),
            "INFO_HEARTBEAT has no field 'beat'; it has no fields");
}

TEST(MessageLayout, AWrongSortOfValueIsNamed) {
  EXPECT_EQ(Refused(RESP_INIT, {{"result", "good"}}),
            "RESP_INIT: the field 'result' is a word and takes a number; it has result:word");
  EXPECT_EQ(Refused(INFO_TMC_NEW_EVENTS, {{"tmcEvents", "one"}}),
            "INFO_TMC_NEW_EVENTS: the field 'tmcEvents' is a strings and takes a list of texts; "
            "it has tmcEvents:strings");
  EXPECT_EQ(Refused(REQU_SET_DEMO_MODE, {{"latitude", 47}}),
            "REQU_SET_DEMO_MODE: the field 'latitude' is a double and takes a double; it has "
            "onOff:word longitude:double latitude:double");
}

TEST(MessageLayout, ARepeatedFieldIsNamed) {
  EXPECT_EQ(Refused(RESP_INIT, {{"result", 1}, {"result", 2}}),
            "RESP_INIT: the field 'result' is given twice; it has result:word");
}

TEST(MessageLayout, AnUnknownNumberIsNamed) {
  EXPECT_EQ(Refused(static_cast<FunctionId>(2), {}), "no message has the number 2");
  EXPECT_EQ(Refused(FUNC_INVALID, {}), "no message has the number -1");
}

TEST(MessageLayout, FieldsAreFoundByName) {
  const MessageFields fields = {{"a", 1}, {"b", 2.5}};
  ASSERT_NE(FindField(fields, "b"), nullptr);
  EXPECT_EQ(std::get<double>(*FindField(fields, "b")), 2.5);
  EXPECT_EQ(FindField(fields, "c"), nullptr);
}

}  // namespace
}  // namespace ventrik
