// SPDX-License-Identifier: Apache-2.0
// The log of generated lines, "monkeylog.txt" in the working directory. Monkey's thread, which is
// not cancelled in here.
#pragma once

#include <string>

namespace ventrik {

void EmptyMonkeyLog();

// Adds a line. The file is opened and closed for it, so that it stands on disk when the engine
// falls over. A file that can't be written isn't reported.
void AppendToMonkeyLog(const std::wstring& line);

}  // namespace ventrik
