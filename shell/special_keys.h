// SPDX-License-Identifier: Apache-2.0
// The keys that act directly on the map while the output scrolls: 8 6 2 4 5 + and -.
#pragma once

#include "state/client_app.h"

namespace ventrik {

// Acts on one key and returns 1, or 0 if it is none of the seven. Sends outside commandLock, and
// the directions hold the keyboard for 300 ms unless autoScroll is on. With `flushInput` it ends
// with an fflush of standard input. Main thread.
int HandleSpecialKey(ClientApp& app, int key, bool flushInput);

}  // namespace ventrik
