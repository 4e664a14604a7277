// SPDX-License-Identifier: Apache-2.0
// Batch files: text files of commands, UTF-16 little-endian with a byte order mark.
//
// Open files form a stack. While it isn't empty the main loop takes its lines from the newest file
// and doesn't read the keyboard. A line ends with a line feed or a carriage return; empty lines are
// skipped; "#" or ";" as the very first character makes a comment. Grammar: docs/file-formats.md.
#pragma once

#include <string>

#include "state/client_app.h"

namespace ventrik {

// Opens `path` and pushes it on the stack, printing "Batch file %ls is running...\n"; or prints why
// it can't be run and leaves the stack as it was. Nothing is read yet. Any thread.
void OpenBatchFile(ClientApp& app, const char* path);

// Fetches the next command from the newest open file into `line`, echoing it and the comments
// before it. Returns 1 if `line` holds a command; 0 if not, because a file has come to its end and
// was closed or, with a line that says so, because none is open. Surrogates are not joined: each
// 16-bit unit is one character. Main thread.
int ReadBatchLine(ClientApp& app, std::wstring& line);

}  // namespace ventrik
