// SPDX-License-Identifier: Apache-2.0
// `batchlog`, `stopbatchlog` and the commands that take raw logs apart.
#pragma once

#include "command/command_table.h"

namespace ventrik {

CommandRows ReplayCommands();

}  // namespace ventrik
