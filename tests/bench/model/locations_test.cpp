// SPDX-License-Identifier: Apache-2.0
#include "bench/model/locations.h"

#include "bench/search.h"
#include "tests/bench/model/sent_text.h"

namespace ventrik::bench {
namespace {

constexpr char kPassau[] = "<GEOC>Germany<*><GEOS>Bayern<*><CTY>Passau<*><GEO>13.43122 48.56650<*>";

Resolution Resolve(std::string_view inputEis) {
  return ResolveLocation(BuiltInWorld(), inputEis);
}

TEST(ResolveLocationTest, OnePlaceIsGivenWithItsPathAndPosition) {
  for (const char* eis :
       {"<GEOC>Germany<*><CTY>Passau<*>", "<CTY>passau<*>", "<CTY>PASSAU<*> <CTR>Germany<*>",
        "<CTY>Passau<*><CTY>passau<*>", "<GEO>13.4 48.6<*>", "<CTY>13.4 48.6<*>",
        "<GEOC>Germany<*><CTY>13.4 48.6<*>", kPassau}) {
    const Resolution found = Resolve(eis);
    EXPECT_TRUE(found.valid) << eis;
    EXPECT_FALSE(found.ambiguous) << eis;
    EXPECT_EQ(found.outputEis, kPassau) << eis;
    EXPECT_EQ(found.ambiguityType, "") << eis;
    EXPECT_EQ(found.unresolvedElements, "") << eis;
  }
}

TEST(ResolveLocationTest, CountriesAndStatesArePlacesToo) {
  EXPECT_EQ(Resolve("<GEOC>Germany<*>").outputEis, "<GEOC>Germany<*><GEO>13.41053 52.52437<*>");
  EXPECT_EQ(Resolve("<GEOS>Bayern<*>").outputEis,
            "<GEOC>Germany<*><GEOS>Bayern<*><GEO>11.57549 48.13743<*>");
}

TEST(ResolveLocationTest, NamesakesAreAmbiguousByTheirCountries) {
  const Resolution found = Resolve("<CTY>Cambridge<*>");
  EXPECT_TRUE(found.valid);
  EXPECT_TRUE(found.ambiguous);
  EXPECT_EQ(found.outputEis, "<CTY>Cambridge<*>");
  EXPECT_EQ(found.ambiguityType, "<GEOC>3<*>");
}

TEST(ResolveLocationTest, NamesakesInOneCountryAreAmbiguousByTheirStates) {
  const Resolution found = Resolve("<CTR>United States of America<*><CTY>Springfield<*>");
  EXPECT_TRUE(found.ambiguous);
  EXPECT_EQ(found.outputEis, "<GEOC>United States of America<*><CTY>Springfield<*>");
  EXPECT_EQ(found.ambiguityType, "<GEOS>3<*>");

  ListRequest request;
  request.inputEis = found.outputEis;
  const ListResult places = List(BuiltInWorld(), request);
  EXPECT_EQ(places.total, 3) << "the output lists the places";
  ASSERT_FALSE(places.rows.empty());
  EXPECT_FALSE(Resolve(found.outputEis + places.rows[0]).ambiguous) << "a row decides";
}

TEST(ResolveLocationTest, WhatLeadsToNothingIsUnresolved) {
  struct Case {
    const char* eis;
    const char* output;
    const char* unresolved;
  };
  const Case cases[] = {
      {"<GEOC>Germany<*><CTY>Passau<*><STR>Inn<*>", kPassau, "<STR>Inn<*>"},
      {"<STR>Inn<*><GEOC>Germny<*><CTY>Passau<*>", kPassau, "<STR>Inn<*><GEOC>Germny<*>"},
      {"<CTY>Passau<*><GEOC>Canada<*>", "<GEOC>Canada<*><GEO>-79.41630 43.70011<*>",
       "<CTY>Passau<*>"},
      {"<CTY>Passau<*><CTY>Berlin<*>", kPassau, "<CTY>Berlin<*>"},
      {"<CTY>Passau<*><CTY><*><GEO>x<*>", kPassau, "<CTY><*><GEO>x<*>"},
      {"<GEO>13.4 48.6<*><CTY>Pas<*>", kPassau, "<CTY>Pas<*>"},
  };
  for (const Case& one : cases) {
    const Resolution found = Resolve(one.eis);
    EXPECT_TRUE(found.valid) << one.eis;
    EXPECT_FALSE(found.ambiguous) << one.eis;
    EXPECT_EQ(found.outputEis, one.output) << one.eis;
    EXPECT_EQ(found.unresolvedElements, one.unresolved) << one.eis;
  }
}

TEST(ResolveLocationTest, NothingResolvedIsInvalid) {
  for (const char* eis :
       {"", "abc", "<GEOC><*>", "<GEOC>Germny<*><CTY><*>", "<GEO>200 0<*>", "<STR>Inn<*>"}) {
    const Resolution found = Resolve(eis);
    EXPECT_FALSE(found.valid) << eis;
    EXPECT_FALSE(found.ambiguous) << eis;
    EXPECT_EQ(found.outputEis, "") << eis;
    EXPECT_EQ(found.unresolvedElements, eis[0] == '<' ? eis : "") << eis;
  }
}

class LocationsTest : public ModelFixture {};

TEST_F(LocationsTest, TheAnswerTellsEverything) {
  const std::string eis = "<GEOC>Germany<*><CTY>Passau<*><STR>Inn<*>";
  EXPECT_EQ(SentLines(Handle(encode::REQU_RESOLVE_LOCATION(eis))),
            (Lines{"RESP_RESOLVE_LOCATION inputEIS='" + eis + "' validState=1 outputEIS='" +
                   kPassau + "' ambiguity=2 ambiguityType='' unresolvedElements='<STR>Inn<*>'"}));
  EXPECT_EQ(SentLines(Handle(encode::REQU_RESOLVE_LOCATION("<CTY>Cambridge<*>"))),
            (Lines{"RESP_RESOLVE_LOCATION inputEIS='<CTY>Cambridge<*>' validState=1 "
                   "outputEIS='<CTY>Cambridge<*>' ambiguity=1 ambiguityType='<GEOC>3<*>' "
                   "unresolvedElements=''"}));
  EXPECT_EQ(SentLines(Handle(encode::REQU_RESOLVE_LOCATION(""))),
            (Lines{"RESP_RESOLVE_LOCATION inputEIS='' validState=2 outputEIS='' ambiguity=2 "
                   "ambiguityType='' unresolvedElements=''"}));
}

TEST_F(LocationsTest, VeryLongInputIsNotRepeated) {
  const auto answer =
      Handle(encode::REQU_RESOLVE_LOCATION("<CTY>Passau<*>" + std::string(700'000, '<')));
  ASSERT_EQ(answer.size(), 1u);
  EXPECT_EQ(answer[0].Text("inputEIS"), "");
  EXPECT_EQ(answer[0].Text("outputEIS"), kPassau);
}

TEST_F(LocationsTest, RequestsCutShortAreAnswered) {
  for (const auto& answer : HandleEveryPrefix(encode::REQU_RESOLVE_LOCATION(kPassau))) {
    EXPECT_EQ(answer.size(), 1u);
  }
}

}  // namespace
}  // namespace ventrik::bench
