// SPDX-License-Identifier: Apache-2.0
// The signals that end the program.
//
// SIGINT and SIGTERM end it in order: the loop stops, the threads are cancelled, whatever the main
// thread waits for comes back, the status is 0. The fatal signals only save the history; a stack
// overflow leaves no room even for that. Each handler is for one shot, so a second SIGINT, and a
// fault that is still there when the handler returns, act in the default way.
#pragma once

#include "state/client_app.h"

namespace ventrik {

// Installs the handler for `app`, which must live as long as the process. Main thread, once.
void InstallSignalHandlers(ClientApp& app);

}  // namespace ventrik
