// SPDX-License-Identifier: Apache-2.0
// The searches of the bench engine: what a person may type next, what there is to choose, and what
// is known about the choice.
//
// The input is tagged text (eis.h) that names a place from the country down:
//
//   GEOC  country   <GEOC>Germany<*>
//   GEOS  state     <GEOS>Bayern<*>
//   CTY   town      <CTY>München<*>
//   GEO   a position, longitude first: <GEO>11.57549 48.13743<*>
//
// These are the tags that a tester asks with: GEOC and GEOS take a name or a position, CTY and GEO
// are what it asks the details of a place by, beside CTR and STA, which are read as GEOC and GEOS
// so that details can be sent back as input. Other tags are skipped.
//
// The pairs may stand in any order. The deepest of the three that is given is the one asked about;
// the others are taken as chosen and must be whole names. Levels may be left out or empty, and a
// level may be said twice if it says the same. Names are compared as letters.h folds them. Instead
// of a name, a value may be a position, as in <GEOC>11.57549 48.13743<*>: chosen, it means the
// country, state or town of the town that is nearest; asked about, it lets everything pass and
// sorts by distance.
//
// Rows and details are tagged text again, so an answer can be put behind the path that it was asked
// for, as it stands, and makes the next input. Pure functions; any text gives an answer.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "bench/world.h"

namespace ventrik::bench {

inline constexpr std::int32_t kMaxListRows = 1000;  // in one answer

struct SpellResult {
  bool valid = false;                   // the input is understood and what it chose exists
  std::string nextAvailableCharacters;  // UTF-8, by code point, each once, as the names write them
  std::string offeredCharacters;  // UTF-8; what every match goes on with, as the largest has it
  std::int32_t count = 0;         // matches
  bool fullMatch = false;         // what was typed is the whole name of a match
};

// What can follow the typed beginning of a name. No input asks for a country.
//   "<GEOC>Ger<*>"                  => next "m", offered "many", 1 match
//   "<GEOC>Germany<*><GEOS>B<*>"    => next "aer", offered "", 5 matches
//   "<GEOC>Germany<*>"              => no next, nothing offered, 1 match, a full one
//   "<GEOC>Xa<*>"                   => valid, but no match
//   "<GEOC>Xa<*><GEOS>B<*>", "abc"  => not valid
// A position has nothing to spell: only the count is given.
SpellResult Spell(const World& world, std::string_view inputEis);

// The numbers are those of the wire; a number that is none of them counts as the default.
enum class ListOrder : std::int32_t {
  defaultSort = 0,  // the largest first; the nearest first where a position is asked about
  ascending = 1,    // by folded name
  descending = 2,
  nearFirst = 4,  // by distance; the default if no position is known
  farFirst = 8,
  hierarchicalSort = 16,  // by country, state and town
  hierarchicalDescSort = 32,
};

struct ListRequest {
  std::string_view inputEis;    // as for Spell
  std::int32_t startIndex = 1;  // the first row is 1; less than that counts as 1
  std::int32_t count = -1;      // rows; less than 0 for all, kMaxListRows at most
  ListOrder order = ListOrder::defaultSort;
  std::vector<std::string> fields;  // as for Details; "Default" and unknown ones add nothing
  std::optional<Position> from;     // for distances; a position in the input goes before it
};

struct ListResult {
  bool valid = false;  // as in SpellResult
  std::int32_t startIndex = 1;
  std::int32_t total = 0;         // matches, not only the rows here
  bool complete = true;           // nothing follows the last row
  std::vector<std::string> rows;  // tagged text
};

// The matches. A row says the level asked about and before it those that the input leaves open; a
// field that would say one of these names again gives nothing.
//   "<GEOC><*>"                      => "<GEOC>United States of America<*>", "<GEOC>Germany<*>",
//   ...
//   "<GEOC>Germany<*><CTY>Pass<*>"   => "<GEOS>Bayern<*><CTY>Passau<*>"
//   the same with the field "GEO"    => "<GEOS>Bayern<*><CTY>Passau<*><GEO>13.43122 48.56650<*>"
ListResult List(const World& world, const ListRequest& request);

// What can be asked about once the input is chosen: tags, each with the number of its matches.
//   ""                               => "<GEOC>14<*>"
//   "<GEOC>Germany<*>"               => "<GEOS>16<*><CTY>500<*>"
//   "<GEOC>Germany<*><CTY>Passau<*>", "<GEOC>Ger<*>", "abc" => ""
std::string AvailableTypes(const World& world, std::string_view inputEis);

struct DetailsResult {
  bool valid = false;        // the input names a place
  std::int32_t matches = 0;  // more than 1: there are more places of that name, this is the largest
  Position position;         // of the place; of the largest town of a country or state
  std::string outputEis;
};

// What is known about a place. An input with a GEO and no name means the nearest town.
//
// A field is a tag with or without brackets: CTR, STA, CTY (names), GEO (position), POP
// (population), DST (metres from `from`, or from the input's GEO). "ALL" stands for CTR, STA, CTY,
// GEO and POP; no fields, and the one field "Default", ask for all. A field given twice counts
// once; unknown ones, and those that the place does not have, give nothing.
//   "<GEOC>Germany<*><CTY>Passau<*>", {"<STA>", "GEO"} => "<STA>Bayern<*><GEO>13.43122 48.56650<*>"
DetailsResult Details(const World& world, std::string_view inputEis,
                      const std::vector<std::string>& fields,
                      const std::optional<Position>& from = std::nullopt);

}  // namespace ventrik::bench
