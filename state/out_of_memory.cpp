// SPDX-License-Identifier: Apache-2.0
#include "state/out_of_memory.h"

#include "state/logger.h"
#include "state/process_state.h"

namespace ventrik {

void SayOutOfMemory() {
  if (logger == nullptr) return;
  try {
    logger->print(L"%sError: Out of memory!\n%s", ColourRed, ColourReset);
  } catch (const std::bad_alloc&) {
    // Not even for the word. What comes next may have some again.
  }
}

}  // namespace ventrik
