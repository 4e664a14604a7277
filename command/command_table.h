// SPDX-License-Identifier: Apache-2.0
// The commands: keyword, number of parameters, and what each does.
#pragma once

#include <cstdint>
#include <vector>

#include "command/parser.h"
#include "state/client_app.h"

namespace ventrik {

// How a command reads one of its parameters, for the tables of docs/reference.md.
struct ParameterKind {
  constexpr ParameterKind(const char* kind = nullptr,
                          std::int32_t (*parser)(const wchar_t*) = nullptr)
      : name(kind), parse(parser) {}

  const char* name;                       // "number", "path"; null where there is no parameter
  std::int32_t (*parse)(const wchar_t*);  // of a word or flags: who reads them; else null
};

struct CommandRow {
  const wchar_t* keyword;
  std::uint32_t expectedCount;  // 0 accepts any number of parameters
  void (*run)(ClientApp& app, CommandLine& line);
  // All that it looks at, in order. Nothing here checks them.
  ParameterKind parameters[kMaxParameters] = {};
  // With fewer parameters the row doesn't match, and no wrong number is reported.
  std::uint32_t leastCount = 0;
  // How many it makes use of, where `run` decides that; for the tables of docs/reference.md. Else
  // null.
  const char* usedCount = nullptr;
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

// All rows, in the order in which they are looked through.
std::vector<CommandRow> AllCommands();

// Runs the command that the parsed line names. Returns false if there is none of that name with
// that number of parameters; a wrong number has then been reported. Expects commandLock held,
// except on the log replay's thread.
bool RunFromCommandTable(ClientApp& app, CommandLine& line);

}  // namespace ventrik
