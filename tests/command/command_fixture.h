// SPDX-License-Identifier: Apache-2.0
// Verbs for tests of the command language: lines in, what was printed and sent out.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "console/response_printer.h"
#include "state/client_app.h"
#include "tests/messages/recorded_server.h"
#include "tests/support/recorded_console.h"
#include "tests/support/temporary_directory.h"

namespace ventrik::tests {

using Events = std::vector<std::string>;
using Texts = std::vector<std::wstring>;

// "Error: ..." as the console gets it, red and on a line of its own.
std::wstring ErrorText(const std::wstring& words);

// What is said of a wrong number of parameters.
std::wstring CountError(wchar_t firstLetter, int expected);

extern const std::wstring kBadSyntax;
extern const std::wstring kUnknownCommand;

// Whether another thread could take commandLock at this moment.
bool LockIsFree();

// An application of its own, with every process-wide word as at the start, before and after.
class CommandTest : public testing::Test {
 protected:
  CommandTest();
  ~CommandTest() override;

  // A line as the keyboard and batch files give it.
  void Run(const std::wstring& line);

  std::wstring Printed() { return console_.TakeText(); }

  // The value of a variable; "(none)" if there is none.
  std::wstring ValueOf(const std::wstring& name) const;
  void Set(const std::wstring& name, const std::wstring& value);

  RecordedConsole console_;
  RecordedServer server_;
  ResponsePrinter printer_;
  ClientApp app_;
};

// The same in a working directory of its own.
class CommandFileTest : public CommandTest {
 protected:
  CommandFileTest();
  ~CommandFileTest() override;

  // A file in the working directory. What a missing one holds is "(none)".
  static void WriteFile(const std::string& name, const std::string& content);
  static std::string Content(const std::string& name);

 private:
  std::string before_;
  TemporaryDirectory directory_;
};

}  // namespace ventrik::tests
