// SPDX-License-Identifier: Apache-2.0
// The commands: keyword, number of parameters, and what each does.
#pragma once

#include <cstdint>

#include "state/client_app.h"

namespace ventrik {

struct CommandRow {
  const wchar_t* keyword;
  std::uint32_t expectedCount;  // 0 accepts any number of parameters
  void (*run)(ClientApp& app, CommandLine& line);
  // With fewer parameters the row doesn't match, and no wrong number is reported.
  std::uint32_t leastCount = 0;
};

struct CommandRows {
  const CommandRow* begin;
  const CommandRow* end;
};

CommandRows LocalCommands();       // acts inside the tester: command/local_commands.cpp
CommandRows ListCommands();        // builds up the named lists: command/list_commands.cpp
CommandRows NavigationCommands();  // sends a request: command/navigation_commands.cpp

// Adds the rows of a room above this one. Before the first line is run.
void ConnectCommands(CommandRows rows);

// Runs the command that the parsed line names. Returns false if there is none of that name with
// that number of parameters; a wrong number has then been reported. Expects commandLock held,
// except on the log replay's thread.
bool RunFromCommandTable(ClientApp& app, CommandLine& line);

}  // namespace ventrik
