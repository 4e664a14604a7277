// SPDX-License-Identifier: Apache-2.0
#include "messages/encoders.h"

#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>

#include "messages/catalogue.h"
#include "tests/messages/message_samples.h"

namespace ventrik {
namespace {

using namespace std::string_view_literals;

std::shared_ptr<const SStringArray> Attributes(std::vector<std::string> items) {
  return std::make_shared<SStringArray>(SStringArray{std::move(items)});
}

TEST(Encoders, EveryRequestByteForByte) {
  for (const RequestSample& sample : RequestSamples()) {
    EXPECT_EQ(sample.encoded, sample.golden) << FunctionName(sample.golden.Block().Word(0));
  }
}

TEST(Encoders, OnlyTheseRequestsHaveNone) {
  std::set<std::string> missing;
  for (const CatalogueRow& row : kCatalogue) missing.insert(row.name);
  for (const RequestSample& sample : RequestSamples()) {
    missing.erase(FunctionName(sample.encoded.Block().Word(0)));
  }
  std::set<std::string> requests;
  for (const std::string& name : missing) {
    if (name.substr(0, 5) == "REQU_") requests.insert(name);
  }
  EXPECT_EQ(requests, (std::set<std::string>{"REQU_SET_APPEARANCE_STYLE", "REQU_START_ROUTE",
                                             "REQU_STOP_ROUTE", "REQU_GET_INCIDENTS_ON_ROUTE"}));
}

TEST(Encoders, OnIsOneAndAnythingElseIsTwo) {
  for (const std::int32_t off : {0, 2, 3, -1}) {
    EXPECT_EQ(Wire(encode::REQU_SET_ADA(off)), Hex("F6010000 02000000"));
    EXPECT_EQ(Wire(encode::REQU_SET_TMC_MODE(off, "")), Hex("20030000 02000000 00000000"));
    EXPECT_EQ(Wire(encode::REQU_SET_DEMO_MODE(off, 0, 0)),
              Hex("10000000 02000000 00000000 00000000 00000000 00000000"));
    EXPECT_EQ(Wire(encode::REQU_GET_LIST("", 1, 2, 3, {}, off)),
              Hex("32010000 00000000 01000000 02000000 03000000 00000000 02000000 00000000"));
  }
  EXPECT_EQ(Wire(encode::REQU_GET_LIST("", 1, 2, 3, {}, 1)),
            Hex("32010000 00000000 01000000 02000000 03000000 00000000 01000000 00000000"));
}

TEST(Encoders, TheAvailableFlagGoesOutAsItCame) {
  EXPECT_EQ(Wire(encode::REQU_SET_DATA_CONNECTION_AVAILABLE(-5, "")),
            Hex("60020000 FBFFFFFF 00000000 00000000"));
}

TEST(Encoders, OddityTmcModeSendsOnlyTheTextsLength) {
  EXPECT_EQ(Wire(encode::REQU_SET_TMC_MODE(1, "abc")), Hex("20030000 01000000 03000000"));
}

TEST(Encoders, ATextOfFourTakesEightBytesAndOneOfThreeTakesFour) {
  EXPECT_EQ(Wire(encode::REQU_GET_SPELL("abcd")), Hex("2E010000 04000000 'abcd' 00000000"));
  EXPECT_EQ(Wire(encode::REQU_GET_SPELL("abc")), Hex("2E010000 03000000 'abc' 00"));
}

TEST(Encoders, AnEmptyTextIsOneWord) {
  EXPECT_EQ(Wire(encode::REQU_GET_SPELL("")), Hex("2E010000 00000000 00000000"));
  EXPECT_EQ(Wire(encode::REQU_SCREEN_SHOT("", "")),
            Hex("76000000 00000000 00000000 00000000 00000000"));
}

TEST(Encoders, LengthWordsCountBytesOfUtf8) {
  EXPECT_EQ(Wire(encode::REQU_GET_SPELL("\xC3\xA9")), Hex("2E010000 02000000 C3A9 0000"));
}

TEST(Encoders, TextsEndAtTheirFirstNul) {
  EXPECT_EQ(Wire(encode::REQU_GET_SPELL("ab\0cd"sv)), Hex("2E010000 02000000 'ab' 0000"));
  EXPECT_EQ(Wire(encode::REQU_SET_TMC_MODE(1, "ab\0cd"sv)), Hex("20030000 01000000 02000000"));
  EXPECT_EQ(Wire(encode::TMC_DATA("ab\0cd"sv)), Hex("2A230000 02000000 'ab' 00"));
  EXPECT_EQ(Wire(encode::REQU_BLOCK_ROUTE(0, {{std::string("ab\0cd", 5), "e"}})),
            Hex("92010000 00000000 02000000 'ab' 0000 'e' 000000"));
}

TEST(Encoders, ADestinationWithoutItemsHasOneZeroWordBehindItsText) {
  EXPECT_EQ(Wire(encode::REQU_NEW_TRIP({{{"work", Attributes({})}}}, {})),
            Hex("94010000 01000000 00000000 'work' 00000000 00000000"));
}

TEST(Encoders, DestinationsShareALiveAttributeList) {
  const auto shared = std::make_shared<SStringArray>();
  const SDestinationElementList trip{{{"a", shared}, {"b", shared}}};
  shared->items.push_back("x");
  EXPECT_EQ(Wire(encode::REQU_NEW_TRIP(trip, {})),
            Hex("94010000 02000000 00000000 'a' 000000 01000000 'x' 000000 'b' 000000 01000000 'x' "
                "000000"));
}

TEST(Encoders, TmcDataEndsAtAnyOffset) {
  EXPECT_EQ(Wire(encode::TMC_DATA("")), Hex("2A230000 00000000 00"));
  for (std::size_t length = 0; length < 9; ++length) {
    EXPECT_EQ(encode::TMC_DATA(std::string(length, 'x')).size(), length + 9);
  }
}

TEST(Encoders, TextRequestsAllocateForTheTextRoundedUp) {
  EXPECT_EQ(encode::REQU_GET_SPELL("abc").capacity, 12u);
  EXPECT_EQ(encode::REQU_SCREEN_SHOT("abcde", "f").capacity, 24u);
}

// The first guess is one word short when a length is a multiple of 4; the block then doubles.
TEST(Encoders, AFullWordOfTextGrowsTheBlockOnce) {
  EXPECT_EQ(encode::REQU_GET_SPELL("abcd").capacity, 24u);
  EXPECT_EQ(encode::REQU_GET_SPELL("abcd").size(), 16u);
}

TEST(Encoders, ListRequestsStartWith256Bytes) {
  EXPECT_EQ(encode::REQU_KILL_TRIP({}).capacity, 256u);
  const SRouteHandleList most{std::vector<std::int32_t>(62, 1)};
  EXPECT_EQ(encode::REQU_KILL_TRIP(most).capacity, 256u);
  EXPECT_EQ(encode::REQU_KILL_TRIP(most).size(), 256u);
}

TEST(Encoders, ListsGrowBeyondTheFirstBlock) {
  SRouteHandleList handles;
  std::string expected = "96010000 2C010000 ";
  for (int i = 0; i < 300; ++i) {
    handles.items.push_back(-1);
    expected += "FFFFFFFF";
  }
  EXPECT_EQ(encode::REQU_KILL_TRIP(handles).capacity, 2048u);
  EXPECT_EQ(Wire(encode::REQU_KILL_TRIP(handles)), Hex(expected));
}

TEST(Encoders, AFunctionIdAloneIsAConstant) {
  EXPECT_EQ(encode::REQU_INIT().data(), encode::REQU_INIT().data());
}

}  // namespace
}  // namespace ventrik
