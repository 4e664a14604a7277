// SPDX-License-Identifier: Apache-2.0
// What the rest of the program knows of the overlay: a command and a renderer.
#pragma once

#include "command/command_table.h"
#include "messages/overlay_messages.h"

namespace ventrik {

// `save_shared`, for the command table.
CommandRows OverlayCommands();

// Renders with the one WeatherOverlay_Screen of the process, which is made when it is first used
// and destroyed when the process exits. Nothing may render by then.
extern const OverlayRenderer kScreenRenderer;

}  // namespace ventrik
