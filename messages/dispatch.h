// SPDX-License-Identifier: Apache-2.0
// What happens to a message of the server: the waiting, the filter, the text, and how it is shown.
#pragma once

#include <cstddef>
#include <string>

#include "messages/block_cursor.h"
#include "state/client_app.h"

namespace ventrik {

struct ResponsePrinter;

// Handles one received block, in this order: the random generator is reseeded from the clock; list
// assignments get their rows, if the filter lets the list through; a matching `waitresp` ends; a
// filtered message goes no further; the message's lines are built,
// an unknown number getting an error line; what the message asks for is done (automatic replies,
// overlays); the finished text goes to QueueResponseText in one piece. A null `message` returns at
// once. The thread can be cancelled only while a reply is sent. Listener thread.
void HandleServerMessage(ClientApp& app, ResponsePrinter& printer, const void* message,
                         std::size_t size);

// Called with each message that is not filtered, before its text is shown. Connected before the
// listener starts; null while nobody follows.
extern void (*followMessage)(ClientApp& app, const ReceivedBlock& block);

// The text of one block, without any effect. Pure.
std::string MessageText(const ReceivedBlock& block);

}  // namespace ventrik
