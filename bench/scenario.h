// SPDX-License-Identifier: Apache-2.0
// Scenarios: what the bench engine sends beyond its own answers, as a test engineer writes it.
//
//     {"rules": [
//       {"on": "REQU_START_GUIDANCE", "times": 1, "send": [
//         {"message": "INFO_CALC_STATE", "fields": {"routeHandle": 7, "calcPercent": 100}},
//         {"after_ms": 500, "hex": "9D 01 00 00 01 00 00 00"}]},
//       {"on": "connect", "send": [{"message": "INFO_HEARTBEAT"}]}]}
//
// docs/bench-engine.md tells the format. No files and no clock here.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "bench/outbox.h"

namespace ventrik::bench {

// One message of a rule.
struct ScenarioMessage {
  std::chrono::milliseconds after{0};  // since the rule's occasion
  Block block;
};

struct ScenarioRule {
  std::optional<std::int32_t> message;  // the number that sets it off; none: a client's connecting
  std::optional<std::int32_t> times;    // how often it still may; none: always
  std::vector<ScenarioMessage> send;
};

struct Scenario {
  std::vector<ScenarioRule> rules;

  // What to send when a client has connected (none), or when a message of that number has come
  // from one: that of each rule that is set off, in the order of the file. Counts `times` down.
  std::vector<ScenarioMessage> Take(std::optional<std::int32_t> message);
};

// Reads a scenario. On failure nothing, with "FILE:LINE: KEY: what is wrong" in `error`, or
// "FILE:LINE:COLUMN: what is wrong" for what isn't JSON:
//   "demo.json:7: rules[0].send[1].hex: odd number of digits"
std::optional<Scenario> ParseScenario(std::string_view text, const std::string& file,
                                      std::string& error);

}  // namespace ventrik::bench
