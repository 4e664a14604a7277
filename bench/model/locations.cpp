// SPDX-License-Identifier: Apache-2.0
#include "bench/model/locations.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "bench/eis.h"
#include "bench/model/engine_state.h"
#include "bench/search_query.h"

namespace ventrik::bench {
namespace {

// A pair of the input and what a search reads in it alone.
struct Element {
  std::string text;
  Query said;
  bool resolved = false;
};

std::vector<Element> ElementsOf(std::string_view inputEis) {
  std::vector<Element> elements;
  for (const EisPair& pair : ParseEis(inputEis)) {
    Element element;
    AppendEis(element.text, pair.tag, pair.value);
    element.said = ReadQuery(element.text);
    elements.push_back(std::move(element));
  }
  return elements;
}

// Takes the term over into the query. Returns false, and leaves the query as it is, if the term is
// empty, names nothing below what is chosen, or contradicts what is chosen at its level.
bool Choose(const World& world, const Term& term, Level level, Query& query) {
  if (term.typed.text.empty() && !term.position) return false;
  Query chosen = query;
  chosen.terms[level] = term;
  PinPositions(world, chosen, level + 1);
  if (Collect(world, chosen, level, Match::kWhole).empty()) return false;
  const auto& before = query.terms[level];
  if (before && !SameName(before->typed, chosen.terms[level]->typed)) return false;
  query = std::move(chosen);
  return true;
}

void ChooseNames(const World& world, std::vector<Element>& elements, Query& query) {
  for (std::size_t index = 0; index < kLevelCount; ++index) {
    for (Element& element : elements) {
      const auto& term = element.said.terms[index];
      if (term) element.resolved = Choose(world, *term, static_cast<Level>(index), query);
    }
  }
}

// The first position is known, and means a town if there is no name.
void ChoosePosition(const World& world, std::vector<Element>& elements, Query& query) {
  const auto found = std::find_if(elements.begin(), elements.end(), [](const Element& element) {
    return element.said.geo.has_value();
  });
  if (found == elements.end()) return;
  found->resolved = query.Asked() || Choose(world, Term{{}, found->said.geo}, kTown, query);
}

bool ShareName(const std::vector<Candidate>& places, std::size_t level) {
  const Name& first = places.front().NameAt(level);
  return std::all_of(places.begin(), places.end(), [&first, level](const Candidate& place) {
    return SameName(place.NameAt(level), first);
  });
}

std::size_t CountNames(const std::vector<Candidate>& places, std::size_t level) {
  std::vector<std::u32string_view> names;
  names.reserve(places.size());
  for (const Candidate& place : places) names.push_back(place.NameAt(level).folded);
  std::sort(names.begin(), names.end());
  const auto end = std::unique(names.begin(), names.end());
  return static_cast<std::size_t>(end - names.begin());
}

void Describe(const std::vector<Candidate>& places, Level deepest, Resolution& resolution) {
  resolution.valid = true;
  for (std::size_t level = 0; level <= deepest; ++level) {
    if (ShareName(places, level)) {
      AppendEis(resolution.outputEis, kLevelTags[level].path, places.front().NameAt(level).text);
    } else if (!resolution.ambiguous) {
      resolution.ambiguous = true;
      AppendEis(resolution.ambiguityType, kLevelTags[level].path,
                std::to_string(CountNames(places, level)));
    }
  }
  if (resolution.ambiguous) return;
  AppendEis(resolution.outputEis, "GEO", PositionText(LargestTown(places.front()).position));
}

void HandleResolve(EngineState& state, const MessageFields& request, TimePoint, Replies& out) {
  const std::string& inputEis = Get<std::string>(request, "inputEIS");
  const Resolution resolution = ResolveLocation(state.world, inputEis);
  out.Answer(RESP_RESOLVE_LOCATION,
             {{"inputEIS", inputEis},
              {"validState", YesOrNo(resolution.valid)},
              {"outputEIS", resolution.outputEis},
              {"ambiguity", YesOrNo(resolution.ambiguous)},
              {"ambiguityType", resolution.ambiguityType},
              {"unresolvedElements", resolution.unresolvedElements}},
             {"inputEIS"});
}

constexpr HandlerRow kHandlers[] = {{REQU_RESOLVE_LOCATION, HandleResolve}};

}  // namespace

Resolution ResolveLocation(const World& world, std::string_view inputEis) {
  Resolution resolution;
  std::vector<Element> elements = ElementsOf(inputEis);
  Query query;
  ChooseNames(world, elements, query);
  ChoosePosition(world, elements, query);
  if (const auto deepest = query.Asked()) {
    Describe(Collect(world, query, *deepest, Match::kWhole), *deepest, resolution);
  }
  for (const Element& element : elements) {
    if (!element.resolved) resolution.unresolvedElements += element.text;
  }
  return resolution;
}

HandlerRows LocationsHandlers() {
  return {std::begin(kHandlers), std::end(kHandlers)};
}

}  // namespace ventrik::bench
