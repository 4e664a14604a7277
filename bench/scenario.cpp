// SPDX-License-Identifier: Apache-2.0
#include "bench/scenario.h"

#include <utility>

#include "bench/json_tree.h"
#include "bench/scenario_fields.h"
#include "messages/function_ids.h"

namespace ventrik::bench {
namespace {

constexpr std::int64_t kLongestDelay = 86'400'000;  // milliseconds, a day

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

bool ReadSend(const JsonPlace& place, ScenarioMessage& message) {
  if (!HasOnly(place, {"after_ms", "hex", "message", "fields"})) return false;
  if (const JsonNode* after = place.node->Find("after_ms")) {
    std::int64_t milliseconds = 0;
    if (!ReadInteger(place.Member(*after), 0, kLongestDelay, milliseconds)) return false;
    message.after = std::chrono::milliseconds(milliseconds);
  }
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

bool ReadRule(const JsonPlace& place, ScenarioRule& rule) {
  if (!HasOnly(place, {"on", "times", "send"})) return false;
  const JsonNode* on = place.node->Find("on");
  const JsonNode* send = place.node->Find("send");
  if (on == nullptr) return place.Fail("has no \"on\"");
  if (send == nullptr) return place.Fail("has no \"send\"");
  if (!ReadOccasion(place.Member(*on), rule.message)) return false;
  if (const JsonNode* times = place.node->Find("times")) {
    std::int64_t count = 0;
    if (!ReadInteger(place.Member(*times), 1, INT32_MAX, count)) return false;
    rule.times = static_cast<std::int32_t>(count);
  }
  return ReadElements(place.Member(*send), rule.send, "messages", ReadSend);
}

bool ReadScenario(const JsonPlace& place, Scenario& scenario) {
  if (!HasOnly(place, {"rules"})) return false;
  const JsonNode* rules = place.node->Find("rules");
  if (rules == nullptr) return place.Fail("has no \"rules\"");
  return ReadElements(place.Member(*rules), scenario.rules, "rules", ReadRule);
}

}  // namespace

std::vector<ScenarioMessage> Scenario::Take(std::optional<std::int32_t> message) {
  std::vector<ScenarioMessage> taken;
  for (ScenarioRule& rule : rules) {
    if (rule.message != message || rule.times == 0) continue;
    if (rule.times) --*rule.times;
    taken.insert(taken.end(), rule.send.begin(), rule.send.end());
  }
  return taken;
}

std::optional<Scenario> ParseScenario(std::string_view text, const std::string& file,
                                      std::string& error) {
  std::string fault;
  const std::optional<JsonNode> tree = ParseJson(text, fault);
  Scenario scenario;
  if (tree && ReadScenario({&*tree, "", &fault}, scenario)) return scenario;
  error = file + ":" + fault;
  return std::nullopt;
}

}  // namespace ventrik::bench
