// SPDX-License-Identifier: Apache-2.0
// The one place in which the monkey sleeps.
#pragma once

namespace ventrik {

// Sleeps for so many microseconds, as pauseSource does it; more than a 32-bit word holds wraps, as
// `usleep` is given a word. A cancellation point.
void Pause(unsigned microseconds);

// What Pause calls; usleep, unless a test is in a hurry.
extern int (*pauseSource)(unsigned microseconds);

}  // namespace ventrik
