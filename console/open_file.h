// SPDX-License-Identifier: Apache-2.0
// Opening what somebody has named, whatever it turns out to be.
#pragma once

namespace ventrik {

// Opens a path as open(2) does, with `flags`; a file that is made gets mode 0666 less the umask. A
// pipe that has nobody at its other end isn't waited for, a terminal doesn't become the process's
// own, and the descriptor is closed on exec. Returns it, or -1 with errno set. Not a cancellation
// point; any thread.
int OpenWithoutWaiting(const char* path, int flags);

}  // namespace ventrik
