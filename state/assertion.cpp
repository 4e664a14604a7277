// SPDX-License-Identifier: Apache-2.0
#include "state/assertion.h"

#include "platform/neutrino.h"
#include "state/logger.h"
#include "state/process_state.h"

namespace ventrik {

void FailAssertion(const char* file, int line, const char* function) {
  if (logger != nullptr) {
    logger->print(L"ASSERT FAILED!\nfile:%s\nline:%d\nfunc:%s\n", file, line, function);
  }
  platform::AssertFailed("false", file, line, function);
}

}  // namespace ventrik
