// SPDX-License-Identifier: Apache-2.0
#include "bench/world.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "tests/bench/built_in_world.h"

namespace ventrik::bench {
namespace {

constexpr char kPassau[] = "DE\tGermany\tBayern\tPassau\t48.56650\t13.43122\t50566\n";
constexpr char kPau[] = "FR\tFrance\tNouvelle-Aquitaine\tPau\t43.31117\t-0.35583\t82697\n";

std::string ErrorOf(const std::string& text) {
  std::string error;
  EXPECT_FALSE(World::Parse(text, error)) << text;
  return error;
}

TEST(WorldParse, GathersPlacesByCountryAndState) {
  std::string error;
  const auto world = World::Parse(
      std::string("# comment\n\n") + kPassau + kPau + "DE\tGermany\tBayern\tHof\t50.3\t11.9\t45173",
      error);
  ASSERT_TRUE(world) << error;
  ASSERT_EQ(world->countries.size(), 2u);
  const Country& germany = world->countries[0];
  EXPECT_EQ(germany.code, "DE");
  EXPECT_EQ(germany.name.text, "Germany");
  EXPECT_EQ(germany.population, 50566u + 45173u);
  ASSERT_EQ(germany.states.size(), 1u);
  EXPECT_EQ(germany.states[0].population, 50566u + 45173u);
  ASSERT_EQ(germany.states[0].towns.size(), 2u);
  EXPECT_EQ(germany.states[0].towns[1].name.text, "Hof");
  const Town& pau = world->countries[1].states[0].towns[0];
  EXPECT_DOUBLE_EQ(pau.position.latitude, 43.31117);
  EXPECT_DOUBLE_EQ(pau.position.longitude, -0.35583);
  EXPECT_EQ(pau.population, 82697u);
}

TEST(WorldParse, NamesTheErrorAndItsLine) {
  const struct {
    const char* line;
    const char* error;
  } kRows[] = {
      {"DE\tGermany\tBayern\tHof\t50.3\t11.9", "not seven fields"},
      {"DE\tGermany\tBayern\tHof\t50.3\t11.9\t1\t2", "not seven fields"},
      {"de\tGermany\tBayern\tHof\t50.3\t11.9\t1", "bad country code"},
      {"DEU\tGermany\tBayern\tHof\t50.3\t11.9\t1", "bad country code"},
      {"DE\t\tBayern\tHof\t50.3\t11.9\t1", "bad name"},
      {"DE\tGermany\tBayern\tH<f\t50.3\t11.9\t1", "bad name"},
      {"DE\tGermany\tBay\"ern\tHof\t50.3\t11.9\t1", "bad name"},
      {"DE\tGermany\tBayern\tH\xFF"
       "f\t50.3\t11.9\t1",
       "bad name"},
      {"DE\tGermany\tBayern\tHof\t90.1\t11.9\t1", "bad latitude"},
      {"DE\tGermany\tBayern\tHof\tx\t11.9\t1", "bad latitude"},
      {"DE\tGermany\tBayern\tHof\t50.3\t-180.1\t1", "bad longitude"},
      {"DE\tGermany\tBayern\tHof\t50.3\t11.9.\t1", "bad longitude"},
      {"DE\tGermany\tBayern\tHof\t50.3\t11.9\t-1", "bad population"},
      {"DE\tGermany\tBayern\tHof\t50.3\t11.9\t1 ", "bad population"},
      {"DE\tGermany\tBayern\tHof\t50.3\t11.9\t1000000000", "bad population"},
      {"DE\tGermany\tBayern\tPASSAU\t50.3\t11.9\t1", "town given twice"},
      {"DE\tDeutschland\tBayern\tHof\t50.3\t11.9\t1", "country under two codes or names"},
      {"DD\tGermany\tBayern\tHof\t50.3\t11.9\t1", "country under two codes or names"},
  };
  for (const auto& row : kRows) {
    EXPECT_EQ(ErrorOf(kPassau + std::string(row.line) + "\n"), std::string("line 2: ") + row.error)
        << row.line;
  }
}

TEST(WorldParse, ATextWithoutPlacesIsAnError) {
  EXPECT_EQ(ErrorOf(""), "no places");
  EXPECT_EQ(ErrorOf("# only a comment"), "no places");
}

TEST(WorldParse, EveryPrefixOfALineButItsPopulationIsAnError) {
  const std::string line(kPassau, sizeof kPassau - 2);
  for (std::size_t length = 1; length <= line.rfind('\t') + 1; ++length) {
    EXPECT_NE(ErrorOf(line.substr(0, length)), "") << length;
  }
}

TEST(ParsePosition, TakesTwoPlainDecimals) {
  const struct {
    const char* text;
    double longitude;
    double latitude;
  } kRows[] = {
      {"11.57549 48.13743", 11.57549, 48.13743},
      {"-0.12574 51.50853", -0.12574, 51.50853},
      {"0000000 0000000", 0, 0},
      {"-180 -90", -180, -90},
      {"180.000000 90", 180, 90},
  };
  for (const auto& row : kRows) {
    const auto position = ParsePosition(row.text);
    ASSERT_TRUE(position) << row.text;
    EXPECT_DOUBLE_EQ(position->longitude, row.longitude) << row.text;
    EXPECT_DOUBLE_EQ(position->latitude, row.latitude) << row.text;
  }
}

TEST(ParsePosition, TakesNothingElse) {
  for (const char* text : {"",
                           " ",
                           "11.5",
                           "Bayern",
                           "11.5 ",
                           " 11.5 48",
                           "11.5  48",
                           "11.5 48 ",
                           "11.5,48",
                           "180.1 0",
                           "0 90.1",
                           "0 -90.1",
                           "1e1 4",
                           "+1 4",
                           ". 4",
                           "1. 4",
                           ".5 4",
                           "- 4",
                           "1 --4",
                           "nan 4",
                           "1.0000000001 4",
                           "0000000001 4",
                           "Marseille 01"}) {
    EXPECT_FALSE(ParsePosition(text)) << text;
  }
}

TEST(PositionText, IsReadBack) {
  EXPECT_EQ(PositionText({11.57549, 48.13743}), "11.57549 48.13743");
  EXPECT_EQ(PositionText({-0.12574, -51.5}), "-0.12574 -51.50000");
  EXPECT_EQ(PositionText({-0.000001, 0.00001}), "0.00000 0.00001");
  EXPECT_EQ(PositionText({-180, 90}), "-180.00000 90.00000");
}

TEST(DistanceMetres, AgreesWithKnownDistances) {
  EXPECT_DOUBLE_EQ(DistanceMetres({11, 48}, {11, 48}), 0);
  EXPECT_NEAR(DistanceMetres({0, 0}, {0, 90}), 10007557, 1);        // a quarter of the globe
  EXPECT_NEAR(DistanceMetres({0, 0}, {180, 0}), 20015115, 1);       // the other side
  EXPECT_NEAR(DistanceMetres({179.5, 0}, {-179.5, 0}), 111195, 1);  // across the date line
  EXPECT_NEAR(DistanceMetres({13.41053, 52.52437}, {11.57549, 48.13743}), 504000, 1000);
}

TEST(LoadWorld, ReadsAFile) {
  const std::string path = ::testing::TempDir() + "ventrik_world_test.tsv";
  std::ofstream(path) << kPassau;
  std::string error;
  const auto world = LoadWorld(path, error);
  ASSERT_TRUE(world) << error;
  EXPECT_EQ(world->countries[0].states[0].towns[0].name.text, "Passau");

  std::ofstream(path) << "nonsense";
  EXPECT_FALSE(LoadWorld(path, error));
  EXPECT_EQ(error, path + ": line 1: not seven fields");
  std::remove(path.c_str());
  EXPECT_FALSE(LoadWorld(path, error));
  EXPECT_EQ(error, path + ": can not be read");
}

// ---- the world that the program carries

std::vector<std::string> PlaceLines() {
  std::vector<std::string> lines;
  std::string_view text = BuiltInPlaces();
  while (!text.empty()) {
    const std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(line.size() + 1);
    if (line.front() != '#') lines.emplace_back(line);
  }
  return lines;
}

TEST(BuiltInPlaces, AreOfAUsefulSize) {
  EXPECT_GE(PlaceLines().size(), 3000u);
  EXPECT_LE(PlaceLines().size(), 5000u);
  EXPECT_LT(BuiltInPlaces().size(), 500000u);
}

TEST(BuiltInPlaces, BeginWithTheirSourceAndLicence) {
  EXPECT_NE(BuiltInPlaces().find("# Source: GeoNames"), std::string_view::npos);
  EXPECT_NE(BuiltInPlaces().find("# Licence: Creative Commons Attribution 4.0"),
            std::string_view::npos);
}

TEST(BuiltInPlaces, AreSortedAndUnlike) {
  // A tab sorts before every letter, so whole lines sort as their fields do.
  const auto lines = PlaceLines();
  for (std::size_t index = 1; index < lines.size(); ++index) {
    EXPECT_LT(lines[index - 1], lines[index]);
  }
}

TEST(BuiltInPlaces, EveryLineBecomesATown) {
  std::size_t towns = 0;
  for (const Country& country : BuiltInWorld().countries) {
    for (const State& state : country.states) towns += state.towns.size();
  }
  EXPECT_EQ(towns, PlaceLines().size());
}

TEST(BuiltInPlaces, CoverTheCountries) {
  std::set<std::string> codes;
  for (const Country& country : BuiltInWorld().countries) codes.insert(country.code);
  const std::set<std::string> expected = {"AT", "BE", "CA", "CH", "CZ", "DE", "ES",
                                          "FR", "GB", "HU", "IT", "NL", "PL", "US"};
  EXPECT_EQ(codes, expected);
}

TEST(BuiltInPlaces, LieOnTheirSideOfTheOcean) {
  for (const Country& country : BuiltInWorld().countries) {
    const bool west = country.code == "US" || country.code == "CA";
    for (const State& state : country.states) {
      for (const Town& town : state.towns) {
        EXPECT_TRUE(west ? town.position.longitude < -50 : town.position.longitude > -20)
            << town.name.text;
        EXPECT_GT(town.position.latitude, 18) << town.name.text;
        EXPECT_LT(town.position.latitude, 72) << town.name.text;
        EXPECT_GT(town.population, 0u) << town.name.text;
      }
    }
  }
}

TEST(BuiltInPlaces, NoNameReadsAsAPosition) {
  for (const Country& country : BuiltInWorld().countries) {
    EXPECT_FALSE(ParsePosition(country.name.text));
    for (const State& state : country.states) {
      EXPECT_FALSE(ParsePosition(state.name.text));
      for (const Town& town : state.towns) EXPECT_FALSE(ParsePosition(town.name.text));
    }
  }
}

TEST(BuiltInPlaces, HoldWhatTravellersKnow) {
  const std::tuple<const char*, const char*, const char*> kKnown[] = {
      {"Germany", "Bayern", "M\u00FCnchen"},
      {"Austria", "Wien", "Wien"},
      {"Poland", "Ma\u0142opolskie", "Krak\u00F3w"},
      {"United Kingdom", "England", "London"},
      {"United States of America", "California", "Los Angeles"},
      {"Canada", "Qu\u00E9bec", "Montreal"},
      {"France", "\u00CEle-de-France", "Paris"},
      {"Switzerland", "Gen\u00E8ve", "Gen\u00E8ve"},
      {"Hungary", "Budapest", "Budapest"},
  };
  const std::string text = std::string(BuiltInPlaces());
  for (const auto& [country, state, town] : kKnown) {
    const std::string fields = std::string("\t") + country + "\t" + state + "\t" + town + "\t";
    EXPECT_NE(text.find(fields), std::string::npos) << fields;
  }
}

}  // namespace
}  // namespace ventrik::bench
