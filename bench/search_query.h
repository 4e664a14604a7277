// SPDX-License-Identifier: Apache-2.0
// The common ground of the searches: the input read into terms, and the places that they admit.
//
// search.h tells what the input means. Every search takes the same three steps: it reads the input,
// pins the positions that are chosen to names, and collects candidates. Pure functions; candidates
// point into the world that they come from.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "bench/world.h"

namespace ventrik::bench {

// ORDER Level: terms, tags and candidates are indexed by these.
enum Level : std::size_t { kCountry, kState, kTown, kLevelCount };

struct LevelTags {
  std::string_view path;   // in rows and available types
  std::string_view field;  // in details; the input may have either
};

inline constexpr std::array<LevelTags, kLevelCount> kLevelTags = {{
    {"GEOC", "CTR"},
    {"GEOS", "STA"},
    {"CTY", "CTY"},
}};

struct Term {
  Name typed;                        // empty admits everything
  std::optional<Position> position;  // instead of a name
};

struct Query {
  bool valid = true;  // the input is understood
  std::array<std::optional<Term>, kLevelCount> terms;
  std::optional<Position> geo;  // the GEO pair's

  // The deepest level that is given.
  std::optional<Level> Asked() const {
    for (std::size_t level = kLevelCount; level-- > 0;) {
      if (terms[level]) return static_cast<Level>(level);
    }
    return std::nullopt;
  }

  bool IsOpen(std::size_t level) const { return !terms[level] || terms[level]->typed.text.empty(); }
};

// A country, state or town with what it lies in; what is deeper than it is null.
struct Candidate {
  const Country* country = nullptr;
  const State* state = nullptr;
  const Town* town = nullptr;

  const Name& NameAt(std::size_t level) const {
    if (level == kTown) return town->name;
    return level == kState ? state->name : country->name;
  }

  std::uint64_t Population() const {
    if (town != nullptr) return town->population;
    return state != nullptr ? state->population : country->population;
  }
};

// The level that a tag names, by either of its tags.
std::optional<Level> LevelOf(std::string_view tag);

Query ReadQuery(std::string_view inputEis);

// Replaces the positions at the levels above `end` by the names of what they mean; clears `valid`
// if there is nothing that they could mean. The levels above such a position that the input leaves
// open are named too, or a namesake might be taken for it.
void PinPositions(const World& world, Query& query, std::size_t end);

// How a name must answer the term of its level.
enum class Match { kWhole, kBeginning };

// All that lies at `level` and answers the terms there and above, in the order of the world.
// `match` is for the level itself; above it the whole name counts. Positions admit everything.
std::vector<Candidate> Collect(const World& world, const Query& query, Level level, Match match);

// The query of a speller or a list: something is asked about, everything above it is chosen.
struct Question {
  Query query;
  Level level = kCountry;
  std::vector<Candidate> matches;

  const Term& Asked() const { return *query.terms[level]; }
};

// Nothing if the input is not understood, or chose what is not there.
std::optional<Question> ReadQuestion(const World& world, std::string_view inputEis);

// Metres from the nearest town of the candidate.
double DistanceOf(const Candidate& candidate, const Position& from);

const Town& LargestTown(const Candidate& candidate);

}  // namespace ventrik::bench
