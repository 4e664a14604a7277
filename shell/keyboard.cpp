// SPDX-License-Identifier: Apache-2.0
#include "shell/keyboard.h"

#include <cstdio>
#include <optional>

#include "shell/history.h"
#include "shell/line_editor.h"
#include "shell/special_keys.h"
#include "shell/terminal.h"
#include "state/logger.h"
#include "state/process_state.h"

namespace ventrik {
namespace {

enum class Edited { kText, kNothing, kAbandoned };

void Print(const std::wstring& text) {
  logger->print(L"%ls", text.c_str());
}

// Lets the user edit `line`, until ENTER.
Edited EditLine(const wchar_t* prompt, std::wstring& line, ClientApp& app) {
  line.clear();
  LineEditor editor(prompt, consoleColumns, app.history, app.historyCursor, overwriteMode);
  Print(editor.Begin());
  while (!editor.Done()) {
    const std::optional<std::uint32_t> key = ReadKey();
    if (!key) {
      logger->print(L"%s\n", ColourReset);  // leaves the shell an uncoloured line of its own
      return Edited::kAbandoned;
    }
    const std::wstring redrawn = editor.TakeKey(*key);
    if (!redrawn.empty()) Print(redrawn);
  }
  Print(editor.End());
  line = editor.line();
  return line.empty() ? Edited::kNothing : Edited::kText;
}

}  // namespace

int ReadKeyboardLine(ClientApp& app, std::wstring& line) {
  const std::optional<int> key = ReadRawByte();  // here the thread stands while output scrolls
  if (!key) return 0;
  int execute = 1;
  if (*key != '\r' && *key != '\n' && app.scrollOn) {
    HandleSpecialKey(app, *key, true);
    if (!mainLoopRunning) return 0;
    execute = 0;
  }
  holdOutput = 1;
  const Edited edited = EditLine(L"Cmd> ", line, app);
  if (edited == Edited::kText) AppendToHistory(app, line);
  std::fflush(stdin);
  holdOutput = 0;
  return edited == Edited::kAbandoned ? 0 : execute;
}

}  // namespace ventrik
