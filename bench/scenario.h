// SPDX-License-Identifier: Apache-2.0
// Scenarios: what the bench engine sends beyond its own answers, as a test engineer writes it.
//
//     {"rules": [
//       {"on": "REQU_START_GUIDANCE", "where": {"routeHandle": 7}, "to": "guiding", "send": [
//         {"message": "INFO_CALC_STATE", "fields": {"routeHandle": 7, "calcPercent": 100}},
//         {"after_ms": [500, 900], "hex": "9D 01 00 00 01 00 00 00"}]},
//       {"every_ms": 1000, "in": "guiding", "send": [{"message": "INFO_NEXT_MAN_INFO"}]},
//       {"on": "connect", "send": [{"message": "INFO_HEARTBEAT"}]}]}
//
// docs/bench-engine.md tells the format. Here it is read; scenario_run.h lets the rules act. No
// files and no clock here.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "bench/model/replies.h"
#include "messages/message_layout.h"

namespace ventrik::bench {

// One message of a rule.
struct ScenarioMessage {
  Milliseconds after{0};   // since the rule was set off, at least
  Milliseconds spread{0};  // what chance adds to it, at most
  Block block;
};

// A rule is set off by a message, or every period, or else by a client's connecting.
struct ScenarioRule {
  int line = 0;                         // of the file
  std::optional<std::int32_t> message;  // the number of that message
  std::optional<Milliseconds> period;
  std::optional<std::int32_t> times;    // how often it may be; none: always
  MessageFields where;                  // what the message must have in these fields
  std::optional<std::string> contains;  // what one of its texts must contain
  std::vector<std::string> in;          // the states in which it can be; none: all
  std::optional<std::string> to;        // the state that follows
  bool instead = false;                 // the engine's own answer is left out
  std::vector<ScenarioMessage> send;
};

struct Scenario {
  std::string file;             // as it was named to ParseScenario
  std::string state = "start";  // at the beginning
  std::vector<ScenarioRule> rules;

  // Whether some message is due by chance.
  bool UsesChance() const;
};

// Reads a scenario. On failure nothing, with "FILE:LINE:COLUMN: KEY: what is wrong" in `error`:
//   "demo.json:7:10: rules[0].send[1].hex: odd number of digits"
std::optional<Scenario> ParseScenario(std::string_view text, const std::string& file,
                                      std::string& error);

}  // namespace ventrik::bench
