// SPDX-License-Identifier: Apache-2.0
// The listener thread: the only reader of the channel.
#pragma once

#include "state/client_app.h"

namespace ventrik {

// Cancels the listener if there is one, prints "creating listener thread\n" to standard error and
// starts a new one on the process's communication layer and response printer. Expects commandLock
// held.
void StartListener(ClientApp& app);

}  // namespace ventrik
