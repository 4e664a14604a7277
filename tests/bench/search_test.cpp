// SPDX-License-Identifier: Apache-2.0
// The searches over a small world whose answers can be seen at a glance.
#include "bench/search.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace ventrik::bench {
namespace {

constexpr char kPlaces[] =
    "DE\tGermany\tBayern\tM\u00FCnchen\t48.13743\t11.57549\t1260391\n"
    "DE\tGermany\tBayern\tM\u00FChldorf\t48.24670\t12.52155\t15000\n"
    "DE\tGermany\tBayern\tMemmingen\t47.98372\t10.18527\t41000\n"
    "DE\tGermany\tBayern\tPassau\t48.56650\t13.43122\t50566\n"
    "DE\tGermany\tBerlin\tBerlin\t52.52437\t13.41053\t3426354\n"
    "DE\tGermany\tHessen\tGie\u00DFen\t50.58727\t8.67554\t74411\n"
    "GB\tUnited Kingdom\tEngland\tLondon\t51.50853\t-0.12574\t8961989\n"
    "GB\tUnited Kingdom\tNorthern Ireland\tLondonderry\t54.99810\t-7.30934\t83652\n"
    "CA\tCanada\tOntario\tLondon\t42.98339\t-81.23304\t346765\n"
    "US\tUnited States of America\tIllinois\tSpringfield\t39.80172\t-89.64371\t116565\n"
    "US\tUnited States of America\tMissouri\tSpringfield\t37.21533\t-93.29824\t166810\n";

class Search : public ::testing::Test {
 protected:
  Search() {
    auto world = World::Parse(kPlaces, error_);
    EXPECT_TRUE(world) << error_;
    if (world) world_ = std::move(*world);
  }

  // "next/offered/count", with "!" for a full match; "invalid".
  std::string SpellOf(std::string_view eis) const {
    const SpellResult result = Spell(world_, eis);
    if (!result.valid) return "invalid";
    return result.nextAvailableCharacters + "/" + result.offeredCharacters + "/" +
           std::to_string(result.count) + (result.fullMatch ? "!" : "");
  }

  std::vector<std::string> RowsOf(std::string_view eis, ListOrder order = ListOrder::ascending,
                                  std::vector<std::string> fields = {}) const {
    ListRequest request;
    request.inputEis = eis;
    request.order = order;
    request.fields = std::move(fields);
    return List(world_, request).rows;
  }

  std::string DetailsOf(std::string_view eis, const std::vector<std::string>& fields = {}) const {
    const DetailsResult result = Details(world_, eis, fields);
    return result.valid ? result.outputEis : "invalid";
  }

