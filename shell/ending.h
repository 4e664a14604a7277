// SPDX-License-Identifier: Apache-2.0
// The end of the program's threads.
#pragma once

#include "state/client_app.h"

namespace ventrik {

// Cancels the listener, the monkey and the log replay, and waits until they have left. One that
// can't be got rid of keeps what it uses: after two seconds the history is saved and the process
// ends as it stands, with status 0. May be called again. Main thread.
void EndThreads(ClientApp& app);

}  // namespace ventrik
