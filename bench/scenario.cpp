// SPDX-License-Identifier: Apache-2.0
#include "bench/scenario.h"

#include <algorithm>
#include <set>
#include <utility>

#include "bench/json_tree.h"
#include "bench/scenario_fields.h"
#include "messages/function_ids.h"
#include "messages/layout_table.h"

namespace ventrik::bench {
namespace {

constexpr std::int64_t kLongestTime = 86'400'000;  // milliseconds, a day

bool HasKind(const JsonPlace& place, JsonNode::Kind kind, const char* name) {
  return place.node->kind == kind || place.Fail(std::string("takes ") + name);
}

// Whether every key of the object is one of `keys`.
bool HasOnly(const JsonPlace& place, const std::vector<std::string_view>& keys) {
  if (!HasKind(place, JsonNode::Kind::Object, "an object")) return false;
  for (const JsonNode& member : place.node->nodes) {
    bool isKnown = false;
    std::string list;
    for (const std::string_view key : keys) {
      isKnown = isKnown || member.key == key;
      list.append(list.empty() ? "" : ", ").append(key);
    }
    if (!isKnown) return place.Member(member).Fail("unknown key; known here: " + list);
  }
  return true;
}

bool ReadHex(const JsonPlace& place, Block& block) {
  if (!HasKind(place, JsonNode::Kind::Text, "a text of hexadecimal digits")) return false;
  return ParseHexText(place, place.node->text, block);
}

bool ReadMessage(const JsonPlace& place, const JsonNode& name, Block& block) {
  const JsonPlace namePlace = place.Member(name);
  if (!HasKind(namePlace, JsonNode::Kind::Text, "the name of a message")) return false;
  const std::int32_t id = FunctionNumber(name.text);
  if (id == FUNC_INVALID) return namePlace.Fail("no message is called \"" + name.text + "\"");
  MessageFields fields;
  const JsonNode* values = place.node->Find("fields");
  if (values != nullptr && !ReadFields(place.Member(*values), id, fields)) return false;
  std::string error;
  return EncodeMessage(static_cast<FunctionId>(id), fields, block, error) || place.Fail(error);
}

// A number of milliseconds.
bool ReadTime(const JsonPlace& place, std::int64_t least, Milliseconds& time) {
  std::int64_t number = 0;
  if (!ReadInteger(place, least, kLongestTime, number)) return false;
  time = Milliseconds(number);
  return true;
}

// A number of milliseconds, or the least and the most of them.
bool ReadDelay(const JsonPlace& place, ScenarioMessage& message) {
  if (place.node->kind != JsonNode::Kind::List) return ReadTime(place, 0, message.after);
  if (place.node->nodes.size() != 2) return place.Fail("takes a number or [least, most]");
  Milliseconds most{0};
  if (!ReadTime(place.Element(0), 0, message.after)) return false;
  if (!ReadTime(place.Element(1), 0, most)) return false;
  message.spread = most - message.after;
  return most >= message.after || place.Fail("the most is less than the least");
}

bool ReadSend(const JsonPlace& place, ScenarioMessage& message) {
  if (!HasOnly(place, {"after_ms", "hex", "message", "fields"})) return false;
  const JsonNode* after = place.node->Find("after_ms");
  if (after != nullptr && !ReadDelay(place.Member(*after), message)) return false;
  const JsonNode* hex = place.node->Find("hex");
  const JsonNode* name = place.node->Find("message");
  const JsonNode* fields = place.node->Find("fields");
  if (fields != nullptr && name == nullptr) {
    return place.Member(*fields).Fail("goes with a \"message\"");
  }
  if ((hex != nullptr) == (name != nullptr)) {
    return place.Fail("takes either \"hex\" or \"message\"");
  }
  return hex != nullptr ? ReadHex(place.Member(*hex), message.block)
                        : ReadMessage(place, *name, message.block);
}

bool ReadOccasion(const JsonPlace& place, std::optional<std::int32_t>& message) {
  if (place.node->kind == JsonNode::Kind::Text) {
    if (place.node->text == "connect") return true;
    message = FunctionNumber(place.node->text);
    return *message != FUNC_INVALID ||
           place.Fail("no message is called \"" + place.node->text + "\"");
  }
  if (place.node->kind != JsonNode::Kind::Integer) {
    return place.Fail("takes the name or number of a message or \"connect\"");
  }
  std::int64_t number = 0;
  if (!ReadInteger(place, INT32_MIN, INT32_MAX, number)) return false;
  message = static_cast<std::int32_t>(number);
  return true;
}

// What sets the rule off.
bool ReadTrigger(const JsonPlace& place, ScenarioRule& rule) {
  const JsonNode* on = place.node->Find("on");
  const JsonNode* every = place.node->Find("every_ms");
  if ((on != nullptr) == (every != nullptr)) {
    return place.Fail("takes either \"on\" or \"every_ms\"");
  }
  if (on != nullptr) return ReadOccasion(place.Member(*on), rule.message);
  return ReadTime(place.Member(*every), 1, rule.period.emplace());
}

bool ReadWhere(const JsonPlace& place, ScenarioRule& rule) {
  if (FindLayout(*rule.message) == nullptr) return place.Fail("this message's fields are unknown");
  return ReadFields(place, *rule.message, rule.where);
}

bool ReadContains(const JsonPlace& place, ScenarioRule& rule) {
  const MessageLayout* layout = FindLayout(*rule.message);
  if (layout == nullptr) return place.Fail("this message's fields are unknown");
  const bool hasText = std::any_of(layout->begin(), layout->end(),
                                   [](const LayoutField& field) { return HoldsText(field.kind); });
  if (!hasText) return place.Fail("this message has no text");
  return ReadText(place, rule.contains.emplace());
}

bool ReadInstead(const JsonPlace& place, ScenarioRule& rule) {
  if (!HasKind(place, JsonNode::Kind::Flag, "true or false")) return false;
  rule.instead = place.node->flag;
  return true;
}

// The keys that look at a message.
bool ReadConditions(const JsonPlace& place, ScenarioRule& rule) {
  using Read = bool (*)(const JsonPlace& value, ScenarioRule& into);
  const std::pair<const char*, Read> kReaders[] = {
      {"where", ReadWhere}, {"contains", ReadContains}, {"instead", ReadInstead}};
  for (const auto& [key, read] : kReaders) {
    const JsonNode* member = place.node->Find(key);
    if (member == nullptr) continue;
    const JsonPlace value = place.Member(*member);
    if (!rule.message) return value.Fail("goes with a message in \"on\"");
    if (!read(value, rule)) return false;
  }
  return true;
}

bool ReadStates(const JsonPlace& place, ScenarioRule& rule) {
  if (const JsonNode* to = place.node->Find("to")) {
    if (!ReadText(place.Member(*to), rule.to.emplace())) return false;
  }
  const JsonNode* in = place.node->Find("in");
  if (in == nullptr) return true;
  const JsonPlace states = place.Member(*in);
  if (in->kind == JsonNode::Kind::Text) return ReadText(states, rule.in.emplace_back());
  if (in->kind != JsonNode::Kind::List || in->nodes.empty()) {
    return states.Fail("takes a state or a list of states");
  }
  return ReadElements(states, rule.in, "states", ReadText);
}

bool ReadRule(const JsonPlace& place, ScenarioRule& rule) {
  if (!HasOnly(place,
               {"on", "every_ms", "where", "contains", "in", "to", "times", "instead", "send"})) {
    return false;
  }
  rule.line = place.node->line;
  if (!ReadTrigger(place, rule) || !ReadConditions(place, rule) || !ReadStates(place, rule)) {
    return false;
  }
  if (const JsonNode* times = place.node->Find("times")) {
    std::int64_t count = 0;
    if (!ReadInteger(place.Member(*times), 1, INT32_MAX, count)) return false;
    rule.times = static_cast<std::int32_t>(count);
  }
  const JsonNode* send = place.node->Find("send");
  if (send == nullptr) return place.Fail("has no \"send\"");
  return ReadElements(place.Member(*send), rule.send, "messages", ReadSend);
}

// A state that nothing leads to is a slip of the pen: its rules could never be set off.
bool StatesCanBe(const JsonPlace& rules, const Scenario& scenario) {
  std::set<std::string> states = {scenario.state};
  for (const ScenarioRule& rule : scenario.rules) {
    if (rule.to) states.insert(*rule.to);
  }
  for (std::size_t index = 0; index < scenario.rules.size(); ++index) {
    for (const std::string& state : scenario.rules[index].in) {
      if (states.count(state) > 0) continue;
      const JsonPlace rule = rules.Element(index);
      return rule.Member(*rule.node->Find("in")).Fail("no rule leads to \"" + state + "\"");
    }
  }
  return true;
}

bool ReadScenario(const JsonPlace& place, Scenario& scenario) {
  if (!HasOnly(place, {"state", "rules"})) return false;
  const JsonNode* state = place.node->Find("state");
  if (state != nullptr && !ReadText(place.Member(*state), scenario.state)) return false;
  const JsonNode* rules = place.node->Find("rules");
  if (rules == nullptr) return place.Fail("has no \"rules\"");
  const JsonPlace list = place.Member(*rules);
  return ReadElements(list, scenario.rules, "rules", ReadRule) && StatesCanBe(list, scenario);
}

}  // namespace

bool Scenario::UsesChance() const {
  return std::any_of(rules.begin(), rules.end(), [](const ScenarioRule& rule) {
    return std::any_of(rule.send.begin(), rule.send.end(), [](const ScenarioMessage& message) {
      return message.spread > Milliseconds(0);
    });
  });
}

std::optional<Scenario> ParseScenario(std::string_view text, const std::string& file,
                                      std::string& error) {
  std::string reason;
  const std::optional<JsonNode> tree = ParseJson(text, reason);
  Scenario scenario;
  scenario.file = file;
  if (tree && ReadScenario({&*tree, "", &reason}, scenario)) return scenario;
  error = file + ":" + reason;
  return std::nullopt;
}

}  // namespace ventrik::bench
