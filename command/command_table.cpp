// SPDX-License-Identifier: Apache-2.0
#include "command/command_table.h"

#include "command/parser.h"

namespace ventrik {
namespace {

// No keyword begins with "x", "y" or "z".
bool CanBeginACommand(wchar_t letter) {
  return letter >= L'a' && letter <= L'w';
}

bool RunFirstMatch(const CommandRows& rows, ClientApp& app, CommandLine& line) {
  for (const CommandRow* row = rows.begin; row != rows.end; ++row) {
    if (row->keyword[0] != line.name[0]) continue;
    if (!MatchCommand(line, row->keyword, row->expectedCount)) continue;
    row->run(app, line);
    return true;
  }
  return false;
}

}  // namespace

bool RunFromCommandTable(ClientApp& app, CommandLine& line) {
  if (line.name.empty() || !CanBeginACommand(line.name[0])) return false;
  return RunFirstMatch(LocalCommands(), app, line) || RunFirstMatch(ListCommands(), app, line) ||
         RunFirstMatch(NavigationCommands(), app, line);
}

}  // namespace ventrik
