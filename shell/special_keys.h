// SPDX-License-Identifier: Apache-2.0
// The keys that act directly on the map while the output scrolls: 8 6 2 4 5 + and -.
#pragma once

#include <cstdint>

#include "state/client_app.h"

namespace ventrik {

// The zoom scale after the keys - and +: a tenth more or a tenth less in relation, cut to a whole
// number, within 100 to 1000000.
std::int32_t ZoomedOut(std::int32_t scale);
std::int32_t ZoomedIn(std::int32_t scale);

// Acts on one key and returns 1, or 0 if it is none of the seven. Sends outside commandLock, and
// the directions hold the keyboard for 300 ms unless autoScroll is on. With `flushInput` it ends
// with an fflush of standard input. Main thread.
int HandleSpecialKey(ClientApp& app, int key, bool flushInput);

}  // namespace ventrik
