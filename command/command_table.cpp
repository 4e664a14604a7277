// SPDX-License-Identifier: Apache-2.0
#include "command/command_table.h"

namespace ventrik {
namespace {

std::vector<CommandRows> connectedRows;

// No keyword begins with "x", "y" or "z".
bool CanBeginACommand(wchar_t letter) {
  return letter >= L'a' && letter <= L'w';
}

bool RunFirstMatch(const CommandRows& rows, ClientApp& app, CommandLine& line) {
  for (const CommandRow* row = rows.begin; row != rows.end; ++row) {
    if (row->keyword[0] != line.name[0] || line.parameterCount < row->leastCount) continue;
    if (!MatchCommand(line, row->keyword, row->expectedCount)) continue;
    row->run(app, line);
    return true;
  }
  return false;
}

}  // namespace

void ConnectCommands(CommandRows rows) {
  connectedRows.push_back(rows);
}

std::vector<CommandRow> AllCommands() {
  std::vector<CommandRows> tables = {LocalCommands(), ListCommands(), NavigationCommands()};
  tables.insert(tables.end(), connectedRows.begin(), connectedRows.end());
  std::vector<CommandRow> all;
  for (const CommandRows& rows : tables) all.insert(all.end(), rows.begin, rows.end);
  return all;
}

bool RunFromCommandTable(ClientApp& app, CommandLine& line) {
  if (line.name.empty() || !CanBeginACommand(line.name[0])) return false;
  if (RunFirstMatch(LocalCommands(), app, line)) return true;
  if (RunFirstMatch(ListCommands(), app, line)) return true;
  if (RunFirstMatch(NavigationCommands(), app, line)) return true;
  for (const CommandRows& rows : connectedRows) {
    if (RunFirstMatch(rows, app, line)) return true;
  }
  return false;
}

}  // namespace ventrik
