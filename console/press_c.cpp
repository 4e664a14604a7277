// SPDX-License-Identifier: Apache-2.0
#include "console/press_c.h"

#include <unistd.h>

#include "state/logger.h"
#include "state/process_state.h"

namespace ventrik {
namespace {

constexpr unsigned kNoInputPause = 50'000;  // microseconds

}  // namespace

void AskForC() {
  logger->print(L"Press the \"c\" key to continue");
  char typed = '\0';
  while (typed != 'c') {
    if (read(STDIN_FILENO, &typed, 1) != 1) usleep(kNoInputPause);
  }
}

}  // namespace ventrik
