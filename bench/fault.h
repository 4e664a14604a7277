// SPDX-License-Identifier: Apache-2.0
// Faults that the bench engine commits on purpose: what goes wrong, with which messages, how often.
//
// On the command line a fault is a kind and its conditions:
//
//   --fault truncate,message=RESP_GET_LIST,probability=0.1
//   --fault hang,message=REQU_GET_SPELL,after=3,times=1,seconds=20
//
// Handshake:  refuse, slow (seconds).
// Requests:   unread (never answered: the client waits 15 seconds), miscount (answered with a wrong
//             count), hang (the whole engine stands still for `seconds`), die (all connections and
//             the name are gone for `seconds`), restart (the same, and the engine has forgotten
//             what it knew).
// Answers and notifications: drop, late (by `seconds`), duplicate, reorder (the next ones overtake
//             it), flood (`copies` more of it), oversize (padded beyond what a tester receives),
//             unknown (its number becomes one that nobody knows), truncate (cut somewhere), lie (a
//             count, a length or another word becomes wrong), endless (the last text has no end).
#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "bench/random.h"

namespace ventrik::bench {

enum class FaultKind {
  refuse,
  slow,
  unread,
  miscount,
  hang,
  die,
  restart,
  drop,
  late,
  duplicate,
  reorder,
  flood,
  oversize,
  unknown,
  truncate,
  lie,
  endless,
};

// The moments at which a fault can strike.
enum class FaultStage { handshake, request, answer };

const char* FaultName(FaultKind kind);
FaultStage StageOf(FaultKind kind);

struct Fault {
  FaultKind kind = FaultKind::drop;
  std::optional<std::int32_t> message{};  // none: any
  std::uint64_t after = 0;                // the first so many are spared
  std::optional<std::uint64_t> times{};   // how often it strikes; none: always
  std::chrono::milliseconds from{0};      // since the engine's start
  std::optional<std::chrono::milliseconds> until{};
  double probability = 1;                      // of each that the other conditions let through
  std::chrono::milliseconds duration{16'000};  // seconds=
  std::int32_t copies = 100;
};

// What a message too short for a number is taken for: no message has it.
inline constexpr std::int32_t kNoNumber = -1;

// A fault that has struck.
struct Strike {
  FaultKind kind;
  std::optional<std::int32_t> message{};  // the number of what it struck; none: a handshake, or a
                                          // message too short for one
  std::uint32_t process = 0;              // the client; 0 if that isn't known yet
};

// Reads one. On failure nothing, with the reason in `error`, as "late: seconds takes seconds, 0 to
// 86400". What could never have an effect is refused, too: a message that doesn't go the fault's
// way, a condition that the kind has no use for, a condition twice, a time that ends before it
// begins. A fault that is at zero is right.
std::optional<Fault> ParseFault(std::string_view text, std::string& error);

// A fault at work: counts, and draws from generators of its own, one for each message number, so
// that the same messages meet the same faults, whatever other faults there are and whatever else is
// sent in between. One thread at a time.
class ArmedFault {
 public:
  // `series` tells the faults of one seed apart.
  ArmedFault(const Fault& fault, std::uint32_t seed, std::string_view series)
      : fault_(fault), seed_(seed), series_(series), random_(seed, series) {}

  const Fault& fault() const { return fault_; }

  // Whether it strikes this message (none: a handshake), `sinceStart`. Counts it.
  bool Strikes(std::optional<std::int32_t> message, std::chrono::milliseconds sinceStart);

  // For faults that have a choice.
  Random& random() { return random_; }

  std::uint64_t struck() const { return struck_; }

 private:
  Random& ChanceFor(std::optional<std::int32_t> message);

  Fault fault_;
  std::uint32_t seed_;
  std::string series_;
  Random random_;  // for choices, handshakes, and messages beyond what is told apart
  std::map<std::int32_t, Random> byMessage_;
  std::uint64_t met_ = 0;
  std::uint64_t struck_ = 0;
};

// The faults that struck, as "drop 3, late 1"; empty if none did.
std::string DescribeFaultsDone(const std::vector<ArmedFault>& faults);

}  // namespace ventrik::bench
