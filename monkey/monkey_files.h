// SPDX-License-Identifier: Apache-2.0
// The files that the monkey reads and writes in the working directory. Monkey's thread, which is
// not cancelled in here.
#pragma once

#include <optional>
#include <string>

namespace ventrik {

// All bytes of a file; none if it can't be opened. A pipe isn't waited for.
std::optional<std::string> ReadWholeFile(const char* path);

// "monkeylog.txt", the log of generated lines.
void EmptyMonkeyLog();

// Adds a line. The file is opened and closed for it, so that it stands on disk when the engine
// falls over. A file that can't be written isn't reported.
void AppendToMonkeyLog(const std::wstring& line);

}  // namespace ventrik
