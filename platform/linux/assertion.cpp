// SPDX-License-Identifier: Apache-2.0
#include <cstdio>
#include <cstdlib>

#include "platform/neutrino.h"

namespace platform {

void AssertFailed(const char* expression, const char* file, int line, const char* function) {
  std::fprintf(stderr, "%s:%d: %s: assertion '%s' failed\n", file, line, function, expression);
  std::abort();
}

}  // namespace platform
