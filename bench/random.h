// SPDX-License-Identifier: Apache-2.0
// Chance that can be repeated: a seed gives the same draws on every machine and with every library.
//
// A program has one seed and several series of draws, each with a name of its own, so that whoever
// draws more often doesn't shift what the others get:
//
//     Random delays(seed, "rules[2]");
//     delays.Between(100, 300)   // milliseconds
#pragma once

#include <cstdint>
#include <random>
#include <string_view>

namespace ventrik::bench {

// One thread at a time.
class Random {
 public:
  // A series by the name of `series` from `seed`. Other seeds and other names give other draws.
  explicit Random(std::uint32_t seed, std::string_view series = {});

  // A number from `least` to `most`, both included, each as likely as any other. Expects
  // `least` <= `most`, and both no further apart than 2^32 - 1.
  std::int64_t Between(std::int64_t least, std::int64_t most);

  // True with that probability: never at 0 or less, always at 1 or more; in both cases nothing is
  // drawn.
  bool Happens(double probability);

 private:
  std::mt19937 engine_;
};

// A seed for those who name none: another one whenever the clock has moved on.
std::uint32_t SeedFromClock();

}  // namespace ventrik::bench
