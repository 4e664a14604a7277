// SPDX-License-Identifier: Apache-2.0
#include "bench/search.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <set>

#include "bench/eis.h"
#include "bench/search_query.h"

namespace ventrik::bench {
namespace {

std::int32_t CountOf(const std::vector<Candidate>& candidates) {
  return static_cast<std::int32_t>(candidates.size());
}

bool IsLarger(const Candidate& first, const Candidate& second) {
  return first.Population() > second.Population();
}

// How many letters all the names share from their beginning, folded.
std::size_t SharedLength(const std::vector<Candidate>& matches, Level level) {
  const std::u32string& first = matches.front().NameAt(level).folded;
  std::size_t shared = first.size();
  for (const Candidate& match : matches) {
    const std::u32string& other = match.NameAt(level).folded;
    shared = std::min(shared, other.size());
    const auto end = first.begin() + static_cast<std::ptrdiff_t>(shared);
    shared = static_cast<std::size_t>(std::mismatch(first.begin(), end, other.begin()).first -
                                      first.begin());
  }
  return shared;
}

// ---- lists

struct ListRow {
  Candidate candidate;
  double distance = 0;
};

// Below 0, 0 or above 0: by the names at the levels from `from` on, then by those above, so that
// namesakes stay in one order.
int CompareNames(const Candidate& first, const Candidate& second, std::size_t from, Level last) {
  for (std::size_t level = from; level <= last; ++level) {
    const int order = first.NameAt(level).folded.compare(second.NameAt(level).folded);
    if (order != 0) return order;
  }
  return from == 0 ? 0 : CompareNames(first, second, 0, last);
}

void SortRows(std::vector<ListRow>& rows, ListOrder order, Level level) {
  const auto byName = [level](const ListRow& first, const ListRow& second) {
    return CompareNames(first.candidate, second.candidate, level, level) < 0;
  };
  const auto byHierarchy = [level](const ListRow& first, const ListRow& second) {
    return CompareNames(first.candidate, second.candidate, kCountry, level) < 0;
  };
  const auto byDistance = [](const ListRow& first, const ListRow& second) {
    return first.distance < second.distance;
  };
  std::sort(rows.begin(), rows.end(), byName);
  switch (order) {
    case ListOrder::ascending:
      break;
    case ListOrder::descending:
      std::reverse(rows.begin(), rows.end());
      break;
    case ListOrder::nearFirst:
      std::stable_sort(rows.begin(), rows.end(), byDistance);
      break;
    case ListOrder::farFirst:
      std::stable_sort(rows.rbegin(), rows.rend(), byDistance);
      break;
    case ListOrder::hierarchicalSort:
      std::sort(rows.begin(), rows.end(), byHierarchy);
      break;
    case ListOrder::hierarchicalDescSort:
      std::sort(rows.rbegin(), rows.rend(), byHierarchy);
      break;
    case ListOrder::defaultSort:
    default:
      std::stable_sort(rows.begin(), rows.end(), [](const ListRow& first, const ListRow& second) {
        return IsLarger(first.candidate, second.candidate);
      });
  }
}

// The order to use: the orders by distance need a position, and asking about one is asking by it.
ListOrder EffectiveOrder(ListOrder order, bool hasPosition, bool asksPosition) {
  if (order == ListOrder::nearFirst || order == ListOrder::farFirst) {
    return hasPosition ? order : ListOrder::defaultSort;
  }
  return order == ListOrder::defaultSort && asksPosition ? ListOrder::nearFirst : order;
}

// ---- fields

// ORDER Fields: those that "ALL" stands for come first.
constexpr std::array<std::string_view, 6> kFields = {"CTR", "STA", "CTY", "GEO", "POP", "DST"};
constexpr std::size_t kAllFieldCount = 5;

std::string_view FieldTag(std::string_view field) {
  if (field.size() >= 2 && field.front() == '<' && field.back() == '>') {
    return field.substr(1, field.size() - 2);
  }
  return field;
}

void AddOnce(std::vector<std::string_view>& tags, std::string_view tag) {
  if (std::find(tags.begin(), tags.end(), tag) == tags.end()) tags.push_back(tag);
}

// The known tags that the fields stand for, each once, so that no request makes a row grow.
std::vector<std::string_view> ExpandFields(const std::vector<std::string>& fields) {
  std::vector<std::string_view> tags;
  for (const std::string& field : fields) {
    const std::string_view tag = FieldTag(field);
    for (std::size_t index = 0; index < kFields.size(); ++index) {
      const bool isMeant = tag == kFields[index] || (tag == "ALL" && index < kAllFieldCount);
      if (isMeant) AddOnce(tags, kFields[index]);
    }
  }
  return tags;
}

void AppendField(std::string& text, std::string_view tag, const Candidate& candidate,
                 const std::optional<Position>& from) {
  if (tag == "GEO") {
    AppendEis(text, tag, PositionText(LargestTown(candidate).position));
  } else if (tag == "POP") {
    AppendEis(text, tag, std::to_string(candidate.Population()));
  } else if (tag == "DST" && from) {
    AppendEis(text, tag, std::to_string(static_cast<std::int64_t>(DistanceOf(candidate, *from))));
  } else if (tag == "CTR") {
    AppendEis(text, tag, candidate.country->name.text);
  } else if (tag == "STA" && candidate.state != nullptr) {
    AppendEis(text, tag, candidate.state->name.text);
  } else if (tag == "CTY" && candidate.town != nullptr) {
    AppendEis(text, tag, candidate.town->name.text);
  }
}

// Whether the row says the name of that level, which the path then leaves open.
bool RowSays(const Question& question, std::size_t level) {
  return level == question.level || (level < question.level && question.query.IsOpen(level));
}

std::string RowText(const ListRow& row, const Question& question,
                    const std::vector<std::string_view>& tags,
                    const std::optional<Position>& from) {
  std::string text;
  for (std::size_t level = 0; level < kLevelCount; ++level) {
    if (!RowSays(question, level)) continue;
    AppendEis(text, kLevelTags[level].path, row.candidate.NameAt(level).text);
  }
  for (const std::string_view tag : tags) {
    const auto level = LevelOf(tag);
    if (!level || !RowSays(question, *level)) AppendField(text, tag, row.candidate, from);
  }
  return text;
}

}  // namespace

SpellResult Spell(const World& world, std::string_view inputEis) {
  SpellResult result;
  const auto question = ReadQuestion(world, inputEis);
  if (!question) return result;
  const std::vector<Candidate>& matches = question->matches;
  const Level level = question->level;
  result.valid = true;
  result.count = CountOf(matches);
  if (matches.empty() || question->Asked().position) return result;

  const std::size_t typed = question->Asked().typed.folded.size();
  std::set<char32_t> next;
  for (const Candidate& match : matches) {
    const std::u32string& letters = match.NameAt(level).letters;
    if (letters.size() == typed) result.fullMatch = true;
    if (letters.size() > typed) next.insert(letters[typed]);
  }
  for (const char32_t letter : next) AppendUtf8(result.nextAvailableCharacters, letter);

  const std::size_t shared = SharedLength(matches, level);
  const Candidate& largest = *std::min_element(matches.begin(), matches.end(), IsLarger);
  const std::u32string& letters = largest.NameAt(level).letters;
  for (std::size_t at = typed; at < shared; ++at) AppendUtf8(result.offeredCharacters, letters[at]);
  return result;
}

ListResult List(const World& world, const ListRequest& request) {
  ListResult result;
  result.startIndex = std::max<std::int32_t>(request.startIndex, 1);
  const auto question = ReadQuestion(world, request.inputEis);
  if (!question) return result;
  result.valid = true;
  result.total = CountOf(question->matches);

  const std::optional<Position>& asked = question->Asked().position;
  std::optional<Position> from = asked ? asked : question->query.geo;
  if (!from) from = request.from;
  const ListOrder order = EffectiveOrder(request.order, from.has_value(), asked.has_value());
  std::vector<ListRow> rows;
  rows.reserve(question->matches.size());
  for (const Candidate& match : question->matches) {
    rows.push_back({match, from ? DistanceOf(match, *from) : 0});
  }
  SortRows(rows, order, question->level);

  const std::int32_t begin = std::min(result.startIndex - 1, result.total);
  const std::int32_t wanted = request.count < 0 ? kMaxListRows : request.count;
  const std::int32_t end = begin + std::min({wanted, kMaxListRows, result.total - begin});
  const std::vector<std::string_view> tags = ExpandFields(request.fields);
  for (std::int32_t at = begin; at < end; ++at) {
    const ListRow& row = rows[static_cast<std::size_t>(at)];
    result.rows.push_back(RowText(row, *question, tags, from));
  }
  result.complete = end == result.total;
  return result;
}

std::string AvailableTypes(const World& world, std::string_view inputEis) {
  std::string types;
  Query query = ReadQuery(inputEis);
  PinPositions(world, query, kLevelCount);
  if (!query.valid) return types;
  std::size_t next = kLevelCount;
  while (next > 0 && query.IsOpen(next - 1)) --next;
  if (next == 0) {
    AppendEis(types, kLevelTags[kCountry].path, std::to_string(world.countries.size()));
    return types;
  }
  for (std::size_t level = next; level < kLevelCount; ++level) {
    const auto found = Collect(world, query, static_cast<Level>(level), Match::kWhole);
    if (!found.empty()) AppendEis(types, kLevelTags[level].path, std::to_string(found.size()));
  }
  return types;
}

DetailsResult Details(const World& world, std::string_view inputEis,
                      const std::vector<std::string>& fields, const std::optional<Position>& from) {
  DetailsResult result;
  Query query = ReadQuery(inputEis);
  if (query.geo && !query.Asked()) query.terms[kTown] = Term{{}, query.geo};
  PinPositions(world, query, kLevelCount);
  const auto level = query.Asked();
  if (!query.valid || !level || query.IsOpen(*level)) return result;
  const auto matches = Collect(world, query, *level, Match::kWhole);
  if (matches.empty()) return result;

  const Candidate& place = *std::min_element(matches.begin(), matches.end(), IsLarger);
  result.valid = true;
  result.matches = CountOf(matches);
  result.position = LargestTown(place).position;
  const std::optional<Position>& origin = query.geo ? query.geo : from;
  const bool wantsAll = fields.empty() || (fields.size() == 1 && FieldTag(fields[0]) == "Default");
  const std::vector<std::string> asked = wantsAll ? std::vector<std::string>{"ALL"} : fields;
  for (const std::string_view tag : ExpandFields(asked)) {
    AppendField(result.outputEis, tag, place, origin);
  }
  return result;
}

}  // namespace ventrik::bench
