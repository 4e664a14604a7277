// SPDX-License-Identifier: Apache-2.0
// The text of the command `help`.
#pragma once

namespace ventrik {

// Prints it, each line by itself.
void PrintHelp();

}  // namespace ventrik
