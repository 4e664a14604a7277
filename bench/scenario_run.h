// SPDX-License-Identifier: Apache-2.0
// A scenario at work: what happens goes in, what is to be sent comes out.
//
// Time is handed in; nothing here reads a clock, waits or sends. Clients are told apart by their
// records, which are not looked into. One thread at a time; scenario_thread.h has the lock.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "bench/random.h"
#include "bench/scenario.h"
#include "ipc/ipc.h"
#include "messages/block_cursor.h"

namespace ventrik::bench {

class ScenarioRun {
 public:
  struct Post {
    Milliseconds after;  // from now
    Block block;
  };
  // What an occasion brought.
  struct Outcome {
    std::vector<Post> posts;  // of all rules set off, in the order of the file
    bool isRuled = false;     // some rule was set off, if only to send nothing
    bool isInstead = false;   // the engine's own answer is left out
  };
  struct PeriodOutcome {
    IpcPeer* client;
    std::vector<Post> posts;
  };

  // Delays that are left to chance follow from `seed`, for each rule from how often it was set off
  // before: what else happens doesn't change them.
  explicit ScenarioRun(Scenario scenario = {}, std::uint32_t seed = 0);

  // A client has connected, or has sent a message. All rules are tested against the state that was;
  // the last one set off that leads to a state decides what state follows.
  Outcome Connected();
  Outcome Received(ReceivedBlock message);

  // Starts the client's periods, the first of which begin at `start`. Does nothing if they run.
  void Begin(IpcPeer* client, TimePoint start);

  // Ends the client's periods.
  void End(IpcPeer* client);

  // When the next period is over; none if none runs.
  std::optional<TimePoint> NextPeriod() const;

  // Ends the periods that are over at `now` and begins the next ones, each an occasion by itself.
  // Periods that nobody looked at in time are left out, not made up for.
  std::vector<PeriodOutcome> TakePeriods(TimePoint now);

  const std::string& state() const { return state_; }

  // The rules that were never set off, one line each:
  //   "demo.json:7: rules[2] on REQU_INIT"
  std::vector<std::string> NeverSetOff() const;

 private:
  // A rule and what became of it.
  struct Run {
    std::optional<std::int32_t> left;  // of its times, unless it has periods
    std::uint64_t setOff = 0;
    std::optional<Random> chance;  // once it was needed
  };
  // A rule's periods for one client.
  struct Timer {
    IpcPeer* client;
    std::size_t rule;
    TimePoint due;
    std::optional<std::int32_t> left;
  };

  bool IsIn(const ScenarioRule& rule) const;
  Outcome Take(std::optional<std::int32_t> number, ReceivedBlock message);
  void SetOff(std::size_t index, std::vector<Post>& posts);
  Milliseconds DrawDelay(std::size_t index, const ScenarioMessage& message);
  std::vector<Timer>::iterator FirstOver(TimePoint now);

  const Scenario scenario_;
  const std::uint32_t seed_;
  std::vector<Run> runs_;  // of the rules, in their order
  std::string state_;
  std::vector<Timer> timers_;  // by client as they began, then by rule
};

}  // namespace ventrik::bench
