// SPDX-License-Identifier: Apache-2.0
// The one door through which a line of the command language enters the system, whatever its source:
// keyboard, batch file, monkey or log replay.
#pragma once

#include <string>

#include "state/client_app.h"

namespace ventrik {

// Runs one line: strips it and takes assignments, replaces variables, parses it and runs the
// command of that name. Everything is reported on the console; a line that fails is dropped. With
// `lockCommands` the command runs under commandLock, except that a line beginning with "batchlog("
// starts a thread for itself instead. Blocks as long as the command does. Any thread.
void ExecuteCommand(ClientApp& app, const std::wstring& line, bool lockCommands);

}  // namespace ventrik
