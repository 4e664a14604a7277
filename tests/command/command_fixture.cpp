// SPDX-License-Identifier: Apache-2.0
#include "tests/command/command_fixture.h"

#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>

#include "command/executor.h"
#include "state/process_state.h"

namespace ventrik::tests {
namespace {

void ResetProcessState() {
  mainLoopRunning = 1;
  autoPromptReady = 1;
  weatherOn = 0;
  holdOutput = 0;
  stopBatchlog = 0;
  waitResponseId = 0;
  waitMilliseconds = 0;
}

}  // namespace

std::wstring ErrorText(const std::wstring& words) {
  return L"\033[1;31mError: " + words + L"\n\033[0;37m";
}

std::wstring CountError(wchar_t firstLetter, int expected) {
  return ErrorText(std::wstring(L"Bad syntax! Command \"") + firstLetter + L"\" needs " +
                   std::to_wstring(expected) + L" parameter(s).");
}

const std::wstring kBadSyntax = ErrorText(L"Bad syntax!");
const std::wstring kUnknownCommand = ErrorText(L"Unknown command!");

bool LockIsFree() {
  bool taken = false;
  std::thread([&taken] {
    taken = commandLock.try_lock();
    if (taken) commandLock.unlock();
  }).join();
  return taken;
}

CommandTest::CommandTest() {
  ResetProcessState();
  responsePrinter = &printer_;
}

CommandTest::~CommandTest() {
  responsePrinter = nullptr;
  ResetProcessState();
}

void CommandTest::Run(const std::wstring& line) {
  ExecuteCommand(app_, line, true);
}

std::wstring CommandTest::ValueOf(const std::wstring& name) const {
  return app_.variables.With([&name](const VariableTable& table) {
    const auto found = table.find(name);
    return found == table.end() ? std::wstring(L"(none)") : found->second;
  });
}

void CommandTest::Set(const std::wstring& name, const std::wstring& value) {
  app_.variables.With([&](VariableTable& table) { table[name] = value; });
}

CommandFileTest::CommandFileTest() : before_(std::filesystem::current_path()) {
  std::filesystem::current_path(directory_.path());
}

CommandFileTest::~CommandFileTest() {
  std::filesystem::current_path(before_);
}

void CommandFileTest::WriteFile(const std::string& name, const std::string& content) {
  std::ofstream(name, std::ios::binary) << content;
}

std::string CommandFileTest::Content(const std::string& name) {
  std::ifstream file(name, std::ios::binary);
  if (!file) return "(none)";
  std::ostringstream content;
  content << file.rdbuf();
  return content.str();
}

}  // namespace ventrik::tests
