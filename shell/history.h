// SPDX-License-Identifier: Apache-2.0
// The line history and its file, "qhistory.txt" in the working directory: UTF-8, one entry a line.
//
// The file must be written from a signal handler too, where nothing may be formatted or allocated.
// So the bytes that it would hold are prepared whenever the history changes, and saving only opens,
// writes and closes.
#pragma once

#include <string>
#include <vector>

#include "state/client_app.h"

namespace ventrik {

// Fills app.history from the file; one that can't be opened leaves it empty. Main thread.
void LoadHistory(ClientApp& app);

// Appends a line to app.history. Main thread.
void AppendToHistory(ClientApp& app, const std::wstring& line);

// Writes the newest 1000 entries to the file, as they stood after the latest change. A file that
// can't be written is not reported. Before LoadHistory it does nothing. Safe in a signal handler.
// Oddity: an empty entry, which only a file with blank lines brings, ends the writing in an endless
// wait.
void SaveHistory();

// The bytes that the file holds for a history: UTF-8, "?" for what has no such form. Line ends
// inside an entry are left out, and so is all behind a 0. Stops at an empty entry, setting
// `endless`. Pure.
std::string HistoryFileText(const std::vector<std::wstring>& history, bool& endless);

}  // namespace ventrik
