// SPDX-License-Identifier: Apache-2.0
// The Logger that writes to the process's standard output.
//
// Each print() is formatted whole, encoded and handed to the kernel in one write, so that a text is
// on the screen when the call returns and never waits for a line end. (The C library's wide stream
// writes sixteen bytes at a time.) Nothing else may write to standard output.
#pragma once

#include <string>

#include "platform/cancellation.h"
#include "state/logger.h"

namespace ventrik {

class Logger_posix : public Logger {
 public:
  // As vwprintf on standard output. A thread cannot be cancelled while it prints.
  int print(const wchar_t* format, ...) override;

  // As vfwprintf on `stream`.
  int printTo(std::FILE* stream, const wchar_t* format, ...) override;
};

// For a text that is printed in pieces: what this thread prints to standard output while one of
// these lives is written at its end, in one go. Whether that succeeds shows in no result. One at a
// time on a thread, which cannot be cancelled meanwhile. Any thread.
class PrintedTogether {
 public:
  PrintedTogether();
  ~PrintedTogether();
  PrintedTogether(const PrintedTogether&) = delete;
  PrintedTogether& operator=(const PrintedTogether&) = delete;

 private:
  const platform::CancellationDisabled whole_;
  std::string bytes_;
};

}  // namespace ventrik
