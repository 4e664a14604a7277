// SPDX-License-Identifier: Apache-2.0
// The searches over the whole world that the program carries: every name can be spelled, every row
// leads on.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "bench/eis.h"
#include "bench/search.h"
#include "tests/bench/built_in_world.h"

namespace ventrik::bench {
namespace {

std::string Pair(std::string_view tag, std::string_view value) {
  std::string text;
  AppendEis(text, tag, value);
  return text;
}

// Types the name behind the path letter by letter, as a person does who looks at the offers.
void SpellOut(const std::string& path, std::string_view tag, const Name& name) {
  std::string typed;
  std::int32_t before = Spell(BuiltInWorld(), path + Pair(tag, "")).count;
  for (std::size_t at = 0; at < name.letters.size(); ++at) {
    const SpellResult offer = Spell(BuiltInWorld(), path + Pair(tag, typed));
    ASSERT_TRUE(offer.valid) << path << typed;
    const std::u32string next = DecodeUtf8(offer.nextAvailableCharacters);
    EXPECT_NE(next.find(name.letters[at]), std::u32string::npos) << path << typed;
    EXPECT_TRUE(std::is_sorted(next.begin(), next.end())) << path << typed;
    EXPECT_EQ(std::set<char32_t>(next.begin(), next.end()).size(), next.size()) << path << typed;
    EXPECT_LE(offer.count, before) << path << typed;
    EXPECT_GE(offer.count, 1) << path << typed;
    EXPECT_EQ(BeginsWith(name, MakeName(typed + offer.offeredCharacters)), true) << path << typed;
    before = offer.count;
    AppendUtf8(typed, name.letters[at]);
  }
  const SpellResult end = Spell(BuiltInWorld(), path + Pair(tag, typed));
  EXPECT_TRUE(end.fullMatch) << path << typed;
  EXPECT_LE(end.count, before) << path << typed;
}

TEST(SpellWalk, EveryCountryCanBeSpelled) {
  ASSERT_FALSE(BuiltInWorld().countries.empty());
  for (const Country& country : BuiltInWorld().countries) SpellOut("", "GEOC", country.name);
}

TEST(SpellWalk, EveryStateCanBeSpelled) {
  for (const Country& country : BuiltInWorld().countries) {
    ASSERT_FALSE(country.states.empty());
    const std::string path = Pair("GEOC", country.name.text);
    for (const State& state : country.states) SpellOut(path, "GEOS", state.name);
  }
}

TEST(SpellWalk, EveryTownCanBeSpelled) {
  for (const Country& country : BuiltInWorld().countries) {
    for (const State& state : country.states) {
      ASSERT_FALSE(state.towns.empty());
      const std::string path = Pair("GEOC", country.name.text) + Pair("GEOS", state.name.text);
      for (const Town& town : state.towns) SpellOut(path, "CTY", town.name);
    }
  }
}

TEST(DetailsWalk, EveryTownIsFoundAtItsPosition) {
  for (const Country& country : BuiltInWorld().countries) {
    for (const State& state : country.states) {
      for (const Town& town : state.towns) {
        const std::string path = Pair("CTR", country.name.text) + Pair("STA", state.name.text) +
                                 Pair("CTY", town.name.text);
        const DetailsResult details = Details(BuiltInWorld(), path, {"ALL"});
        EXPECT_EQ(details.matches, 1) << path;
        EXPECT_EQ(details.outputEis, path + Pair("GEO", PositionText(town.position)) +
                                         Pair("POP", std::to_string(town.population)));
      }
    }
  }
}

TEST(ListWalk, PagesJoinToTheWholeList) {
  ListRequest request;
  request.inputEis = "<GEOC>Germany<*><CTY><*>";
  request.order = ListOrder::ascending;
  const ListResult whole = List(BuiltInWorld(), request);
  ASSERT_TRUE(whole.complete);
  ASSERT_GT(whole.rows.size(), 100u);

  std::vector<std::string> joined;
  request.count = 7;
  for (bool complete = false; !complete; request.startIndex += 7) {
    const ListResult page = List(BuiltInWorld(), request);
    ASSERT_LE(page.rows.size(), 7u);
    ASSERT_LE(joined.size(), whole.rows.size());
    joined.insert(joined.end(), page.rows.begin(), page.rows.end());
    complete = page.complete;
  }
  EXPECT_EQ(joined, whole.rows);
}

TEST(ListWalk, AnAnswerIsBounded) {
  ListRequest request;
  request.inputEis = "<CTY><*>";
  request.count = 2147483647;
  request.fields = {"ALL"};
  const ListResult result = List(BuiltInWorld(), request);
  EXPECT_EQ(result.rows.size(), static_cast<std::size_t>(kMaxListRows));
  EXPECT_GT(result.total, kMaxListRows);
  EXPECT_FALSE(result.complete);
}

TEST(ListWalk, EveryOrderHoldsTheSameRows) {
  ListRequest request;
  request.inputEis = "<GEOC>Italy<*><CTY><*>";
  request.from = Position{9.19, 45.46};
  std::set<std::vector<std::string>> orders;
  std::set<std::set<std::string>> contents;
  for (const int word : {0, 1, 2, 4, 8, 16, 32}) {
    request.order = static_cast<ListOrder>(word);
    const ListResult result = List(BuiltInWorld(), request);
    orders.insert(result.rows);
    contents.insert(std::set<std::string>(result.rows.begin(), result.rows.end()));
  }
  EXPECT_EQ(orders.size(), 7u);
  EXPECT_EQ(contents.size(), 1u);
}

// The way of a program that draws a type, asks for its list, and goes on with the first row.
TEST(ListWalk, FirstRowsLeadToATown) {
  std::string path;
  int steps = 0;
  for (std::string types; !(types = AvailableTypes(BuiltInWorld(), path)).empty(); ++steps) {
    ASSERT_LT(steps, 3);
    const std::string term = Pair(ParseEis(types).front().tag, "");
    ListRequest request;
    request.inputEis = types = path + term;
    const ListResult result = List(BuiltInWorld(), request);
    ASSERT_FALSE(result.rows.empty()) << path;
    path += result.rows.front();
  }
  EXPECT_EQ(steps, 3);
  EXPECT_NE(Details(BuiltInWorld(), path, {"GEO"}).outputEis.find("<GEO>"), std::string::npos);
}

// The same with a position as its first choice, which then stays in the path.
TEST(ListWalk, APathMayBeginWithAPosition) {
  const std::string path = "<GEOC>11.575490 48.137430<*>";
  ASSERT_EQ(AvailableTypes(BuiltInWorld(), path).rfind("<GEOS>16<*>", 0), 0u);
  EXPECT_EQ(Spell(BuiltInWorld(), path + "<GEOS>Bay<*>").offeredCharacters, "ern");
  EXPECT_EQ(Details(BuiltInWorld(), path + "<GEOS>Bayern<*>", {"GEO"}).outputEis,
            "<GEO>11.57549 48.13743<*>");
}

}  // namespace
}  // namespace ventrik::bench
