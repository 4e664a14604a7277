// SPDX-License-Identifier: Apache-2.0
// Stands in for the console: every text that is printed is kept, one by one.
#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "state/logger.h"

namespace ventrik::tests {

// The process-wide logger for a scope. Any thread may print.
class RecordedConsole : public Logger {
 public:
  RecordedConsole();
  ~RecordedConsole() override;
  RecordedConsole(const RecordedConsole&) = delete;
  RecordedConsole& operator=(const RecordedConsole&) = delete;

  int print(const wchar_t* format, ...) override;
  // A stream is the test's own: it is written, not kept.
  int printTo(std::FILE* stream, const wchar_t* format, ...) override;

  // Called with each text before it is kept, by the thread that prints it. Set it while no other
  // thread prints.
  std::function<void(const std::wstring& text)> onPrint;

  // What each print since the last taking printed.
  std::vector<std::wstring> TakeTexts();
  // The same in one piece.
  std::wstring TakeText();

  // Waits until what there is to take holds `part`. Returns false if the test hangs.
  bool WaitFor(const std::wstring& part);

 private:
  std::mutex lock_;
  std::condition_variable grown_;
  std::vector<std::wstring> texts_;
  std::wstring whole_;  // the texts in one piece
  Logger* const before_;
};

}  // namespace ventrik::tests
