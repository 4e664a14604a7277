// SPDX-License-Identifier: Apache-2.0
#include "command/executor.h"

#include <memory>
#include <utility>

#include "command/command_table.h"
#include "command/parser.h"
#include "command/variables.h"
#include "platform/thread_start.h"
#include "state/logger.h"
#include "state/out_of_memory.h"
#include "state/process_state.h"

namespace ventrik {
namespace {

constexpr const wchar_t* kBatchlogStart = L"batchlog(";
constexpr std::size_t kBatchlogStartLength = 9;

// What a replay's thread works on: the line as it stood when the thread was made, so that a
// following line can't replace it.
struct BatchlogStart {
  ClientApp& app;
  std::wstring line;
};

void* BatchlogThread(void* argument) {
  const std::unique_ptr<BatchlogStart> start(static_cast<BatchlogStart*>(argument));
  ExecuteCommand(start->app, start->line, false);
  return nullptr;
}

void StartBatchlogThread(ClientApp& app, const std::wstring& line) {
  platform::CancelAndForget(app.batchlogThread);
  auto start = std::make_unique<BatchlogStart>(BatchlogStart{app, line});
  if (platform::StartThread(app.batchlogThread, BatchlogThread, start.get())) {
    static_cast<void>(start.release());  // the thread's now
  }
}

void RunCommand(ClientApp& app, const std::wstring& line) {
  CommandLine parsed;
  if (!ParseCommandLine(parsed, line)) {
    logger->print(L"%sError: Bad syntax!\n%s", ColourRed, ColourReset);
    return;
  }
  const bool known = RunFromCommandTable(app, parsed);
  if (!known && !parsed.matchFailed) {
    logger->print(L"%sError: Unknown command!\n%s", ColourRed, ColourReset);
  }
  app.parsedLine.Store(std::make_shared<const CommandLine>(std::move(parsed)));
}

// Into the memory of the line before.
void NoteCurrentLine(ClientApp& app, const std::wstring& line) {
  app.currentLine.With([&line](std::wstring& noted) { noted = line; });
}

void Execute(ClientApp& app, const std::wstring& line, bool lockCommands) {
  std::wstring current = line;
  NoteCurrentLine(app, current);
  const int consumed = HandleVariableLine(app, current);
  NoteCurrentLine(app, current);
  if (consumed) return;
  if (SubstituteVariables(app, current)) return;
  NoteCurrentLine(app, current);
  // Oddity: the text as it was given decides, so a blank before the name keeps a replay on the
  // calling thread.
  if (lockCommands && line.compare(0, kBatchlogStartLength, kBatchlogStart) == 0) {
    return StartBatchlogThread(app, current);
  }
  const CommandLockHolder hold(lockCommands);
  RunCommand(app, current);
}

}  // namespace

void ExecuteCommand(ClientApp& app, const std::wstring& line, bool lockCommands) {
  if (line.empty()) return;
  RunIfMemoryLasts([&] { Execute(app, line, lockCommands); });
}

}  // namespace ventrik
