// SPDX-License-Identifier: Apache-2.0
#include "command/navigation_sequences.h"

#include <string_view>

#include "command/list_store.h"
#include "command/parameters.h"
#include "command/traffic_test_events.h"
#include "console/response_printer.h"
#include "console/utf8.h"
#include "messages/builders.h"
#include "messages/function_ids.h"
#include "messages/listener.h"
#include "messages/tagged_text.h"
#include "messages/word_parsers.h"
#include "state/logger.h"
#include "state/process_state.h"

namespace ventrik {
namespace {

// Counts how often in a row the same list was asked for.
void CountRepeatedList(ClientApp& app, const std::wstring& inputEis) {
  if (inputEis == app.lastListEis) {
    ++app.listRepeatCount;
  } else {
    app.lastListEis = inputEis;
    app.listRepeatCount = 1;
  }
}

}  // namespace

void (*breakStall)(ClientApp& app) = nullptr;

void RunDet(ClientApp& app, CommandLine& line) {
  const SStringArray* fields = FindList(app.stringArrayLists, ParamNarrow(line.parameters[1]));
  if (fields == nullptr) {
    logger->print(L"%sError: Can't find SStringArray '%ls'.\n%s", ColourRed,
                  line.parameters[1].text.c_str(), ColourReset);
    return;
  }
  send::REQU_GET_DETAILS(ParamUtf8(line.parameters[0]), *fields);
}

void RunDone(ClientApp& app, CommandLine&) {
  ClearAllLists(app);
  send::REQU_SHUTDOWN();
}

void RunInit(ClientApp& app, CommandLine&) {
  if (communicationLayer != nullptr && responsePrinter != nullptr) StartListener(app);
  send::REQU_INIT();
}

void RunLang(ClientApp&, CommandLine& line) {
  const std::int32_t language = ParseLanguage(line.parameters[0].text.c_str());
  send::REQU_SET_LANGUAGE(language, ParamInt(line.parameters[1]));
  if (language == 0) logger->print(L" Unknown language!\n");
}

// By itself, as tests/thread_sanitizer.supp names the functions that write a shared word.
void NoteListRequested(ClientApp& app) {
  app.listRequested = 1;
}

void RunList(ClientApp& app, CommandLine& line) {
  auto& parameters = line.parameters;
  CountRepeatedList(app, Utf8ToWide(ParamUtf8(parameters[0])));
  if (breakStall != nullptr) breakStall(app);
  // Before the request goes out, so that the response can't arrive first.
  waitResponseId = RESP_GET_LIST;
  send::REQU_GET_LIST(ParamUtf8(parameters[0]), ParamInt(parameters[1]), ParamInt(parameters[2]),
                      ParseSortOption(parameters[3].text.c_str()),
                      FindOrCreateList(app.stringArrayLists, ParamNarrow(parameters[4])),
                      ParamOnOff(parameters[5]));
  NoteListRequested(app);
}

void RunMap(ClientApp&, CommandLine& line) {
  const char* controls = ParamUtf8(line.parameters[0]);
  send::REQU_MAP_CONTROLS(controls);
  const auto mapId = TagValue(controls, "<MID>");
  if (mapId && responsePrinter != nullptr) SetMapId(*responsePrinter, *mapId);
}

void RunRkill(ClientApp& app, CommandLine& line) {
  const SRouteHandleList* handles = FindList(app.routeHandleLists, ParamNarrow(line.parameters[0]));
  if (handles == nullptr) {
    logger->print(L"No such RouteHandleList: \"%ls\"\n", line.parameters[0].text.c_str());
    return;
  }
  send::REQU_KILL_TRIP(*handles);
}

void RunTmcdebug(ClientApp&, CommandLine& line) {
  const std::string_view event = ParamNarrow(line.parameters[0]);
  if (!event.empty()) return send::TMC_DATA(event);
  for (const char* testEvent : kTrafficTestEvents) send::TMC_DATA(testEvent);
}

}  // namespace ventrik
