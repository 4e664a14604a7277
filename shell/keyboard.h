// SPDX-License-Identifier: Apache-2.0
// Fetching one command line from the keyboard.
#pragma once

#include <string>

#include "state/client_app.h"

namespace ventrik {

// Waits for a key while output scrolls past, then opens the prompt and lets the user edit a line,
// which enters the history. Response text is held back while the prompt is open. Returns 1 if
// `line` is to be executed; 0 if not: the first key was a special key (`scroll` on and not ENTER),
// or a signal ends the program. The first key is never part of the line. Main thread.
int ReadKeyboardLine(ClientApp& app, std::wstring& line);

}  // namespace ventrik
