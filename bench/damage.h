// SPDX-License-Identifier: Apache-2.0
// What faults do to the bytes of one message. Any bytes will do; a message that is too short for a
// damage stays as it is. Pure but for the draws.
#pragma once

#include "bench/fault.h"
#include "bench/model/replies.h"

namespace ventrik::bench {

// Cut at a drawn place, from nothing to one byte short of all.
Block Truncated(Block block, Random& random);

// One drawn word behind the number becomes a drawn value: small, huge or negative.
Block WithALie(Block block, Random& random);

// Without the zero bytes at its end, so that its last text has none.
Block WithoutAnEnd(Block block);

// Its number becomes one that no catalogue has.
Block WithUnknownNumber(Block block);

// Padded to one byte more than a tester receives.
Block Oversized(Block block);

}  // namespace ventrik::bench
