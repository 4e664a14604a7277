// SPDX-License-Identifier: Apache-2.0
// The pace of a replay. Pure functions.
#pragma once

#include <cstdint>

namespace ventrik {

struct ReplayDelay {
  std::uint32_t milliseconds;
  bool isAnnounced;
};

// How long to wait between two records, by their timestamps in milliseconds. A timestamp that goes
// back means a second, whatever the speed. A quotient that no unsigned number can be becomes the
// nearest one, so that a speed of 0 waits for ever; no number at all counts as 0.
//   (1000, 3000, 2.0) => 1000    (1000, 9000, 1.0) => 8000, announced    (5, 4, 9.0) => 1000
ReplayDelay DelayBetween(std::uint32_t current, std::uint32_t next, double speed);

}  // namespace ventrik
