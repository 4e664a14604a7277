// SPDX-License-Identifier: Apache-2.0
// Start-up and main loop: one command line at a time, from the newest batch file or the keyboard,
// once the wait states have cleared.
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "command/batch_files.h"
#include "command/executor.h"
#include "command/list_store.h"
#include "shell/ending.h"
#include "shell/history.h"
#include "shell/keyboard.h"
#include "shell/wait_states.h"
#include "state/client_app.h"
#include "state/logger.h"
#include "state/out_of_memory.h"
#include "state/process_state.h"
#include "state/saturation.h"

namespace ventrik {
namespace {

constexpr std::int32_t kUsualColumns = 80;

void PrintBanner() {
  logger->print(L"%sVentrik Kelmora API tester\n\n%s", ColourGreen, ColourReset);
  logger->print(L"Command syntax: Cmd\n");
  logger->print(L"            or: Cmd(\"param1\",\"param2\")\n\n");
  logger->print(L"Note: If your console window is not 80 char width, you must set the correct\n");
  logger->print(L"      value in the COLUMNS environment variable with 'export COLUMNS=value'\n");
  logger->print(L"      command.\n\n");
  logger->print(L"Press ENTER to pause continuous output, and type a command (for eg. help).\n");
}

// What a 32-bit atoi makes of the text, whatever that is.
std::int32_t NumberOf(const char* text) {
  return Saturate(std::strtoll(text, nullptr, 10));
}

void TakeConsoleWidth() {
  consoleColumns = kUsualColumns;
  const char* columns = std::getenv("COLUMNS");
  if (columns != nullptr) consoleColumns = NumberOf(columns);
}

int FetchLine(ClientApp& app, std::wstring& line) {
  const bool batchIsOpen = app.batchFiles.With([](const auto& stack) { return !stack.empty(); });
  return batchIsOpen ? ReadBatchLine(app, line) : ReadKeyboardLine(app, line);
}

}  // namespace

void ClientApp::Run() {
  TakeConsoleWidth();
  LoadHistory(*this);
  for (std::int32_t i = 1; i < argumentCount; ++i) OpenBatchFile(*this, argumentVector[i]);
  PrintBanner();
  std::wstring line;
  while (mainLoopRunning && !stopRequested) {
    if (CountTick()) {
      usleep(kTick);
      continue;
    }
    int fetched = 0;
    if (!RunIfMemoryLasts([&] { fetched = FetchLine(*this, line); })) holdOutput = 0;
    if (fetched) ExecuteCommand(*this, line, true);
  }
  std::fflush(stdout);
  // A replay that is stuck in a send keeps the lists, which go with the process anyway.
  if (commandLock.try_lock()) {
    ClearAllLists(*this);
    UnlockCommands();
  }
  // Before the process exits: what the listener draws with goes first of all then.
  EndThreads(*this);
}

}  // namespace ventrik
