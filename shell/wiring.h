// SPDX-License-Identifier: Apache-2.0
// Where lower rooms call upper ones: the whole of it.
#pragma once

namespace ventrik {

// Connects them. Main thread, before anything else runs.
void ConnectRooms();

}  // namespace ventrik