  std::string error_;
  World world_;
};

using Rows = std::vector<std::string>;

// ---- spelling

TEST_F(Search, SpellOffersWhatCanFollow) {
  EXPECT_EQ(SpellOf(""), "CGU//4");
  EXPECT_EQ(SpellOf("<GEOC><*>"), "CGU//4");
  EXPECT_EQ(SpellOf("<GEOC>U<*>"), "n/nited /2");
  EXPECT_EQ(SpellOf("<GEOC>United <*>"), "KS//2");
  EXPECT_EQ(SpellOf("<GEOC>Ger<*>"), "m/many/1");
  EXPECT_EQ(SpellOf("<GEOC>Germany<*>"), "//1!");
  EXPECT_EQ(SpellOf("<GEOC>Germany<*><GEOS>B<*>"), "ae//2");
  EXPECT_EQ(SpellOf("<GEOC>Germany<*><GEOS>Bayern<*><CTY>M<*>"), "e\u00FC//3");
}

TEST_F(Search, SpellIgnoresCaseAndAccentsOfWhatWasTyped) {
  EXPECT_EQ(SpellOf("<GEOC>gERM<*>"), "a/any/1");
  EXPECT_EQ(SpellOf("<GEOC>GERMANY<*><CTY>mu<*>"), "hn//2");
  EXPECT_EQ(SpellOf("<GEOC>Germany<*><CTY>munchen<*>"), "//1!");
  EXPECT_EQ(SpellOf("<GEOC>Germany<*><CTY>Gies<*>"), "e/en/1");
}

TEST_F(Search, SpellOffersTheLettersOfTheLargestMatch) {
  EXPECT_EQ(SpellOf("<CTY>Lon<*>"), "d/don/3");
  EXPECT_EQ(SpellOf("<CTY>London<*>"), "d//3!");
}

TEST_F(Search, SpellWithoutAMatchIsStillValid) {
  EXPECT_EQ(SpellOf("<GEOC>Xa<*>"), "//0");
  EXPECT_EQ(SpellOf("<GEOC>Germany<*><GEOS>Bayernx<*>"), "//0");
  EXPECT_EQ(SpellOf("<GEOC>\xFF<*>"), "//0");
}

TEST_F(Search, SpellNeedsWhatItsPathChooses) {
  EXPECT_EQ(SpellOf("<GEOC>Xa<*><GEOS>B<*>"), "invalid");
  EXPECT_EQ(SpellOf("<GEOC>Ger<*><GEOS>B<*>"), "invalid");
  EXPECT_EQ(SpellOf("<GEOC>Canada<*><GEOS>Bayern<*><CTY>M<*>"), "invalid");
}

TEST_F(Search, SpellHasNothingToOfferForAPosition) {
  EXPECT_EQ(SpellOf("<GEOC>11.5 48.1<*>"), "//4");
  EXPECT_EQ(SpellOf("<GEOC>Germany<*><GEOS>11.5 48.1<*>"), "//3");
}

// ---- the input

TEST_F(Search, NonsenseIsNotValid) {
  for (const char* eis :
       {"abc", "<", "<*>", "<geoc>Ger<*>", "<IFT>HWM<*><EXT><*>", "<GEO>Bayern<*>",
        "<GEOC>Ger<*><GEO><*>", "<GEOC>Germany<*><GEOC>Canada<*>"}) {
    EXPECT_EQ(SpellOf(eis), "invalid") << eis;
    ListRequest request;
    request.inputEis = eis;
    EXPECT_FALSE(List(world_, request).valid) << eis;
    EXPECT_EQ(AvailableTypes(world_, eis), "") << eis;
    EXPECT_EQ(DetailsOf(eis), "invalid") << eis;
  }
}

TEST_F(Search, UnknownTagsAreSkipped) {
  EXPECT_EQ(SpellOf("<MID>map<*><GEOC>Ger<*><POP>1<*>"), SpellOf("<GEOC>Ger<*>"));
}

TEST_F(Search, AnUnclosedValueCounts) {
  EXPECT_EQ(SpellOf("<GEOC>Germany<GEOS>Ba"), SpellOf("<GEOC>Germany<*><GEOS>Ba<*>"));
}

TEST_F(Search, PairsMayStandInAnyOrderAndTwice) {
  const std::string expected = SpellOf("<GEOC>Germany<*><GEOS>Bayern<*><CTY>M<*>");
  EXPECT_EQ(SpellOf("<CTY>M<*><GEOS>Bayern<*><GEOC>Germany<*>"), expected);
  EXPECT_EQ(SpellOf("<GEOC>Germany<*><GEOC>GERMANY<*><GEOS>Bayern<*><CTY>M<*>"), expected);
  EXPECT_EQ(SpellOf("<CTR>Germany<*><STA>Bayern<*><CTY>M<*>"), expected);
}

TEST_F(Search, AMegabyteOfGarbageIsRead) {
  const struct {
    const char* part;
    const char* answer;
  } kRows[] = {
      {"<", "invalid"},         {"<A>", "invalid"},        {"<*>", "invalid"},
      {"\xFF", "invalid"},      {"<GEOC>", "CGU//4"},      {"<GEOC>x", "//0"},
      {"<GEOC>\xFF<*>", "//0"}, {"A>Germany<", "invalid"}, {"<GEOC>Ger<*><GEOS>", "invalid"},
  };
  for (const auto& row : kRows) {
    std::string garbage;
    while (garbage.size() < 1000000) garbage += row.part;
    EXPECT_EQ(SpellOf(garbage), row.answer) << row.part;
    EXPECT_EQ(DetailsOf(garbage), "invalid") << row.part;
  }
  const std::string value = "<GEOC>" + std::string(1000000, 'G') + "<*>";
  EXPECT_EQ(SpellOf(value), "//0");
}

TEST_F(Search, EveryPrefixOfAnInputIsAnswered) {
  const std::string eis = "<GEOC>Germany<*><GEOS>Bayern<*><CTY>M\u00FCnchen<*>";
  for (std::size_t length = 0; length <= eis.size(); ++length) {
    const std::string part = eis.substr(0, length);
    const SpellResult spelled = Spell(world_, part);
    ListRequest request;
    request.inputEis = part;
    const ListResult listed = List(world_, request);
    EXPECT_EQ(listed.valid, spelled.valid) << part;
    EXPECT_EQ(listed.total, spelled.count) << part;
  }
}

// ---- lists

TEST_F(Search, RowsSayWhatTheInputLeavesOpen) {
  EXPECT_EQ(RowsOf("<GEOC>G<*>"), Rows{"<GEOC>Germany<*>"});
  EXPECT_EQ(RowsOf("<GEOC>Germany<*><GEOS>Ba<*>"), Rows{"<GEOS>Bayern<*>"});
  EXPECT_EQ(RowsOf("<GEOC>Germany<*><CTY>Pass<*>"), Rows{"<GEOS>Bayern<*><CTY>Passau<*>"});
  EXPECT_EQ(RowsOf("<CTY>Pass<*>"), Rows{"<GEOC>Germany<*><GEOS>Bayern<*><CTY>Passau<*>"});
  EXPECT_EQ(RowsOf("<GEOC><*><GEOS>Bay<*>"), Rows{"<GEOC>Germany<*><GEOS>Bayern<*>"});
}

TEST_F(Search, ListSortsByName) {
  const Rows ascending = {"<CTY>Memmingen<*>", "<CTY>M\u00FChldorf<*>", "<CTY>M\u00FCnchen<*>"};
  const Rows descending(ascending.rbegin(), ascending.rend());
  EXPECT_EQ(RowsOf("<GEOC>Germany<*><GEOS>Bayern<*><CTY>M<*>"), ascending);
  EXPECT_EQ(RowsOf("<GEOC>Germany<*><GEOS>Bayern<*><CTY>M<*>", ListOrder::descending), descending);
}

TEST_F(Search, ListSortsBySizeByDefault) {
  const Rows expected = {"<CTY>M\u00FCnchen<*>", "<CTY>Memmingen<*>", "<CTY>M\u00FChldorf<*>"};
  const char* eis = "<GEOC>Germany<*><GEOS>Bayern<*><CTY>M<*>";
  EXPECT_EQ(RowsOf(eis, ListOrder::defaultSort), expected);
  EXPECT_EQ(RowsOf(eis, static_cast<ListOrder>(3)), expected);
  EXPECT_EQ(RowsOf(eis, ListOrder::nearFirst), expected);  // near to what?
}

TEST_F(Search, ListSortsByDistance) {
  const char* eis = "<GEOC>Germany<*><GEOS><*><GEO>13.4 48.5<*>";
  const Rows nearFirst = {"<GEOS>Bayern<*>", "<GEOS>Hessen<*>", "<GEOS>Berlin<*>"};
  EXPECT_EQ(RowsOf(eis, ListOrder::nearFirst), nearFirst);
  EXPECT_EQ(RowsOf(eis, ListOrder::farFirst), Rows(nearFirst.rbegin(), nearFirst.rend()));

  ListRequest request;
  request.inputEis = "<GEOC>Germany<*><GEOS><*>";
  request.order = ListOrder::nearFirst;
  request.from = Position{13.4, 52.5};
  const Rows fromBerlin = {"<GEOS>Berlin<*>", "<GEOS>Hessen<*>", "<GEOS>Bayern<*>"};
  EXPECT_EQ(List(world_, request).rows, fromBerlin);
  request.inputEis = eis;  // its own position goes before
  EXPECT_EQ(List(world_, request).rows, nearFirst);
}

TEST_F(Search, ListSortsByHierarchy) {
  const Rows expected = {
      "<GEOC>Canada<*><GEOS>Ontario<*><CTY>London<*>",
      "<GEOC>United Kingdom<*><GEOS>England<*><CTY>London<*>",
      "<GEOC>United Kingdom<*><GEOS>Northern Ireland<*><CTY>Londonderry<*>",
  };
  EXPECT_EQ(RowsOf("<CTY>Lon<*>", ListOrder::hierarchicalSort), expected);
  EXPECT_EQ(RowsOf("<CTY>Lon<*>", ListOrder::hierarchicalDescSort),
            Rows(expected.rbegin(), expected.rend()));
}

TEST_F(Search, NamesakesSortByWhereTheyLie) {
  const Rows expected = {"<GEOS>Illinois<*><CTY>Springfield<*>",
                         "<GEOS>Missouri<*><CTY>Springfield<*>"};
  EXPECT_EQ(RowsOf("<GEOC>United States of America<*><CTY>S<*>"), expected);
}

TEST_F(Search, APositionAskedAboutListsAllTheNearestFirst) {
  const Rows rows = RowsOf("<GEOC>-1.0 52.0<*>", ListOrder::defaultSort);
  const Rows expected = {"<GEOC>United Kingdom<*>", "<GEOC>Germany<*>", "<GEOC>Canada<*>",
                         "<GEOC>United States of America<*>"};
  EXPECT_EQ(rows, expected);
}

TEST_F(Search, APositionChosenMeansTheNearest) {
  EXPECT_EQ(RowsOf("<GEOC>11.5 48.1<*><GEOS>H<*>"), Rows{"<GEOS>Hessen<*>"});
  EXPECT_EQ(RowsOf("<GEOC>Germany<*><GEOS>8.7 50.6<*><CTY><*>"), Rows{"<CTY>Gie\u00DFen<*>"});
  EXPECT_EQ(RowsOf("<GEOS>8.7 50.6<*><CTY><*>"), Rows{"<CTY>Gie\u00DFen<*>"});
  EXPECT_EQ(AvailableTypes(world_, "<GEOC>11.5 48.1<*>"), "<GEOS>3<*><CTY>6<*>");
}

TEST_F(Search, RowsCarryTheFieldsAskedFor) {
  const char* eis = "<GEOC>Germany<*><CTY>Pass<*>";
  const std::string row = "<GEOS>Bayern<*><CTY>Passau<*>";
  const auto with = [&](std::vector<std::string> fields) {
    return RowsOf(eis, ListOrder::ascending, std::move(fields)).at(0);
  };
  EXPECT_EQ(with({"Default"}), row);
  EXPECT_EQ(with({"GEO"}), row + "<GEO>13.43122 48.56650<*>");
  EXPECT_EQ(with({"<POP>", "<GEO>"}), row + "<POP>50566<*><GEO>13.43122 48.56650<*>");
  EXPECT_EQ(with({"<STA>", "<CTY>", "<CTR>"}), row + "<CTR>Germany<*>");
  EXPECT_EQ(with({"ALL"}), row + "<CTR>Germany<*><GEO>13.43122 48.56650<*><POP>50566<*>");
  EXPECT_EQ(with({"POP", "<POP>", "POP"}), row + "<POP>50566<*>");
  EXPECT_EQ(with({"<ZIP>", "", "<", "<>", "DST"}), row);
}

TEST_F(Search, RowsCarryDistancesInMetres) {
  ListRequest request;
  request.inputEis = "<GEOC>Germany<*><CTY>Pass<*>";
  request.fields = {"DST"};
  request.from = Position{13.43122, 48.57650};  // a hundredth of a degree north
  EXPECT_EQ(List(world_, request).rows, Rows{"<GEOS>Bayern<*><CTY>Passau<*><DST>1111<*>"});
}

TEST_F(Search, ARowBehindItsPathIsAnInput) {
  const std::string path = "<GEOC>Germany<*>";
  const std::string row = RowsOf(path + "<CTY>Pass<*>", ListOrder::ascending, {"ALL"}).at(0);
  EXPECT_EQ(SpellOf(path + row), "//1!");
  EXPECT_EQ(AvailableTypes(world_, path + row), "");
  EXPECT_EQ(DetailsOf(path + row, {"CTY"}), "<CTY>Passau<*>");
}

TEST_F(Search, ListPagesFromOne) {
  const struct {
    std::int32_t start;
    std::int32_t count;
    Rows rows;
    bool complete;
    std::int32_t startOut;
  } kRows[] = {
      {1, 1, {"<GEOC>Canada<*>"}, false, 1},
      {2, 2, {"<GEOC>Germany<*>", "<GEOC>United Kingdom<*>"}, false, 2},
      {4, 1, {"<GEOC>United States of America<*>"}, true, 4},
      {4, 9, {"<GEOC>United States of America<*>"}, true, 4},
      {4, -1, {"<GEOC>United States of America<*>"}, true, 4},
      {5, 1, {}, true, 5},
      {2147483647, 2147483647, {}, true, 2147483647},
      {1, 0, {}, false, 1},
      {0, 1, {"<GEOC>Canada<*>"}, false, 1},
      {-2147483647 - 1, 1, {"<GEOC>Canada<*>"}, false, 1},
  };
  for (const auto& row : kRows) {
    ListRequest request;
    request.startIndex = row.start;
    request.count = row.count;
    request.order = ListOrder::ascending;
    const ListResult result = List(world_, request);
    EXPECT_TRUE(result.valid);
    EXPECT_EQ(result.total, 4);
    EXPECT_EQ(result.rows, row.rows) << row.start << " " << row.count;
    EXPECT_EQ(result.complete, row.complete) << row.start << " " << row.count;
    EXPECT_EQ(result.startIndex, row.startOut);
  }
}

// ---- available types and details

TEST_F(Search, AvailableTypesTellWhatComesNext) {
  EXPECT_EQ(AvailableTypes(world_, ""), "<GEOC>4<*>");
  EXPECT_EQ(AvailableTypes(world_, "<GEOC><*>"), "<GEOC>4<*>");
  EXPECT_EQ(AvailableTypes(world_, "<GEOC>Germany<*>"), "<GEOS>3<*><CTY>6<*>");
  EXPECT_EQ(AvailableTypes(world_, "<GEOC>Germany<*><GEOS>Bayern<*>"), "<CTY>4<*>");
  EXPECT_EQ(AvailableTypes(world_, "<GEOC>Germany<*><CTY>Passau<*>"), "");
  EXPECT_EQ(AvailableTypes(world_, "<GEOC>Ger<*>"), "");
}

TEST_F(Search, DetailsAnswerTheFieldsInTheirOrder) {
  const char* eis = "<GEOC>Germany<*><CTY>Passau<*>";
  const std::string all =
      "<CTR>Germany<*><STA>Bayern<*><CTY>Passau<*><GEO>13.43122 48.56650<*><POP>50566<*>";
  EXPECT_EQ(DetailsOf(eis), all);
  EXPECT_EQ(DetailsOf(eis, {"Default"}), all);
  EXPECT_EQ(DetailsOf(eis, {"<ALL>"}), all);
  EXPECT_EQ(DetailsOf(eis, {"<GEO>", "STA"}), "<GEO>13.43122 48.56650<*><STA>Bayern<*>");
  EXPECT_EQ(DetailsOf(eis, {"<ZIP>", "<TEL>"}), "");
}

TEST_F(Search, DetailsOfACountryLieInItsLargestTown) {
  EXPECT_EQ(DetailsOf("<GEOC>Germany<*>", {"CTR", "STA", "CTY", "GEO"}),
            "<CTR>Germany<*><GEO>13.41053 52.52437<*>");
}

TEST_F(Search, DetailsOfNamesakesAreThoseOfTheLargest) {
  const DetailsResult result = Details(world_, "<CTY>London<*>", {"CTR"});
  EXPECT_EQ(result.matches, 2);
  EXPECT_EQ(result.outputEis, "<CTR>United Kingdom<*>");
  EXPECT_DOUBLE_EQ(result.position.longitude, -0.12574);
}

TEST_F(Search, DetailsOfAPositionAreThoseOfTheNearestTown) {
  EXPECT_EQ(DetailsOf("<GEO>-81.0 43.0<*>", {"CTR", "CTY"}), "<CTR>Canada<*><CTY>London<*>");
  EXPECT_EQ(DetailsOf("<GEO>13.43122 48.57650<*>", {"CTY", "DST"}), "<CTY>Passau<*><DST>1111<*>");
}

TEST_F(Search, DetailsCanBeSentBack) {
  const std::string details = DetailsOf("<GEOC>Germany<*><CTY>Passau<*>");
  EXPECT_EQ(DetailsOf(details), details);
}

TEST_F(Search, DetailsNeedAPlace) {
  for (const char* eis : {"", "<GEOC><*>", "<GEOC>Ger<*>", "<GEOC>Canada<*><CTY>Passau<*>"}) {
    EXPECT_EQ(DetailsOf(eis), "invalid") << eis;
  }
}

TEST(EmptyWorld, AnswersNothing) {
  const World nowhere;
  EXPECT_FALSE(Spell(nowhere, "").valid);
  EXPECT_FALSE(List(nowhere, {}).valid);
  EXPECT_FALSE(Details(nowhere, "<GEO>0 0<*>", {}).valid);
  EXPECT_EQ(AvailableTypes(nowhere, "<GEOC>1 1<*>"), "");
}

}  // namespace
}  // namespace ventrik::bench
