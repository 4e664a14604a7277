// SPDX-License-Identifier: Apache-2.0
#include "bench/model/model.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "bench/model/system.h"
#include "bench/search.h"
#include "messages/encoders.h"
#include "messages/message_layout.h"
#include "tests/bench/built_in_world.h"

namespace ventrik::bench {
namespace {

constexpr char kPlaces[] =
    "DE\tGermany\tBayern\tM\u00FCnchen\t48.13743\t11.57549\t1260391\n"
    "DE\tGermany\tBayern\tPassau\t48.56650\t13.43122\t50566\n"
    "DE\tGermany\tBerlin\tBerlin\t52.52437\t13.41053\t3426354\n"
    "CA\tCanada\tOntario\tLondon\t42.98339\t-81.23304\t346765\n";

using Texts = std::vector<std::string>;

MessageBuffer ListRequestOf(const std::string& eis, std::int32_t start, std::int32_t count,
                            std::int32_t order, const Texts& fields, std::int32_t onOff) {
  return encode::REQU_GET_LIST(eis, start, count, order, {fields}, onOff);
}

class ModelTest : public ::testing::Test {
 protected:
  ModelTest() {
    auto world = World::Parse(kPlaces, error_);
    EXPECT_TRUE(world) << error_;
    if (world) world_ = std::move(*world);
  }

  template <class Request>
  std::vector<Block> Answers(const Request& request) const {
    return Answers({static_cast<const std::uint8_t*>(request.data()), request.size()}, world_);
  }

  static std::vector<Block> Answers(ReceivedBlock request, const World& world) {
    Model model(world);
    std::vector<Block> blocks;
    for (Outgoing& message : model.Handle(request, TimePoint())) {
      EXPECT_EQ(message.audience, Audience::requester);
      EXPECT_EQ(message.after, kAnswerTime);
      blocks.push_back(std::move(message.block));
    }
    return blocks;
  }

  // The one answer, by its fields; none if it isn't one message of that number.
  template <class Request>
  MessageFields AnswerOf(FunctionId id, const Request& request) const {
    const std::vector<Block> answers = Answers(request);
    EXPECT_EQ(answers.size(), 1u);
    if (answers.size() != 1) return {};
    const ReceivedBlock block{answers[0].data(), answers[0].size()};
    EXPECT_EQ(block.Word(0), id);
    return DecodeMessage(block).value_or(MessageFields{});
  }

  MessageFields Spelled(const std::string& eis) const {
    return AnswerOf(RESP_GET_SPELL, encode::REQU_GET_SPELL(eis));
  }

