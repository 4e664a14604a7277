// SPDX-License-Identifier: Apache-2.0
#include "bench/model/traffic_events.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <limits>
#include <utility>

#include "bench/eis.h"

namespace ventrik::bench {
namespace {

constexpr std::int32_t kUsualAge = 15;  // minutes

struct CodeMeaning {
  std::int32_t code;
  const char* phrase;
  TrafficWeight weight;
  int delay;  // minutes
};

constexpr TrafficWeight kClears = TrafficWeight::clears;
constexpr TrafficWeight kInforms = TrafficWeight::informs;
constexpr TrafficWeight kSlows = TrafficWeight::slows;
constexpr TrafficWeight kBlocks = TrafficWeight::blocks;

// The codes of broadcast traffic messages that tests use, and their neighbours. ORDER code.
constexpr CodeMeaning kCodes[] = {
    {1, "traffic problem", kSlows, 5},
    {101, "stationary traffic", kBlocks, 20},
    {102, "stationary traffic for 1 km", kBlocks, 10},
    {103, "stationary traffic for 2 km", kBlocks, 15},
    {104, "stationary traffic for 4 km", kBlocks, 20},
    {105, "stationary traffic for 6 km", kBlocks, 30},
    {106, "stationary traffic for 10 km", kBlocks, 45},
    {108, "queuing traffic", kSlows, 10},
    {115, "slow traffic", kSlows, 5},
    {122, "heavy traffic", kSlows, 3},
    {124, "traffic flowing freely", kInforms, 0},
    {125, "traffic building up", kSlows, 3},
    {126, "no problems to report", kInforms, 0},
    {127, "traffic congestion cleared", kClears, 0},
    {128, "message cancelled", kClears, 0},
    {201, "accident", kBlocks, 20},
    {333, "accident cleared", kClears, 0},
    {334, "message cancelled", kClears, 0},
    {395, "road cleared", kClears, 0},
    {396, "incident cleared", kClears, 0},
    {399, "message cancelled", kClears, 0},
    {401, "closed", kBlocks, 60},
    {402, "blocked", kBlocks, 60},
    {466, "slip roads reopened", kClears, 0},
    {467, "reopened", kClears, 0},
    {468, "message cancelled", kClears, 0},
    {701, "roadworks", kSlows, 5},
    {800, "roadworks cleared", kClears, 0},
    {801, "message cancelled", kClears, 0},
    {802, "long-term roadworks", kSlows, 5},
    {803, "construction work", kSlows, 5},
    {806, "water main work", kSlows, 5},
    {807, "gas main work", kSlows, 5},
    {1601, "delays", kSlows, 10},
    {1602, "delays up to 15 minutes", kSlows, 15},
    {1603, "delays up to 30 minutes", kBlocks, 30},
};

// A code that the table doesn't have is taken for a small hindrance.
CodeMeaning MeaningOf(std::int32_t code) {
  const auto* found = std::find_if(std::begin(kCodes), std::end(kCodes),
                                   [code](const CodeMeaning& row) { return row.code == code; });
  return found == std::end(kCodes) ? CodeMeaning{code, nullptr, kSlows, 5} : *found;
}

std::optional<std::int64_t> ParseNumber(std::string_view text, std::int64_t least,
                                        std::int64_t most) {
  std::int64_t number = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || stop != end || number < least || number > most) return std::nullopt;
  return number;
}

std::optional<std::int64_t> ParseEventNumber(std::string_view text) {
  return ParseNumber(text, 0, std::numeric_limits<std::uint32_t>::max());
}

// The words of a message, by name.
class Words {
 public:
  explicit Words(std::string_view text) {
    while (!text.empty() && words_.size() < kMostWords) {
      const std::size_t begin = std::min(text.find_first_not_of(kBlanks), text.size());
      text.remove_prefix(begin);
      const std::size_t size = std::min(text.find_first_of(kBlanks), text.size());
      if (size > 0) words_.push_back(text.substr(0, size));
      text.remove_prefix(size);
    }
  }

  bool StartWith(std::string_view word) const { return !words_.empty() && words_[0] == word; }

  // What stands behind "NAME="; empty if nothing does.
  std::string_view Value(const std::string& name) const {
    const std::string start = name + "=";
    const auto found = std::find_if(words_.begin(), words_.end(), [&](std::string_view word) {
      return word.substr(0, start.size()) == start;
    });
    return found == words_.end() ? std::string_view() : found->substr(start.size());
  }

