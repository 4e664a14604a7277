// SPDX-License-Identifier: Apache-2.0
// The monkey's thread and the commands that start and stop it.
#pragma once

#include <cstdint>

#include "command/command_table.h"
#include "messages/block_cursor.h"
#include "state/client_app.h"

namespace ventrik {

// `monkey` and `stopmonkey`, for the command table.
CommandRows MonkeyCommands();

// Starts the thread for so many cycles, below 0 without end, in place of one that is running.
// Expects commandLock held.
void StartMonkey(ClientApp& app, std::int32_t count);

// The listener's hook: lets the monkey follow a message while it runs.
void FollowMessage(ClientApp& app, const ReceivedBlock& block);

// The hook of `list`: a search that asks for the same list again and again stands still. While the
// monkey runs, the program then waits for a person to type a "c", in whichever thread is running
// the command and with commandLock held. A cancellation point.
void BreakStall(ClientApp& app);

}  // namespace ventrik
