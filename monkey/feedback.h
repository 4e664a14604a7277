// SPDX-License-Identifier: Apache-2.0
// What the monkey learns from the engine's messages: where a search leads, which routes there are.
#pragma once

#include "messages/block_cursor.h"
#include "monkey/monkey.h"
#include "state/client_app.h"

namespace ventrik {

// Follows one message, once its text has been made and while monkeyRunning. Listener thread.
void HandleMonkeyInfo(ClientApp& app, Monkey& monkey, const ReceivedBlock& block);

}  // namespace ventrik
