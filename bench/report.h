// SPDX-License-Identifier: Apache-2.0
// The bench engine's lines on standard error.
#pragma once

#include "state/logger.h"

namespace ventrik::bench {

// Writes "kelmora-bench: ", the formatted text and a line end in one piece. Keeps errno. Any
// thread; not a cancellation point.
[[gnu::format(printf, 1, 2)]] void Report(const char* format, ...);

// Takes the texts that the rooms below print through `logger`: standard output stays free for the
// program's own two lines, and narrow. Each text goes out in one piece, and errno is kept, because
// ipc/ prints the error of a send before the caller sees it.
class ErrorLogger : public Logger {
 public:
  int print(const wchar_t* format, ...) override;                       // on standard error
  int printTo(std::FILE* stream, const wchar_t* format, ...) override;  // which stays narrow
};

}  // namespace ventrik::bench
