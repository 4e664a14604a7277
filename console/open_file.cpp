// SPDX-License-Identifier: Apache-2.0
#include "console/open_file.h"

#include <fcntl.h>

#include "platform/cancellation.h"

namespace ventrik {

int OpenWithoutWaiting(const char* path, int flags) {
  const platform::CancellationDisabled whole;
  return open(path, flags | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, 0666);
}

}  // namespace ventrik
