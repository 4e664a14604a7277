// SPDX-License-Identifier: Apache-2.0
#include "bench/search_query.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "bench/eis.h"

namespace ventrik::bench {
namespace {

Term MakeTerm(std::string_view value) {
  if (const auto position = ParsePosition(value)) return {{}, position};
  return {MakeName(value), std::nullopt};
}

bool SaysTheSame(const Term& first, const Term& second) {
  if (first.position && second.position) {
    return first.position->longitude == second.position->longitude &&
           first.position->latitude == second.position->latitude;
  }
  return !first.position && !second.position && SameName(first.typed, second.typed);
}

// Calls visit(town as a candidate) for every town in the given country, state or town.
template <class Visit>
void ForEachTown(const Candidate& candidate, const Visit& visit) {
  if (candidate.town != nullptr) return visit(candidate);
  const auto visitState = [&](const State& state) {
    for (const Town& town : state.towns) visit(Candidate{candidate.country, &state, &town});
  };
  if (candidate.state != nullptr) return visitState(*candidate.state);
  for (const State& state : candidate.country->states) visitState(state);
}

// Which names a search at one level lets through.
struct Filter {
  const Query& query;
  Level level;
  Match match;

  bool Admits(std::size_t at, const Name& name) const {
    if (query.IsOpen(at)) return true;
    const Name& typed = query.terms[at]->typed;
    return at == level && match == Match::kBeginning ? BeginsWith(name, typed)
                                                     : SameName(name, typed);
  }
};

// The nearest town of what the levels above `level` choose; none only if they choose nothing.
std::optional<Candidate> NearestTown(const World& world, const Query& query, Level level,
                                     const Position& from) {
  Query above = query;
  for (std::size_t deeper = level; deeper < kLevelCount; ++deeper) above.terms[deeper].reset();
  std::optional<Candidate> nearest;
  double shortest = std::numeric_limits<double>::infinity();
  for (const Candidate& town : Collect(world, above, kTown, Match::kWhole)) {
    const double distance = DistanceMetres(from, town.town->position);
    if (distance < shortest) {
      shortest = distance;
      nearest = town;
    }
  }
  return nearest;
}

}  // namespace

std::optional<Level> LevelOf(std::string_view tag) {
  for (std::size_t level = 0; level < kLevelCount; ++level) {
    if (tag == kLevelTags[level].path || tag == kLevelTags[level].field) {
      return static_cast<Level>(level);
    }
  }
  return std::nullopt;
}

Query ReadQuery(std::string_view inputEis) {
  Query query;
  const std::vector<EisPair> pairs = ParseEis(inputEis);
  for (const EisPair& pair : pairs) {
    if (const auto level = LevelOf(pair.tag)) {
      std::optional<Term>& term = query.terms[*level];
      Term said = MakeTerm(pair.value);
      if (term && !SaysTheSame(*term, said)) query.valid = false;
      if (!term) term = std::move(said);
    } else if (pair.tag == "GEO" && !query.geo) {
      query.geo = ParsePosition(pair.value);
      if (!query.geo) query.valid = false;
    }
  }
  if (!inputEis.empty() && !query.Asked() && !query.geo) query.valid = false;
  return query;
}

void PinPositions(const World& world, Query& query, std::size_t end) {
  for (std::size_t index = 0; index < end; ++index) {
    if (!query.terms[index] || !query.terms[index]->position) continue;
    const Position from = *query.terms[index]->position;
    const auto nearest = NearestTown(world, query, static_cast<Level>(index), from);
    if (!nearest) query.valid = false;
    for (std::size_t level = 0; nearest && level <= index; ++level) {
      query.terms[level] = Term{nearest->NameAt(level), std::nullopt};
    }
  }
}

std::vector<Candidate> Collect(const World& world, const Query& query, Level level, Match match) {
  const Filter filter{query, level, match};
  std::vector<Candidate> found;
  for (const Country& country : world.countries) {
    if (!filter.Admits(kCountry, country.name)) continue;
    if (level == kCountry) {
      found.push_back({&country, nullptr, nullptr});
      continue;
    }
    for (const State& state : country.states) {
      if (!filter.Admits(kState, state.name)) continue;
      if (level == kState) {
        found.push_back({&country, &state, nullptr});
        continue;
      }
      for (const Town& town : state.towns) {
        if (filter.Admits(kTown, town.name)) found.push_back({&country, &state, &town});
      }
    }
  }
  return found;
}

std::optional<Question> ReadQuestion(const World& world, std::string_view inputEis) {
  Question question;
  Query& query = question.query = ReadQuery(inputEis);
  question.level = query.Asked().value_or(kCountry);
  if (!query.terms[question.level]) query.terms[question.level] = Term{};
  PinPositions(world, query, question.level);
  if (!query.valid) return std::nullopt;
  question.matches = Collect(world, query, question.level, Match::kBeginning);
  if (!question.matches.empty()) return question;

  Query open = query;
  open.terms[question.level] = Term{};
  if (Collect(world, open, question.level, Match::kBeginning).empty()) return std::nullopt;
  return question;
}

double DistanceOf(const Candidate& candidate, const Position& from) {
  double nearest = std::numeric_limits<double>::infinity();
  ForEachTown(candidate, [&](const Candidate& town) {
    nearest = std::min(nearest, DistanceMetres(from, town.town->position));
  });
  return nearest;
}

const Town& LargestTown(const Candidate& candidate) {
  const Town* largest = nullptr;
  ForEachTown(candidate, [&largest](const Candidate& town) {
    if (largest == nullptr || town.town->population > largest->population) largest = town.town;
  });
  return *largest;
}

}  // namespace ventrik::bench
