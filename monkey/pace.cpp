// SPDX-License-Identifier: Apache-2.0
#include "monkey/pace.h"

#include <unistd.h>

namespace ventrik {

int (*pauseSource)(unsigned microseconds) = usleep;

void Pause(unsigned microseconds) {
  pauseSource(microseconds);
}

}  // namespace ventrik
