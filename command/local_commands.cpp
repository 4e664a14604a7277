// SPDX-License-Identifier: Apache-2.0
// The commands that act inside the tester, without a request to the server.
#include <pthread.h>

#include <iterator>

#include "command/batch_files.h"
#include "command/command_table.h"
#include "command/help_text.h"
#include "command/parameters.h"
#include "command/parser.h"
#include "command/variables.h"
#include "console/response_printer.h"
#include "console/utf8.h"
#include "ipc/client_communication_layer_posix.h"
#include "messages/response_filter.h"
#include "state/logger.h"
#include "state/process_state.h"

namespace ventrik {
namespace {

constexpr std::uint32_t kMillisecondsPerSecond = 1000;

// "on" sets the flag, "off" clears it, any other word leaves it.
void SetFlagIfOnOrOff(Flag& flag, const CommandLine& line) {
  if (ParamIs(line, 0, L"on")) flag = 1;
  if (ParamIs(line, 0, L"off")) flag = 0;
}

void RunBatch(ClientApp& app, CommandLine& line) {
  OpenBatchFile(app, ParamNarrow(line.parameters[0]));
}

void RunHelp(ClientApp&, CommandLine&) {
  PrintHelp();
}

void RunPrompt(ClientApp&, CommandLine& line) {
  SetFlagIfOnOrOff(autoPromptReady, line);
}

// The threads end at their next cancellation point; the main loop at its next look at the flag.
void RunQuit(ClientApp& app, CommandLine&) {
  mainLoopRunning = 0;
  if (app.listenerThread != 0) pthread_cancel(app.listenerThread);
  if (app.monkeyThread != 0) pthread_cancel(app.monkeyThread);
}

void RunRldresp(ClientApp& app, CommandLine& line) {
  SetResponseFilter(app, ParamOnOff(line.parameters[0]));
}

void SetScroll(ClientApp& app, std::int32_t mode) {
  app.scrollOn = mode == 1;
  logger->print(mode == 1 ? L"Scrolling : ON\n" : L"Scrolling : OFF\n");
}

void RunScroll(ClientApp& app, CommandLine& line) {
  SetScroll(app, ParamOnOff(line.parameters[0]));
}

void RunServer(ClientApp&, CommandLine& line) {
  const char* name = ParamNarrow(line.parameters[0]);
  if (communicationLayer != nullptr) {
    // The name first: the listener connects anew as soon as the old connection is gone.
    communicationLayer->SetChannelName(name);
    communicationLayer->Disconnect();
  }
  logger->print(L"The server is changed to %ls.\n", Utf8ToWide(name).c_str());
}

void RunStartlog(ClientApp&, CommandLine& line) {
  if (responsePrinter != nullptr) StartLog(*responsePrinter, ParamNarrow(line.parameters[0]));
}

void RunStoplog(ClientApp&, CommandLine&) {
  if (responsePrinter != nullptr) StopLog(*responsePrinter);
}

void RunVar(ClientApp& app, CommandLine& line) {
  ShowVariable(app, line.parameters[0].text);
}

void RunVarassign(ClientApp& app, CommandLine& line) {
  AssignVariable(app, line.parameters[0].text, line.parameters[1].text);
}

void RunVarconcat(ClientApp& app, CommandLine& line) {
  AppendToVariable(app, line.parameters[0].text, line.parameters[1].text);
}

// Multiplied modulo 2^32: -1 waits for some 50 days.
void RunWait(ClientApp&, CommandLine& line) {
  waitMilliseconds =
      kMillisecondsPerSecond * static_cast<std::uint32_t>(ParamInt(line.parameters[0]));
}

void RunWaitresp(ClientApp&, CommandLine& line) {
  waitResponseId = ParamInt(line.parameters[0]);
}

void RunWeather(ClientApp&, CommandLine& line) {
  SetFlagIfOnOrOff(weatherOn, line);
}

constexpr CommandRow kLocalCommands[] = {
    {L"batch", 1, RunBatch, {"path"}},
    {L"help", 0, RunHelp},
    {L"prompt", 1, RunPrompt, {"on or off"}},
    {L"quit", 0, RunQuit},
    {L"rldresp", 1, RunRldresp, {"on/off"}},
    {L"scroll", 1, RunScroll, {"on/off"}},
    {L"server", 1, RunServer, {"text"}},
    {L"startlog", 1, RunStartlog, {"path"}},
    {L"stoplog", 0, RunStoplog},
    {L"var", 1, RunVar, {"name"}},
    {L"varassign", 2, RunVarassign, {"name", "name or text"}},
    {L"varconcat", 2, RunVarconcat, {"name", "name or text"}},
    {L"wait", 1, RunWait, {"seconds"}},
    {L"waitresp", 1, RunWaitresp, {"number"}},
    {L"weather", 1, RunWeather, {"on or off"}},
};

}  // namespace

CommandRows LocalCommands() {
  return {std::begin(kLocalCommands), std::end(kLocalCommands)};
}

}  // namespace ventrik
