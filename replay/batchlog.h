// SPDX-License-Identifier: Apache-2.0
// Replay: sends the messages of a batch log at the pace at which they were recorded.
#pragma once

#include <cstdint>

#include "state/client_app.h"

namespace ventrik {

// Plays the file and returns when it is at its end, stopped, or found corrupt, all of which is
// said. A silent pass looks through the file first; a package of engine state in it is sent then,
// and the recording proper when the engine has loaded it. `speed` multiplies the pace. Behind the
// record that passes `pauseMinutes` of the recording, unless that is 0 or the monkey runs, a person
// is asked to go on, once. Takes commandLock for each message that is sent.
//
// Runs on the replay's thread or on the one that runs the command. Cancelled in a wait or a send,
// it leaves packagePhase and livePhase as they are.
void RunBatchlog(ClientApp& app, const char* path, double speed, std::int32_t pauseMinutes);

}  // namespace ventrik