  std::string error_;
  World world_;
};

TEST_F(ModelTest, InitAndShutdownByteForByte) {
  EXPECT_EQ(Answers(encode::REQU_INIT()), std::vector<Block>{(Block{1, 0, 0, 0, 0, 0, 0, 0})});
  EXPECT_EQ(Answers(encode::REQU_SHUTDOWN()), std::vector<Block>{(Block{101, 0, 0, 0})});
}

TEST_F(ModelTest, Versions) {
  EXPECT_EQ(AnswerOf(RESP_GET_SW_VERSION, encode::REQU_GET_SW_VERSION()),
            (MessageFields{{"swVersion", ProgramVersion()}}));
  EXPECT_EQ(ProgramVersion().substr(0, 14), "kelmora-bench ");
  EXPECT_GT(ProgramVersion().size(), 14u);
  EXPECT_EQ(AnswerOf(RESP_GET_DB_VERSION, encode::REQU_GET_DB_VERSION()),
            (MessageFields{{"dbVersion", std::string("GeoNames 2022-03-04, 4 places")}}));
}

TEST_F(ModelTest, SpellByteForByte) {
  const Block expected = {47,  1,   0,   0,  // RESP_GET_SPELL
                          14,  0,   0,   0,  // inputEIS
                          1,   0,   0,   0,  // validState
                          1,   0,   0,   0,  // next characters
                          4,   0,   0,   0,  // offered characters
                          1,   0,   0,   0,  // count
                          2,   0,   0,   0,  // isFullMatch
                          '<', 'G', 'E', 'O', 'C', '>', 'G', 'e',
                          'r', '<', '*', '>', ' ', ' ', 0,   0,  //
                          'm', 0,   0,   0,                      //
                          'm', 'a', 'n', 'y', 0,   0,   0,   0};
  EXPECT_EQ(Answers(encode::REQU_GET_SPELL("<GEOC>Ger<*>  ")), std::vector<Block>{expected});
}

TEST_F(ModelTest, SpellOfAFullMatch) {
  EXPECT_EQ(Spelled("<GEOC>Germany<*>"),
            (MessageFields{{"inputEIS", std::string("<GEOC>Germany<*>")},
                           {"validState", 1},
                           {"nextAvailableCharacters", std::string()},
                           {"offeredCharacters", std::string()},
                           {"count", 1},
                           {"isFullMatch", 1}}));
}

TEST_F(ModelTest, SpellOfNonsenseIsInvalid) {
  EXPECT_EQ(Spelled("nonsense"), (MessageFields{{"inputEIS", std::string("nonsense")},
                                                {"validState", 2},
                                                {"nextAvailableCharacters", std::string()},
                                                {"offeredCharacters", std::string()},
                                                {"count", 0},
                                                {"isFullMatch", 2}}));
}

TEST_F(ModelTest, ListGivesRowsWithTheFieldsAskedFor) {
  const std::string eis = "<GEOC>Germany<*><GEOS>Bayern<*><CTY><*>";
  EXPECT_EQ(AnswerOf(RESP_GET_LIST, ListRequestOf(eis, 1, -1, 1, {"POP", "none"}, 2)),
            (MessageFields{{"inputEIS", eis},
                           {"validState", 1},
                           {"startIndex", 1},
                           {"resultCount", 2},
                           {"word5", 0},
                           {"fieldOptions", Texts{"POP", "none"}},
                           {"itemList", Texts{"<CTY>M\u00FCnchen<*><POP>1260391<*>",
                                              "<CTY>Passau<*><POP>50566<*>"}},
                           {"outputEIS", eis},
                           {"completeState", 1}}));
}

TEST_F(ModelTest, ListGivesAPage) {
  const std::string eis = "<CTY><*>";
  EXPECT_EQ(
      AnswerOf(RESP_GET_LIST, ListRequestOf(eis, 2, 1, 2, {}, 1)),
      (MessageFields{{"inputEIS", eis},
                     {"validState", 1},
                     {"startIndex", 2},
                     {"resultCount", 4},
                     {"word5", 0},
                     {"fieldOptions", Texts{}},
                     {"itemList", Texts{"<GEOC>Germany<*><GEOS>Bayern<*><CTY>M\u00FCnchen<*>"}},
                     {"outputEIS", eis},
                     {"completeState", 2}}));
}

TEST_F(ModelTest, ListOfNonsenseIsInvalid) {
  const MessageFields answer =
      AnswerOf(RESP_GET_LIST, ListRequestOf("nonsense", 0, 3, 0, {"Default"}, 2));
  EXPECT_EQ(answer, (MessageFields{{"inputEIS", std::string("nonsense")},
                                   {"validState", 2},
                                   {"startIndex", 1},
                                   {"resultCount", 0},
                                   {"word5", 0},
                                   {"fieldOptions", Texts{"Default"}},
                                   {"itemList", Texts{}},
                                   {"outputEIS", std::string()},
                                   {"completeState", 1}}));
}

TEST_F(ModelTest, HighwayExitsAreAnEmptyValidList) {
  const std::string eis = "<IFT>HWM<*><EXT><*>";
  EXPECT_EQ(AnswerOf(RESP_GET_LIST, ListRequestOf(eis, 1, 3, 0, {"Default"}, 2)),
            (MessageFields{{"inputEIS", eis},
                           {"validState", 1},
                           {"startIndex", 1},
                           {"resultCount", 0},
                           {"word5", 0},
                           {"fieldOptions", Texts{"Default"}},
                           {"itemList", Texts{}},
                           {"outputEIS", eis},
                           {"completeState", 1}}));
}

TEST_F(ModelTest, EveryAnswerFitsAReceiver) {
  const std::string huge = "<GEOC>Germany<*>" + std::string(700'000, 'x');
  EXPECT_EQ(Spelled(huge), (MessageFields{{"inputEIS", std::string()},
                                          {"validState", 1},
                                          {"nextAvailableCharacters", std::string()},
                                          {"offeredCharacters", std::string()},
                                          {"count", 1},
                                          {"isFullMatch", 1}}));
  const MessageFields list =
      AnswerOf(RESP_GET_LIST, ListRequestOf(huge, 1, 9, 0, {std::string(300'000, 'F')}, 1));
  ASSERT_NE(FindField(list, "itemList"), nullptr);
  EXPECT_EQ(std::get<Texts>(*FindField(list, "itemList")), Texts{"<GEOC>Germany<*>"});
  EXPECT_EQ(std::get<Texts>(*FindField(list, "fieldOptions")), Texts{});

  const auto everything = ListRequestOf("<CTY><*>", 1, -1, 0, {"ALL", "DST"}, 1);
  const auto answers = Answers(
      {static_cast<const std::uint8_t*>(everything.data()), everything.size()}, BuiltInWorld());
  ASSERT_EQ(answers.size(), 1u);
  EXPECT_LE(answers[0].size(), kMaxAnswer);
  const auto fields = DecodeMessage({answers[0].data(), answers[0].size()});
  EXPECT_EQ(std::get<Texts>(*FindField(*fields, "itemList")).size(), std::size_t{kMaxListRows});
}

TEST_F(ModelTest, WhatIsNoRequestHasNoAnswer) {
  EXPECT_TRUE(Answers(Block{}).empty());
  EXPECT_TRUE(Answers(Block{0, 0, 0}).empty());
  EXPECT_TRUE(Answers(Block{0xFF, 0xFF, 0xFF, 0xFF}).empty());
  EXPECT_TRUE(Answers(Block{1, 0, 0, 0}).empty());
}

TEST_F(ModelTest, EveryPrefixOfARequestIsAnswered) {
  const auto whole = ListRequestOf("<GEOC>Germany<*><CTY><*>", 1, 2, 0, {"ALL"}, 1);
  const auto* bytes = static_cast<const std::uint8_t*>(whole.data());
  for (std::size_t length = 4; length <= whole.size(); ++length) {
    EXPECT_EQ(Answers({bytes, length}, world_).size(), 1u) << length;
  }
}

}  // namespace
}  // namespace ventrik::bench
