// SPDX-License-Identifier: Apache-2.0
// Files of the working directory that are read in one go.
#pragma once

#include <optional>
#include <string>

namespace ventrik {

// All bytes of a file, up to its end or the first error in reading; none if it can't be opened. A
// pipe that nobody writes to is empty, not waited for, and so is a folder. Not a cancellation
// point; any thread.
std::optional<std::string> ReadWholeFile(const char* path);

}  // namespace ventrik