  std::optional<std::int32_t> Number(const std::string& name, std::int32_t least,
                                     std::int32_t most) const {
    const auto number = ParseNumber(Value(name), least, most);
    if (!number) return std::nullopt;
    return static_cast<std::int32_t>(*number);
  }

 private:
  static constexpr std::string_view kBlanks = " \t\r\n";
  static constexpr std::size_t kMostWords = 64;

  std::vector<std::string_view> words_;
};

struct Happening {
  CodeMeaning meaning;
  std::optional<std::int32_t> kilometres;
};

std::vector<Happening> Happenings(const Words& words) {
  std::vector<Happening> happenings;
  for (std::int32_t i = 1; i <= kMostCodes; ++i) {
    const std::string index = std::to_string(i);
    const auto code = words.Number("event_" + index, 1, 2047);
    if (code) happenings.push_back({MeaningOf(*code), words.Number("len_" + index, 1, 1000)});
  }
  return happenings;
}

std::string PhraseOf(const Happening& happening) {
  std::string phrase = happening.meaning.phrase != nullptr
                           ? happening.meaning.phrase
                           : "event " + std::to_string(happening.meaning.code);
  if (happening.kilometres) phrase += " for " + std::to_string(*happening.kilometres) + " km";
  return phrase;
}

void AppendPart(std::string& list, const char* separator, const std::string& part) {
  if (!list.empty()) list += separator;
  list += part;
}

// Where it is. There is no table of locations, so that a location is told by its number.
std::string WhereText(const Words& words, std::int32_t location, bool against, bool bothWays) {
  const auto number = [&words](const char* name, std::int32_t most) {
    return std::to_string(words.Number(name, 0, most).value_or(0));
  };
  const char* direction = against ? "negative direction" : "positive direction";
  return "country " + number("cc", 65535) + ", table " + number("ltn", 65535) + ", location " +
         std::to_string(location) + ", extent " + number("extent", 31) + ", " +
         (bothWays ? "both directions" : direction);
}

std::string EventText(std::int64_t number, const std::vector<Happening>& happenings,
                      const std::string& where) {
  std::string codes;
  std::string phrases;
  for (const Happening& happening : happenings) {
    AppendPart(codes, " ", std::to_string(happening.meaning.code));
    AppendPart(phrases, ", ", PhraseOf(happening));
  }
  std::string text;
  AppendEis(text, "TMC", std::to_string(number));
  AppendEis(text, "TEV", codes);
  AppendEis(text, "TET", phrases + "; " + where);
  return text;
}

}  // namespace

std::optional<TrafficNotice> ParseTrafficNotice(std::string_view text) {
  const Words words(text);
  const auto number = ParseEventNumber(words.Value("htmc"));
  if (!words.StartWith("EVENT") || !number) return std::nullopt;

  TrafficNotice notice;
  TrafficEvent& event = notice.event;
  event.number = *number;
  notice.age = std::chrono::minutes(words.Number("age", 0, 1440).value_or(kUsualAge));
  const std::vector<Happening> happenings = Happenings(words);
  const bool over =
      std::any_of(happenings.begin(), happenings.end(),
                  [](const Happening& happening) { return happening.meaning.weight == kClears; });
  notice.clears = over || notice.age.count() == 0;
  if (notice.clears) return notice;

  const auto location = words.Number("loc", 0, 65535);
  if (!location || happenings.empty()) return std::nullopt;
  const bool against = words.Number("dir", 0, 1) == 1;
  const bool bothWays = words.Number("bidi", 0, 1) == 1;
  for (const Happening& happening : happenings) {
    event.weight = std::max(event.weight, happening.meaning.weight);
    event.delay += std::chrono::minutes(happening.meaning.delay);
  }
  event.ahead = bothWays || !against;
  event.text = EventText(*number, happenings, WhereText(words, *location, against, bothWays));
  return notice;
}

std::optional<std::int64_t> NamedTrafficEvent(std::string_view text) {
  const auto tagged = FindEis(ParseEis(text), "TMC");
  return ParseEventNumber(tagged ? *tagged : text);
}

}  // namespace ventrik::bench
