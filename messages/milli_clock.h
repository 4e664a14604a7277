// SPDX-License-Identifier: Apache-2.0
// The program's millisecond clock.
#pragma once

#include <cstdint>

namespace ventrik {

// Milliseconds since the first call, from the real-time clock; a reading below an earlier one
// returns the largest value yet. Any thread.
std::uint32_t MilliClock();

}  // namespace ventrik
