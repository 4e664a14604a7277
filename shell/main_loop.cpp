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
#include "shell/history.h"
#include "shell/keyboard.h"
#include "state/client_app.h"
#include "state/logger.h"
#include "state/process_state.h"

namespace ventrik {
namespace {

constexpr std::uint32_t kTickMilliseconds = 50;
constexpr useconds_t kTick = kTickMilliseconds * 1000;  // microseconds

void PrintBanner() {
  logger->print(L"%sVentrik Kelmora API tester\n\n%s", ColourGreen, ColourReset);
  logger->print(L"Command syntax: Cmd\n");
  logger->print(L"            or: Cmd(\"param1\",\"param2\")\n\n");
  logger->print(L"Note: If your console window is not 80 char width, you must set the correct\n");
  logger->print(L"      value in the COLUMNS environment variable with 'export COLUMNS=value'\n");
  logger->print(L"      command.\n\n");
  logger->print(L"Press ENTER to pause continuous output, and type a command (for eg. help).\n");
}

void TakeConsoleWidth() {
  const char* columns = std::getenv("COLUMNS");
  if (columns != nullptr) consoleColumns = std::atoi(columns);
}

// Spends one tick in a wait state, if there is one. `wait` runs out first; it counts ticks and
// looks at no clock. What `waitresp` waits for is cleared by the listener.
bool WaitOneTick() {
  const std::uint32_t left = waitMilliseconds;
  if (left != 0) {
    waitMilliseconds = left >= kTickMilliseconds ? left - kTickMilliseconds : 0;
  } else if (waitResponseId == 0) {
    return false;
  }
  usleep(kTick);
  return true;
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
    if (WaitOneTick()) continue;
    if (FetchLine(*this, line)) ExecuteCommand(*this, line, true);
  }
  std::fflush(stdout);
  const CommandLockHolder hold;
  ClearAllLists(*this);
}

}  // namespace ventrik
