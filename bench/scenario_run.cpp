// SPDX-License-Identifier: Apache-2.0
#include "bench/scenario_run.h"

#include <algorithm>
#include <utility>

#include "bench/message_name.h"
#include "messages/message_buffer.h"

namespace ventrik::bench {
namespace {

bool Contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

// Whether one of a value's texts contains `part`. Bytes count as a text here; no message has both.
struct TextSearch {
  const std::string& part;

  bool operator()(std::int32_t) const { return false; }
  bool operator()(double) const { return false; }
  bool operator()(const std::vector<std::int32_t>&) const { return false; }
  bool operator()(const std::string& text) const { return Contains(text, part); }
  bool operator()(const std::vector<std::string>& texts) const {
    return std::any_of(texts.begin(), texts.end(), *this);
  }
  bool operator()(const DestinationValues& destinations) const {
    return std::any_of(destinations.begin(), destinations.end(), [this](const auto& destination) {
      return (*this)(destination.first) || (*this)(destination.second);
    });
  }
};

bool HasFields(const MessageFields& message, const MessageFields& wanted) {
  return std::all_of(wanted.begin(), wanted.end(), [&message](const MessageField& field) {
    const FieldValue* value = FindField(message, field.name);
    return value != nullptr && *value == field.value;
  });
}

bool HasText(const MessageFields& message, const std::string& part) {
  return std::any_of(message.begin(), message.end(), [&part](const MessageField& field) {
    return std::visit(TextSearch{part}, field.value);
  });
}

// Whether the message has what the rule asks for.
bool Fits(const ScenarioRule& rule, const MessageFields& message) {
  return HasFields(message, rule.where) && (!rule.contains || HasText(message, *rule.contains));
}

bool LooksInside(const ScenarioRule& rule) {
  return !rule.where.empty() || rule.contains;
}

std::string PathOf(std::size_t rule) {
  return "rules[" + std::to_string(rule) + "]";
}

// What sets the rule off, in words.
std::string OccasionOf(const ScenarioRule& rule) {
  if (rule.period) return "every " + std::to_string(rule.period->count()) + " ms";
  if (!rule.message) return "on connect";
  return "on " + MessageName(*rule.message);
}

}  // namespace

ScenarioRun::ScenarioRun(Scenario scenario, std::uint32_t seed)
    : scenario_(std::move(scenario)), seed_(seed), state_(scenario_.state) {
  for (const ScenarioRule& rule : scenario_.rules) runs_.emplace_back().left = rule.times;
}

ScenarioRun::Outcome ScenarioRun::Connected() {
  return Take(std::nullopt, {nullptr, 0});
}

ScenarioRun::Outcome ScenarioRun::Received(ReceivedBlock message) {
  if (message.size < kWordSize) return {};
  return Take(message.Word(0), message);
}

bool ScenarioRun::IsIn(const ScenarioRule& rule) const {
  return rule.in.empty() || std::find(rule.in.begin(), rule.in.end(), state_) != rule.in.end();
}

ScenarioRun::Outcome ScenarioRun::Take(std::optional<std::int32_t> number, ReceivedBlock message) {
  std::optional<MessageFields> fields;
  std::vector<std::size_t> taken;
  for (std::size_t index = 0; index < runs_.size(); ++index) {
    const ScenarioRule& rule = scenario_.rules[index];
    if (rule.period || rule.message != number || runs_[index].left == 0 || !IsIn(rule)) continue;
    if (LooksInside(rule)) {
      if (!fields) fields = DecodeMessage(message);
      if (!fields || !Fits(rule, *fields)) continue;
    }
    taken.push_back(index);
  }
  Outcome outcome;
  for (const std::size_t index : taken) {
    if (runs_[index].left) --*runs_[index].left;
    outcome.isRuled = true;
    outcome.isInstead = outcome.isInstead || scenario_.rules[index].instead;
    SetOff(index, outcome.posts);
  }
  return outcome;
}

void ScenarioRun::SetOff(std::size_t index, std::vector<Post>& posts) {
  const ScenarioRule& rule = scenario_.rules[index];
  ++runs_[index].setOff;
  if (rule.to) state_ = *rule.to;
  for (const ScenarioMessage& message : rule.send) {
    posts.push_back({DrawDelay(index, message), message.block});
  }
}

Milliseconds ScenarioRun::DrawDelay(std::size_t index, const ScenarioMessage& message) {
  if (message.spread.count() == 0) return message.after;
  std::optional<Random>& chance = runs_[index].chance;
  if (!chance) chance.emplace(seed_, PathOf(index));
  return message.after + Milliseconds(chance->Between(0, message.spread.count()));
}

void ScenarioRun::Begin(IpcPeer* client, TimePoint start) {
  for (const Timer& timer : timers_) {
    if (timer.client == client) return;
  }
  for (std::size_t index = 0; index < runs_.size(); ++index) {
    const ScenarioRule& rule = scenario_.rules[index];
    if (rule.period) timers_.push_back({client, index, start + *rule.period, rule.times});
  }
}

void ScenarioRun::End(IpcPeer* client) {
  const auto isOurs = [client](const Timer& timer) { return timer.client == client; };
  timers_.erase(std::remove_if(timers_.begin(), timers_.end(), isOurs), timers_.end());
}

std::optional<TimePoint> ScenarioRun::NextPeriod() const {
  std::optional<TimePoint> next;
  for (const Timer& timer : timers_) {
    if (timer.left != 0 && (!next || timer.due < *next)) next = timer.due;
  }
  return next;
}

// Of those that were over first, the first one.
std::vector<ScenarioRun::Timer>::iterator ScenarioRun::FirstOver(TimePoint now) {
  auto first = timers_.end();
  for (auto timer = timers_.begin(); timer != timers_.end(); ++timer) {
    if (timer->left == 0 || timer->due > now) continue;
    if (first == timers_.end() || timer->due < first->due) first = timer;
  }
  return first;
}

std::vector<ScenarioRun::PeriodOutcome> ScenarioRun::TakePeriods(TimePoint now) {
  std::vector<PeriodOutcome> outcomes;
  for (auto timer = FirstOver(now); timer != timers_.end(); timer = FirstOver(now)) {
    const ScenarioRule& rule = scenario_.rules[timer->rule];
    timer->due += *rule.period;
    if (timer->due <= now) timer->due = now + *rule.period;
    if (!IsIn(rule)) continue;
    if (timer->left) --*timer->left;
    SetOff(timer->rule, outcomes.emplace_back(PeriodOutcome{timer->client, {}}).posts);
  }
  return outcomes;
}

std::vector<std::string> ScenarioRun::NeverSetOff() const {
  std::vector<std::string> lines;
  for (std::size_t index = 0; index < runs_.size(); ++index) {
    if (runs_[index].setOff > 0) continue;
    const ScenarioRule& rule = scenario_.rules[index];
    lines.push_back(scenario_.file + ":" + std::to_string(rule.line) + ": " + PathOf(index) + " " +
                    OccasionOf(rule));
  }
  return lines;
}

}  // namespace ventrik::bench
