// SPDX-License-Identifier: Apache-2.0
// What every fuzzer needs around the code under test.
#pragma once

#include <clocale>

#include "console/logger_posix.h"
#include "state/process_state.h"

namespace ventrik {

// The real console writer; run fuzzers with -close_fd_mask=1, which drops what it writes.
inline void PrepareConsole() {
  std::setlocale(LC_CTYPE, "C.UTF-8");
  static Logger_posix console;
  logger = &console;
}

}  // namespace ventrik
