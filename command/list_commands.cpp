// SPDX-License-Identifier: Apache-2.0
// The commands that build up, show and delete the named lists.
#include <iterator>
#include <memory>
#include <string>

#include "command/command_table.h"
#include "command/list_store.h"
#include "command/parameters.h"
#include "command/parser.h"
#include "messages/word_parsers.h"
#include "state/logger.h"
#include "state/process_state.h"

namespace ventrik {
namespace {

// The parameters of `item`.
enum : std::size_t { kType, kName, kData, kAttributes };

void AddString(ClientApp& app, CommandLine& line) {
  AppendItem(FindOrCreateList(app.stringArrayLists, ParamNarrow(line.parameters[kName])),
             ParamUtf8(line.parameters[kData]));
}

void AddRouteHandle(ClientApp& app, CommandLine& line) {
  AppendItem(FindOrCreateList(app.routeHandleLists, ParamNarrow(line.parameters[kName])),
             ParamInt(line.parameters[kData]));
}

// A named list is shared with the store: what is added to it later belongs to the destination, too.
std::shared_ptr<const SStringArray> Attributes(ClientApp& app, const std::string& name) {
  if (name.empty()) return std::make_shared<SStringArray>();
  return FindOrCreateSharedList(app.stringArrayLists, name);
}

void AddDestination(ClientApp& app, CommandLine& line) {
  AppendItem(FindOrCreateList(app.destinationElementLists, ParamNarrow(line.parameters[kName])),
             {ParamUtf8(line.parameters[kData]),
              Attributes(app, ParamNarrow(line.parameters[kAttributes]))});
}

void AddRouteMode(ClientApp& app, CommandLine& line) {
  AppendItem(FindOrCreateList(app.routeModeLists, ParamNarrow(line.parameters[kName])),
             ParseRouteMode(line.parameters[kData].text.c_str()));
}

struct ItemRow {
  const wchar_t* type;
  std::size_t parameterCount;
  void (*add)(ClientApp& app, CommandLine& line);
  const wchar_t* message;
};

constexpr ItemRow kItemTypes[] = {
    {L"SStringArray", 3, AddString, L"New SStringArray item is added to '%ls'.\n"},
    {L"SRouteHandleList", 3, AddRouteHandle, L"New SRouteHandleList item is added to '%ls'.\n"},
    {L"SDestinationElementList", 4, AddDestination,
     L"New SDestinationElement item is added to '%ls'.\n"},
    {L"SRouteModeList", 3, AddRouteMode, L"New SRouteModeList item is added to '%ls'.\n"},
};

// Oddity: a known type with a wrong number of parameters is an unknown type.
void RunItem(ClientApp& app, CommandLine& line) {
  if (line.parameters.empty()) {
    logger->print(L"Command 'item' needs some parameters.\n");
    return;
  }
  for (const ItemRow& row : kItemTypes) {
    if (!ParamIs(line, kType, row.type) || line.parameters.size() != row.parameterCount) continue;
    row.add(app, line);
    logger->print(row.message, line.parameters[kName].text.c_str());
    return;
  }
  logger->print(L"%sError: Unknown type in the 'item' command!\n%s", ColourRed, ColourReset);
}

void RunLitem(ClientApp& app, CommandLine& line) {
  PrintLists(app, ParamNarrow(line.parameters[0]));
}

void RunCitem(ClientApp& app, CommandLine& line) {
  DeleteLists(app, ParamNarrow(line.parameters[0]));
  logger->print(L"Lists '%ls' were deleted.\n", line.parameters[0].text.c_str());
}

void RunCitems(ClientApp& app, CommandLine&) {
  ClearAllLists(app);
  logger->print(L"All list items are deleted.\n");
}

constexpr CommandRow kListCommands[] = {
    {L"citem", 1, RunCitem, {"list"}},
    {L"citems", 0, RunCitems},
    {L"item",
     0,
     RunItem,
     {"type", "list", {"text or number", ParseRouteMode}, "strings"},
     0,
     "4 with SDestinationElementList, else 3"},
    {L"litem", 1, RunLitem, {"list"}},
};

}  // namespace

CommandRows ListCommands() {
  return {std::begin(kListCommands), std::end(kListCommands)};
}

}  // namespace ventrik
