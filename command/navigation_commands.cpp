// SPDX-License-Identifier: Apache-2.0
// The commands that stand for a request to the navigation server.
//
// A command sends and returns: answers come to the listener. Errors in a parameter's value are not
// reported, because words and numbers have their defaults.
#include <iterator>

#include "command/command_table.h"
#include "command/list_store.h"
#include "command/parameters.h"
#include "console/utf8.h"
#include "messages/builders.h"
#include "messages/function_ids.h"
#include "messages/listener.h"
#include "messages/words.h"
#include "state/process_state.h"

namespace ventrik {
namespace {

// The list of strings that a parameter names, created empty if there is none.
const SStringArray& NamedStrings(ClientApp& app, CommandParameter& parameter) {
  return FindOrCreateList(app.stringArrayLists, ParamNarrow(parameter));
}

void RunDone(ClientApp& app, CommandLine&) {
  ClearAllLists(app);
  send::REQU_SHUTDOWN();
}

void RunInit(ClientApp& app, CommandLine&) {
  if (communicationLayer != nullptr && responsePrinter != nullptr) StartListener(app);
  send::REQU_INIT();
}

// Counts how often in a row the same list was asked for.
void CountRepeatedList(ClientApp& app, const std::wstring& inputEis) {
  if (inputEis == app.lastListEis) {
    ++app.listRepeatCount;
  } else {
    app.lastListEis = inputEis;
    app.listRepeatCount = 1;
  }
}

void RunList(ClientApp& app, CommandLine& line) {
  auto& parameters = line.parameters;
  CountRepeatedList(app, Utf8ToWide(ParamUtf8(parameters[0])));
  // Before the request goes out, so that the response can't arrive first.
  waitResponseId = RESP_GET_LIST;
  send::REQU_GET_LIST(ParamUtf8(parameters[0]), ParamInt(parameters[1]), ParamInt(parameters[2]),
                      ParseSortOption(parameters[3].text), NamedStrings(app, parameters[4]),
                      ParamOnOff(parameters[5]));
  app.listRequested = 1;
}

void RunSpell(ClientApp&, CommandLine& line) {
  send::REQU_GET_SPELL(ParamUtf8(line.parameters[0]));
}

void RunVerd(ClientApp&, CommandLine&) {
  send::REQU_GET_DB_VERSION();
}

void RunVers(ClientApp&, CommandLine&) {
  send::REQU_GET_SW_VERSION();
}

constexpr CommandRow kNavigationCommands[] = {
    {L"done", 0, RunDone},   {L"init", 0, RunInit}, {L"list", 6, RunList},
    {L"spell", 1, RunSpell}, {L"verd", 0, RunVerd}, {L"vers", 0, RunVers},
};

}  // namespace

CommandRows NavigationCommands() {
  return {std::begin(kNavigationCommands), std::end(kNavigationCommands)};
}

}  // namespace ventrik
