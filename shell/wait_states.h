// SPDX-License-Identifier: Apache-2.0
// The two states that hold back the main loop's next line: `wait` and `waitresp`.
#pragma once

#include <unistd.h>

namespace ventrik {

inline constexpr useconds_t kTick = 50000;  // microseconds

// Takes one tick off the wait states. Returns whether the loop is to sleep for a tick; false if
// nothing holds it back. `wait` runs out first: it counts ticks and looks at no clock. What
// `waitresp` waits for is cleared by the listener, at any time. Main thread.
bool CountTick();

}  // namespace ventrik
