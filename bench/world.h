// SPDX-License-Identifier: Apache-2.0
// The world of the bench engine: countries, their states and their towns, as read from a text.
//
// The text is one place a line, tab-separated: country code, country, state, town, latitude,
// longitude, population; "#" begins a comment line. world/SOURCE.md tells where the data comes
// from. A World does not change once it is made, so any thread may read it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "bench/letters.h"

namespace ventrik::bench {

// Degrees, WGS 84.
struct Position {
  double longitude = 0;  // -180 to 180, east positive
  double latitude = 0;   // -90 to 90, north positive
};

// Great-circle distance in metres.
double DistanceMetres(const Position& from, const Position& to);

// The text form of a position: longitude, one blank, latitude, plain decimals.
//   "11.57549 48.13743" => {11.57549, 48.13743}     "0000000 0000000" => {0, 0}
//   "Bayern", "11.5", "11.5  48", "11.5 98", "1e1 4" => none
std::optional<Position> ParsePosition(std::string_view text);
std::string PositionText(const Position& position);  // with five decimals

struct Town {
  Name name;
  Position position;
  std::uint64_t population;
};

struct State {
  Name name;
  std::uint64_t population;  // of its towns
  std::vector<Town> towns;   // at least one; no two of the same name
};

struct Country {
  std::string code;  // two capital letters
  Name name;
  std::uint64_t population;   // of its towns
  std::vector<State> states;  // at least one; no two of the same name
};

struct World {
  std::vector<Country> countries;  // everything in the order of the text

  // All of `text`, or nothing and the first error in `error`, as "line 12: bad latitude". A text
  // without places is an error. Names are the same when they are spelled alike (letters.h).
  static std::optional<World> Parse(std::string_view text, std::string& error);
};

// The text that was built into the program; it lives as long as the program.
std::string_view BuiltInPlaces();

// Reads the file and parses it. On failure nothing, and `error` begins with the path.
std::optional<World> LoadWorld(const std::string& path, std::string& error);

}  // namespace ventrik::bench
