// SPDX-License-Identifier: Apache-2.0
// The Logger that writes to the process's standard output.
//
// Each print() is formatted whole, encoded and handed to the kernel in one write, so that a text is
// on the screen when the call returns and never waits for a line end. (The C library's wide stream
// writes sixteen bytes at a time.) Nothing else may write to standard output.
#pragma once

#include "state/logger.h"

namespace ventrik {

class Logger_posix : public Logger {
 public:
  // As vwprintf on standard output. A thread cannot be cancelled while it prints.
  int print(const wchar_t* format, ...) override;

  // As vfwprintf on `stream`.
  int printTo(std::FILE* stream, const wchar_t* format, ...) override;
};

}  // namespace ventrik
