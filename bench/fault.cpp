// SPDX-License-Identifier: Apache-2.0
#include "bench/fault.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>

#include "messages/function_ids.h"

namespace ventrik::bench {
namespace {

struct KindRow {
  const char* name;
  FaultKind kind;
  FaultStage stage;
};

constexpr KindRow kKinds[] = {
    {"refuse", FaultKind::refuse, FaultStage::handshake},
    {"slow", FaultKind::slow, FaultStage::handshake},
    {"unread", FaultKind::unread, FaultStage::request},
    {"miscount", FaultKind::miscount, FaultStage::request},
    {"hang", FaultKind::hang, FaultStage::request},
    {"die", FaultKind::die, FaultStage::request},
    {"restart", FaultKind::restart, FaultStage::request},
    {"drop", FaultKind::drop, FaultStage::answer},
    {"late", FaultKind::late, FaultStage::answer},
    {"duplicate", FaultKind::duplicate, FaultStage::answer},
    {"reorder", FaultKind::reorder, FaultStage::answer},
    {"flood", FaultKind::flood, FaultStage::answer},
    {"oversize", FaultKind::oversize, FaultStage::answer},
    {"unknown", FaultKind::unknown, FaultStage::answer},
    {"truncate", FaultKind::truncate, FaultStage::answer},
    {"lie", FaultKind::lie, FaultStage::answer},
    {"endless", FaultKind::endless, FaultStage::answer},
};

constexpr double kMostSeconds = 86'400;
constexpr std::int32_t kMostCopies = 100'000;
constexpr std::size_t kMostMessages = 1000;  // a client may send any number

const KindRow* FindKind(std::string_view name) {
  const auto* found = std::find_if(std::begin(kKinds), std::end(kKinds),
                                   [name](const KindRow& row) { return row.name == name; });
  return found == std::end(kKinds) ? nullptr : found;
}

const KindRow& RowOf(FaultKind kind) {
  return *std::find_if(std::begin(kKinds), std::end(kKinds),
                       [kind](const KindRow& row) { return row.kind == kind; });
}

template <class Number>
std::optional<Number> Whole(std::string_view text) {
  Number number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

std::optional<double> Decimal(std::string_view text, double most) {
  double number = 0;
  const auto [end, error] =
      std::from_chars(text.data(), text.data() + text.size(), number, std::chars_format::fixed);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  if (!(number >= 0 && number <= most)) return std::nullopt;
  return number;
}

std::optional<std::chrono::milliseconds> Seconds(std::string_view text) {
  const auto number = Decimal(text, kMostSeconds);
  if (!number) return std::nullopt;
  return std::chrono::milliseconds(std::llround(*number * 1000));
}

std::optional<std::int32_t> MessageNumber(std::string_view text) {
  const std::int32_t named = FunctionNumber(text);
  return named != FUNC_INVALID ? std::optional(named) : Whole<std::int32_t>(text);
}

// Stores what was read. Returns whether there was something.
template <class Target, class Value>
bool Store(Target& target, const std::optional<Value>& value) {
  if (value) target = *value;
  return value.has_value();
}

bool SetProbability(Fault& fault, std::string_view text) {
  return Store(fault.probability, Decimal(text, 1));
}

bool SetCopies(Fault& fault, std::string_view text) {
  const auto copies = Whole<std::int32_t>(text);
  return copies && *copies >= 0 && *copies <= kMostCopies && Store(fault.copies, copies);
}

struct ConditionRow {
  const char* key;
  const char* takes;
  bool (*set)(Fault& fault, std::string_view text);
  bool (*applies)(FaultKind kind);  // whether the kind has a use for it
};

bool Always(FaultKind) {
  return true;
}

bool HasMessage(FaultKind kind) {
  return StageOf(kind) != FaultStage::handshake;
}

bool HasDuration(FaultKind kind) {
  return kind == FaultKind::slow || kind == FaultKind::hang || kind == FaultKind::die ||
         kind == FaultKind::restart || kind == FaultKind::late;
}

bool HasCopies(FaultKind kind) {
  return kind == FaultKind::flood;
}

constexpr ConditionRow kConditions[] = {
    {"message", "the name or the number of a message",
     [](Fault& f, std::string_view text) { return Store(f.message, MessageNumber(text)); },
     HasMessage},
    {"after", "a whole number",
     [](Fault& f, std::string_view text) { return Store(f.after, Whole<std::uint64_t>(text)); },
     Always},
    {"times", "a whole number",
     [](Fault& f, std::string_view text) { return Store(f.times, Whole<std::uint64_t>(text)); },
     Always},
    {"from", "seconds, 0 to 86400",
     [](Fault& f, std::string_view text) { return Store(f.from, Seconds(text)); }, Always},
    {"until", "seconds, 0 to 86400",
     [](Fault& f, std::string_view text) { return Store(f.until, Seconds(text)); }, Always},
    {"probability", "a number from 0 to 1", SetProbability, Always},
    {"seconds", "seconds, 0 to 86400",
     [](Fault& f, std::string_view text) { return Store(f.duration, Seconds(text)); }, HasDuration},
    {"copies", "a whole number, 0 to 100000", SetCopies, HasCopies},
};

// Takes the text up to the next comma out of `rest`.
std::string_view TakePart(std::string_view& rest) {
  const std::size_t comma = rest.find(',');
  const std::string_view part = rest.substr(0, comma);
  rest.remove_prefix(comma == std::string_view::npos ? rest.size() : comma + 1);
  return part;
}

bool SetCondition(Fault& fault, std::string_view part, std::string& error) {
  const std::size_t equals = part.find('=');
  const std::string_view key = part.substr(0, equals);
  for (const ConditionRow& row : kConditions) {
    if (row.key != key) continue;
    if (!row.applies(fault.kind)) {
      error = row.key + std::string(" has no effect on this kind");
      return false;
    }
    if (equals != std::string_view::npos && row.set(fault, part.substr(equals + 1))) return true;
    error = std::string(row.key) + " takes " + row.takes;
    return false;
  }
  error = "no condition '" + std::string(key) + "'; there are";
  for (const ConditionRow& row : kConditions) error += std::string(" ") + row.key;
  return false;
}

// Reads the conditions, none of them twice.
bool SetConditions(Fault& fault, std::string_view text, std::string& error) {
  std::vector<std::string_view> keys;
  while (!text.empty()) {
    const std::string_view part = TakePart(text);
    const std::string_view key = part.substr(0, part.find('='));
    if (std::find(keys.begin(), keys.end(), key) != keys.end()) {
      error = std::string(key) + " is there twice";
      return false;
    }
    keys.push_back(key);
    if (!SetCondition(fault, part, error)) return false;
  }
  return true;
}

bool BeginsWith(std::string_view text, std::string_view part) {
  return text.substr(0, part.size()) == part;
}

// Whether the message that the fault waits for can come its way. Of some it is not known, by their
// names, who sends them, and anybody can send any number that isn't in the catalogue.
bool CanMeetItsMessage(const Fault& fault, std::string& error) {
  const char* name = fault.message ? FunctionName(*fault.message) : nullptr;
  if (name == nullptr) return true;
  const bool isAnswer = BeginsWith(name, "RESP_") || BeginsWith(name, "INFO_");
  const bool strikesAnswers = StageOf(fault.kind) == FaultStage::answer;
  if (isAnswer && !strikesAnswers) {
    error = "strikes requests, and " + std::string(name) + " is none";
  } else if (BeginsWith(name, "REQU_") && strikesAnswers) {
    error = "strikes what the engine sends, and " + std::string(name) + " is a request";
  }
  return error.empty();
}

bool HasTime(const Fault& fault, std::string& error) {
  if (!fault.until || *fault.until > fault.from) return true;
  error = "until is not behind from";
  return false;
}

}  // namespace

const char* FaultName(FaultKind kind) {
  return RowOf(kind).name;
}

FaultStage StageOf(FaultKind kind) {
  return RowOf(kind).stage;
}

std::optional<Fault> ParseFault(std::string_view text, std::string& error) {
  const std::string_view name = TakePart(text);
  const KindRow* kind = FindKind(name);
  if (kind == nullptr) {
    error = "no fault '" + std::string(name) + "'; there are";
    for (const KindRow& row : kKinds) error += std::string(" ") + row.name;
    return std::nullopt;
  }
  Fault fault;
  fault.kind = kind->kind;
  std::string reason;
  if (SetConditions(fault, text, reason) && CanMeetItsMessage(fault, reason) &&
      HasTime(fault, reason)) {
    return fault;
  }
  error = std::string(kind->name) + ": " + reason;
  return std::nullopt;
}

Random& ArmedFault::ChanceFor(std::optional<std::int32_t> message) {
  const bool isTold = message && (byMessage_.size() < kMostMessages || byMessage_.count(*message));
  if (!isTold) return random_;
  const std::string series = series_ + " on " + std::to_string(*message);
  return byMessage_.try_emplace(*message, seed_, series).first->second;
}

bool ArmedFault::Strikes(std::optional<std::int32_t> message,
                         std::chrono::milliseconds sinceStart) {
  if (fault_.message && message && *fault_.message != *message) return false;
  if (sinceStart < fault_.from || (fault_.until && sinceStart >= *fault_.until)) return false;
  if (met_++ < fault_.after) return false;
  if (fault_.times && struck_ >= *fault_.times) return false;
  if (!ChanceFor(message).Happens(fault_.probability)) return false;
  ++struck_;
  return true;
}

std::string DescribeFaultsDone(const std::vector<ArmedFault>& faults) {
  std::string text;
  for (const ArmedFault& fault : faults) {
    if (fault.struck() == 0) continue;
    if (!text.empty()) text += ", ";
    text += FaultName(fault.fault().kind);
    text += ' ' + std::to_string(fault.struck());
  }
  return text;
}

}  // namespace ventrik::bench
