// SPDX-License-Identifier: Apache-2.0
// What the tester answers by itself when the server asks something of a client.
#pragma once

#include <string>

#include "messages/block_cursor.h"
#include "platform/cancellation.h"
#include "state/client_app.h"

namespace ventrik {

struct ResponsePrinter;

// Sends the reply that the message asks for, if any, and appends to `text`, the message's text,
// what is to be said about it:
//   INFO_PROMPT_READY         => REQU_PROMPT_READY with the same audio source, if autoPromptReady
//   INFO_HIGHWAYMODE_UPDATE   => REQU_GET_LIST for the highway mode's list, if it is 1 and
//                                autoPromptReady
//   INFO_VEH_LOC_INFO_DETAILS => REQU_MAP_CONTROLS that shows the junction view of the position's
//                                <JVA>, on the map that `map` named last
// Takes commandLock around the send, so a command that blocks holds the reply up; only in there may
// the thread be cancelled. Listener thread.
void SendAutomaticReply(ResponsePrinter& printer, const ReceivedBlock& block, std::string& text,
                        const platform::CancellationDisabled& whole);

}  // namespace ventrik
