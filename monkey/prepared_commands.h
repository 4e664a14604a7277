// SPDX-License-Identifier: Apache-2.0
// The commands for which others are run first, so that the lists they name are there. Each puts the
// whole line in place of the name. Monkey's thread.
#pragma once

#include "monkey/monkey.h"
#include "state/client_app.h"

namespace ventrik {

// Fills a list of field names and asks for details by it.
void GenerateDet(ClientApp& app, Monkey& monkey);

// Fills a list with the handles of some routes, and forgets them.
void GenerateRkill(ClientApp& app, Monkey& monkey);

// Fills lists of destinations, preferably from details that were seen, and of route modes. Blocks
// itself until a route has been calculated.
void GenerateRnew(ClientApp& app, Monkey& monkey);

}  // namespace ventrik
