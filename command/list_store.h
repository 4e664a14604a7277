// SPDX-License-Identifier: Apache-2.0
// What can be done with the named lists of the application (state/lists.h).
#pragma once

#include "state/client_app.h"

namespace ventrik {

// Deletes every list of all four kinds. Prints nothing. Expects commandLock held.
void ClearAllLists(ClientApp& app);

}  // namespace ventrik
