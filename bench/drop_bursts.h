// SPDX-License-Identifier: Apache-2.0
// Dropped messages, so that a person is told of many at once and not of each.
//
// A burst is what is dropped for one client until a second has passed without a drop, or ten
// seconds since its first one. Time is handed in. One thread at a time.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "bench/model/replies.h"

namespace ventrik::bench {

inline constexpr Milliseconds kBurstSilence{1000};
inline constexpr Milliseconds kLongestBurst{10'000};

class DropBursts {
 public:
  // So many messages to that process were dropped.
  void Count(std::uint32_t process, std::uint64_t messages, TimePoint now);

  // When the next burst will be over if nothing is dropped until then; none if there is none.
  std::optional<TimePoint> NextEnd() const;

  // A line for each burst that is over at `now`, the oldest first, and forgets them:
  //   "37 messages to process 4711 were dropped"
  std::vector<std::string> TakeOver(TimePoint now);

  // The same of all bursts.
  std::vector<std::string> TakeAll() { return TakeOver(TimePoint::max()); }

 private:
  struct Burst {
    std::uint32_t process;
    std::uint64_t messages;
    TimePoint first;
    TimePoint last;

    TimePoint End() const;
  };
  std::vector<Burst> bursts_;
};

}  // namespace ventrik::bench
