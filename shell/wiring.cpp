// SPDX-License-Identifier: Apache-2.0
#include "shell/wiring.h"

#include "command/command_table.h"
#include "command/navigation_sequences.h"
#include "messages/dispatch.h"
#include "messages/overlay_messages.h"
#include "monkey/driver.h"
#include "overlay/overlay_commands.h"
#include "replay/replay_commands.h"

namespace ventrik {

void ConnectRooms() {
  ConnectCommands(MonkeyCommands());
  ConnectCommands(ReplayCommands());
  ConnectCommands(OverlayCommands());
  breakStall = BreakStall;             // a `list` that is repeated while the monkey runs
  followMessage = FollowMessage;       // the answers that steer the monkey
  overlayRenderer = &kScreenRenderer;  // weather over the map, as the server asks for it
}

}  // namespace ventrik
