// SPDX-License-Identifier: Apache-2.0
// The commands that do more than to send one request.
//
// Each expects commandLock held and a line with the parameters that its row of the command table
// asks for.
#pragma once

#include "state/client_app.h"

namespace ventrik {

// Asks for details, by the fields that a list names. The list must exist: an unknown name is an
// error.
void RunDet(ClientApp& app, CommandLine& line);

// Clears all lists, then asks the engine to shut down. The tester goes on.
void RunDone(ClientApp& app, CommandLine& line);

// Starts the listener anew, then asks the engine to initialise.
void RunInit(ClientApp& app, CommandLine& line);

// Sends the language even if it is unknown, and complains afterwards.
void RunLang(ClientApp& app, CommandLine& line);

// Called by `list` once its repetitions are counted, for who breaks a search that stands still.
// Connected before the first line is run; null while nobody does.
extern void (*breakStall)(ClientApp& app);

// Asks for a page of a list; the next line is fetched when the response has come.
void RunList(ClientApp& app, CommandLine& line);

// Sends map controls and remembers the map that they name.
void RunMap(ClientApp& app, CommandLine& line);

// Asks the engine to drop the trips of a list. The list must exist.
void RunRkill(ClientApp& app, CommandLine& line);

// Sends a traffic event, or all test events if the text is empty.
void RunTmcdebug(ClientApp& app, CommandLine& line);

}  // namespace ventrik
